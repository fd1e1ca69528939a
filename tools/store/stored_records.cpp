// Where reading commands get their records from.

#include "tools/store/stored_records.h"

#include <cstdio>

#include <fmt/format.h>

#include "tools/program.h"
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
  for (auto const & [id, block] : m_Blocks) m_IDs.push_back(id);
}

// Of two entries of one id the first is the record.
void StoredRecords::FindByIndex()
{
  for (LiveEntry const & entry : m_Store.GetIndex().live) {
    if (entry.id < 0 || entry.length == 0) continue;
    auto const length = static_cast<WORD>(entry.length);
    m_Blocks.try_emplace(entry.id, zp::RecordBlock{{static_cast<WORD>(entry.id), false, length, length}, entry.position});
  }
}

void StoredRecords::FindByHeaders()
{
  StoreIndex const & index = m_Store.GetIndex();
  std::string const why = index.state == StoreIndex::Missing ? "the index file is empty" : index.problem;
  fmt::print(stderr, "zp: {}: {}; the records are those of the block headers\n", m_Store.GetNames().index, why);
  m_bHasHeader = index.isHeaderRead;
  m_bByIndex = false;
  for (SurveyBlock const & at : SurveyRecordFile(m_Store.GetRecordFile(), index).blocks) {
    if (!at.block.isFree && at.fits) m_Blocks.try_emplace(at.block.id, at.block);
  }
}

std::vector<BYTE> StoredRecords::Load(int id) const
{
  StoreNames const & names = m_Store.GetNames();
  auto const found = m_Blocks.find(id);
  if (found == m_Blocks.end()) {
    throw Failure(fmt::format("{}: there is no record {}; see zp store list", m_bByIndex ? names.index : names.record, id));
  }
  std::vector<BYTE> bytes = ReadPayload(m_Store.GetRecordFile(), found->second);
  if (m_bByIndex && bytes.size() != found->second.length) {
    throw Failure(
        fmt::format("{}: record {} of {} bytes can't be read; look with zp store check", names.record, id, found->second.length));
  }
  return bytes;
}
