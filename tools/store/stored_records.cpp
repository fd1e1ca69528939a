// Where reading commands get their records from.

#include "tools/store/stored_records.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/output_file.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/store/block_survey.h"

StoredRecords::StoredRecords(StoreNames const & names) : m_Store(names, StoreAccess::Look)
{
  m_Store.RequireIndexFile();
  StoreIndex const & index = m_Store.GetIndex();
  bool const isNew = index.state == StoreIndex::Missing && m_Store.GetRecordFile().GetLength() == 0;
  if (index.state == StoreIndex::Sound || isNew) {
    FindByIndex();
  } else {
    FindByHeaders();
  }
  Sort();
}

// Of two blocks of one id the first that was found is the record.
void StoredRecords::Sort()
{
  auto const isLess = [](zp::RecordBlock const & a, zp::RecordBlock const & b) { return a.id < b.id; };
  auto const isSame = [](zp::RecordBlock const & a, zp::RecordBlock const & b) { return a.id == b.id; };
  if (!std::is_sorted(m_Blocks.begin(), m_Blocks.end(), isLess)) std::stable_sort(m_Blocks.begin(), m_Blocks.end(), isLess);
  m_Blocks.erase(std::unique(m_Blocks.begin(), m_Blocks.end(), isSame), m_Blocks.end());
  m_IDs.reserve(m_Blocks.size());
  for (zp::RecordBlock const & block : m_Blocks) m_IDs.push_back(block.id);
}

void StoredRecords::FindByIndex()
{
  m_Blocks.reserve(m_Store.GetIndex().live.size());
  for (LiveEntry const & entry : m_Store.GetIndex().live) {
    if (entry.id < 0) continue;
    auto const length = static_cast<WORD>(entry.length);
    m_Blocks.push_back({{static_cast<WORD>(entry.id), false, length, length}, entry.position});
  }
}

// What is on the chain from the begin outranks what was found behind a break.
void StoredRecords::FindByHeaders()
{
  StoreIndex const & index = m_Store.GetIndex();
  std::string const why = index.state == StoreIndex::Missing ? "the index file is empty" : index.problem;
  Tell(fmt::format("{}: {}; the records are those of the block headers", m_Store.GetNames().index, why));
  m_bHasHeader = index.isHeaderRead;
  m_bByIndex = false;
  m_bIndexLost = index.state != StoreIndex::UnknownClass;
  Survey const survey = SurveyRecordFile(m_Store.GetRecordFile(), index);
  for (bool const isTrusted : {true, false}) {
    for (SurveyBlock const & at : survey.blocks) {
      if (!at.block.isFree && at.fits && at.isTrusted == isTrusted) m_Blocks.push_back(at.block);
    }
  }
}

namespace {

std::string whyNot(zp::BlockHeader const & wanted, zp::BlockHeader const & found)
{
  if (found.isFree) return "the block there is free";
  if (found.id != wanted.id) return fmt::format("the block there is record {}", found.id);
  if (found.length != wanted.length) return fmt::format("the block there has {}", Counted(found.length, "byte"));
  return found.capacity < found.length ? "the block there is too small for it" : "";
}

}  // namespace

std::vector<BYTE> StoredRecords::Load(int id) const
{
  auto const found = std::lower_bound(m_Blocks.begin(), m_Blocks.end(), id,
                                      [](zp::RecordBlock const & block, int wanted) { return block.id < wanted; });
  if (found == m_Blocks.end() || found->id != id) {
    throw Failure(fmt::format("{}: there is no record {}; see zp store list", GetRecordsName(), id));
  }
  RecordWindow window(m_Store.GetRecordFile(), 0);
  std::span<BYTE const> const bytes = Fetch(window, *found);
  return {bytes.begin(), bytes.end()};
}

std::span<BYTE const> StoredRecords::Fetch(RecordWindow & window, zp::RecordBlock const & wanted) const
{
  constexpr size_t headerBytes = zp::BlockHeader::byteCount;
  std::span<BYTE const> const bytes = window.Fetch(wanted.position, headerBytes + wanted.length);
  std::string problem;
  if (wanted.position == LiveEntry::noPlace)
    problem = "its bytes never reached the file; store it again or delete it";
  else if (wanted.length == 0)
    problem = "the index has 0 bytes of it; look with zp store check";
  else if (bytes.size() < headerBytes + wanted.length)
    problem = fmt::format("the file ends before its {} do; look with zp store check", Counted(wanted.length, "byte"));
  else if (std::string const why = whyNot(wanted, zp::BlockHeader::Read(bytes.data())); m_bByIndex && !why.empty())
    problem = fmt::format("the index has it at {}, but {}; look with zp store check", wanted.position, why);
  if (problem.empty()) return bytes.subspan(headerBytes);
  throw Failure(fmt::format("{}: record {}: {}", m_Store.GetNames().record, wanted.id, problem));
}

size_t StoredRecords::ForEach(char const * label, std::function<void(int id, std::span<BYTE const> bytes)> const & use) const
{
  Progress progress(label, m_Blocks.size());
  RecordWindow window(m_Store.GetRecordFile());
  size_t done = 0;
  size_t left = 0;
  for (zp::RecordBlock const & block : m_Blocks) {
    try {
      use(block.id, Fetch(window, block));
    } catch (OutputFailure const &) {
      throw;
    } catch (Failure const & failure) {
      Tell(failure.what());
      ++left;
    }
    progress.Reach(++done);
  }
  return left;
}

ExitStatus EndOfReading(StoredRecords const & records, size_t left, bool skip)
{
  if (left > 0) Tell(fmt::format("{}: {} left out", records.GetNames().record, Counted(left, "record")));
  return skip || (left == 0 && !records.IsIndexLost()) ? exitDone : exitWanting;
}
