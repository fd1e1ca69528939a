// GPFile: life, state and bytes of the file wrapper. Its text layer is in text_lines.cpp, its utilities in whole_files.cpp.

#include <zpbase/store.h>

#include <new>

#include <zpbase/messages.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/resources.h>

namespace {

constexpr unsigned int writingModes = CFile::modeWrite | CFile::modeReadWrite;
constexpr LONGLONG unknownSize = -1;
constexpr int openPause = 50;  // milliseconds
constexpr int openPauses = 40;

// The string resource for an open problem; each takes the path and the cause.
unsigned int openProblemID(int cause)
{
  switch (cause) {
    case CFileException::fileNotFound:
      return 43500;
    case CFileException::badPath:
      return 43501;
    case CFileException::tooManyOpenFiles:
      return 43502;
    case CFileException::accessDenied:
      return 43503;
    case CFileException::sharingViolation:
      return 43504;
    default:
      return 43505;
  }
}

}  // namespace

GPFile::GPFile(CString const & name) : m_strPath(name)
{
  SetFilePath(name);
  if (!name.IsEmpty()) LookAgain();
}

void GPFile::LookAgain()
{
  zp::Presence const presence = zp::GetPresence(m_strPath, m_Status);
  m_bExists = presence != zp::Presence::Missing;
  if (presence == zp::Presence::Unknown) m_Status.m_size = unknownSize;
}

int GPFile::Open(unsigned int flags)
{
  if (!m_bExists && (flags & modeCreate) == 0) return 0;
  return TryOpen(flags) || TellOpenProblem();
}

int GPFile::OpenWhenFree(unsigned int flags)
{
  if (!m_bExists && (flags & modeCreate) == 0) return 0;
  for (int i = 0; i < openPauses; ++i) {
    if (TryOpen(flags)) return 1;
    if (m_nOpenProblem != CFileException::sharingViolation) return TellOpenProblem();
    zp::GetHostCalls().Pause(openPause);
  }
  return TryOpen(flags) || TellOpenProblem();
}

// Writers keep others from writing. The cause of an open that fails stays known until the next one that does.
int GPFile::TryOpen(unsigned int flags)
{
  if ((flags & modeCreate) != 0 && (flags & writingModes) == 0) flags |= modeReadWrite;
  if ((flags & writingModes) != 0) flags |= shareDenyWrite;

  CFileException problem;
  m_bIsOpen = CFile::Open(m_strPath, flags, &problem);
  m_nChunkSize = 0;
  if (!m_bIsOpen) {
    m_nOpenProblem = problem.m_cause;
    return 0;
  }
  m_bExists = 1;
  m_nOpenFlags = flags;
  return 1;
}

// Always 0, what the open gives.
int GPFile::TellOpenProblem()
{
  CString text;
  GetOpenProblem(text);
  PutWarning("%s", text.GetString());
  ForgetHandle();
  return 0;
}

// A refused open leaves no handle behind that a later close could take for ours.
void GPFile::ForgetHandle()
{
  if (m_hFile == hFileNull) return;
  PutWarning("Restoring file %s handle to NULL", m_strPath.GetString());
  m_hFile = hFileNull;
}

int GPFile::GetOpenProblem(CString & text)
{
  if (m_nOpenProblem == 0) return 0;
  text = zp::FormatResource(openProblemID(m_nOpenProblem), {m_strPath.GetString(), m_nOpenProblem});
  return 1;
}

void GPFile::RaiseOpenProblem() const
{
  int const cause = m_nOpenProblem != 0 ? m_nOpenProblem : int{CFileException::fileNotFound};
  AfxThrowFileException(cause, -1, m_strPath);
}

void GPFile::Close()
{
  struct Afterwards {
    GPFile & file;
    ~Afterwards() { file.NoteClosed(); }
  } const afterwards{*this};
  CFile::Close();
}

void GPFile::Abort()
{
  CFile::Abort();
  NoteClosed();
}

// Where memory doesn't suffice for a look, the file counts as one that can't be looked at.
void GPFile::NoteClosed()
{
  m_nChunkSize = 0;
  m_bIsOpen = 0;
  try {
    LookAgain();
  } catch (std::bad_alloc const &) {
    m_bExists = 1;
    m_Status.m_size = unknownSize;
  }
}

int GPFile::IsEmpty() const
{
  return !m_bExists || m_Status.m_size == 0;
}

void GPFile::Empty()
{
  SetLength(0);
}

UINT GPFile::Read(void * buffer, UINT count)
{
  return CFile::Read(buffer, count);
}

long GPFile::Seek(long offset, unsigned int from)
{
  return static_cast<int>(CFile::Seek(LONGLONG{static_cast<int>(offset)}, from));
}

// A file that isn't open has no position; the write below tells so.
void GPFile::Write(void const * buffer, UINT count)
{
  ULONGLONG const position = m_hFile != hFileNull ? GetPosition() : 0;
  if (WriteRecord(position, buffer, count)) CFile::Seek(LONGLONG{count}, current);
}

int GPFile::WriteRecord(ULONGLONG position, void const * buffer, UINT count)
{
  m_bWriteOK = 1;
  try {
    WriteAt(position, buffer, count);
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    m_bWriteOK = 0;
    PutWarning("Write file %s -> problem %d writing %u bytes", m_strPath.GetString(), problem->m_cause, count);
  }
  return m_bWriteOK;
}

int GPFile::Exists(CString const & name)
{
  return GPFile(name).Exists();
}

int GPFile::IsEmpty(CString const & name)
{
  return GPFile(name).IsEmpty();
}
