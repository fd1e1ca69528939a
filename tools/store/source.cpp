// Where reading commands get their records from.

#include "tools/store/source.h"

#include <cstdio>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/store/exchange.h"
#include "tools/store/survey.h"

namespace {

// A session reads the index itself; this looks only at what would stop it.
bool isReadable(StoreNames const & names, StoreIndex & index)
{
  try {
    GPDataFile const probe(FromHostPath(names.m_strIndex), FromHostPath(names.m_strRecord), CFile::modeRead, nullptr);
    return true;
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    index = ReadIndex(names.m_strIndex);
    return index.m_State == StoreIndex::Sound;
  }
}

}  // namespace

RecordSource::RecordSource(StoreNames const & names) : m_Names(names)
{
  if (!FileExists(names.m_strIndex) || !FileExists(names.m_strRecord) || isReadable(names, m_Index)) {
    m_pSession = std::make_unique<StoreSession>(names, StoreAccess::Read);
    m_IDs = m_pSession->GetIDs();
  } else {
    ReadBlocks();
  }
}

void RecordSource::ReadBlocks()
{
  RequireNoSwap(m_Names);
  RequireFile(m_Names.m_strRecord, "record file", CFile::modeRead | CFile::shareDenyWrite);
  fmt::print(stderr, "zp: {}: {}; the records are those of the block headers\n", m_Names.m_strIndex, m_Index.m_strProblem);
  m_File.Open(FromHostPath(m_Names.m_strRecord), CFile::modeRead | CFile::shareDenyWrite);
  m_bHasHeader = m_Index.m_bHeaderRead;
  for (SurveyBlock const & at : SurveyRecordFile(m_File, m_Index).m_Blocks) {
    if (!at.m_Block.bFree && at.m_bFits) m_Blocks.try_emplace(at.m_Block.nRecID, at.m_Block);
  }
  for (auto const & [id, block] : m_Blocks) m_IDs.push_back(id);
}

std::vector<BYTE> RecordSource::Load(int id)
{
  if (m_pSession != nullptr) return m_pSession->Load(id);
  auto const found = m_Blocks.find(id);
  if (found == m_Blocks.end()) {
    throw Failure(fmt::format("{}: there is no record {}; see zp store list", m_Names.m_strRecord, id));
  }
  return ReadPayload(m_File, found->second);
}
