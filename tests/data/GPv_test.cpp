// The packed area: what is stored of a list, what comes out, and the limits of its size.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

#include <zpbase/data.h>
#include <zpbase/platform/collections.h>

#include "tests/support/TempFolder.h"

namespace {

using Texts = std::vector<char const *>;

CStringArray arrayOf(Texts const & texts)
{
  CStringArray array;
  for (char const * const text : texts) array.Add(text);
  return array;
}

// The texts joined, each in brackets.
std::string joined(CStringArray const & array)
{
  CString text;
  for (int i = 0; i < array.GetSize(); ++i) text += "[" + array[i] + "]";
  return text.GetString();
}

template <class Record>
std::string floatTexts(Record const & record, int minimum, char const * format = "%g")
{
  CStringArray out;
  record.GetFloatData(out, minimum, format);
  return joined(out);
}

std::string areaOf(GPv const & item)
{
  return item.GetSize() == 0 ? ""
                             : std::string(reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize()));
}

}  // namespace

TEST(GPv, DropsZerosAtTheEndAlone)
{
  using Row = std::tuple<Texts, int, char const *, char const *>;
  for (auto const & [in, stored, area, out] : {
           Row{{"1", "", "3"}, 3, "0000803F 00000000 00004040", "[1][0][3]"},
           Row{{"1", "", ""}, 1, "0000803F", "[1][][]"},
           Row{{"0", "", "0.0"}, 0, "", "[][][]"},
           Row{{}, 0, "", "[][][]"},
           Row{{"x", "-2.5e0x"}, 2, "00000000 000020C0", "[0][-2.5][]"},
           Row{{"1e-60"}, 0, "", "[][][]"},
           Row{{"1", "2", "3", "4"}, 4, "0000803F 00000040 00004040 00008040", "[1][2][3][4]"},
       }) {
    GPv item(5, 8);
    EXPECT_EQ(item.PutFloatData(arrayOf(in)), stored) << out;
    EXPECT_EQ(areaOf(item), FromHex(area));
    EXPECT_EQ(item.GetArea() == nullptr, stored == 0);
    EXPECT_EQ(floatTexts(item, 3), out);
  }
}

TEST(GPv, CutsShortIntsTo16Bits)
{
  GPv item(5);
  EXPECT_EQ(item.PutShortIntData(arrayOf({"65535", "-2", "65536"})), 2);
  EXPECT_EQ(areaOf(item), FromHex("FFFF FEFF"));
  CStringArray out;
  out.Add("kept");
  EXPECT_EQ(item.GetShortIntData(out, 3, "%d"), 2);
  EXPECT_EQ(joined(out), "[kept][-1][-2][]");
  int numbers[] = {7, 7, 7};
  EXPECT_EQ(item.GetShortIntData(numbers, 3), 2);
  EXPECT_EQ(std::vector(numbers, numbers + 3), (std::vector{-1, -2, 0}));
  int const in[] = {1, 0x10000, 0x8000, 0x20000};
  EXPECT_EQ(item.PutShortIntData(in, 4), 4);  // what isn't zero before it is cut counts
  EXPECT_EQ(areaOf(item), FromHex("0100 0000 0080 0000"));
  EXPECT_EQ(item.PutShortIntData(arrayOf({"65536"})), 0);
  EXPECT_EQ(item.GetArea(), nullptr);
}

TEST(GPv, FillsNumbersAsFarAsAskedAndCountsAll)
{
  GPv item(5);
  float const in[] = {1, 0, 3, std::numeric_limits<float>::quiet_NaN(), 0};
  EXPECT_EQ(item.PutFloatData(in, 5), 4);
  float out[] = {9, 9, 9, 9};
  EXPECT_EQ(item.GetFloatData(out, 3), 4);
  EXPECT_EQ(std::vector(out, out + 4), (std::vector{1.0F, 0.0F, 3.0F, 9.0F}));
  EXPECT_EQ(floatTexts(item, 2, "%.1f").substr(0, 15), "[1.0][0.0][3.0]");
  EXPECT_EQ(item.PutFloatData(in, -1), 0);
  EXPECT_EQ(item.GetFloatData(out, 4), 0);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(out[3], 0);
}

