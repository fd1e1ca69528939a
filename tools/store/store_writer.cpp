// Writing records, and looking whether they arrived.

#include "tools/store/store_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/patience.h"
#include "tools/program.h"
#include "tools/store/store_check.h"

namespace {

size_t hashOf(std::span<BYTE const> bytes)
{
  return std::hash<std::string_view>()({reinterpret_cast<char const *>(bytes.data()), bytes.size()});
}

// What the store did without a word of its failure.
class Unwritten : public Failure {
 public:
  using Failure::Failure;
};

// What may be another program's work, and so isn't undone.
class Overtaken : public Failure {
 public:
  using Failure::Failure;
};

}  // namespace

StoreWriter::StoreWriter(StoreNames const & names, StoreAccess access)
    : m_Store(names, access), m_Backup(names, m_Store.TakeSurvey())
{
  if (!m_Store.GetEndedExchange().empty()) Tell(fmt::format("{}: {}", names.record, m_Store.GetEndedExchange()));
}

std::vector<int> StoreWriter::GetIDs()
{
  GPDataFile & tables = m_Store.GetTables();
  std::vector<int> ids;
  ids.reserve(static_cast<size_t>(tables.GetRecCount()));
  auto const end = static_cast<int>(tables.GetNextRecID());
  for (auto id = static_cast<int>(tables.GetFirstRecID()); id < end; ++id) {
    if (Has(id)) ids.push_back(id);
  }
  return ids;
}

std::vector<BYTE> StoreWriter::Load(int id)
{
  GPDataFile & tables = m_Store.GetTables();
  unsigned int const length = tables.GetRecLength(id);
  std::vector<BYTE> bytes(length);
  if (length == 0 || Apply([&] { return tables.LoadRec(bytes.data(), length, id) == length; })) return bytes;
  throw Failure(fmt::format("{}: record {} can't be read; look with zp store check", m_Store.GetNames().record, id));
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
    bool const isFree = CFile().Open(InsidePath(record), CFile::modeReadWrite | CFile::shareDenyWrite, &problem);
    if (isFree) m_bLocked = step();
    if (m_bLocked) return true;
    wasTried |= isFree;
    if (!patience.IsOver()) continue;
    if (!wasTried) FailOpening(record, "record file", problem);
    return false;
  }
  return step();
}

// Whatever stops a change, and whatever is found wanting behind it, takes all back. bytes is how many more the files were to
// take, so that what the system says to them is told as the reason; it is silent on writes that failed inside the store.
void StoreWriter::Try(size_t bytes, std::function<void()> const & step)
{
  std::string what;
  std::string reason;
  int error = EIO;
  try {
    return step();
  } catch (Overtaken const &) {
    m_bEnded = true;
    throw;
  } catch (Unwritten const & failure) {
    what = failure.what();
    reason = ": a write failed or didn't last";
  } catch (SystemFailure const & failure) {
    what = failure.what();
    error = failure.GetError();
  } catch (Failure const & failure) {
    what = failure.what();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    what = fmt::format("{}: {}", m_Store.GetNames().record, Describe(*caught));
  }
  std::string why;
  bool const isBack = TakeBack(bytes + zp::BlockHeader::byteCount, why);
  throw SystemFailure(fmt::format("{}{}; {}", what, why.empty() ? reason : ": " + why,
                                  isBack ? "the store is as it was" : "and it can't be undone: look with zp store check"),
                      error);
}

bool StoreWriter::TakeBack(size_t bytes, std::string & why)
{
  CloseStore();
  bool const isBack = m_Backup.Restore(bytes, why);
  m_bEnded = true;
  return isBack;
}

void StoreWriter::CloseStore()
{
  if (m_bClosed) return;
  m_bClosed = true;
  m_Store.GetTables().CutTail();
  m_Backup.NoteRecordFile();
  m_Store.Close();
  m_Backup.NoteIndexFile();
}

StoreWriter::~StoreWriter()
{
  if (m_bEnded || m_Changes.empty()) return;
  std::string why;
  try {
    if (TakeBack(0, why)) return;
  } catch (std::bad_alloc const &) {
    TellMemoryRanOut();
  }
  std::fputs("zp: what was begun can't be undone: look with zp store check\n", stderr);
}

