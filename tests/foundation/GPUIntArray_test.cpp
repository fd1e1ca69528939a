// Sets of unsigned numbers: runs, the rules of adding, ranges in text, and the narrow stream.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

#include <zpbase/foundation.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/exceptions.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

using Values = std::vector<UINT>;

Values valuesOf(GPUIntArray const & array)
{
  Values values;
  for (int i = 0; i < array.GetSize(); ++i) values.push_back(array[i]);
  return values;
}

GPUIntArray arrayOf(Values const & values)
{
  GPUIntArray array;
  for (UINT const value : values) array.Add(value);
  return array;
}

TEST(GPUIntArray, RunsGoUpAndDown)
{
  EXPECT_EQ(valuesOf(GPUIntArray(5, 5)), (Values{5}));
  EXPECT_EQ(valuesOf(GPUIntArray(5, 3)), (Values{5, 4, 3}));
  EXPECT_EQ(valuesOf(GPUIntArray(5, 3, 0)), (Values{5, 4, 3}));
  EXPECT_EQ(valuesOf(GPUIntArray(5, 3, 1)), (Values{5, 6, 7}));
  EXPECT_EQ(valuesOf(GPUIntArray(INT32_MAX - 1, INT32_MAX)), (Values{0x7FFFFFFE, 0x7FFFFFFF}));
  EXPECT_TRUE(GPUIntArray(5, 0, 1).IsEmpty());
}

TEST(GPUIntArray, ShortsAreSignExtendedAndComeBack)
{
  short const shorts[] = {-1, 7};
  GPUIntArray const array(shorts, 2);
  EXPECT_EQ(valuesOf(array), (Values{0xFFFFFFFF, 7}));
  std::unique_ptr<short[]> const back(array.GetShortIntArray());
  EXPECT_EQ(back[0], -1);
  EXPECT_EQ(back[1], 7);
  EXPECT_EQ(GPUIntArray().GetShortIntArray(), nullptr);
}

TEST(GPUIntArray, CopiesAppendsAndLeavesItselfAlone)
{
  GPUIntArray array(1, 2);
  GPUIntArray copy(array);
  GPUIntArray & alias = array;
  array = alias;
  array += alias;
  copy += array;
  EXPECT_EQ(valuesOf(array), (Values{1, 2}));
  EXPECT_EQ(valuesOf(copy), (Values{1, 2, 1, 2}));
  copy = GPUIntArray(9, 9);
  EXPECT_EQ(valuesOf(copy), (Values{9}));
}

TEST(GPUIntArray, SortsBySignedDifferenceAndDropsDuplicates)
{
  GPUIntArray array = arrayOf({3, 0xFFFFFFFF, 1, 3, 1, 0});
  array.EliminateDuplicates();
  EXPECT_EQ(valuesOf(array), (Values{0xFFFFFFFF, 0, 1, 3}));
  GPUIntArray pair = arrayOf({7, 7});
  pair.EliminateDuplicates();
  EXPECT_EQ(valuesOf(pair), (Values{7}));
  GPUIntArray wrapping = arrayOf({0, 0x60000000, 0xC0000000, 0x80000000, 0x40000000, 0xE0000000});
  wrapping.Sort();
  EXPECT_EQ(wrapping.GetSize(), 6);
}

TEST(GPUIntArray, SearchStaysOnTheLastProbe)
{
  using Row = std::tuple<UINT, int, int>;
  Row const rows[] = {{10, 1, 0}, {30, 1, 2}, {40, 1, 3}, {5, 0, 0}, {25, 0, 2}, {50, 0, 3}};
  GPUIntArray array = arrayOf({10, 20, 30, 40});
  for (auto const & [value, found, place] : rows) {
    int index = 99;
    EXPECT_EQ(array.BSearch(index, value), found) << value;
    EXPECT_EQ(index, place) << value;
  }
  int index = 99;
  EXPECT_EQ(GPUIntArray().BSearch(index, 1), 0);
  EXPECT_EQ(index, -1);
}

