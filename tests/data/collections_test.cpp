// The keyed collections: order, look-ups, ownership, values in and out.

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include <zpbase/data.h>

#include "tests/support/Archives.h"
#include "tests/support/TempFolder.h"

namespace {

// The data id, and the text of a text item.
std::string textOf(GPData const * item)
{
  if (item == nullptr) return "- ";
  bool const isText = item->IsKindOf(RUNTIME_CLASS(GPs));
  return std::to_string(item->GetDataID()) + (isText ? static_cast<GPs const *>(item)->GetValue().GetString() : "") + ' ';
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
class FilledArray : public testing::Test {
 protected:
  void SetUp() override
  {
    m_Items.AddData(new GPs(7, "ab"));
    m_Items.AddData(new GPf(5, 1.5));
    m_Items.AddData(new GPf(6, 2.0));
    m_Items.AddData(new GPf(5, 3.5));
  }

  GPDataArray m_Items;
};

template <class Collection>
std::string storedContent(Collection & items)
{
  return Stored([&](CArchive & ar) { items.Serialize(ar); });
}

// Loads the bytes into a collection that isn't empty, whole and damaged, and gives what is stored of it.
template <class Collection>
std::string loadAndStore(std::string const & bytes)
{
  std::string again;
  auto const read = [&](CArchive & ar) {
    Collection items;
    items.AddData(new GPw(1, 1));
    items.Serialize(ar);
    items.LoadFloatData(1, "");
    again = storedContent(items);
  };
  LoadDamaged(bytes, read);
  EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none);
  return again;
}

}  // namespace

TEST(KeyedCollections, StreamThe39Bytes)
{
  GPDataArray items;
  items.AddData(new GPs(7, "ab"));
  items.AddData(new GPf(6, 2.0));
  items.AddData(new GPf(5, 1.5));
  std::string const bytes =
      FromHex("0300 FFFF 0100 0300 \"GPf\" 0500 0000C03F 0180 0600 00000040 FFFF 0100 0300 \"GPs\" 0700 02 \"ab\"");
  ASSERT_EQ(bytes.size(), 39u);
  EXPECT_EQ(storedContent(items), bytes);
  EXPECT_EQ(loadAndStore<GPDataArray>(bytes), bytes);
  EXPECT_EQ(loadAndStore<GPDataList>(bytes), bytes);
}

TEST(KeyedCollections, TakeItemsAloneFromAStreamAndKeepTheirOrder)
{
  std::string const unordered = FromHex("0300 FFFF 0100 0600 \"GPData\" 0900 0000 0180 0500");
  std::string const stranger = FromHex("0100 FFFF 0100 0800 \"GPObject\"");
  GPDataArray items;
  auto const read = [&](CArchive & ar) { items.Serialize(ar); };
  EXPECT_EQ(CauseOfLoading(stranger, read), CArchiveException::badClass);
  EXPECT_EQ(CauseOfLoading(unordered, read), CArchiveException::none);
  EXPECT_EQ(textOf(items), "9 - 5 ");
  EXPECT_EQ(items.GetDataPos(5, 0), 2);
  items.AddData(new GPData(7));
  EXPECT_EQ(textOf(items), "7 9 - 5 ");
  int pos;
  EXPECT_EQ(items.GetData(pos, 10, 1), nullptr);
  EXPECT_EQ(pos, 4);
  EXPECT_EQ(items.GetDataPos(1, 0), -1);
  EXPECT_EQ(items.LocateString("x"), -1);
  EXPECT_EQ(items, GPDataArray(items));
  EXPECT_NE(items, GPDataArray());

  GPDataList list;
  auto const readList = [&](CArchive & ar) { list.Serialize(ar); };
  EXPECT_EQ(CauseOfLoading(stranger, readList), CArchiveException::badClass);
  EXPECT_EQ(CauseOfLoading(unordered, readList), CArchiveException::none);
  list.AddData(new GPData(7));
  EXPECT_EQ(textOf(list), "7 9 - 5 ");
  EXPECT_EQ(list.GetData(5), list.GetTail());
}

