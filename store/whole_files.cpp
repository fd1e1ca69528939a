// GPFile's utilities on whole files: copy, rename, delete, compare, status.

#include <zpbase/store.h>

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
  if (done && !append) done = CopyStatus(dest, src);
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

// The source is read whole, and all memory asked for, before the destination is opened.
int GPFile::CopyFile(GPFile & src, int append)
{
  if (!src.m_bExists || !zp::AreDistinctFiles(m_strPath, src.m_strPath)) return 0;
  bool const wasOpen = src.m_bIsOpen;
  if (!wasOpen && !src.Open(modeRead)) return 0;
  int done = 0;
  bool isOpen = false;
  try {
    std::vector<BYTE> bytes;
    bool const isRead = src.ReadWhole(bytes);
    isOpen = m_bIsOpen || Open(m_bExists ? modeWrite : modeCreate | modeWrite);
    if (isRead && isOpen) done = bytes.empty() || TakeBytes(bytes, append);
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    PutWarning("Copy file %s -> %s problem %d", src.m_strPath.GetString(), m_strPath.GetString(), problem->m_cause);
  }
  if (!isOpen && !wasOpen) src.Abort();
  return done;
}

bool GPFile::ReadWhole(std::vector<BYTE> & bytes)
{
  ULONGLONG const length = GetLength();
  if (length > INT32_MAX) return false;
  bytes.resize(static_cast<size_t>(length));
  SeekToBegin();
  return Read(bytes.data(), static_cast<UINT>(length)) == length;
}

int GPFile::TakeBytes(std::vector<BYTE> const & bytes, int append)
{
  if (append) return WriteBehindEnd(bytes.data(), static_cast<UINT>(bytes.size()));
  Empty();
  Write(bytes.data(), static_cast<UINT>(bytes.size()));
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