// The store doesn't tell of every write that failed, so the record is read back.
bool StoreWriter::IsStored(int id, std::span<BYTE const> bytes)
{
  std::vector<BYTE> stored(bytes.size());
  auto const length = static_cast<unsigned int>(bytes.size());
  return m_Store.GetTables().LoadRec(stored.data(), length, id) == length &&
         std::equal(bytes.begin(), bytes.end(), stored.begin());
}

void StoreWriter::Store(int id, std::span<BYTE const> bytes)
{
  Try(bytes.size(), [&] {
    m_Backup.Keep(id);
    m_Changes[id] = {bytes.size(), hashOf(bytes)};
    auto const length = static_cast<unsigned int>(bytes.size());
    if (Apply([&] { return m_Store.GetTables().StoreRec(bytes.data(), length, id) != 0; }) && IsStored(id, bytes)) return;
    throw Unwritten(
        fmt::format("{}: record {} of {} can't be stored", m_Store.GetNames().record, id, Counted(bytes.size(), "byte")));
  });
}

void StoreWriter::Delete(int id)
{
  Try(0, [&] {
    m_Backup.Keep(id);
    m_Changes[id] = {0, 0};
    if (Apply([&] { return m_Store.GetTables().DeleteRec(id) != 0; })) return;
    throw Unwritten(fmt::format("{}: record {} can't be deleted", m_Store.GetNames().record, id));
  });
}

// Whether the index has what was changed here, and the blocks hold it, which are read in the order of the file.
bool StoreWriter::IsChanged(OpenStore & store) const
{
  std::vector<LiveEntry> entries;
  for (LiveEntry const & entry : store.GetIndex().live) {
    if (m_Changes.contains(entry.id)) entries.push_back(entry);
  }
  auto const isStored = [](auto const & each) { return each.second.length > 0; };
  if (static_cast<ptrdiff_t>(entries.size()) != std::count_if(m_Changes.begin(), m_Changes.end(), isStored)) return false;
  std::sort(entries.begin(), entries.end(), [](LiveEntry const & a, LiveEntry const & b) { return a.position < b.position; });
  RecordWindow window(store.GetRecordFile());
  return std::all_of(entries.begin(), entries.end(), [&](LiveEntry const & entry) {
    Change const & change = m_Changes.at(entry.id);
    if (change.length == 0 || entry.length != change.length) return false;
    return hashOf(window.Fetch(entry.position + zp::BlockHeader::byteCount, change.length)) == change.hash;
  });
}

// The next program may have been let in meanwhile: it has looked at the store itself, and may have changed the same records. That
// shows in the record file's state, but not if it came within one step of the system's clock. What was stored had been read back
// under the lock, so where the store is sound nothing is taken back.
void StoreWriter::LookAtDisk()
{
  StoreNames const & names = m_Store.GetNames();
  std::string why;
  CloseStore();
  for (Patience patience; !patience.IsOver(); Patience::Pause()) {
    std::string fault;
    try {
      OpenStore store(names, StoreAccess::Look);
      CheckReport const report = CheckStore(store, CheckDepth::Blocks);
      if (!report.faults.empty())
        fault = report.faults.front().text;
      else if (IsChanged(store) || !m_Backup.IsRecordFileOurs())
        return;
    } catch (Failure const & failure) {
      why = failure.what();
      continue;
    }
    if (!fault.empty()) throw Unwritten(fmt::format("{}: {}", names.record, fault));
    throw Overtaken(
        fmt::format("{}: what was stored isn't there, but another program may have changed the store, which is left as it is; "
                    "look at the record, and store it again",
                    names.record));
  }
  throw Failure(fmt::format("{}: what was stored can't be looked at: {}", names.record, why));
}

void StoreWriter::Close()
{
  constexpr size_t entryBytes = GPActiveRec::streamBytes + 2;  // with its tag
  size_t most = m_Changes.size() * entryBytes;
  for (auto const & [id, change] : m_Changes) most = std::max(most, change.length);
  if (m_Changes.empty())
    m_Store.Close();
  else
    Try(most, [&] { LookAtDisk(); });
  m_bEnded = true;
}