TEST(GPv, GrowsItsAreaAndKeepsItAtTheLimit)
{
  GPv item(5, 8);
  EXPECT_EQ(areaOf(item), std::string(8, '\0'));
  item.GetArea()[7] = 1;
  EXPECT_EQ(item.ExpandVArea(8), 1);
  EXPECT_EQ(item.ExpandVArea(7), 0);
  EXPECT_EQ(item.ExpandVArea(-1), 0);
  EXPECT_EQ(item.ExpandVArea(10), 1);
  EXPECT_EQ(areaOf(item), FromHex("0000000000000001 0000"));
  EXPECT_EQ(item.ExpandVArea(32768), 0);
  EXPECT_EQ(item.ExpandVArea(32767), 1);
  EXPECT_EQ(item.GetSize(), 32767);
  EXPECT_EQ(GPv(5, 32768).GetSize(), 0);
  EXPECT_EQ(GPv(5, -1).GetSize(), 0);
  EXPECT_EQ(GPv(5, 0).GetArea(), nullptr);

  std::vector<float> floats(8192, 1.0F);
  EXPECT_EQ(item.PutFloatData(floats.data(), 8191), 8191);
  EXPECT_EQ(item.PutFloatData(floats.data(), 8192), 0);
  EXPECT_EQ(item.GetSize(), 4 * 8191);
  std::vector<int> ints(16384, 1);
  EXPECT_EQ(item.PutShortIntData(ints.data(), 16384), 0);
  EXPECT_EQ(item.GetSize(), 4 * 8191);
  EXPECT_EQ(item.PutShortIntData(ints.data(), 16383), 16383);
}

TEST(GPv, CopiesItsBytes)
{
  GPv item(5, 2);
  item.GetArea()[0] = 'A';
  GPv copy(item);
  copy.GetArea()[1] = 'B';
  EXPECT_EQ(areaOf(item), FromHex("41 00"));
  item = copy;
  GPv const & itself = item;
  item = itself;
  EXPECT_EQ(areaOf(item), "AB");
  item = GPv(6);
  EXPECT_EQ(item.GetDataID(), 6U);
  EXPECT_EQ(item.GetArea(), nullptr);
}

TEST(GPbip, HoldsTheFirstTwoOf112Multiplied)
{
  GPbip item(112, 9);
  EXPECT_EQ(item.PutFloatData(arrayOf({"1", "2", "3"})), 3);
  float held[3];
  item.GPv::GetFloatData(held, 3);
  EXPECT_EQ(std::vector(held, held + 3), (std::vector{1.987216F, 3.974432F, 3.0F}));
  float out[3];
  EXPECT_EQ(item.GetFloatData(out, 3), 3);
  EXPECT_NEAR(out[0], 1.0F, 1e-6F);
  EXPECT_NEAR(out[1], 2.0F, 1e-6F);
  EXPECT_EQ(out[2], 3.0F);
  // As texts without passing through float again.
  CString exact;
  exact.Format("[%.15g]", static_cast<double>(held[0]) / 1.987216);
  EXPECT_EQ(floatTexts(item, 1, "%.15g").substr(0, static_cast<size_t>(exact.GetLength())), exact.View());
  EXPECT_EQ(floatTexts(item, 4), "[1][2][3][]");

  float const in[] = {0, 1, 0};
  EXPECT_EQ(item.PutFloatData(in, 3), 2);
  EXPECT_EQ(item.GetFloatData(out, 1), 2);
  EXPECT_EQ(floatTexts(item, 0), "[0][1]");
  EXPECT_EQ(item.PutFloatData(in, 1), 0);
  EXPECT_EQ(floatTexts(item, 1), "[]");

  GPbip plain(113);
  plain.PutFloatData(arrayOf({"1", "2"}));
  EXPECT_EQ(areaOf(plain), FromHex("0000803F 00000040"));
  GPbip copy;
  copy = item;
  EXPECT_EQ(copy.GetSecondID(), 9u);
  EXPECT_EQ(areaOf(copy), areaOf(item));
}
