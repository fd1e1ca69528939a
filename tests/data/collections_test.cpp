// The keyed collections: order, look-ups, ownership, values in and out.

#include <gtest/gtest.h>

#include <memory>

#include <zpbase/data.h>

#include "tests/support/Archives.h"
#include "tests/support/TempFolder.h"

namespace {

// The data ids, and the texts of text items.
std::string textOf(GPData const * item)
{
  if (item == nullptr) return "- ";
  std::string text = std::to_string(item->GetDataID());
  if (item->IsKindOf(RUNTIME_CLASS(GPs))) text += static_cast<GPs const *>(item)->GetValue().View();
  return text + ' ';
}

std::string textOf(GPDataArray const & items)
{
  std::string text;
  for (int i = 0; i < items.GetSize(); ++i) text += textOf(items.GetAt(i));
  return text;
}

std::string textOf(GPDataList const & items)
{
  std::string text;
  for (POSITION next = items.GetHeadPosition(); next != nullptr;) text += textOf(items.GetNextData(next));
  return text;
}

// Ids 5, 5, 6 and a text under 7.
void fill(GPDataArray & items)
{
  items.AddData(new GPs(7, "ab"));
  items.AddData(new GPf(5, 1.5));
  items.AddData(new GPf(6, 2.0));
  items.AddData(new GPf(5, 3.5));
}

float valueAt(GPDataArray const & items, int pos)
{
  return static_cast<GPf const *>(items.GetAt(pos))->GetValue();
}

}  // namespace

TEST(GPDataArray, StreamsThe39Bytes)
{
  GPDataArray items;
  items.AddData(new GPs(7, "ab"));
  items.AddData(new GPf(6, 2.0));
  items.AddData(new GPf(5, 1.5));
  std::string const bytes =
      FromHex("0300 FFFF 0100 0300 \"GPf\" 0500 0000C03F 0180 0600 00000040 FFFF 0100 0300 \"GPs\" 0700 02 \"ab\"");
  ASSERT_EQ(bytes.size(), 39u);
  EXPECT_EQ(Stored([&](CArchive & ar) { items.Serialize(ar); }), bytes);
  auto const readArray = [&](CArchive & ar) {
    GPDataArray back;
    fill(back);
    back.Serialize(ar);
    for (unsigned int id = 0; id < 10; ++id) {
      double value;
      EXPECT_GE(back.UnloadFloatData(value, id), 0);
      EXPECT_GE(back.GetDataPos(id, 0), -1);
    }
    EXPECT_TRUE(back == GPDataArray(back));
  };
  EXPECT_EQ(CauseOfLoading(bytes, readArray), CArchiveException::none);
  LoadDamaged(bytes, readArray);
  std::string again;
  auto const readList = [&](CArchive & ar) {
    GPDataList back;
    back.Serialize(ar);
    again = Stored([&](CArchive & out) { back.Serialize(out); });
  };
  EXPECT_EQ(CauseOfLoading(bytes, readList), CArchiveException::none);
  EXPECT_EQ(again, bytes);
  LoadDamaged(bytes, readList);
}

TEST(GPDataArray, TakesItemsAloneFromAStreamAndKeepsTheirOrder)
{
  auto const read = [](CArchive & ar) {
    GPDataArray items;
    items.Serialize(ar);
    // 9, null, 5: as stored. A walk finds all; an added item goes in front of the first larger one.
    EXPECT_EQ(textOf(items), "9 - 5 ");
    EXPECT_EQ(items.GetDataPos(5, 0), 2);
    EXPECT_EQ(items.GetDataPos(1, 0), -1);
    items.AddData(new GPData(7));
    EXPECT_EQ(textOf(items), "7 9 - 5 ");
    EXPECT_EQ(items.LocateString("x"), -1);
    EXPECT_TRUE(items == items);
    int pos;
    EXPECT_EQ(items.GetData(pos, 10, 1), nullptr);
    EXPECT_EQ(pos, 4);
  };
  EXPECT_EQ(CauseOfLoading(FromHex("0300 FFFF 0100 0600 \"GPData\" 0900 0000 0180 0500"), read), CArchiveException::none);
  auto const readAny = [](CArchive & ar) {
    GPDataArray items;
    items.Serialize(ar);
  };
  std::string const stranger = FromHex("0100 FFFF 0100 0800 \"GPObject\"");
  EXPECT_EQ(CauseOfLoading(stranger, readAny), CArchiveException::badClass);
  auto const readList = [](CArchive & ar) {
    GPDataList items;
    items.Serialize(ar);
  };
  EXPECT_EQ(CauseOfLoading(stranger, readList), CArchiveException::badClass);
  EXPECT_EQ(CauseOfLoading(FromHex("0200 0000 FFFF 0100 0600 \"GPData\" 0900"), readList), CArchiveException::none);
}

