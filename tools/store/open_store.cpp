// Opening the two files of a store.

#include "tools/store/open_store.h"

#include <cerrno>
#include <cstdio>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/store/file_exchange.h"
#include "tools/store/store_check.h"

namespace {

constexpr unsigned int sharedMode = CFile::modeRead | CFile::shareDenyWrite;
constexpr unsigned int ownMode = CFile::modeReadWrite | CFile::shareDenyWrite;
constexpr unsigned int creating = CFile::modeCreate | CFile::modeNoTruncate;

bool lockForRemoval(CFile & file, std::string const & name)
{
  CFileException problem;
  if (!FileExists(name) || file.Open(InsidePath(name), ownMode, &problem)) return true;
  bool const isUsed = problem.m_cause == CFileException::sharingViolation || problem.m_cause == CFileException::lockViolation;
  if (!isUsed) FailOpening(name, nullptr, problem);
  return false;
}

}  // namespace

// Another program may have begun to use the files since they were let go: only under both locks is empty the last word.
OpenStore::NewFiles::~NewFiles()
{
  if (!m_bWatched) return;
  try {
    CFile record;
    CFile index;
    if (!lockForRemoval(record, m_Names.record) || !lockForRemoval(index, m_Names.index)) return;
    if (SizeOf(m_Names.record) > 0 || SizeOf(m_Names.index) > 0) return;
    DropFile(m_Names.index);
    DropFile(m_Names.record);
  } catch (Failure const & failure) {
    Tell(fmt::format("{}; an empty store may be left behind: remove {} and {}", failure.what(), m_Names.index, m_Names.record));
  } catch (std::bad_alloc const &) {
    std::fputs("zp: memory ran out; an empty store may be left behind\n", stderr);
  }
}

OpenStore::OpenStore(StoreNames const & names, StoreAccess access) : m_Names(names), m_Access(access), m_NewFiles(m_Names)
{
  RequirePlainFiles();
  LockRecordFile();
  if (IsExchangeMarked(m_Names)) EndExchange();
  switch (m_Access) {
    case StoreAccess::Look:
      break;
    case StoreAccess::Replace:
      LockIndexFile();
      if (m_strEnded.empty()) m_strEnded = TidyExchange(m_Names);
      break;
    default:
      ReadTables();
  }
}

// A pipe would be waited for, a device never ends.
void OpenStore::RequirePlainFiles() const
{
  for (std::string const & file : {m_Names.record, m_Names.index}) {
    auto const status = StatusOf(file);
    if (!status || status->kind == zp::HostStatus::File) continue;
    throw Failure(fmt::format("{}: is no file but a folder, a pipe or a device; a store has two files", file));
  }
}

// What was changed before a failure is in the record file, so the index tells it too.
OpenStore::~OpenStore()
{
  Close();
}

void OpenStore::Close()
{
  m_IndexFile.Abort();
  m_pTables.reset();
}

// False for a file that isn't there.
bool OpenStore::OpenRecordFile(unsigned int furtherMode)
{
  CFileException problem;
  unsigned int const mode = (m_Access == StoreAccess::Look ? sharedMode : ownMode) | furtherMode;
  if (m_RecordFile.Open(InsidePath(m_Names.record), mode, &problem)) return true;
  if (problem.m_cause == CFileException::fileNotFound) return false;
  bool const isNowhere = m_Access == StoreAccess::Create && problem.m_cause == CFileException::badPath;
  if (isNowhere || (furtherMode & CFile::modeCreate) != 0) FailCreating(m_Names.record, "record file", problem);
  FailOpening(m_Names.record, "record file", problem);
}

