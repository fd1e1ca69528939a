// Group contributions: exact areas, marks, merging, slots, and reading back through a plain packed item.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <zpbase/data.h>
#include <zpbase/numeric.h>
#include <zpbase/platform/collections.h>

namespace {

using Bytes = std::vector<int>;
using Groups = std::vector<std::pair<std::string, int>>;

Bytes areaOf(GPv const & item)
{
  return {item.GetArea(), item.GetArea() + item.GetSize()};
}

GPUnifac unifacOf(Groups const & groups)
{
  CStringArray names;
  GPIntVector counts(static_cast<int>(groups.size()));
  for (auto const & [name, count] : groups) counts[names.Add(name.c_str())] = count;
  GPUnifac item;
  EXPECT_EQ(item.Load(names, counts), counts.GetSize());
  EXPECT_EQ(areaOf(GPUnifac(names, counts)), areaOf(item));
  return item;
}

Groups groupsOf(GPUnifac const & item, int keepMarks)
{
  CStringArray names;
  names.Add("old");
  GPIntVector counts(5, 9);
  int const count = item.Unload(names, counts, keepMarks);
  EXPECT_EQ(count, names.GetSize());
  EXPECT_EQ(counts.GetSize(), names.GetSize());
  Groups groups;
  for (int i = 0; i < names.GetSize(); ++i) groups.emplace_back(names[i].GetString(), counts[i]);
  return groups;
}

TEST(GPUnifac, PacksNumbersAndCountsInSixteenBits)
{
  EXPECT_EQ(areaOf(unifacOf({{"1", 2}, {"12R", 1}})), (Bytes{1, 0, 2, 0, 0xF4, 0xFF, 1, 0}));
  EXPECT_EQ(areaOf(unifacOf({{"12r", 1}, {"X12", 1}, {"70000", 65537}})), (Bytes{12, 0, 1, 0, 0, 0, 1, 0, 0x70, 0x11, 1, 0}));
  EXPECT_EQ(unifacOf({}).GetSize(), 0);
  EXPECT_EQ(areaOf(GPUnifac(3)), (Bytes{0, 0, 0}));
  EXPECT_EQ(GPUnifac().GetDataID(), 103U);
}

TEST(GPUnifac, UnloadsEachGroupOnceInOrderOfAppearance)
{
  std::tuple<Groups, Groups, Groups> const rows[] = {
      {{{"1", 2}, {"12R", 1}, {"12X", 3}}, {{"1", 2}, {"12R", 4}}, {{"1", 2}, {"12", 4}}},
      {{{"12X", 1}, {"3", 1}, {"12", 5}}, {{"12R", 1}, {"3", 1}, {"12", 5}}, {{"12", 6}, {"3", 1}}},
      {{{"9R", 2}}, {{"9R", 2}}, {{"3", 2}, {"7", 2}}},
      {{{"9X", 2}, {"3", 5}, {"9", 1}}, {{"9R", 2}, {"3", 5}, {"9", 1}}, {{"3", 7}, {"7", 2}, {"9", 1}}},
      {{{"0", 4}, {"word", 1}, {"5", -2}}, {{"5", -2}}, {{"5", -2}}},
      {{{"R", 1}, {"32768", 1}}, {{"32768R", 1}}, {{"32768", 1}}},
      {{}, {}, {}},
  };
  for (auto const & [in, marked, plain] : rows) {
    GPUnifac const item = unifacOf(in);
    EXPECT_EQ(groupsOf(item, 1), marked);
    EXPECT_EQ(groupsOf(item, 0), plain);
  }
  EXPECT_EQ(groupsOf(GPUnifac(7), 0), Groups());  // a cut entry
}

TEST(GPUnifac, RefusesMoreThanAnAreaHolds)
{
  GPUnifac item = unifacOf({{"1", 1}});
  CStringArray names;
  names.SetSize(8192);
  EXPECT_EQ(item.Load(names, GPIntVector(8192)), 0);
  EXPECT_EQ(groupsOf(item, 0), (Groups{{"1", 1}}));
  names.SetSize(8191);
  EXPECT_EQ(item.Load(names, GPIntVector(5)), 8191);  // missing counts are 0
  EXPECT_EQ(areaOf(item), Bytes(32764));
}

TEST(GPUnifac, ComesBackFromAPlainItem)
{
  GPUnifac const item = unifacOf({{"1", 2}, {"9R", 1}});
  std::unique_ptr<GPObject> const clone(item.Clone());
  EXPECT_STREQ(clone->GetRuntimeClass()->m_lpszClassName, "GPv");
  GPv stored(40, 0);
  stored = static_cast<GPv const &>(*clone);
  EXPECT_EQ(groupsOf(GPUnifac::As(stored), 1), (Groups{{"1", 2}, {"9R", 1}}));
  EXPECT_EQ(GPUnifac::As(GPv(7, 4)).GetDataID(), 7U);
}

template <class Value>
int unload(GPUnifacBip const & item, Value (&v)[12])
{
  return item.Unload(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11]);
}