TEST_F(FilledArray, PutsLaterEqualsBehindAndFindsAllOfAnID)
{
  m_Items.AddData(new GPs(7, "b"));
  m_Items.AddData(new GPs(7, "a"));
  EXPECT_EQ(textOf(m_Items), "5 5 6 7a 7ab 7b ");
  EXPECT_EQ(static_cast<GPf *>(m_Items.GetAt(0))->GetValue(), 1.5F);
  using Row = std::tuple<unsigned int, int, int, int>;
  for (auto const & [id, start, found, left] : {Row{5, 0, 0, 0}, Row{5, 1, 1, 1}, Row{5, 2, -1, 2}, Row{8, 0, -1, 6},
                                                Row{4, 0, -1, 0}, Row{5, 9, -1, 9}, Row{5, -1, -1, -1}}) {
    int pos = 77;
    EXPECT_EQ(m_Items.GetData(pos, id, start), found < 0 ? nullptr : m_Items.GetAt(found)) << start;
    EXPECT_EQ(pos, left);
  }
  GPs key(7, "ab");
  GPs missing(7, "AB");
  GPData const high(9);
  EXPECT_EQ(m_Items.GetData(&key), m_Items.GetAt(4));
  EXPECT_EQ(m_Items.GetData(&missing), nullptr);
  EXPECT_EQ(std::as_const(m_Items).GetData(6, 1), m_Items.GetAt(2));
  auto const probe = [](GPDataArray const & items, GPData const & wanted) {
    int at;
    return std::pair(items.BSearchForDataID(at, &wanted), at);
  };
  EXPECT_EQ(probe(m_Items, missing), std::pair(1, 4));
  EXPECT_EQ(probe(m_Items, high), std::pair(0, 5));
  EXPECT_EQ(probe(GPDataArray(), high), std::pair(0, -1));
  EXPECT_EQ(GPDataArray().GetData(9, 1), nullptr);
  EXPECT_EQ(std::pair(m_Items.LocateString("AB"), m_Items.LocateString("abc")), std::pair(4, -1));
  m_Items.AddData(new GPw(4464, 1));
  EXPECT_EQ(std::pair(m_Items.GetDataPos(70000, 1), m_Items.GetDataPos(70000, 0)), std::pair(6, -1)) << "cut to 16 bits";
  EXPECT_EQ(std::pair(m_Items.DeleteData(70000u), m_Items.DeleteData(0)), std::pair(1, 0));
}

TEST_F(FilledArray, HandsOwnershipBackAndDeletesWhatItReplaces)
{
  GPs key(7, "ab");
  GPData * const stored = m_Items.GetAt(3);
  EXPECT_EQ(m_Items.RemoveData(&key), &key);
  EXPECT_EQ(m_Items.RemoveData(&key), nullptr);
  delete stored;
  auto * const text = new GPs(6, "new");
  EXPECT_EQ(m_Items.ReplaceData(text), text);
  EXPECT_EQ(m_Items.ReplaceData(text), text) << "an item that is in the array already";
  m_Items.ReplaceData(new GPs(8, "eight"));
  EXPECT_EQ(textOf(m_Items), "5 5 6new 8eight ");
  GPs stranger(8, "other");
  EXPECT_EQ(m_Items.DeleteData(&stranger), 0);
  EXPECT_EQ(m_Items.DeleteData(text), 1);
  EXPECT_EQ(textOf(m_Items), "5 5 8eight ");
}