TEST(GPDataArray, PutsLaterEqualsBehindAndFindsAllOfAnID)
{
  GPDataArray items;
  fill(items);
  items.AddData(new GPs(7, "b"));
  items.AddData(new GPs(7, "a"));
  EXPECT_EQ(textOf(items), "5 5 6 7a 7ab 7b ");
  EXPECT_EQ(valueAt(items, 0), 1.5F);
  int pos;
  EXPECT_EQ(items.GetData(pos, 5, 0), items.GetAt(0));
  EXPECT_EQ(items.GetData(pos, 5, pos + 1), items.GetAt(1));
  EXPECT_EQ(items.GetData(pos, 5, pos + 1), nullptr);
  EXPECT_EQ(pos, 2);
  EXPECT_EQ(items.GetData(pos, 8, 0), nullptr);
  EXPECT_EQ(pos, 6);
  EXPECT_EQ(items.GetData(pos, 5, 9), nullptr);
  EXPECT_EQ(pos, 9);
  EXPECT_EQ(items.GetData(pos, 5, -1), nullptr);

  GPs key(7, "ab");
  EXPECT_EQ(items.GetData(&key), items.GetAt(4));
  EXPECT_EQ(std::as_const(items).GetData(6, 1), items.GetAt(2));
  GPs missing(7, "AB");
  EXPECT_EQ(items.GetData(&missing), nullptr);
  EXPECT_EQ(items.BSearchForDataID(pos, &missing), 1);
  GPData const high(9);
  EXPECT_EQ(items.BSearchForDataID(pos, &high), 0);
  EXPECT_EQ(pos, 5);
  EXPECT_EQ(items.LocateString("AB"), 4);
  EXPECT_EQ(items.LocateString("abc"), -1);
  CInvalidArgException * problem = nullptr;
  try {
    items.GetAt(6);
  } catch (CInvalidArgException * caught) {
    problem = caught;
  }
  ASSERT_NE(problem, nullptr);
  problem->Delete();
}

TEST(GPDataArray, CutsIDsTo16BitsInTheBinarySearchAlone)
{
  GPDataArray items;
  int pos = 7;
  GPData const key(5);
  EXPECT_EQ(items.BSearchForDataID(pos, &key), 0);
  EXPECT_EQ(pos, -1);
  EXPECT_EQ(items.GetDataPos(5, 1), -1);
  EXPECT_EQ(items.GetData(5, 1), nullptr);
  items.AddData(new GPw(4464, 1));
  EXPECT_EQ(items.GetDataPos(70000, 1), 0);
  EXPECT_EQ(items.GetDataPos(70000, 0), -1);
  EXPECT_EQ(items.DeleteData(70000u), 1);
  EXPECT_EQ(items.DeleteData(0), 0);
}

TEST(GPDataArray, HandsOwnershipBackAndDeletesWhatItReplaces)
{
  GPDataArray items;
  fill(items);
  GPs key(7, "ab");
  GPData * const stored = items.GetAt(3);
  EXPECT_EQ(items.RemoveData(&key), &key);
  EXPECT_EQ(items.RemoveData(&key), nullptr);
  delete stored;
  auto * const text = new GPs(6, "new");
  EXPECT_EQ(items.ReplaceData(text), text);
  EXPECT_EQ(items.ReplaceData(text), text);
  items.ReplaceData(new GPs(8, "eight"));
  EXPECT_EQ(textOf(items), "5 5 6new 8eight ");
  GPs stranger(8, "other");
  EXPECT_EQ(items.DeleteData(&stranger), 0);
  EXPECT_EQ(items.DeleteData(text), 1);
  EXPECT_EQ(textOf(items), "5 5 8eight ");
}

TEST(GPDataArray, IsEqualByCompareOfEachPair)
{
  GPDataArray items;
  fill(items);
  GPDataArray copy(items);
  EXPECT_NE(copy.GetAt(0), items.GetAt(0));
  EXPECT_TRUE(copy == items);
  copy.LoadFloatData(6, 9.0);
  EXPECT_TRUE(copy == items);
  copy.LoadStringData(7, "AB");
  EXPECT_TRUE(copy != items);
  copy = items;
  copy.DeleteData(6);
  EXPECT_FALSE(copy == items);
  copy = items;
  copy.SetAt(0, nullptr);
  delete items.GetAt(0);
  EXPECT_TRUE(copy != items);
  items.SetAt(0, nullptr);
  EXPECT_TRUE(copy == items);
}

