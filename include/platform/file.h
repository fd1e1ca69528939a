// The platform's byte files: CFile on the host's files, unbuffered and under an advisory lock, and CMemFile in memory.
// A CFile keeps its own position, so a seek costs no system call; every name is in the inside form (see paths.h).
#pragma once

#include <memory>

#include "exceptions.h"
#include "runtime.h"
#include "string.h"
#include "types.h"

class CAtlTransactionManager;

// What the system says of a file. Times are whole seconds since 1970-01-01 UTC.
struct CFileStatus {
  enum Attribute { readOnly = 0x01, directory = 0x10, archive = 0x20 };

  LONGLONG m_ctime = 0;
  LONGLONG m_mtime = 0;
  LONGLONG m_atime = 0;
  LONGLONG m_size = 0;  // bytes
  BYTE m_attribute = 0;
  CString m_szFullName;
};

class ZP_API CFile : public CObject {
  DECLARE_DYNAMIC(CFile)
 public:
  enum OpenFlags {
    modeRead = 0,
    modeWrite = 1,
    modeReadWrite = 2,
    shareExclusive = 0x10,
    shareDenyWrite = 0x20,
    shareDenyNone = 0x40,
    modeCreate = 0x1000,
    modeNoTruncate = 0x2000
  };
  enum SeekPosition { begin, current, end };
  enum BufferCommand { bufferRead, bufferWrite, bufferCommit, bufferCheck };
  static constexpr int bufferDirect = 1;
  static constexpr int hFileNull = -1;

  CFile() = default;
  CFile(CFile const &) = delete;
  CFile & operator=(CFile const &) = delete;
  ~CFile() override;

  virtual ULONGLONG GetPosition() const;
  virtual CString GetFileName() const;   // the name's last part
  virtual CString GetFileTitle() const;  // the last part without its extension
  virtual CString GetFilePath() const;
  virtual void SetFilePath(char const * name);

  // 0 on failure, with the cause in problem when one is given. A refused open truncates nothing: the lock is taken first.
  // There are no transactions here: the first form fails with genericException.
  virtual BOOL Open(char const * name, UINT flags, CAtlTransactionManager * manager, CFileException * problem = nullptr);
  virtual BOOL Open(char const * name, UINT flags, CFileException * problem = nullptr);

  // A second file object on the same open file, with the same lock and its own position. The caller owns it.
  virtual CFile * Duplicate() const;

  // The new position. A place before the file's begin raises badSeek; one behind its end is legal.
  virtual ULONGLONG Seek(LONGLONG offset, UINT from);
  virtual void SetLength(ULONGLONG length);
  virtual ULONGLONG GetLength() const;

  // Bytes read, fewer than count only at the end of the file.
  virtual UINT Read(void * buffer, UINT count);
  virtual void Write(void const * buffer, UINT count);

  // The advisory locks here cover whole files, from Open to Close: both raise lockViolation.
  virtual void LockRange(ULONGLONG position, ULONGLONG count);
  virtual void UnlockRange(ULONGLONG position, ULONGLONG count);

  virtual void Abort();  // closes without raising
  virtual void Flush();
  virtual void Close();

  // Direct access to a file's memory, for archives; 0 where there is none.
  virtual UINT GetBufferPtr(UINT command, UINT count = 0, void ** start = nullptr, void ** max = nullptr);

  ULONGLONG SeekToEnd() { return Seek(0, end); }
  void SeekToBegin() { Seek(0, begin); }

  // As Read and Write, at a place of their own: one system call, the position stays as it is.
  UINT ReadAt(ULONGLONG position, void * buffer, UINT count) const;
  void WriteAt(ULONGLONG position, void const * buffer, UINT count);

  // True while the file is open under the lock that its share flags asked for, so that no program that takes locks writes to it.
  // False under shareDenyNone, on a file system that has no locks, and for what is no regular file.
  bool IsLocked() const { return m_bLocked && m_hFile != hFileNull; }

  BOOL GetStatus(CFileStatus & status) const;
  static BOOL GetStatus(char const * name, CFileStatus & status);

  // Sets the times that aren't 0 and the read-only bit. This and the next two raise CFileException.
  static void SetStatus(char const * name, CFileStatus const & status);
  static void Rename(char const * oldName, char const * newName);  // fails on a new name that exists
  static void Remove(char const * name);

  int m_hFile = hFileNull;

 protected:
  CString m_strFileName;

  // For a class that keeps bytes it has read: how often this object changed the file, and whether another object can since the
  // last open.
  unsigned int m_nChanges = 0;
  mutable bool m_bDuplicated = false;

 private:
  [[noreturn]] void Fail(int error) const;
  void RequireOpen() const;

  ULONGLONG m_nPosition = 0;
  bool m_bLocked = false;
};

// A file in memory. Built with a growth step it owns its block, which grows in such steps and at least to twice its size;
// attached to a caller's buffer with growth 0 it reads and overwrites those bytes and raises diskFull behind them.
class ZP_API CMemFile : public CFile {
  DECLARE_DYNAMIC(CMemFile)
 public:
  explicit CMemFile(UINT growBytes = 1024) : m_nGrowBytes(growBytes) {}
  CMemFile(BYTE * buffer, UINT size, UINT growBytes = 0);

  ULONGLONG GetPosition() const override;
  CFile * Duplicate() const override;  // fails with genericException
  ULONGLONG Seek(LONGLONG offset, UINT from) override;
  void SetLength(ULONGLONG length) override;
  ULONGLONG GetLength() const override;
  UINT Read(void * buffer, UINT count) override;
  void Write(void const * buffer, UINT count) override;
  void Abort() override;
  void Flush() override;
  void Close() override;
  UINT GetBufferPtr(UINT command, UINT count = 0, void ** start = nullptr, void ** max = nullptr) override;

 protected:
  BYTE * m_lpBuffer = nullptr;  // the block; belongs to the file unless it was attached
  size_t m_nFileSize = 0;

 private:
  void Reserve(size_t size);
  void ClearGap();

  struct FreeBlock {
    void operator()(BYTE * block) const;
  };

  std::unique_ptr<BYTE, FreeBlock> m_Owned;
  size_t m_nBufferSize = 0;
  size_t m_nPosition = 0;
  UINT m_nGrowBytes;
};

namespace zp {

// What a look at a name has told. What the system can't say, for want of a right or with a device that fails, is Unknown.
enum class Presence { There, Missing, Unknown };

// Whether name leads to a file, and its status if it does.
ZP_API Presence GetPresence(char const * name, CFileStatus & status);

// True when both names lead to one file that exists; false also where that can't be told.
ZP_API bool IsSameFile(char const * first, char const * second);

// True when it is known that the names don't lead to one file.
ZP_API bool AreDistinctFiles(char const * first, char const * second);

}  // namespace zp
