// The checks of a store: the index by itself, the blocks by themselves, both against each other, and the objects.

#include "tools/store/store_check.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/payload.h"

namespace {

using Blocks = std::vector<SurveyBlock>;

class Checker {
 public:
  explicit Checker(OpenStore & store) : m_Names(store.GetNames()), m_File(store.GetRecordFile()), m_Index(store.GetIndex()) {}

  CheckReport Run(CheckDepth depth)
  {
    m_Report.survey = SurveyRecordFile(m_File, m_Index);
    bool const sound = m_Index.state == StoreIndex::Sound;
    if (sound)
      CheckTables();
    else
      TellIndex();
    CheckChain();
    if (sound) CompareTables();
    if (depth == CheckDepth::Objects) CheckObjects();
    std::stable_sort(m_Report.faults.begin(), m_Report.faults.end(), [this](StoreFault const & a, StoreFault const & b) {
      bool const aInIndex = a.file == m_Names.index;
      bool const bInIndex = b.file == m_Names.index;
      return aInIndex != bInIndex ? aInIndex : !aInIndex && a.offset < b.offset;
    });
    return std::move(m_Report);
  }

 private:
  void Fault(std::string const & file, unsigned long long offset, std::string text)
  {
    Keep({file, static_cast<long long>(offset), std::move(text)});
  }

  void Keep(StoreFault fault)
  {
    if (m_Report.faultCount++ < CheckReport::mostFaults) m_Report.faults.push_back(std::move(fault));
  }

  void TellIndex()
  {
    if (m_Index.state == StoreIndex::UnknownClass) {
      m_Report.notes.push_back(fmt::format("{}: {}; its tables weren't compared", m_Names.index, m_Index.problem));
    } else {
      Fault(m_Names.index, m_Index.problemOffset, m_Index.state == StoreIndex::Missing ? "there is no index" : m_Index.problem);
    }
  }

  // The index by itself: ids in range, ascending and unlike; free blocks by ascending capacity; no place named twice.
  void CheckTables()
  {
    std::unordered_set<unsigned long long> places(m_Index.live.size() + m_Index.free.size());
    int former = -1;
    for (LiveEntry const & entry : m_Index.live) {
      if (entry.id < 0)
        IndexFault("record {}: the id is negative", entry.id);
      else if (entry.id == former)
        IndexFault("record {}: listed twice", entry.id);
      else if (entry.id < former)
        IndexFault("record {}: listed behind record {}", entry.id, former);
      former = std::max(former, entry.id);
      if (!entry.HasPlace()) {
        m_Report.notes.push_back(
            fmt::format("{}: record {}: has no place, for its bytes never reached {}", m_Names.index, entry.id, m_Names.record));
      } else if (!places.insert(entry.position).second) {
        IndexFault("record {}: the place {} is named twice", entry.id, entry.position);
      }
    }
    unsigned int capacity = 0;
    for (FreeEntry const & entry : m_Index.free) {
      if (entry.capacity < capacity) {
        IndexFault("free block at {}: capacity {} listed behind {}", entry.position, entry.capacity, capacity);
      }
      capacity = entry.capacity;
      if (!places.insert(entry.position).second) IndexFault("free block at {}: the place is named twice", entry.position);
    }
  }

  template <class... Values>
  void IndexFault(fmt::format_string<Values...> format, Values &&... values)
  {
    Keep({m_Names.index, -1, fmt::format(format, std::forward<Values>(values)...)});
  }

  template <class... Values>
  void RecordFault(unsigned long long offset, fmt::format_string<Values...> format, Values &&... values)
  {
    Fault(m_Names.record, offset, fmt::format(format, std::forward<Values>(values)...));
  }

  // The blocks by themselves: the chain meets the file's end, lengths fit, no id lives twice.
  void CheckChain()
  {
    for (ChainBreak const & gap : m_Report.survey.breaks) {
      RecordFault(gap.position, "the chain of blocks breaks: {}; it goes on at {}", gap.problem, gap.resumed);
    }
    std::unordered_map<WORD, ULONGLONG> living;
    for (SurveyBlock const & at : m_Report.survey.blocks) {
      zp::RecordBlock const & block = at.block;
      if (block.isFree) {
        ++m_Report.freeBlocks;
        continue;
      }
      ++m_Report.records;
      if (block.length > block.capacity) {
        RecordFault(block.position, "record {}: length {} is above the capacity {}", block.id, block.length, block.capacity);
      }
      if (block.length == 0) RecordFault(block.position, "record {}: it has no bytes", block.id);
      auto const [former, isNew] = living.try_emplace(block.id, block.position);
      if (!isNew) RecordFault(block.position, "record {}: lives already at {}", block.id, former->second);
    }
  }