TEST(GPUnifacBip, HoldsTheSlotsThatAreNotBlank)
{
  struct {
    char const * in;   // twelve texts of one character, '.' is an empty one
    char const * out;  // what comes back, '.' is left alone
    Bytes area;
  } const rows[] = {
      {"12..........", "12..........", {0x80, 0, 0, 0, 0x80, 0x3F, 0, 0, 0, 0x40}},
      {".....1......", "....01......", {0x82, 0, 0, 0, 0, 0, 0, 0, 0x80, 0x3F}},
      {"..1.......x2", "..10......02", {0x81, 0, 0, 0, 0x80, 0x3F, 0, 0, 0, 0, 0x85, 0, 0, 0, 0, 0, 0, 0, 0, 0x40}},
      {"............", "............", {}},
  };
  for (auto const & row : rows) {
    CString t[12], texts[12];
    for (int i = 0; i < 12; ++i) t[i] = row.in[i] == '.' ? CString() : CString(row.in[i]);
    GPUnifacBip item(5, 60);
    int const count = static_cast<int>(row.area.size()) / 10;
    EXPECT_EQ(item.Load(t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9], t[10], t[11]), count);
    EXPECT_EQ(areaOf(item), row.area);
    for (CString & text : texts) text = ".";
    float floats[12] = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
    double doubles[12] = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
    for (int unloaded : {unload(item, texts), unload(item, floats), unload(item, doubles)}) EXPECT_EQ(unloaded, count);
    for (int i = 0; i < 12; ++i) {
      EXPECT_EQ(texts[i], CString(row.out[i])) << i;
      double const number = row.out[i] == '.' ? 0.0 : row.out[i] - '0';
      EXPECT_EQ(floats[i], static_cast<float>(number)) << i;
      EXPECT_EQ(doubles[i], number) << i;
    }
  }
}

TEST(GPUnifacBip, ReadsSixEntriesAtMostAndPassesOverOtherTags)
{
  GPv area(9, 79);  // seven entries and a cut one, all of tag 0
  double doubles[12];
  EXPECT_EQ(unload(GPUnifacBip::As(area), doubles), 6);
  for (double value : doubles) EXPECT_EQ(value, 0.0);
  area.GetArea()[0] = 0x85;
  area.GetArea()[8] = 0x80;  // 1.0
  area.GetArea()[9] = 0x3F;
  GPUnifacBip const record = GPUnifacBip::As(area);
  EXPECT_EQ(unload(record, doubles), 6);
  EXPECT_EQ(doubles[11], 1.0);
  EXPECT_EQ(record.GetDataID(), 9U);
  std::unique_ptr<GPObject> const clone(record.Clone());
  EXPECT_EQ(areaOf(static_cast<GPv const &>(*clone)), areaOf(area));
}

}  // namespace
