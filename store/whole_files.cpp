// GPFile's utilities on whole files: copy, rename, delete, compare, status.

#include <zpbase/store.h>

#include <new>
#include <vector>

#include <zpbase/messages.h>

int GPFile::CopyFile(CString const & dest, CString const & src, int append)
{
  GPFile source(src);
  return CopyFile(dest, source, append);
}

int GPFile::CopyFile(CString const & dest, GPFile & src, int append)
{
  if (!zp::AreDistinctFiles(dest, src.m_strPath)) return 0;
  int done = GPFile(dest).CopyFile(src, append);
  try {
    if (done && !append) done = CopyStatus(dest, src);
  } catch (std::bad_alloc const &) {
    DeleteFile(dest);
    throw;
  }
  if (!done) DeleteFile(dest);
  return done;
}

// The times of src, and a file that can be written.
int GPFile::CopyStatus(CString const & dest, GPFile & src)
{
  CFileStatus status;
  if (!src.CFile::GetStatus(status)) return 0;
  status.m_attribute &= static_cast<BYTE>(~CFileStatus::readOnly);
  return SetStatus(dest, status);
}

int GPFile::CopyFile(CString const & src, int append)
{
  GPFile source(src);
  return CopyFile(source, append);
}

int GPFile::CopyFile(GPFile & src, int append)
{
  if (!src.m_bExists || !zp::AreDistinctFiles(m_strPath, src.m_strPath)) return 0;
  bool const isNew = !m_bExists;
  if (!m_bIsOpen && !Open(isNew ? modeCreate | modeWrite : modeWrite)) return 0;
  try {
    return src.m_bIsOpen || src.Open(modeRead) ? CopyBytes(src, append) : 0;
  } catch (std::bad_alloc const &) {
    if (isNew) {
      Abort();
      DeleteFile(m_strPath);
    }
    throw;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    PutWarning("Copy file %s -> %s problem %d", src.m_strPath.GetString(), m_strPath.GetString(), problem->m_cause);
    return 0;
  }
}

// The whole source is read before the destination changes.
int GPFile::CopyBytes(GPFile & src, int append)
{
  ULONGLONG const length = src.GetLength();
  if (length == 0) return 1;
  if (length > INT32_MAX) return 0;
  std::vector<BYTE> bytes(static_cast<size_t>(length));
  auto const count = static_cast<UINT>(length);
  src.SeekToBegin();
  if (src.Read(bytes.data(), count) != count) return 0;
  if (append) return WriteBehindEnd(bytes.data(), count);
  Empty();
  Write(bytes.data(), count);
  return m_bWriteOK;
}

int GPFile::WriteBehindEnd(void const * bytes, UINT count)
{
  ULONGLONG const formerEnd = SeekToEnd();
  Write(bytes, count);
  if (!m_bWriteOK) SetLength(formerEnd);
  return m_bWriteOK;
}

int GPFile::DeleteFile(CString const & name)
{
  if (!Exists(name)) return 0;
  try {
    CFile::Remove(name);
    return 1;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    return 0;
  }
}

int GPFile::RenameFile(CString const & newName, CString const & oldName)
{
  if (!Exists(oldName)) return 0;
  try {
    CFile::Rename(oldName, newName);
    return 1;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    PutWarning("Rename file %s to %s -> problem %d", oldName.GetString(), newName.GetString(), problem->m_cause);
    return 0;
  }
}

int GPFile::CompareFiles(CString const & first, CString const & second)
{
  CFileStatus a;
  CFileStatus b;
  return CFile::GetStatus(first, a) && CFile::GetStatus(second, b) && a.m_size == b.m_size && a.m_mtime == b.m_mtime;
}

int GPFile::SetStatus(CString const & name, CFileStatus const & status)
{
  CFileStatus marked = status;
  marked.m_attribute |= CFileStatus::archive;
  marked.m_szFullName.Empty();
  try {
    CFile::SetStatus(name, marked);
    return 1;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    PutWarning("File %s SetStatus -> problem %d", name.GetString(), problem->m_cause);
    return 0;
  }
}
