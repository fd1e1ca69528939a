// Writing records, and looking whether they arrived.

#include "tools/store/store_writer.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto lockPatience = std::chrono::seconds(2);
constexpr auto lockPause = std::chrono::milliseconds(2);

std::filesystem::file_time_type writeTimeOf(std::string const & file)
{
  std::error_code ignored;
  return std::filesystem::last_write_time(file, ignored);
}

// A look at the index in the middle of another program's change would tell nothing.
void waitForReading(CFile & file, std::string const & record)
{
  CString const path = FromHostPath(record);
  auto const end = Clock::now() + lockPatience;
  while (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite) && Clock::now() < end) std::this_thread::sleep_for(lockPause);
}

}  // namespace

StoreWriter::StoreWriter(StoreNames const & names, StoreAccess access) : m_Store(names, access)
{
  if (!m_Store.GetEndedExchange().empty()) {
    fmt::print(stderr, "zp: {}: {}\n", names.record, m_Store.GetEndedExchange());
  }
}

void StoreWriter::SetHeader(std::unique_ptr<CObject> header)
{
  delete m_Store.GetTables().m_pHeader;
  m_Store.GetTables().m_pHeader = header.release();
}

// The store takes the record file's lock with its first change. Others can hold it then: those who find out that the store is in
// use, for a moment, and readers, who see the old state. So the first change waits for them.
bool StoreWriter::Change(std::function<bool()> const & step)
{
  bool wasTried = false;
  for (auto const end = Clock::now() + lockPatience; !m_bLocked; std::this_thread::sleep_for(lockPause)) {
    CFileException problem;
    std::string const & record = m_Store.GetNames().record;
    bool const isFree = CFile().Open(FromHostPath(record), CFile::modeReadWrite | CFile::shareDenyWrite, &problem);
    if (isFree) m_bLocked = step();
    if (m_bLocked) return true;
    wasTried |= isFree;
    if (Clock::now() < end) continue;
    if (!wasTried) FailOpening(record, "record file", problem);
    return false;
  }
  return step();
}

// The store doesn't tell of a write that failed, so the record is read back.
void StoreWriter::Store(int id, std::span<BYTE const> bytes)
{
  GPDataFile & tables = m_Store.GetTables();
  auto const length = static_cast<unsigned int>(bytes.size());
  std::vector<BYTE> stored(bytes.size());
  bool const isStored = Change([&] { return tables.StoreRec(bytes.data(), length, id) != 0; }) &&
                        tables.LoadRec(stored.data(), length, id) == length &&
                        std::equal(bytes.begin(), bytes.end(), stored.begin());
  if (!isStored) {
    throw Failure(
        fmt::format("{}: record {} of {} bytes can't be stored; a record has 1 to 65535 bytes in a file that can be "
                    "written: check room and permissions, then zp store check",
                    m_Store.GetNames().record, id, bytes.size()));
  }
  m_NewLengths[id] = bytes.size();
}

void StoreWriter::Delete(int id)
{
  if (!Change([&] { return m_Store.GetTables().DeleteRec(id) != 0; })) {
    throw Failure(fmt::format("{}: record {} can't be deleted; look with zp store check", m_Store.GetNames().record, id));
  }
  m_NewLengths[id] = 0;
}

// By what was changed here: the next program may have the store by the time that the index is looked at.
bool StoreWriter::HasChanges(StoreIndex const & index) const
{
  std::map<int, size_t> lengths;
  for (LiveEntry const & entry : index.live) lengths.emplace(entry.id, entry.length);
  return std::all_of(m_NewLengths.begin(), m_NewLengths.end(), [&](auto const & change) {
    auto const found = lengths.find(change.first);
    return (found != lengths.end() ? found->second : 0) == change.second;
  });
}

// The next program may have changed the same records by the time that the index is looked at: then it is sound, and has been
// written since.
void StoreWriter::Close()
{
  StoreNames const & names = m_Store.GetNames();
  auto const formerTime = writeTimeOf(names.index);
  m_Store.Close();
  if (m_NewLengths.empty()) return;
  CFile reading;
  waitForReading(reading, names.record);
  StoreIndex const index = ReadIndex(names.index);
  if (index.state == StoreIndex::Sound && (HasChanges(index) || writeTimeOf(names.index) != formerTime)) return;
  throw Failure(fmt::format("{}: the index can't be written; make room, then rebuild it with zp store recover", names.index));
}