TEST(GPUIntArray, AddingFollowsTheFlags)
{
  using Row = std::tuple<UINT, unsigned int, Values, int, Values>;
  // clang-format off
  Row const rows[] = {
      {2, 0, {}, 1, {1, 2, 4, 2}}, {3, 1, {}, 1, {1, 2, 3, 4}}, {2, 1, {}, 1, {1, 2, 2, 4}}, {9, 1, {}, 1, {1, 2, 4, 9}},
      {0xFFFFFFFF, 1, {}, 1, {1, 2, 4, 0xFFFFFFFF}}, {2, 2, {}, 0, {1, 2, 4}}, {2, 4, {}, 0, {1, 4}}, {2, 6, {}, 0, {1, 4}},
      {2, 4, {1, 4}, 0, {1, 2, 4}}, {3, 7, {3}, 1, {1, 2, 3, 4}},
  };
  // clang-format on
  for (auto const & [number, flags, valid, added, after] : rows) {
    GPUIntArray array = arrayOf({1, 2, 4});
    EXPECT_EQ(array.AddUIntVal(number, flags, arrayOf(valid)), added) << number << ' ' << flags;
    EXPECT_EQ(valuesOf(array), after) << number << ' ' << flags;
  }
}

TEST(GPUIntArray, RangesInTextTakeZerosAndMissingSidesAsOne)
{
  using Row = std::tuple<char const *, Values>;
  Row const rows[] = {{"5-7", {5, 6, 7}}, {"3-0", {3, 2, 1}},           {"0-3", {1, 2, 3}}, {"-4", {1, 2, 3, 4}},    {"5-5", {}},
                      {"x-2", {1, 2}},    {"7", {1, 2, 3, 4, 5, 6, 7}}, {"", {}},           {"2--1", {2, 1, 0, ~0U}}};
  for (auto const & [text, left] : rows) {
    GPUIntArray array;
    EXPECT_EQ(array.AddUIntRange(text, 0, GPUIntArray()), static_cast<int>(left.size())) << text;
    EXPECT_EQ(valuesOf(array), left) << text;
  }
  GPUIntArray array(1, 9);
  EXPECT_EQ(array.AddUIntRange("2-8", GPUIntArray::addToggles, GPUIntArray()), -7);
  EXPECT_EQ(array.AddUIntRange("1-3", GPUIntArray::addUnique | GPUIntArray::addSorted, GPUIntArray(2, 3)), 2);
  EXPECT_EQ(valuesOf(array), (Values{1, 2, 3, 9}));
}

// A range is what its values are one after the other, whatever the flags, the order and the elements that are there.
TEST(GPUIntArray, RangesFollowTheFlagsAsSingleValuesDo)
{
  Values const starts[] = {{}, {2, 4, 4, 9}, {9, 4, 2, 4, 0xFFFFFFFE, 2}};
  for (Values const & start : starts) {
    for (Values const & valid : {Values{}, Values{4, 2, 4, 12, 0xFFFFFFFE, 3}}) {
      for (unsigned int flags = 0; flags < 8; ++flags) {
        GPUIntArray up = arrayOf(start);
        GPUIntArray expected = arrayOf(start);
        for (UINT value = 1; value <= 6; ++value) expected.AddUIntVal(value, flags, arrayOf(valid));
        EXPECT_EQ(up.AddUIntRange("1-6", flags, arrayOf(valid)), expected.GetSize() - static_cast<int>(start.size()));
        EXPECT_EQ(valuesOf(up), valuesOf(expected)) << flags;
        GPUIntArray down = arrayOf(start);
        expected = arrayOf(start);
        for (int value = 3; value >= -3; --value) expected.AddUIntVal(static_cast<UINT>(value), flags, arrayOf(valid));
        down.AddUIntRange("3--3", flags, arrayOf(valid));
        EXPECT_EQ(valuesOf(down), valuesOf(expected)) << flags;
      }
    }
  }
}

