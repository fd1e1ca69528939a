// The owning containers: order among equals, copies, ownership, sorting and searching, failure while loading.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <zpbase/foundation.h>

#include "tests/support/Archives.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

// One that archives know.
class Streamed : public GPObject {
  DECLARE_SERIAL(Streamed)
 public:
  Streamed() { ++g_nAlive; }
  ~Streamed() override { --g_nAlive; }
  static inline int g_nAlive = 0;
};

IMPLEMENT_SERIAL(Streamed, GPObject, 1)

namespace {

// Ordered by its key alone; the mark tells equals apart. Counts how many live and are compared.
class Keyed : public GPObject {
 public:
  explicit Keyed(int key, char mark = ' ') : m_nKey(key), m_cMark(mark) { ++g_nAlive; }
  Keyed(Keyed const & other) : GPObject(other), m_nKey(other.m_nKey), m_cMark(other.m_cMark) { ++g_nAlive; }
  ~Keyed() override { --g_nAlive; }
  GPObject * Clone() const override { return new Keyed(*this); }
  int Compare(GPObject const * other) const override
  {
    ++g_nCompared;
    return m_nKey - static_cast<Keyed const *>(other)->m_nKey;
  }

  int m_nKey;
  char m_cMark;
  static inline int g_nAlive = 0;
  static inline int g_nCompared = 0;
};

std::string textOf(CObject const * element)
{
  if (element == nullptr) return "- ";
  auto const * const keyed = static_cast<Keyed const *>(element);
  return std::to_string(keyed->m_nKey) + keyed->m_cMark;
}

std::string textOf(GPObArray const & array)
{
  std::string text;
  for (int i = 0; i < array.GetSize(); ++i) text += textOf(array[i]);
  return text;
}

std::string textOf(GPObList const & list)
{
  std::string text;
  for (POSITION next = list.GetHeadPosition(); next != nullptr;) text += textOf(list.GetNext(next));
  return text;
}

// Both ends must tell the same.
std::string backwards(GPObList const & list)
{
  std::string text;
  for (POSITION next = list.GetTailPosition(); next != nullptr;) text = textOf(list.GetPrev(next)) + text;
  return text;
}

GPObArray & fill(GPObArray & array, std::vector<int> const & keys)
{
  for (int const key : keys) array.Add(new Keyed(key));
  return array;
}

class Containers : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Keyed::g_nAlive, 0); }
};

}  // namespace

TEST_F(Containers, ArrayPutsEqualsBehindAndListInFront)
{
  GPObArray array;
  GPObList list;
  char mark = 'a';
  for (int const key : {5, 3, 5, 9, 5, 1, 9}) {
    array.InsertObject(new Keyed(key, mark));
    list.InsertObject(new Keyed(key, mark++));
  }
  EXPECT_EQ(textOf(array), "1f3b5a5c5e9d9g");
  EXPECT_EQ(textOf(list), "1f3b5e5c5a9g9d");
  EXPECT_EQ(backwards(list), textOf(list));
}

TEST_F(Containers, SearchLeavesItsLastProbe)
{
  using Row = std::tuple<std::vector<int>, int, int, int>;
  for (auto const & [keys, wanted, found, lastProbe] :
       {Row{{}, 5, 0, -1}, Row{{4}, 5, 0, 0}, Row{{1, 3, 5}, 3, 1, 1}, Row{{1, 3, 5}, 0, 0, 0}, Row{{1, 3, 5}, 2, 0, 0},
        Row{{1, 3, 5}, 4, 0, 2}, Row{{1, 3, 5, 7}, 6, 0, 3}, Row{{5, 5, 5, 5}, 5, 1, 1}}) {
    GPObArray array;
    Keyed const key(wanted);
    int index = 77;
    EXPECT_EQ(fill(array, keys).BSearch(index, &key), found);
    EXPECT_EQ(index, lastProbe) << wanted;
  }
}

