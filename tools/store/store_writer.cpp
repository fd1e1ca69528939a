// Writing records, and looking whether they arrived.

#include "tools/store/store_writer.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/host_file.h"
#include "tools/patience.h"
#include "tools/program.h"
#include "tools/store/store_check.h"

namespace {

size_t hashOf(std::span<BYTE const> bytes)
{
  return std::hash<std::string_view>()({reinterpret_cast<char const *>(bytes.data()), bytes.size()});
}

}  // namespace

StoreWriter::StoreWriter(StoreNames const & names, StoreAccess access)
    : m_Store(names, access), m_Backup(names, m_Store.TakeSurvey())
{
  if (!m_Store.GetEndedExchange().empty()) Tell(fmt::format("{}: {}", names.record, m_Store.GetEndedExchange()));
}

void StoreWriter::SetHeader(std::unique_ptr<CObject> header)
{
  delete m_Store.GetTables().m_pHeader;
  m_Store.GetTables().m_pHeader = header.release();
}

// The store takes the record file's lock with its first change. Others can hold it then: those who find out that the store is in
// use, for a moment, and readers, who see the old state. So the first change waits for them.
bool StoreWriter::Apply(std::function<bool()> const & step)
{
  bool wasTried = false;
  for (Patience patience; !m_bLocked; patience.Pause()) {
    CFileException problem;
    std::string const & record = m_Store.GetNames().record;
    bool const isFree = CFile().Open(FromHostPath(record), CFile::modeReadWrite | CFile::shareDenyWrite, &problem);
    if (isFree) m_bLocked = step();
    if (m_bLocked) return true;
    wasTried |= isFree;
    if (!patience.IsOver()) continue;
    if (!wasTried) FailOpening(record, "record file", problem);
    return false;
  }
  return step();
}

// The store doesn't tell of every write that failed, so the record is read back.
void StoreWriter::Store(int id, std::span<BYTE const> bytes)
{
  m_Backup.Keep(id);
  GPDataFile & tables = m_Store.GetTables();
  auto const length = static_cast<unsigned int>(bytes.size());
  std::vector<BYTE> stored(bytes.size());
  bool const isStored = Apply([&] { return tables.StoreRec(bytes.data(), length, id) != 0; }) &&
                        tables.LoadRec(stored.data(), length, id) == length &&
                        std::equal(bytes.begin(), bytes.end(), stored.begin());
  if (!isStored) Undo(fmt::format("record {} of {} can't be stored", id, Counted(bytes.size(), "byte")), bytes.size());
  m_Changes[id] = {bytes.size(), hashOf(bytes)};
}

void StoreWriter::Delete(int id)
{
  m_Backup.Keep(id);
  if (!Apply([&] { return m_Store.GetTables().DeleteRec(id) != 0; })) Undo(fmt::format("record {} can't be deleted", id), 0);
  m_Changes[id] = {0, 0};
}

void StoreWriter::Undo(std::string const & what, size_t bytes)
{
  m_Store.Close();
  m_Backup.NoteClosed();
  std::string why;
  bool const isRestored = m_Backup.Restore(bytes + zp::BlockHeader::byteCount, why);
  throw Failure(fmt::format("{}: {}: {}; {}", m_Store.GetNames().record, what,
                            why.empty() ? "a write failed or didn't last" : why,
                            isRestored ? "the store is as it was" : "and it can't be undone: look with zp store check"));
}

// Whether the index has what was changed here, and the blocks hold it.
bool StoreWriter::IsChanged(OpenStore & store) const
{
  std::map<int, LiveEntry> entries;
  for (LiveEntry const & entry : store.GetIndex().live) entries.emplace(entry.id, entry);
  return std::all_of(m_Changes.begin(), m_Changes.end(), [&](auto const & each) {
    auto const & [id, change] = each;
    auto const found = entries.find(id);
    if (found == entries.end() || change.length == 0) return found == entries.end() && change.length == 0;
    auto const length = static_cast<WORD>(found->second.length);
    zp::RecordBlock const block = {{static_cast<WORD>(id), false, length, length}, found->second.position};
    return length == change.length && hashOf(ReadPayload(store.GetRecordFile(), block)) == change.hash;
  });
}

// The next program may have been let in meanwhile: it has looked at the store itself, and may have changed the same records.
std::string StoreWriter::FaultOnDisk()
{
  StoreNames const & names = m_Store.GetNames();
  std::string why;
  m_Store.Close();
  std::optional<zp::HostTime> written;
  for (Patience patience; !patience.IsOver(); patience.Pause()) {
    try {
      if (!written) written = TimeOf(names.index);
      OpenStore store(names, StoreAccess::Look);
      CheckReport const report = CheckStore(store, CheckDepth::Blocks);
      if (!report.faults.empty()) return report.faults.front().text;
      if (IsChanged(store) || TimeOf(names.index) != written) return "";
    } catch (Failure const & failure) {
      why = failure.what();
      continue;
    }
    throw Failure(fmt::format("{}: what was stored isn't there: look with zp store check", names.record));
  }
  throw Failure(fmt::format("{}: what was stored can't be looked at: {}", names.record, why));
}

void StoreWriter::Close()
{
  if (m_Changes.empty()) return m_Store.Close();
  size_t most = 0;
  for (auto const & [id, change] : m_Changes) most = std::max(most, change.length);
  if (std::string const fault = FaultOnDisk(); !fault.empty()) Undo(fault, most);
}
