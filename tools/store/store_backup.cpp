// Keeping and putting back. Only blocks of the records that are changed, and free ones, are ever written over: of the former the
// bytes are kept, of the latter the headers are all that counts.

#include "tools/store/store_backup.h"

#include <algorithm>

#include <zpbase/platform/exceptions.h>

#include "tools/host_file.h"
#include "tools/patience.h"
#include "tools/program.h"

namespace {

constexpr unsigned int blockHeaderBytes = zp::BlockHeader::byteCount;

bool openForRepair(CFile & file, std::string const & name)
{
  for (Patience patience; !patience.IsOver(); patience.Pause()) {
    if (file.Open(InsidePath(name), CFile::modeReadWrite | CFile::shareDenyWrite)) return true;
  }
  return false;
}

}  // namespace

// What is tried stands behind the file's end, where nothing else does.
std::string WhyNoRoom(CFile & file, size_t count)
{
  ULONGLONG const length = file.GetLength();
  std::string why;
  try {
    std::vector<BYTE> const bytes(count);
    file.WriteAt(length, bytes.data(), static_cast<UINT>(count));
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    why = Describe(*caught);
  }
  file.SetLength(length);
  return why;
}

StoreBackup::StoreBackup(StoreNames const & names, Survey survey) : m_Names(names), m_Before(std::move(survey))
{
  if (FileExists(names.index)) m_IndexBytes = ReadWholeFile(names.index);
  for (size_t i = 0; i < m_Before.blocks.size(); ++i) {
    zp::RecordBlock const & block = m_Before.blocks[i].block;
    if (!block.isFree) m_Blocks.emplace(block.id, i);
  }
}

void StoreBackup::Keep(int id)
{
  auto const found = m_Blocks.find(id);
  if (found == m_Blocks.end() || m_Payloads.contains(found->second)) return;
  CFile file;
  CFileException problem;
  if (!file.Open(InsidePath(m_Names.record), CFile::modeRead | CFile::shareDenyNone, &problem)) {
    FailOpening(m_Names.record, "record file", problem);
  }
  m_Payloads.emplace(found->second, ReadPayload(file, m_Before.blocks[found->second].block));
}

std::optional<StoreBackup::FileState> StoreBackup::StateOf(std::string const & name)
{
  try {
    auto const status = StatusOf(name);
    if (status) return FileState{status->file, status->device, status->size, status->modified};
  } catch (Failure const &) {
  }
  return std::nullopt;
}

void StoreBackup::RestoreBlocks(CFile & file) const
{
  if (file.GetLength() != m_Before.fileLength) file.SetLength(m_Before.fileLength);
  for (size_t i = 0; i < m_Before.blocks.size(); ++i) {
    zp::RecordBlock const & block = m_Before.blocks[i].block;
    BYTE former[blockHeaderBytes];
    BYTE now[blockHeaderBytes];
    block.Write(former);
    bool const isThere =
        file.ReadAt(block.position, now, blockHeaderBytes) == blockHeaderBytes && std::equal(now, now + blockHeaderBytes, former);
    if (!isThere) file.WriteAt(block.position, former, blockHeaderBytes);
    auto const kept = m_Payloads.find(i);
    if (kept == m_Payloads.end()) continue;
    file.WriteAt(block.position + blockHeaderBytes, kept->second.data(), static_cast<UINT>(kept->second.size()));
  }
}

// In its place: on a full disk there is no room for a second one beside it.
void StoreBackup::RestoreIndex(CFile & file) const
{
  if (!m_IndexBytes.empty()) file.WriteAt(0, m_IndexBytes.data(), static_cast<UINT>(m_IndexBytes.size()));
  file.SetLength(m_IndexBytes.size());
}

bool StoreBackup::Restore(size_t count, std::string & why) const
{
  try {
    CFile record;
    CFile index;
    if (!openForRepair(record, m_Names.record) || !openForRepair(index, m_Names.index) || !IsOurs()) return false;
    why = WhyNoRoom(record, count);
    if (why.empty()) why = WhyNoRoom(index, m_IndexBytes.size() + count);
    RestoreBlocks(record);
    RestoreIndex(index);
    return true;
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return false;
  }
}