TEST_F(FilledArray, IsEqualByCompareOfEachPair)
{
  GPDataArray copy(m_Items);
  EXPECT_NE(copy.GetAt(0), m_Items.GetAt(0));
  copy.LoadFloatData(6, 9.0);
  EXPECT_TRUE(copy == m_Items) << "numbers count by their id";
  copy.LoadStringData(7, "AB");
  EXPECT_TRUE(copy != m_Items) << "texts by their text";
  copy = m_Items;
  copy.DeleteAt(2);
  EXPECT_FALSE(copy == m_Items);
  copy.InsertAt(2, nullptr);
  EXPECT_NE(copy, m_Items);
  EXPECT_NE(m_Items, copy);
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
  EXPECT_EQ(std::tuple(d, f, i, u), std::tuple(0.0, 0.0F, 0, 0U));
  EXPECT_EQ(items.UnloadFloatData(text, 5) + items.UnloadStringData(text, 5) + items.UnloadIntData(text, 5), 0);
  EXPECT_EQ(items.UnloadUIntData(text, 5), 0);
  EXPECT_EQ(text, "old");

  // Each step finds the item of the one before: what is stored replaces it, the rest deletes it.
  bool const stored[] = {
      items.LoadFloatData(5, 0.1) != 0,     items.LoadFloatData(5, "") == 0,     items.LoadFloatData(5, "none") != 0,
      items.LoadFloatData(5, 0.0) == 0,     items.LoadIntData(5, "0") != 0,      items.LoadIntData(5, 0) == 0,
      items.LoadIntData(5, 65536) != 0,     items.LoadIntData(5, "") == 0,       items.LoadUIntData(5, "0") != 0,
      items.LoadUIntData(5, 0u) == 0,       items.LoadUIntData(5, 1u) != 0,      items.LoadUIntData(5, "") == 0,
      items.LoadStringData(5, "x") != 0,    items.LoadStringData(5, "") == 0,    items.IsEmpty(),
      items.LoadFloatData(5, "1e-3x") != 0, items.LoadFloatData(5, "1e-3x") != 0};
  for (bool const & asTold : stored) EXPECT_TRUE(asTold) << &asTold - stored;
  EXPECT_EQ(textOf(items), "5 ");
  EXPECT_EQ(items.UnloadFloatData(text, 5), 1);
  EXPECT_EQ(items.UnloadFloatData(d, 5), 1);
  EXPECT_EQ(text, "0.001");
  EXPECT_EQ(d, static_cast<double>(0.001F));
  items.LoadStringData(5, "water");
  EXPECT_EQ(items.UnloadStringData(text, 5), 1);
  EXPECT_EQ(text, "water");
  EXPECT_EQ(items.UnloadFloatData(text, 5), 1);
  EXPECT_EQ(text, "5\twater");

  items.LoadUIntData(5, 0xFFFFu);
  EXPECT_EQ(items.UnloadIntData(i, 5), 1);
  EXPECT_EQ(i, -1);
  EXPECT_EQ(items.UnloadIntData(text, 5), 1);
  EXPECT_EQ(text, "-1");
  EXPECT_EQ(items.UnloadUIntData(u, 5), 1);
  EXPECT_EQ(u, 65535u);
  EXPECT_EQ(items.UnloadUIntData(text, 5), 1);
  EXPECT_EQ(text, "4294967295");
  EXPECT_EQ(items.UnloadFloatData(f, 5), 0) << "an item of another class";
  EXPECT_EQ(f, 0.0F);
  EXPECT_EQ(items.UnloadStringData(text, 5), 0);
  EXPECT_EQ(text, "");
  items.ReplaceData(new GPdw(5, 70000));
  EXPECT_EQ(items.UnloadIntData(text, 5), 1);
  EXPECT_EQ(text, "70000");
  items.LoadFloatData(5, 1.5);
  EXPECT_EQ(items.UnloadIntData(text, 5), 0) << "no integer";
  EXPECT_EQ(text, "");
  items.LoadStringData(5, "water");
  EXPECT_EQ(items.UnloadUIntData(text, 5), 0);
  EXPECT_EQ(text, "");
}

// What the items a, b and c of one id become when each of them replaces what is found under it.
template <class Collection>
std::string replaceHeldItems()
{
  std::string texts;
  for (size_t i = 0; i < 3; ++i) {
    Collection items;
    GPData * const held[] = {new GPs(5, "a"), new GPs(5, "b"), new GPs(5, "c")};
    for (GPData * const item : held) items.AddData(item);
    items.ReplaceData(held[i]);
    texts += textOf(items) + '|';
  }
  return texts;
}

TEST(Collections, HoldAReplacingItemOnceWhereverItStood)
{
  EXPECT_EQ(replaceHeldItems<GPDataArray>(), "5a 5c |5a 5b 5c |5a 5c |");  // b is found
  EXPECT_EQ(replaceHeldItems<GPDataList>(), "5a 5b 5c |5b 5c |5b 5c |");   // a is found
}

TEST(GPDataList, AddsFindsAndRemoves)
{
  GPDataList items;
  EXPECT_EQ(items.GetFirstData(), nullptr);
  EXPECT_EQ(items.GetData(5), nullptr);
  EXPECT_EQ(items.LoadFloatData(6, "2") + items.LoadIntData(5, "1"), 2);
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
  EXPECT_EQ(items.ReplaceData(later), later) << "an item that is in the list already";
  EXPECT_EQ(textOf(items), "5later 6 7a 7b ");
  EXPECT_EQ(items.LoadFloatData(5, ""), 0);
  EXPECT_EQ(items.LoadIntData(70000, "1") + items.LoadIntData(70000, "2"), 2);
  EXPECT_EQ(textOf(items), "6 7a 7b 4464 ");
  EXPECT_EQ(items.LoadIntData(70000, "") + items.DeleteData(8), 0);
  EXPECT_EQ(items.DeleteData(7), 1);
  GPDataList copy;
  copy = items;
  EXPECT_EQ(textOf(copy), "6 7b ");
  EXPECT_NE(copy.GetFirstData(), items.GetFirstData());
}