TEST(GPUIntArray, RangesThatNoMemoryHoldsAreRefusedWhole)
{
  GPUIntArray array(5, 5);
  EXPECT_EQ(array.AddUIntRange("1-2147483647", 0, GPUIntArray()), 0);
  EXPECT_EQ(array.AddUIntRange("1-1048576", 0, GPUIntArray()), 0);
  EXPECT_EQ(valuesOf(array), (Values{5}));
  EXPECT_EQ(array.AddUIntRange("2147483647-1", GPUIntArray::addToggles, GPUIntArray(4, 6)), 1);
  EXPECT_EQ(valuesOf(array), (Values{6, 4}));
  EXPECT_EQ(array.AddUIntRange("1-1048576", GPUIntArray::addUnique | GPUIntArray::addSorted, GPUIntArray()), 1048574);
  EXPECT_EQ(array.AddUIntRange("1048577-1048578", 0, GPUIntArray()), 0);
  EXPECT_EQ(array.AddUIntRange("1-3", GPUIntArray::addToggles, GPUIntArray()), -3);
}

TEST(CUIntArray, GrowsBehindItsEndShrinksAndRefusesBadIndexes)
{
  CUIntArray array;
  array.SetAtGrow(2, 7);
  array.SetAtGrow(0, 1);
  array.InsertAt(500, array[2]);  // an element of its own, which moves
  array.SetAtGrow(5000, array[2]);
  EXPECT_EQ(array.GetSize(), 5001);
  EXPECT_EQ((Values{array[0], array[1], array[2], array[500], array[5000]}), (Values{1, 0, 7, 7, 7}));
  std::function<void()> const refused[] = {[&] { array.SetSize(-1); },     [&] { array.SetAtGrow(-1, 0); },
                                           [&] { array.InsertAt(-1, 0); }, [&] { array.RemoveAt(5000, 2); },
                                           [&] { array.GetAt(5001); },     [&] { array.SetAtGrow(INT32_MAX, 0); }};
  for (auto const & action : refused) EXPECT_TRUE(CodeOf<CInvalidArgException>(action));
  EXPECT_EQ(array.GetSize(), 5001);
  array.RemoveAt(3, 497);
  array.RemoveAt(4, 4499);
  array.RemoveAt(1);
  ASSERT_EQ(array.GetSize(), 4);
  EXPECT_EQ((Values{array[0], array[1], array[2], array[3]}), (Values{1, 7, 7, 7}));
}

TEST(GPUIntArray, FilesHoldTheLowSixteenBits)
{
  TempFolder const folder;
  GPUIntArray array = arrayOf({1, 70000, 0xFFFFFFFF});
  EXPECT_TRUE(array.Store(folder.Name("set")));
  EXPECT_EQ(folder.Read("set"), FromHex("0300 0100 7011 FFFF"));
  GPUIntArray back(8, 9);
  EXPECT_EQ(back.Load(folder.Name("none")), 0);
  EXPECT_EQ(valuesOf(back), (Values{8, 9}));
  EXPECT_EQ(back.Load(folder.Name("set")), 1);
  EXPECT_EQ(valuesOf(back), (Values{1, 4464, 65535}));

  GPUIntArray large(1, 65536);
  EXPECT_EQ(CodeOf<CArchiveException>([&] { large.Store(folder.Name("set")); }), CArchiveException::genericException);
  EXPECT_EQ(folder.Read("set").size(), 8U) << "the old file stays";

  folder.Write("set", FromHex("0200 0100 70"));
  EXPECT_EQ(CodeOf<CArchiveException>([&] { back.Load(folder.Name("set")); }), CArchiveException::endOfFile);
  EXPECT_EQ(valuesOf(back), (Values{1, 0}));
}

}  // namespace
