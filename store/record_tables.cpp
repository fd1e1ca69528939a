// The tables of live records and free blocks.

#include "store/store_internal.h"

#include <algorithm>
#include <bit>
#include <new>

namespace zp {
namespace {

constexpr size_t mostIds = maxRecordID + 1;
constexpr int looksBefore = 16;      // into bytes, and
constexpr int looksForEntries = 32;  // one more for so many entries, before a table is made

// GPObArray::BSearch, probe by probe: out of order it misses what that would miss. The place of id, or -1.
template <class IdAt>
int probe(int count, int id, IdAt idAt)
{
  for (int low = 0, high = count - 1; low <= high;) {
    int const index = (low + high) / 2;
    int const found = idAt(index);
    if (found == id) return index;
    if (id > found)
      low = index + 1;
    else
      high = index - 1;
  }
  return -1;
}

}  // namespace

void NumberSet::Erase(size_t number)
{
  m_Words[number / 64] &= ~(uint64_t{1} << (number % 64));
  if (m_Words[number / 64] == 0) m_Summary[number / 4096] &= ~(uint64_t{1} << (number / 64 % 64));
}

int NumberSet::AtOrAbove(size_t number) const
{
  size_t word = number / 64;
  if (word >= m_Words.size()) return -1;
  if (uint64_t const rest = m_Words[word] >> (number % 64); rest != 0) return static_cast<int>(number) + std::countr_zero(rest);
  if (++word >= m_Words.size()) return -1;
  size_t group = word / 64;
  uint64_t words = m_Summary[group] & (~uint64_t{0} << (word % 64));
  while (words == 0)
    if (++group >= m_Summary.size())
      return -1;
    else
      words = m_Summary[group];
  word = group * 64 + static_cast<size_t>(std::countr_zero(words));
  return static_cast<int>(word * 64) + std::countr_zero(m_Words[word]);
}

int NumberSet::AtOrBelow(size_t number) const
{
  size_t word = number / 64;
  if (uint64_t const rest = m_Words[word] << (63 - number % 64); rest != 0)
    return static_cast<int>(number) - std::countl_zero(rest);
  if (word == 0) return -1;
  --word;
  size_t group = word / 64;
  uint64_t words = m_Summary[group] & (~uint64_t{0} >> (63 - word % 64));
  while (words == 0)
    if (group-- == 0)
      return -1;
    else
      words = m_Summary[group];
  word = group * 64 + 63 - static_cast<size_t>(std::countl_zero(words));
  return static_cast<int>(word * 64) + 63 - std::countl_zero(m_Words[word]);
}

void ActiveTable::Append(IndexBytes const & owner, BYTE const * first, size_t count)
{
  bool const isKept = static_cast<size_t>(m_nCount) == m_Kept.GetCount();
  if (isKept && m_Kept.Extend(owner, first, count)) {
    m_nCount += static_cast<int>(count);
    return;
  }
  if (!m_Kept.IsEmpty()) Make();
  for (size_t i = 0; i < count; ++i) Append(FromStream(first + i * m_Kept.distance));
}

void ActiveTable::Append(ActiveEntry const & entry)
{
  if (m_bAsRead || entry.id <= m_nLastAppended) return AppendAsRead(entry);
  m_nLastAppended = entry.id;
  ++m_nCount;
  PlaceOf(entry.id) = entry;
}

// A table in place of the bytes.
void ActiveTable::Make()
{
  ActiveTable made;
  made.Reserve(std::min(m_Kept.GetCount(), mostIds));
  ForEach([&](ActiveEntry const & entry) { made.Append(entry); });
  *this = std::move(made);
}

// Many looks are worth a table, if there is memory for it.
bool ActiveTable::LookInKept(int id, ActiveEntry & entry)
{
  if (++m_nLooks > looksBefore + m_nCount / looksForEntries) {
    m_nLooks = 0;
    try {
      Make();
      return Look(id, entry);
    } catch (std::bad_alloc const &) {
    }
  }
  int const index = probe(m_nCount, id, [&](int at) { return FromStream(m_Kept.At(static_cast<size_t>(at))).id; });
  if (index >= 0) entry = FromStream(m_Kept.At(static_cast<size_t>(index)));
  return index >= 0;
}

// Room for so many ids from 0 on, so that appending doesn't grow the table again and again.
void ActiveTable::Reserve(size_t count)
{
  if (count <= m_nRoom) return;
  size_t const room = std::min<size_t>(std::max({count, 2 * m_nRoom, size_t{64}}), mostIds);
  auto grown = std::make_unique_for_overwrite<ActiveEntry[]>(room);
  std::copy_n(m_ByID.get(), m_nRoom, grown.get());
  m_ByID = std::move(grown);
  m_nRoom = room;
}

void ActiveTable::AppendAsRead(ActiveEntry const & entry)
{
  if (!m_bAsRead) {
    std::vector<ActiveEntry> before;
    ForEach([&](ActiveEntry const & at) { before.push_back(at); });
    m_AsRead.swap(before);
    m_Ids = NumberSet(maxRecordID + 1);
    m_bAsRead = true;
  }
  m_AsRead.push_back(entry);
  ++m_nCount;
}

ActiveEntry * ActiveTable::FindAsRead(int id)
{
  int const index = probe(m_nCount, id, [&](int at) { return m_AsRead[static_cast<size_t>(at)].id; });
  return index >= 0 ? &m_AsRead[static_cast<size_t>(index)] : nullptr;
}

ActiveEntry & ActiveTable::Add(int id, unsigned int length)
{
  ActiveEntry const entry{static_cast<short>(id), static_cast<WORD>(length), noBlockPosition, ActiveEntry::unknown};
  ActiveEntry * added;
  if (m_bAsRead) {
    auto const larger = std::find_if(m_AsRead.begin(), m_AsRead.end(), [id](ActiveEntry const & at) { return at.id > id; });
    added = &*m_AsRead.insert(larger, entry);
  } else {
    added = &(PlaceOf(id) = entry);
  }
  ++m_nCount;
  return *added;
}

void ActiveTable::Remove(ActiveEntry const & entry)
{
  --m_nCount;
  if (m_bAsRead)
    m_AsRead.erase(m_AsRead.begin() + (&entry - m_AsRead.data()));
  else
    m_Ids.Erase(static_cast<size_t>(entry.id));
}

int ActiveTable::GetFirstID() const
{
  if (m_nCount == 0) return 0;
  if (!m_Kept.IsEmpty()) return FromStream(m_Kept.At(0)).id;
  return m_bAsRead ? m_AsRead.front().id : m_Ids.AtOrAbove(0);
}

int ActiveTable::GetLastID() const
{
  if (m_nCount == 0) return 0;
  if (!m_Kept.IsEmpty()) return FromStream(m_Kept.At(m_Kept.GetCount() - 1)).id;
  return m_bAsRead ? m_AsRead.back().id : m_Ids.AtOrBelow(maxRecordID);
}

void FreeTable::Append(IndexBytes const & owner, BYTE const * first, size_t count)
{
  bool const isKept = static_cast<size_t>(m_nCount) == m_Kept.GetCount();
  if (isKept && m_Kept.Extend(owner, first, count)) {
    m_nCount += static_cast<int>(count);
    return;
  }
  if (!m_Kept.IsEmpty()) Make();
  for (size_t i = 0; i < count; ++i) Append(FromStream(first + i * m_Kept.distance));
}

void FreeTable::Make()
{
  FreeTable made;
  made.m_Nodes.reserve(m_Kept.GetCount());
  ForEach([&](FreeBlock const & block) { made.Append(block); });
  *this = std::move(made);
}

// A block that is smaller than the last leaves the table in the form as read.
void FreeTable::Append(FreeBlock block)
{
  if (!m_bAsRead && block.capacity >= m_nLastAppended) {
    Add(block);
    m_nLastAppended = block.capacity;
    return;
  }
  if (!m_bAsRead) {
    std::vector<FreeBlock> before;
    ForEach([&](FreeBlock const & at) { before.push_back(at); });
    m_AsRead.swap(before);
    m_Capacities = NumberSet(maxRecordLength + 1);
    m_bAsRead = true;
  }
  m_AsRead.push_back(block);
  ++m_nCount;
}

void FreeTable::ReserveOne(unsigned int capacity)
{
  if (!m_Kept.IsEmpty()) Make();
  auto const makeRoom = [](auto & table) {
    if (table.size() == table.capacity()) table.reserve(2 * table.size() + 1);
  };
  if (m_bAsRead) return makeRoom(m_AsRead);
  if (capacity >= m_Queues.size()) m_Queues.resize(size_t{capacity} + 1);
  if (m_nUnusedNode < 0) makeRoom(m_Nodes);
}

// Nodes of queues that are used up are taken again, so that a store that lives long doesn't grow the table.
void FreeTable::Add(FreeBlock block)
{
  ReserveOne(block.capacity);
  ++m_nCount;
  if (m_bAsRead) {
    auto const larger =
        std::find_if(m_AsRead.begin(), m_AsRead.end(), [&](FreeBlock const & at) { return at.capacity > block.capacity; });
    m_AsRead.insert(larger, block);
    return;
  }
  int node = m_nUnusedNode;
  if (node >= 0) {
    m_nUnusedNode = m_Nodes[static_cast<size_t>(node)].next;
    m_Nodes[static_cast<size_t>(node)] = {block, -1};
  } else {
    node = static_cast<int>(m_Nodes.size());
    m_Nodes.push_back({block, -1});
  }
  Queue & queue = m_Queues[block.capacity];
  (queue.tail >= 0 ? m_Nodes[static_cast<size_t>(queue.tail)].next : queue.head) = node;
  queue.tail = node;
  m_Capacities.Insert(block.capacity);
}

// The head of the queue of the smallest capacity that fits is the block that an ordered list would be searched for.
bool FreeTable::GetBestFit(unsigned int length, FreeBlock & block)
{
  if (!m_Kept.IsEmpty()) Make();
  if (m_bAsRead) {
    auto const fit = FindAsRead(length);
    if (fit == m_AsRead.end()) return false;
    block = *fit;
    return true;
  }
  int const capacity = m_Capacities.AtOrAbove(length);
  if (capacity < 0) return false;
  block = m_Nodes[static_cast<size_t>(m_Queues[static_cast<size_t>(capacity)].head)].block;
  return true;
}

std::vector<FreeBlock>::const_iterator FreeTable::FindAsRead(unsigned int length) const
{
  return std::find_if(m_AsRead.begin(), m_AsRead.end(), [length](FreeBlock const & at) { return at.capacity >= length; });
}

bool FreeTable::TakeBestFit(unsigned int length)
{
  if (m_bAsRead) {
    auto const fit = FindAsRead(length);
    if (fit == m_AsRead.end()) return false;
    m_AsRead.erase(fit);
    --m_nCount;
    return true;
  }
  int const capacity = m_Capacities.AtOrAbove(length);
  if (capacity < 0) return false;
  Queue & queue = m_Queues[static_cast<size_t>(capacity)];
  int const taken = queue.head;
  Node & node = m_Nodes[static_cast<size_t>(taken)];
  queue.head = node.next;
  node.next = m_nUnusedNode;
  m_nUnusedNode = taken;
  --m_nCount;
  if (queue.head < 0) {
    queue.tail = -1;
    m_Capacities.Erase(static_cast<size_t>(capacity));
  }
  return true;
}

BlockPositions::BlockPositions(ActiveTable const & active, FreeTable const & free, ULONGLONG fileLength)
    : m_nFileLength(fileLength)
{
  m_Positions.reserve(static_cast<size_t>(active.GetCount()) + static_cast<size_t>(free.GetCount()));
  active.ForEach([&](ActiveEntry const & entry) { m_Positions.push_back(entry.position); });
  free.ForEach([&](FreeBlock const & block) { m_Positions.push_back(block.position); });
  std::sort(m_Positions.begin(), m_Positions.end());
}

ULONGLONG BlockPositions::EndFor(DWORD position) const
{
  auto const [at, next] = std::equal_range(m_Positions.begin(), m_Positions.end(), position);
  if (next - at > 1) return position;
  return next == m_Positions.end() ? m_nFileLength : std::min<ULONGLONG>(*next, m_nFileLength);
}

}  // namespace zp
