// CArchive: the persistent object format, a byte stream of little-endian numbers, counted texts and tagged objects, over a
// CFile. Numbers go straight into or out of the archive's buffer. Everything read is checked: no index, count, class or depth
// of a damaged archive reaches memory that it shouldn't.
#pragma once

#include <bit>
#include <cstring>
#include <memory>

#include "bytes.h"
#include "exceptions.h"
#include "file.h"
#include "runtime.h"
#include "string.h"
#include "types.h"

namespace zp {
class ArchiveParts;
}

class ZP_API CArchive {
 public:
  enum Mode { store = 0, load = 1 };
  static constexpr int maxDepth = 1000;  // objects inside objects; one more is badIndex, reading and writing

  // The file stays the caller's and must outlive the archive. The archive allocates its buffer unless one is given.
  CArchive(CFile * file, UINT mode, int bufferSize = 4096, void * buffer = nullptr);

  // Closes an archive that is still open, without raising; during the passage of an exception it aborts instead.
  ~CArchive();
  CArchive(CArchive const &) = delete;
  CArchive & operator=(CArchive const &) = delete;

  bool IsStoring() const { return m_bStoring; }
  bool IsLoading() const { return !m_bStoring; }
  CFile * GetFile() const { return m_pFile; }

  void Close();  // flushes and lets go of the file
  void Abort();  // lets go of the file without flushing
  void Flush();  // storing: everything is in the file; loading: the file stands behind what was read
  void FillBuffer(UINT needed);

  // Bytes read, fewer than count only at the end of the file; EnsureRead raises endOfFile instead.
  UINT Read(void * buffer, UINT count);
  void EnsureRead(void * buffer, UINT count);
  void Write(void const * buffer, UINT count);

  // Raises endOfFile unless count more bytes can be read.
  void RequireBytes(ULONGLONG count);

  // The next object, of the class requested or one derived from it, or any for null. A new object is the caller's; a
  // reference gives an object that this archive read before and that belongs to whoever got it then. Raises badIndex,
  // badClass, badSchema, endOfFile; then no half-read object is left.
  CObject * ReadObject(CRuntimeClass const * requested);

  // As ReadObject for an owner's slot: null or a new object, a reference is badIndex.
  CObject * ReadOwnedObject(CRuntimeClass const * requested);

  // As ReadOwnedObject for one of several slots: a reference comes back as what it refers to, of whatever class. The owner
  // raises badIndex unless it has read that object itself.
  CObject * ReadOwnedElement(CRuntimeClass const * requested, bool & isReference);

  // A tag and what is new of the object, which then stays where it is, alive, until the archive is closed: another one at its
  // address may be taken for it. An object whose writing raised isn't to be written to this archive again.
  void WriteObject(CObject const * object);

  DWORD ReadCount();
  void WriteCount(DWORD count);

  CArchive & operator<<(BYTE value) { return Put(value); }
  CArchive & operator<<(char value) { return Put(static_cast<BYTE>(value)); }
  CArchive & operator<<(WORD value) { return Put(value); }
  CArchive & operator<<(short value) { return Put(static_cast<WORD>(value)); }
  CArchive & operator<<(DWORD value) { return Put(value); }
  CArchive & operator<<(int value) { return Put(static_cast<DWORD>(value)); }
  CArchive & operator<<(long value) { return Put(static_cast<DWORD>(value)); }
  CArchive & operator<<(unsigned long value) { return Put(static_cast<DWORD>(value)); }
  CArchive & operator<<(float value) { return Put(std::bit_cast<DWORD>(value)); }
  CArchive & operator<<(double value) { return Put(std::bit_cast<uint64_t>(value)); }
  CArchive & operator<<(CObject const * object);
  CArchive & operator<<(CString const & text);

  CArchive & operator>>(BYTE & value) { return Get<BYTE>(value); }
  CArchive & operator>>(char & value) { return Get<BYTE>(value); }
  CArchive & operator>>(WORD & value) { return Get<WORD>(value); }
  CArchive & operator>>(short & value) { return Get<WORD>(value); }
  CArchive & operator>>(DWORD & value) { return Get<DWORD>(value); }
  CArchive & operator>>(int & value) { return Get<DWORD>(value); }
  CArchive & operator>>(long & value);
  CArchive & operator>>(unsigned long & value) { return Get<DWORD>(value); }
  CArchive & operator>>(float & value);
  CArchive & operator>>(double & value);
  CArchive & operator>>(CObject *& object);
  CArchive & operator>>(CString & text);

 private:
  friend class zp::ArchiveParts;
  struct Identities;

  template <class Unsigned>
  CArchive & Put(Unsigned value);
  template <class Unsigned, class Value>
  CArchive & Get(Value & value);

  void RequireMode(bool storing) const;
  [[noreturn]] void Fail(int cause) const;
  void MakeRoom(UINT needed);
  void CommitDirect();
  CObject * ReadNewObject(CRuntimeClass * record);
  CObject * ReadTagged(CRuntimeClass const * requested, bool & isReference);
  CRuntimeClass * ReadNewClass();
  CRuntimeClass * ReadTag(CRuntimeClass const * requested, DWORD & objectIndex);
  void WriteClass(CRuntimeClass const * record);

  BYTE * m_pCur = nullptr;  // next byte to read or write
  BYTE * m_pMax = nullptr;  // end of what can be read or written without refilling
  BYTE * m_pStart = nullptr;
  CFile * m_pFile;
  bool m_bStoring;
  bool m_bDirect;  // the buffer is the file's own memory
  int m_nDepth = 0;
  int m_nExceptions;
  UINT m_nBufferSize;
  std::unique_ptr<BYTE[]> m_Owned;
  std::unique_ptr<Identities> m_Identities;
};

// The length prefix of a text. Reading gives the count of characters, and 1 or 2 bytes a character.
ZP_API ULONGLONG AfxReadStringLength(CArchive & ar, int & charSize);
ZP_API void AfxWriteStringLength(CArchive & ar, ULONGLONG length);

template <class Unsigned>
CArchive & CArchive::Put(Unsigned value)
{
  if (!m_bStoring || static_cast<size_t>(m_pMax - m_pCur) < sizeof value) MakeRoom(sizeof value);
  value = zp::LittleEndian(value);
  std::memcpy(m_pCur, &value, sizeof value);
  m_pCur += sizeof value;
  return *this;
}

template <class Unsigned, class Value>
CArchive & CArchive::Get(Value & value)
{
  if (m_bStoring || static_cast<size_t>(m_pMax - m_pCur) < sizeof(Unsigned)) FillBuffer(sizeof(Unsigned));
  Unsigned bits;
  std::memcpy(&bits, m_pCur, sizeof bits);
  m_pCur += sizeof bits;
  value = static_cast<Value>(zp::LittleEndian(bits));
  return *this;
}

inline CArchive & CArchive::operator>>(long & value)
{
  int narrow;
  *this >> narrow;
  value = narrow;
  return *this;
}

inline CArchive & CArchive::operator>>(float & value)
{
  DWORD bits;
  Get<DWORD>(bits);
  value = std::bit_cast<float>(bits);
  return *this;
}

inline CArchive & CArchive::operator>>(double & value)
{
  uint64_t bits;
  Get<uint64_t>(bits);
  value = std::bit_cast<double>(bits);
  return *this;
}