TEST_F(Containers, SortOrdersNodesInPlaceAndComparesNothingBelowTwo)
{
  GPObArray array;
  GPObList list;
  GPObArray sorted;
  Keyed::g_nCompared = 0;
  list.Sort();
  fill(array, {0}).Sort();
  EXPECT_EQ(Keyed::g_nCompared, 0);
  list.AddTail(new Keyed(0));
  for (int i = 1; i < 101; ++i) {
    fill(array, {i * 37 % 101});
    list.AddTail(new Keyed(i * 37 % 101));
    fill(sorted, {i - 1});
  }
  fill(sorted, {100});
  POSITION const head = list.GetHeadPosition();
  array.Sort();
  list.Sort();
  EXPECT_EQ(textOf(array), textOf(sorted));
  EXPECT_EQ(textOf(list), textOf(sorted));
  EXPECT_EQ(list.GetHeadPosition(), head);
}

TEST_F(Containers, CopiesAreDeepAndKeepOrSkipNulls)
{
  auto const check = [](auto & source, std::string const & copied) {
    std::remove_reference_t<decltype(source)> copy(source);
    EXPECT_EQ(textOf(copy), copied);
    EXPECT_EQ(Keyed::g_nAlive, 4);
    auto const & itself = source;
    source = itself;
    source += itself;
    EXPECT_EQ(textOf(source), "1 - 2 ");
    copy += source;
    EXPECT_EQ(textOf(copy), copied + copied);
    copy = source;
    EXPECT_EQ(textOf(copy), copied);
    // The root's Clone gives null: an element in both.
    source.Empty();
    source.InsertObject(new GPObject);
    copy = source;
    EXPECT_EQ(textOf(copy), "- ");
  };
  GPObArray array;
  GPObList list;
  fill(array, {1}).Add(nullptr);
  fill(array, {2});
  check(array, "1 - 2 ");
  list.AddTail(new Keyed(1));
  list.AddTail(nullptr);
  list.AddTail(new Keyed(2));
  check(list, "1 2 ");
}

TEST_F(Containers, AppendMovesPointersAndDeleteAtDeletes)
{
  GPObArray first;
  GPObArray second;
  fill(second, {1, 2}).Add(nullptr);
  CObject * const moved = second[1];
  fill(first, {0}).Append(&second, 1);
  EXPECT_TRUE(second.IsEmpty());
  EXPECT_EQ(first[2], moved);
  second.Append(&first, 0);
  EXPECT_EQ(textOf(second), "0 1 2 - ");
  second.RemoveAll();
  first.DeleteAt(1);
  EXPECT_EQ(textOf(first), "0 2 - ");
  EXPECT_EQ(Keyed::g_nAlive, 2);

  GPObList list;
  GPObList other;
  for (int i = 0; i < 25; ++i) other.AddTail(new Keyed(i));
  list.Append(&other, 1);
  EXPECT_TRUE(other.IsEmpty());
  EXPECT_EQ(list.GetCount(), 25);
  EXPECT_EQ(backwards(list), textOf(list));
}

TEST_F(Containers, ArraysGrowAndListsInsertAtAnyPlace)
{
  GPObArray array;
  array.SetAtGrow(2, new Keyed(2));
  array.InsertAt(1, new Keyed(1));
  array.InsertAt(5, new Keyed(5));
  EXPECT_EQ(textOf(array), "- 1 - 2 - 5 ");

  GPObList list;
  POSITION const middle = list.AddTail(new Keyed(5));
  list.InsertBefore(middle, new Keyed(4));
  list.InsertAfter(middle, new Keyed(6));
  list.AddHead(new Keyed(1));
  list.InsertAfter(nullptr, new Keyed(9));
  EXPECT_EQ(textOf(list), "1 4 5 6 9 ");
  EXPECT_EQ(list.Find(list.GetAt(middle)), middle);
  EXPECT_EQ(list.Find(list.GetAt(middle), middle), nullptr);
  delete list.GetAt(middle);
  list.RemoveAt(middle);
  delete list.RemoveHead();
  EXPECT_EQ(textOf(list), "4 6 9 ");
  EXPECT_EQ(backwards(list), textOf(list));
}

