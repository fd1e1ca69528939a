// The keyed array against the plain walks that tell what it does: random changes through its own operations, through those of its
// base and through the items themselves.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <zpbase/data.h>

namespace {

// What stands in the array: id, a letter for the class, and the value.
struct Entry {
  unsigned int id;
  char kind;
  int value;

  bool operator==(Entry const &) const = default;
};

Entry entryOf(GPData const * item)
{
  if (item->IsKindOf(RUNTIME_CLASS(GPw))) return {item->GetDataID(), 'w', static_cast<GPw const *>(item)->GetValue()};
  return {item->GetDataID(), 'f', static_cast<int>(static_cast<GPf const *>(item)->GetValue())};
}

struct Plain {
  std::vector<Entry> entries;

  // The place that halving finds, or -1.
  int Find(unsigned int id) const
  {
    for (int low = 0, high = static_cast<int>(entries.size()) - 1; low <= high;) {
      int const middle = (low + high) / 2;
      unsigned int const there = entries[static_cast<size_t>(middle)].id;
      if (there == id) return middle;
      if (there < id)
        low = middle + 1;
      else
        high = middle - 1;
    }
    return -1;
  }
  void Add(Entry entry)
  {
    size_t place = 0;
    while (place < entries.size() && entries[place].id <= entry.id) ++place;
    entries.insert(entries.begin() + static_cast<ptrdiff_t>(place), entry);
  }
  void Delete(unsigned int id)
  {
    if (int const place = Find(id); place >= 0) entries.erase(entries.begin() + place);
  }
  void Load(Entry entry)
  {
    Delete(entry.id);
    if (entry.value != 0) Add(entry);
  }
};

}  // namespace

TEST(GPDataArray, IsWhatThePlainWalksMakeOfIt)
{
  std::mt19937 random(14);
  auto const below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned int>(limit)); };
  GPDataArray items;
  Plain plain;
  for (int step = 0; step < 12000; ++step) {
    auto const id = static_cast<unsigned int>(below(step % 6000 < 3000 ? 40 : 400));
    int const value = below(50);
    int const size = items.GetSize();
    int const place = size > 0 ? below(size) : 0;
    auto const slot = static_cast<size_t>(place);
    // Two thousands of three begin empty and are left to the array's own operations, so that it knows its order.
    if (step % 3000 == 1000) {
      items.Empty();
      plain.entries.clear();
      continue;
    }
    switch (below(step / 1000 % 3 == 0 ? 17 : 13)) {
      case 0:
      case 1:
      case 2:
      case 3:
        items.LoadIntData(id, value);
        plain.Load({id, 'w', value});
        break;
      case 4:
      case 5:
        items.LoadFloatData(id, value);
        plain.Load({id, 'f', value});
        break;
      case 6:
        items.AddData(new GPw(id, value));
        plain.Add({id, 'w', value});
        break;
      case 7:
        items.ReplaceData(new GPf(id, value));
        plain.Delete(id);
        plain.Add({id, 'f', value});
        break;
      case 8:
      case 9:
      case 10:
        items.DeleteData(id);
        plain.Delete(id);
        break;
      case 11:
      case 12:
        ASSERT_EQ(items.GetDataPos(id, 1), plain.Find(id)) << step;
        break;
      case 13:
        items.Add(new GPw(id, value));
        plain.entries.push_back({id, 'w', value});
        break;
      case 14:
        if (size == 0) break;
        delete items.GetAt(place);
        items.SetAt(place, new GPf(id, value));
        plain.entries[slot] = {id, 'f', value};
        break;
      case 15:
        if (size == 0) break;
        static_cast<GPData &>(*items.GetAt(place)) = GPData(id);
        plain.entries[slot].id = id;
        break;
      default:
        if (size == 0) break;
        items.DeleteAt(place);
        plain.entries.erase(plain.entries.begin() + place);
    }
    std::vector<Entry> found;
    for (int i = 0; i < items.GetSize(); ++i) found.push_back(entryOf(items.GetAt(i)));
    ASSERT_TRUE(found == plain.entries) << step;
  }
}

// Each change puts an order of 1, 5, 9 out of order behind the array's back; 6 then stands in front of the first larger id, where
// halving would not have put it.
TEST(GPDataArray, WalksAgainOnceItsOrderMayHaveChanged)
{
  struct Row {
    char const * change;
    void (*make)(GPDataArray & items);
    char const * ids;
  };
  Row const rows[] = {
      {"none", [](GPDataArray &) {}, "1569"},
      {"SetAt", [](GPDataArray & items) { delete items.GetAt(0), items.SetAt(0, new GPw(8, 1)); }, "6859"},
      {"SetAtGrow", [](GPDataArray & items) { items.SetAtGrow(3, new GPw(2, 1)); }, "15692"},
      {"Add", [](GPDataArray & items) { items.Add(new GPw(2, 1)), items.Add(new GPw(3, 1)); }, "156923"},
      {"InsertAt", [](GPDataArray & items) { items.InsertAt(0, new GPw(8, 1)); }, "68159"},
      {"Append",
       [](GPDataArray & items) {
         GPDataArray more(items), *from = &more;
         items.Append(from, 1);
       },
       "1569159"},
      {"+=", [](GPDataArray & items) { items += GPDataArray(items); }, "1569159"},
      {"operator[]", [](GPDataArray & items) { delete items[0], items[0] = new GPw(8, 1); }, "6859"},
      {"a lent element",
       [](GPDataArray & items) {
         CObject *& first = items[0];
         items.LoadIntData(5, 7);
         delete first, first = new GPw(8, 1);
       },
       "6859"},
      {"an item's id", [](GPDataArray & items) { static_cast<GPw &>(*items.GetAt(0)) = GPw(8, 1); }, "6859"},
  };
  for (Row const & row : rows) {
    GPDataArray items;
    for (int const id : {1, 5, 9}) items.LoadIntData(static_cast<unsigned int>(id), 1);
    row.make(items);
    items.AddData(new GPw(6, 1));
    std::string ids;
    for (int i = 0; i < items.GetSize(); ++i) ids += std::to_string(items.GetAt(i)->GetDataID());
    EXPECT_EQ(ids, row.ids) << row.change;
  }
}

TEST(GPDataArray, PutsAValueIntoTheItemThatStandsAloneForIt)
{
  GPDataArray items;
  items.AddData(new GPw(5, 1));
  items.AddData(new GPs(6, "a"));
  GPData const * const word = items.GetAt(0);
  GPData const * const text = items.GetAt(1);
  items.LoadIntData(5, 2);
  items.LoadStringData(6, "b");
  EXPECT_EQ(items.GetAt(0), word);
  EXPECT_EQ(items.GetAt(1), text);
  EXPECT_EQ(static_cast<GPs const *>(text)->GetValue(), "b");
  items.AddData(new GPw(5, 3));
  items.LoadIntData(5, 4);
  EXPECT_EQ(entryOf(items.GetAt(0)), (Entry{5, 'w', 2}))
      << "the one that halving finds is deleted, and the new one stands behind the other";
  EXPECT_EQ(entryOf(items.GetAt(1)), (Entry{5, 'w', 4}));
}
