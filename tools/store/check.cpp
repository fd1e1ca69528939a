// The checks of a store: the index by itself, the blocks by themselves, both against each other, and the objects.

#include "tools/store/check.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/payload.h"
#include "tools/store/session.h"

namespace {

using Blocks = std::vector<SurveyBlock>;

class Checker {
 public:
  Checker(StoreNames const & names, CFile const & file) : m_Names(names), m_File(file) {}

  CheckReport Run()
  {
    m_Report.m_Index = ReadIndex(m_Names.m_strIndex);
    m_Report.m_Survey = SurveyRecordFile(m_File, m_Report.m_Index);
    bool const sound = m_Report.m_Index.m_State == StoreIndex::Sound;
    if (sound)
      CheckTables();
    else
      TellIndex();
    CheckChain();
    if (sound) CompareTables();
    CheckObjects();
    std::stable_sort(m_Report.m_Faults.begin(), m_Report.m_Faults.end(), [this](StoreFault const & a, StoreFault const & b) {
      bool const aInIndex = a.m_strFile == m_Names.m_strIndex;
      bool const bInIndex = b.m_strFile == m_Names.m_strIndex;
      return aInIndex != bInIndex ? aInIndex : !aInIndex && a.m_nOffset < b.m_nOffset;
    });
    return std::move(m_Report);
  }

 private:
  void Fault(std::string const & file, unsigned long long offset, std::string text)
  {
    m_Report.m_Faults.push_back({file, static_cast<long long>(offset), std::move(text)});
  }

  void TellIndex()
  {
    StoreIndex const & index = m_Report.m_Index;
    if (index.m_State == StoreIndex::UnknownClass) {
      m_Report.m_Notes.push_back(fmt::format("{}: {}; its tables weren't compared", m_Names.m_strIndex, index.m_strProblem));
    } else {
      Fault(m_Names.m_strIndex, index.m_nProblem,
            index.m_State == StoreIndex::Missing ? "there is no index" : index.m_strProblem);
    }
  }

  // The index by itself: ids in range, ascending and unlike; free blocks by ascending capacity; no place named twice.
  void CheckTables()
  {
    StoreIndex const & index = m_Report.m_Index;
    std::set<unsigned long long> places;
    int former = -1;
    for (LiveEntry const & entry : index.m_Live) {
      if (entry.m_nRecID < 0)
        IndexFault("record {}: the id is negative", entry.m_nRecID);
      else if (entry.m_nRecID == former)
        IndexFault("record {}: listed twice", entry.m_nRecID);
      else if (entry.m_nRecID < former)
        IndexFault("record {}: listed behind record {}", entry.m_nRecID, former);
      former = std::max(former, entry.m_nRecID);
      if (!places.insert(entry.m_nPosition).second) {
        IndexFault("record {}: the place {} is named twice", entry.m_nRecID, entry.m_nPosition);
      }
    }
    unsigned int capacity = 0;
    for (FreeEntry const & entry : index.m_Free) {
      if (entry.m_nCapacity < capacity) {
        IndexFault("free block at {}: capacity {} listed behind {}", entry.m_nPosition, entry.m_nCapacity, capacity);
      }
      capacity = entry.m_nCapacity;
      if (!places.insert(entry.m_nPosition).second) IndexFault("free block at {}: the place is named twice", entry.m_nPosition);
    }
  }

  template <class... Values>
  void IndexFault(fmt::format_string<Values...> format, Values &&... values)
  {
    m_Report.m_Faults.push_back({m_Names.m_strIndex, -1, fmt::format(format, std::forward<Values>(values)...)});
  }

  template <class... Values>
  void RecordFault(unsigned long long offset, fmt::format_string<Values...> format, Values &&... values)
  {
    Fault(m_Names.m_strRecord, offset, fmt::format(format, std::forward<Values>(values)...));
  }

  // The blocks by themselves: the chain meets the file's end, lengths fit, no id lives twice.
  void CheckChain()
  {
    for (ChainBreak const & gap : m_Report.m_Survey.m_Breaks) {
      RecordFault(gap.m_nPosition, "the chain of blocks breaks: {}; it goes on at {}", gap.m_strProblem, gap.m_nResumed);
    }
    std::unordered_map<WORD, ULONGLONG> living;
    for (SurveyBlock const & at : m_Report.m_Survey.m_Blocks) {
      zp::RecordBlock const & block = at.m_Block;
      if (block.bFree) {
        ++m_Report.m_nFree;
        continue;
      }
      ++m_Report.m_nRecords;
      if (block.nLength > block.nCapacity) {
        RecordFault(block.nPosition, "record {}: length {} is above the capacity {}", block.nRecID, block.nLength,
                    block.nCapacity);
      }
      if (block.nLength == 0) RecordFault(block.nPosition, "record {}: it has no bytes", block.nRecID);
      auto const [former, isNew] = living.try_emplace(block.nRecID, block.nPosition);
      if (!isNew) RecordFault(block.nPosition, "record {}: lives already at {}", block.nRecID, former->second);
    }
  }

