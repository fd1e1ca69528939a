// GPUnifac: the groups of a component. Its area, little-endian, is a list of entries of 4 bytes:
//
//   offset  width  content
//   0       2      group number, signed; negative for a marked group
//   2       2      count, signed
//
// Group 1 twice and the marked group 12 once are 01 00, 02 00, F4 FF, 01 00.

#include <zpbase/data.h>

#include <algorithm>
#include <cstdlib>
#include <unordered_map>
#include <vector>

#include <zpbase/numeric.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/number_text.h>

namespace {

constexpr int splitGroup = 9;  // stands for the groups 3 and 7 once its mark is dropped

short groupNumber(CString const & text)
{
  auto const number = static_cast<unsigned int>(zp::TextToInt(text.View()));
  bool const marked = text.Find('R') >= 0 || text.Find('X') >= 0;
  return static_cast<short>(marked ? 0u - number : number);
}

// Collects counts under names in the order of their first appearance. A negative number is a marked name.
class GroupSums {
 public:
  explicit GroupSums(CStringArray & names) : m_Names(names) {}

  void Add(int number, int count)
  {
    auto const [known, isNew] = m_Places.try_emplace(number, m_Counts.size());
    if (!isNew) {
      m_Counts[known->second] += count;
      return;
    }
    CString name;
    name.Format(number < 0 ? "%uR" : "%u", static_cast<unsigned int>(std::abs(number)));
    m_Names.Add(name);
    m_Counts.push_back(count);
  }
  std::vector<int> const & GetCounts() const { return m_Counts; }

 private:
  CStringArray & m_Names;
  std::vector<int> m_Counts;
  std::unordered_map<int, size_t> m_Places;
};

void addEntry(GroupSums & sums, int number, int count, int keepMarks)
{
  if (number == 0) return;
  if (keepMarks || number > 0) return sums.Add(number, count);
  if (number != -splitGroup) return sums.Add(-number, count);
  sums.Add(3, count);
  sums.Add(7, count);
}

}  // namespace

GPUnifac::GPUnifac(CStringArray const & groups, GPIntVector const & counts) : GPUnifac(0)
{
  HelpConstruct(groups, counts);
}

GPUnifac GPUnifac::As(GPv const & item)
{
  GPUnifac record;
  record.GPv::operator=(item);
  return record;
}

GPObject * GPUnifac::Clone() const
{
  return new GPUnifac(*this);
}

int GPUnifac::HelpConstruct(CStringArray const & groups, GPIntVector const & counts)
{
  int const count = groups.GetSize();
  if (count > maxEntries || !ResetArea(count * entryBytes)) return 0;
  for (int i = 0; i < count; ++i) {
    int const times = i < counts.GetSize() ? counts[i] : 0;
    zp::WriteLittle(GetArea() + i * entryBytes, groupNumber(groups[i]));
    zp::WriteLittle(GetArea() + i * entryBytes + 2, static_cast<short>(times));
  }
  return count;
}

int GPUnifac::Load(CStringArray const & groups, GPIntVector const & counts)
{
  return HelpConstruct(groups, counts);
}

int GPUnifac::Unload(CStringArray & groups, GPIntVector & counts, int keepMarks) const
{
  groups.RemoveAll();
  GroupSums sums(groups);
  for (int at = 0; at + entryBytes <= GetSize(); at += entryBytes) {
    addEntry(sums, zp::ReadLittle<short>(GetArea() + at), zp::ReadLittle<short>(GetArea() + at + 2), keepMarks);
  }
  counts = GPIntVector(groups.GetSize(), sums.GetCounts().data());
  return groups.GetSize();
}