TEST_F(Containers, LoadingDeletesTheOldElementsAndKeepsWhatWasReadBeforeAFailure)
{
  std::string const bytes = FromHex("0300 FFFF 0100 0800 \"GPObject\" 0000");
  GPObArray array;
  GPObList list;
  for (auto const & [last, cause, count] :
       {std::tuple("0180", CArchiveException::none, 3), std::tuple("0580", CArchiveException::badIndex, 2)}) {
    fill(array, {1, 2});
    list.AddTail(new Keyed(1));
    EXPECT_EQ(CauseOfLoading(bytes + FromHex(last), [&](CArchive & ar) { array.Serialize(ar); }), cause);
    EXPECT_EQ(CauseOfLoading(bytes + FromHex(last), [&](CArchive & ar) { list.Serialize(ar); }), cause);
    EXPECT_EQ(array.GetSize(), count);
    EXPECT_EQ(list.GetCount(), count);
    EXPECT_EQ(array[1], nullptr);
    EXPECT_EQ(Keyed::g_nAlive, 0);
  }
}

TEST(GPObject, ComparesByAddressAndNeverAsEqual)
{
  std::vector<GPObject> objects(3);
  EXPECT_EQ(objects[0].Compare(&objects[0]), 0);
  EXPECT_LT(objects[0].Compare(&objects[2]), 0);
  EXPECT_GT(objects[2].Compare(&objects[0]), 0);
  EXPECT_EQ(objects[0].Compare(&objects[2]), -static_cast<int>(2 * sizeof(GPObject) / sizeof(void *)));
  EXPECT_EQ(objects[0].Clone(), nullptr);
}

// The objects a, b, a, null and b: three new tags and two references.
TEST_F(Containers, ReadOneObjectAtEachOfItsPlacesAndDeleteItOnce)
{
  std::string const bytes = FromHex("05 00, FF FF 01 00 08 00 \"Streamed\", 01 80, 02 00, 00 00, 03 00");
  GPObArray array;
  GPObList list;
  EXPECT_EQ(CauseOfLoading(bytes, [&](CArchive & ar) { array.Serialize(ar); }), CArchiveException::none);
  EXPECT_EQ(CauseOfLoading(bytes, [&](CArchive & ar) { list.Serialize(ar); }), CArchiveException::none);
  EXPECT_EQ(Streamed::g_nAlive, 4) << "what the containers had before is gone";
  EXPECT_EQ(Stored([&](CArchive & ar) { array.Serialize(ar); }), bytes);
  EXPECT_EQ(Stored([&](CArchive & ar) { list.Serialize(ar); }), bytes);
  EXPECT_EQ(array[0], array[2]);
  EXPECT_EQ(array[1], array[4]);

  GPObArray moved;
  moved.Append(&array, 1);
  moved.DeleteAt(0);  // stands at another place still
  moved.DeleteAt(0);
  EXPECT_EQ(Streamed::g_nAlive, 4);
  moved.DeleteAt(0);  // the last of a
  EXPECT_EQ(Streamed::g_nAlive, 3);
  moved.Empty();
  EXPECT_EQ(Streamed::g_nAlive, 2);
  list.Empty();
  EXPECT_EQ(Streamed::g_nAlive, 0);

  // Cut behind the first reference: what was read is deleted once all the same.
  EXPECT_EQ(CauseOfLoading(bytes.substr(0, bytes.size() - 2), [&](CArchive & ar) { array.Serialize(ar); }),
            CArchiveException::endOfFile);
  array.Empty();
  EXPECT_EQ(Streamed::g_nAlive, 0);
}