// During an exchange the record file may be on its way from one name to the other: then its mark stands. If that is gone, the
// file is back.
void OpenStore::LockRecordFile()
{
  if (OpenRecordFile() || IsExchangeMarked(m_Names) || OpenRecordFile()) return;
  if (FileExists(m_Names.index)) {
    throw SystemFailure(fmt::format("{}: there is no such record file beside {}; bring it back or move the index file away",
                                    m_Names.record, m_Names.index),
                        ENOENT);
  }
  CFileException const missing(CFileException::fileNotFound);
  if (m_Access != StoreAccess::Create) FailOpening(m_Names.record, "record file", missing);
  m_NewFiles.Watch();
  if (!OpenRecordFile(creating)) FailOpening(m_Names.record, "record file", missing);
}

// The index is going to be written or replaced: a refusal must come before anything is changed.
void OpenStore::LockIndexFile()
{
  unsigned int const mode = m_bNew ? ownMode | creating : CFile::modeReadWrite | CFile::shareExclusive;
  CFileException problem;
  if (m_IndexFile.Open(InsidePath(m_Names.index), mode, &problem)) return;
  if (m_Access == StoreAccess::Replace && problem.m_cause == CFileException::fileNotFound) return;
  if (m_bNew) FailCreating(m_Names.index, "index file", problem);
  FailOpening(m_Names.index, "index file", problem);
}

// The files that stand under their names afterwards are others.
void OpenStore::EndExchange()
{
  if (m_Access != StoreAccess::Look) {
    m_strEnded = TidyExchange(m_Names);
    m_RecordFile.Abort();
    LockRecordFile();
    if (!IsExchangeMarked(m_Names)) return;
  }
  throw Failure(fmt::format(
      "{}: the exchange of this store's files is under way or was interrupted; finish it with zp store compact", m_Names.record));
}

void OpenStore::RequireIndexFile() const
{
  if (FileExists(m_Names.index)) return;
  throw SystemFailure(fmt::format("{}: there is no such index file beside {}; make a new one with zp store recover",
                                  m_Names.index, m_Names.record),
                      ENOENT);
}

void OpenStore::FailEmptyIndex() const
{
  throw Failure(fmt::format("{}: the index file is empty, but {} isn't; make a new one with zp store recover", m_Names.index,
                            m_Names.record));
}

void OpenStore::RequireUsableIndex()
{
  RequireIndexFile();
  StoreIndex const & index = GetIndex();
  if (index.state == StoreIndex::Missing) FailEmptyIndex();
  if (index.state == StoreIndex::Sound) return;
  throw Failure(fmt::format("{}: {}; the records can still be listed (zp store list) and saved (zp store recover)", m_Names.index,
                            index.problem));
}

// The store reads the index file under a lock of its own, so ours is only tried before, and taken again behind it; as long as
// the record file is held nobody else can have it in between. An index file that was cut to nothing would forget the blocks of
// its record file.
void OpenStore::ReadTables()
{
  bool const isBlank = SizeOf(m_Names.record) == 0;
  bool const hasIndex = SizeOf(m_Names.index) > 0;
  m_bNew = m_Access == StoreAccess::Create && isBlank && !hasIndex;
  if (!m_bNew) RequireIndexFile();
  if (!isBlank && !hasIndex) FailEmptyIndex();
  if (isBlank && !m_bNew && !GetIndex().live.empty()) {
    throw Failure(fmt::format("{}: the record file is empty, but {} names records in it; bring the record file back",
                              m_Names.record, m_Names.index));
  }
  LockIndexFile();
  m_IndexFile.Close();
  try {
    m_pTables = std::make_unique<GPDataFile>(InsidePath(m_Names.index), InsidePath(m_Names.record), ownMode, nullptr);
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    RequireUsableIndex();
    throw Failure(
        fmt::format("{}: the index file can't be read: {}; look with zp store check", m_Names.index, Describe(*caught)));
  }
  LockIndexFile();
  if (!m_bNew) {
    CheckReport report = CheckStore(*this, CheckDepth::Blocks);
    RequireSound(report);
    m_Survey = std::move(report.survey);
  }
  m_RecordFile.Close();
}

StoreIndex & OpenStore::GetIndex()
{
  if (!m_Index) m_Index = ReadIndex(m_Names.index);
  return *m_Index;
}