TEST(GPDataArray, StoresNoBlankAndNoZeroNumber)
{
  GPDataArray items;
  double d = 9.0;
  float f = 9.0F;
  int i = 9;
  unsigned int u = 9;
  CString text("old");
  EXPECT_EQ(items.UnloadFloatData(d, 5) + items.UnloadFloatData(f, 5) + items.UnloadIntData(i, 5) + items.UnloadUIntData(u, 5),
            0);
  EXPECT_TRUE(d == 0.0 && f == 0.0F && i == 0 && u == 0);
  EXPECT_EQ(items.UnloadFloatData(text, 5) + items.UnloadStringData(text, 5) + items.UnloadIntData(text, 5), 0);
  EXPECT_EQ(items.UnloadUIntData(text, 5), 0);
  EXPECT_EQ(text, "old");

  EXPECT_EQ(items.LoadFloatData(5, 0.1), 1);
  EXPECT_EQ(items.LoadFloatData(5, "1e-3x"), 1);
  EXPECT_EQ(items.GetSize(), 1);
  EXPECT_EQ(items.UnloadFloatData(text, 5), 1);
  EXPECT_EQ(text, "0.001");
  EXPECT_EQ(items.LoadFloatData(5, ""), 0);
  EXPECT_TRUE(items.IsEmpty());
  EXPECT_EQ(items.LoadFloatData(5, "none"), 1);
  EXPECT_EQ(items.UnloadFloatData(d, 5), 1);
  EXPECT_EQ(items.LoadFloatData(5, 0.0), 0);
  EXPECT_EQ(items.LoadIntData(5, "0"), 1);
  EXPECT_EQ(items.LoadIntData(5, 0), 0);
  EXPECT_EQ(items.LoadUIntData(5, "0"), 1);
  EXPECT_EQ(items.LoadUIntData(5, 0u), 0);
  EXPECT_EQ(items.LoadIntData(5, 65536), 1);
  EXPECT_EQ(items.LoadIntData(5, ""), 0);
  EXPECT_EQ(items.LoadUIntData(5, ""), 0);
  EXPECT_EQ(items.LoadStringData(5, "water"), 1);
  EXPECT_EQ(items.UnloadStringData(text, 5), 1);
  EXPECT_EQ(text, "water");
  EXPECT_EQ(items.UnloadFloatData(text, 5), 1);
  EXPECT_EQ(text, "5\twater");
  EXPECT_EQ(items.LoadStringData(5, ""), 0);
  EXPECT_TRUE(items.IsEmpty());
}

TEST(GPDataArray, ReadsWordsWithAndWithoutSign)
{
  GPDataArray items;
  EXPECT_EQ(items.LoadUIntData(5, 0xFFFFu), 1);
  int i;
  unsigned int u;
  CString text;
  EXPECT_EQ(items.UnloadIntData(i, 5) + items.UnloadUIntData(u, 5), 2);
  EXPECT_TRUE(i == -1 && u == 65535u);
  EXPECT_EQ(items.UnloadUIntData(text, 5), 1);
  EXPECT_EQ(text, "4294967295");
  EXPECT_EQ(items.UnloadIntData(text, 5), 1);
  EXPECT_EQ(text, "-1");
}

TEST(GPDataArray, GivesNothingOfAnItemOfAnotherClass)
{
  GPDataArray items;
  items.AddData(new GPd(5, 2.5));
  float f = 9.0F;
  int i = 9;
  unsigned int u = 9;
  CString text("old");
  EXPECT_EQ(items.UnloadFloatData(f, 5) + items.UnloadIntData(i, 5) + items.UnloadUIntData(u, 5), 0);
  EXPECT_TRUE(f == 0.0F && i == 0 && u == 0);
  EXPECT_EQ(items.UnloadStringData(text, 5), 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(items.UnloadFloatData(text, 5), 1);
  EXPECT_EQ(text, "2.5");
}

TEST(GPDataList, AddsFindsAndRemoves)
{
  GPDataList items;
  EXPECT_EQ(items.GetFirstData(), nullptr);
  EXPECT_EQ(items.GetData(5), nullptr);
  EXPECT_EQ(items.LoadFloatData(6, "2"), 1);
  EXPECT_EQ(items.LoadIntData(5, "1"), 1);
  auto * const later = new GPs(5, "later");
  EXPECT_EQ(items.AddData(later), later);
  items.AddData(new GPs(7, "b"));
  items.AddData(new GPs(7, "a"));
  EXPECT_EQ(textOf(items), "5 5later 6 7a 7b ");
  GPs key(7, "b");
  EXPECT_EQ(items.GetData(&key), items.GetTail());
  EXPECT_EQ(items.GetData(5), items.GetFirstData());
  EXPECT_EQ(items.RemoveData(&key), nullptr);
  EXPECT_EQ(items.RemoveData(later), later);
  EXPECT_EQ(items.ReplaceData(later), later);
  EXPECT_EQ(items.ReplaceData(later), later);
  EXPECT_EQ(textOf(items), "5later 6 7a 7b ");
  EXPECT_EQ(items.LoadFloatData(5, ""), 0);
  EXPECT_EQ(items.LoadIntData(70000, "1") + items.LoadIntData(70000, "2"), 2);
  EXPECT_EQ(textOf(items), "6 7a 7b 4464 ");
  EXPECT_EQ(items.LoadIntData(70000, ""), 0);
  EXPECT_EQ(items.DeleteData(7), 1);
  EXPECT_EQ(items.DeleteData(8), 0);
  GPDataList copy;
  copy = items;
  EXPECT_EQ(textOf(copy), "6 7b ");
  EXPECT_NE(copy.GetFirstData(), items.GetFirstData());
}
