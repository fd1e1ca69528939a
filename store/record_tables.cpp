// The tables of live records and free blocks.

#include <algorithm>
#include <bit>

#include "store/store_internal.h"

namespace zp {

void NumberSet::Insert(size_t number)
{
  m_Words[number / 64] |= uint64_t{1} << (number % 64);
  m_Summary[number / 4096] |= uint64_t{1} << (number / 64 % 64);
}

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

ActiveTable::ActiveTable(std::vector<ActiveEntry> entries) : m_nCount(static_cast<int>(entries.size())), m_Ids(maxRecordID + 1)
{
  auto const outOfOrder = [](ActiveEntry const & a, ActiveEntry const & b) { return a.nRecID >= b.nRecID; };
  if (entries.empty()) return;
  m_bAsRead = entries.front().nRecID < 0 || std::adjacent_find(entries.begin(), entries.end(), outOfOrder) != entries.end();
  if (m_bAsRead) {
    m_AsRead = std::move(entries);
    return;
  }
  m_ByID.resize(static_cast<size_t>(entries.back().nRecID) + 1);
  for (ActiveEntry const & entry : entries) {
    m_ByID[static_cast<size_t>(entry.nRecID)] = entry;
    m_Ids.Insert(static_cast<size_t>(entry.nRecID));
  }
}

ActiveEntry * ActiveTable::Find(int id)
{
  if (!m_bAsRead) {
    auto const place = static_cast<size_t>(id);
    return id >= 0 && place < m_ByID.size() && m_Ids.Contains(place) ? &m_ByID[place] : nullptr;
  }
  // GPObArray::BSearch, probe by probe: out of order it misses what that would miss.
  for (int low = 0, high = m_nCount - 1; low <= high;) {
    int const index = (low + high) / 2;
    ActiveEntry & entry = m_AsRead[static_cast<size_t>(index)];
    if (entry.nRecID == id) return &entry;
    if (id > entry.nRecID)
      low = index + 1;
    else
      high = index - 1;
  }
  return nullptr;
}

ActiveEntry & ActiveTable::Add(int id)
{
  ++m_nCount;
  ActiveEntry const entry{id, 0, 0, ActiveEntry::unknown};
  if (m_bAsRead) {
    auto const larger = std::find_if(m_AsRead.begin(), m_AsRead.end(), [id](ActiveEntry const & at) { return at.nRecID > id; });
    return *m_AsRead.insert(larger, entry);
  }
  auto const place = static_cast<size_t>(id);
  if (place >= m_ByID.size()) m_ByID.resize(place + 1);
  m_Ids.Insert(place);
  return m_ByID[place] = entry;
}

void ActiveTable::Remove(ActiveEntry const & entry)
{
  --m_nCount;
  if (m_bAsRead)
    m_AsRead.erase(m_AsRead.begin() + (&entry - m_AsRead.data()));
  else
    m_Ids.Erase(static_cast<size_t>(entry.nRecID));
}

int ActiveTable::GetFirstID() const
{
  if (m_nCount == 0) return 0;
  return m_bAsRead ? m_AsRead.front().nRecID : m_Ids.AtOrAbove(0);
}

int ActiveTable::GetLastID() const
{
  if (m_nCount == 0) return 0;
  return m_bAsRead ? m_AsRead.back().nRecID : m_Ids.AtOrBelow(m_ByID.size() - 1);
}

FreeTable::FreeTable(std::vector<FreeBlock> const & blocks) : m_Capacities(maxRecordLength + 1)
{
  auto const smaller = [](FreeBlock const & a, FreeBlock const & b) { return a.nCapacity < b.nCapacity; };
  if (std::is_sorted(blocks.begin(), blocks.end(), smaller)) {
    m_Nodes.reserve(blocks.size());
    for (FreeBlock const & block : blocks) Add(block);
    return;
  }
  m_bAsRead = true;
  m_AsRead = blocks;
  m_nCount = static_cast<int>(blocks.size());
}

void FreeTable::Add(FreeBlock block)
{
  ++m_nCount;
  if (m_bAsRead) {
    auto const larger =
        std::find_if(m_AsRead.begin(), m_AsRead.end(), [&](FreeBlock const & at) { return at.nCapacity > block.nCapacity; });
    m_AsRead.insert(larger, block);
    return;
  }
  int node = m_nUnusedNode;
  if (node >= 0) {
    m_nUnusedNode = m_Nodes[static_cast<size_t>(node)].nNext;
    m_Nodes[static_cast<size_t>(node)] = {block.nFilePos, -1};
  } else {
    node = static_cast<int>(m_Nodes.size());
    m_Nodes.push_back({block.nFilePos, -1});
  }
  if (block.nCapacity >= m_Queues.size()) m_Queues.resize(size_t{block.nCapacity} + 1);
  Queue & queue = m_Queues[block.nCapacity];
  (queue.nTail >= 0 ? m_Nodes[static_cast<size_t>(queue.nTail)].nNext : queue.nHead) = node;
  queue.nTail = node;
  m_Capacities.Insert(block.nCapacity);
}

bool FreeTable::TakeBestFit(unsigned int length, FreeBlock & block)
{
  if (m_bAsRead) {
    auto const fit =
        std::find_if(m_AsRead.begin(), m_AsRead.end(), [length](FreeBlock const & at) { return at.nCapacity >= length; });
    if (fit == m_AsRead.end()) return false;
    block = *fit;
    m_AsRead.erase(fit);
    --m_nCount;
    return true;
  }
  int const capacity = m_Capacities.AtOrAbove(length);
  if (capacity < 0) return false;
  Queue & queue = m_Queues[static_cast<size_t>(capacity)];
  int const taken = queue.nHead;
  Node & node = m_Nodes[static_cast<size_t>(taken)];
  block = {node.nFilePos, static_cast<WORD>(capacity)};
  queue.nHead = node.nNext;
  node.nNext = m_nUnusedNode;
  m_nUnusedNode = taken;
  --m_nCount;
  if (queue.nHead < 0) {
    queue.nTail = -1;
    m_Capacities.Erase(static_cast<size_t>(capacity));
  }
  return true;
}

}  // namespace zp