  zp::RecordBlock const * BlockAt(unsigned long long position) const
  {
    Blocks const & blocks = m_Report.m_Survey.m_Blocks;
    auto const found =
        std::lower_bound(blocks.begin(), blocks.end(), position,
                         [](SurveyBlock const & block, unsigned long long wanted) { return block.m_Block.nPosition < wanted; });
    return found != blocks.end() && found->m_Block.nPosition == position ? &found->m_Block : nullptr;
  }

  // Why no block begins at a position that the index has.
  std::string WhyNoBlock(unsigned long long position) const
  {
    if (position >= m_Report.m_Survey.m_nFileLength) return "that is behind the file's end";
    Blocks const & blocks = m_Report.m_Survey.m_Blocks;
    auto const next = std::find_if(blocks.begin(), blocks.end(),
                                   [position](SurveyBlock const & at) { return at.m_Block.nPosition > position; });
    if (next == blocks.begin()) return "no block begins there";
    return fmt::format("it would overlap the block at {}", std::prev(next)->m_Block.nPosition);
  }

  // Index and blocks against each other.
  void CompareTables()
  {
    std::set<unsigned long long> known;
    for (LiveEntry const & entry : m_Report.m_Index.m_Live) {
      known.insert(entry.m_nPosition);
      CompareLive(entry);
    }
    for (FreeEntry const & entry : m_Report.m_Index.m_Free) {
      known.insert(entry.m_nPosition);
      CompareFree(entry);
    }
    for (SurveyBlock const & at : m_Report.m_Survey.m_Blocks) {
      zp::RecordBlock const & block = at.m_Block;
      if (known.contains(block.nPosition)) continue;
      if (block.bFree)
        RecordFault(block.nPosition, "a gap: the free block of {} bytes isn't in the index", block.nCapacity);
      else
        RecordFault(block.nPosition, "record {}: its block of {} bytes isn't in the index", block.nRecID, block.nCapacity);
    }
  }

  void CompareLive(LiveEntry const & entry)
  {
    zp::RecordBlock const * const block = BlockAt(entry.m_nPosition);
    if (block == nullptr) {
      RecordFault(entry.m_nPosition, "record {}: the index has it here, but {}", entry.m_nRecID, WhyNoBlock(entry.m_nPosition));
    } else if (block->bFree) {
      RecordFault(entry.m_nPosition, "record {}: the index has it here, but the block is free", entry.m_nRecID);
    } else if (block->nRecID != entry.m_nRecID) {
      RecordFault(entry.m_nPosition, "record {}: the index has it here, but the block is record {}", entry.m_nRecID,
                  block->nRecID);
    } else if (block->nLength != entry.m_nLength) {
      RecordFault(entry.m_nPosition, "record {}: the index has {} bytes, the block {}", entry.m_nRecID, entry.m_nLength,
                  block->nLength);
    }
  }

  void CompareFree(FreeEntry const & entry)
  {
    zp::RecordBlock const * const block = BlockAt(entry.m_nPosition);
    if (block == nullptr) {
      RecordFault(entry.m_nPosition, "free block: the index has it here, but {}", WhyNoBlock(entry.m_nPosition));
    } else if (!block->bFree) {
      RecordFault(entry.m_nPosition, "free block: the index has it here, but the block is record {}", block->nRecID);
    } else if (block->nCapacity != entry.m_nCapacity) {
      RecordFault(entry.m_nPosition, "free block: the index has a capacity of {}, the block {}", entry.m_nCapacity,
                  block->nCapacity);
    }
  }

  void CheckObjects()
  {
    Progress progress("checking", m_Report.m_Survey.m_nFileLength);
    std::map<std::string, size_t> unknown;
    for (SurveyBlock const & at : m_Report.m_Survey.m_Blocks) {
      zp::RecordBlock const & block = at.m_Block;
      progress.Reach(block.nPosition);
      if (block.bFree || block.nLength > block.nCapacity) continue;
      Payload const payload = DecodePayload(ReadPayload(m_File, block));
      if (payload.m_State == Payload::Unknown) ++unknown[payload.m_strClass];
      if (payload.m_State != Payload::Damaged) continue;
      RecordFault(block.nPosition, "record {}: its {} is unreadable: {}", block.nRecID, payload.m_strClass, payload.m_strProblem);
    }
    for (auto const & [name, count] : unknown) {
      m_Report.m_Notes.push_back(
          fmt::format("{}: {} of class {}, which isn't known here: not looked into", m_Names.m_strRecord, count, name));
    }
  }

  StoreNames const & m_Names;
  CFile const & m_File;
  CheckReport m_Report;
};

}  // namespace

CheckReport CheckStore(StoreNames const & names, CFile const & recordFile)
{
  return Checker(names, recordFile).Run();
}