  zp::RecordBlock const * BlockAt(unsigned long long position) const
  {
    Blocks const & blocks = m_Report.survey.blocks;
    auto const found =
        std::lower_bound(blocks.begin(), blocks.end(), position,
                         [](SurveyBlock const & block, unsigned long long wanted) { return block.block.position < wanted; });
    return found != blocks.end() && found->block.position == position ? &found->block : nullptr;
  }

  // Why no block begins at a position that the index has.
  std::string WhyNoBlock(unsigned long long position) const
  {
    if (position >= m_Report.survey.fileLength) return "that is behind the file's end";
    Blocks const & blocks = m_Report.survey.blocks;
    auto const next =
        std::find_if(blocks.begin(), blocks.end(), [position](SurveyBlock const & at) { return at.block.position > position; });
    if (next == blocks.begin()) return "no block begins there";
    return fmt::format("it would overlap the block at {}", std::prev(next)->block.position);
  }

  // Index and blocks against each other.
  void CompareTables()
  {
    std::unordered_set<unsigned long long> known(m_Index.live.size() + m_Index.free.size());
    for (LiveEntry const & entry : m_Index.live) {
      if (!entry.HasPlace()) continue;
      known.insert(entry.position);
      CompareLive(entry);
    }
    for (FreeEntry const & entry : m_Index.free) {
      known.insert(entry.position);
      CompareFree(entry);
    }
    for (SurveyBlock const & at : m_Report.survey.blocks) {
      zp::RecordBlock const & block = at.block;
      if (known.contains(block.position)) continue;
      if (block.isFree)
        RecordFault(block.position, "a gap: the free block of {} bytes isn't in the index", block.capacity);
      else
        RecordFault(block.position, "record {}: its block of {} bytes isn't in the index", block.id, block.capacity);
    }
  }

  void CompareLive(LiveEntry const & entry)
  {
    zp::RecordBlock const * const block = BlockAt(entry.position);
    if (block == nullptr) {
      RecordFault(entry.position, "record {}: the index has it here, but {}", entry.id, WhyNoBlock(entry.position));
    } else if (block->isFree) {
      RecordFault(entry.position, "record {}: the index has it here, but the block is free", entry.id);
    } else if (block->id != entry.id) {
      RecordFault(entry.position, "record {}: the index has it here, but the block is record {}", entry.id, block->id);
    } else if (block->length != entry.length) {
      RecordFault(entry.position, "record {}: the index has {} bytes, the block {}", entry.id, entry.length, block->length);
    }
  }

  void CompareFree(FreeEntry const & entry)
  {
    zp::RecordBlock const * const block = BlockAt(entry.position);
    if (block == nullptr) {
      RecordFault(entry.position, "free block: the index has it here, but {}", WhyNoBlock(entry.position));
    } else if (!block->isFree) {
      RecordFault(entry.position, "free block: the index has it here, but the block is record {}", block->id);
    } else if (block->capacity != entry.capacity) {
      RecordFault(entry.position, "free block: the index has a capacity of {}, the block {}", entry.capacity, block->capacity);
    }
  }

  void CheckObjects()
  {
    Progress progress("checking", m_Report.survey.fileLength);
    RecordWindow window(m_File);
    std::map<std::string, size_t> unknown;
    for (SurveyBlock const & at : m_Report.survey.blocks) {
      zp::RecordBlock const & block = at.block;
      progress.Reach(block.position);
      if (block.isFree || block.length > block.capacity) continue;
      Payload const payload = DecodePayload(window.Fetch(block.position + zp::BlockHeader::byteCount, block.length));
      if (payload.state == Payload::Unknown) ++unknown[payload.className];
      if (payload.state != Payload::Damaged) continue;
      RecordFault(block.position, "record {}: its {} is unreadable: {}", block.id, payload.className, payload.problem);
    }
    for (auto const & [name, count] : unknown) {
      m_Report.notes.push_back(
          fmt::format("{}: {} of class {}, which isn't known here: not looked into", m_Names.record, count, name));
    }
  }

  StoreNames const & m_Names;
  CFile const & m_File;
  StoreIndex const & m_Index;
  CheckReport m_Report;
};

}  // namespace

CheckReport CheckStore(OpenStore & store, CheckDepth depth)
{
  return Checker(store).Run(depth);
}

void RequireSound(CheckReport const & report)
{
  if (report.faults.empty()) return;
  StoreFault const & first = report.faults.front();
  throw Failure(
      fmt::format("{}: {}; nothing was changed: see zp store check, and zp store recover --to NEW --leave-suspect for a "
                  "sound copy",
                  first.file, first.text));
}
