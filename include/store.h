// The one way to a file on disk, and the store of numbered records in an index file and a record file.
//
// A GPFile answers questions instead of raising: open and write problems end in warnings and flags; read and seek problems
// raise the platform's file exception. Operations give non-zero on success and 0 on failure unless said otherwise. Where memory
// runs out they raise std::bad_alloc, and what they work on is as it was unless said otherwise. A name is missing only where the
// system says that nothing is there: a file that it can't look at counts as one that exists and isn't empty, so that nothing
// takes its place; the next open tells what is wrong.
#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "foundation.h"
#include "platform/file.h"
#include "platform/format.h"
#include "platform/host_calls.h"

class ZP_API GPFile : public CFile {
 public:
  explicit GPFile(CString const & name);  // takes the status; opens nothing
  ~GPFile() override = default;           // closes, without a look or a word

  using CFile::Open;
  using CFile::Seek;

  // Adds modeReadWrite to a bare modeCreate and shareDenyWrite to a mode that writes. 0 without a word for a file that wasn't
  // there at construction, unless modeCreate is given; 0 with a warning for one that the system refuses.
  int Open(unsigned int flags);

  // As Open, but waits up to two seconds for a file that another open holds before it warns and gives 0.
  int OpenWhenFree(unsigned int flags);

  // A close that fails, or raises for want of memory, has closed the file all the same.
  void Close() override;
  void Abort() override;

  // The problem of the last open that failed: 1 and the sentence for the user, or 0 and text untouched if there was none.
  int GetOpenProblem(CString & text);

  // Raises that problem; an open that failed without a word is fileNotFound.
  [[noreturn]] void RaiseOpenProblem() const;

  void LookAgain();                         // takes the status of a closed file anew
  int Exists() const { return m_bExists; }  // as known since construction, the last open, close or look
  int IsOpen() const { return m_bIsOpen; }
  int IsWriteOK() const { return m_bWriteOK; }  // the last write; 1 before the first one
  int IsEmpty() const;                          // by the length at construction or the last close
  void Empty();                                 // cuts the open file to length 0

  UINT Read(void * buffer, UINT count) override;
  void Write(void const * buffer, UINT count) override;  // a failure gives a warning and clears IsWriteOK
  virtual long Seek(long offset, unsigned int from);     // the low 32 bits of the new position
  long Seek(int offset, unsigned int from) { return Seek(static_cast<long>(offset), from); }

  // Bytes at a place of their own, with the failures of Write.
  int WriteRecord(ULONGLONG position, void const * buffer, UINT count);

  // Text writes give IsWriteOK. An id names a string resource; one without a text shows as its number. Line ends are CR LF; a
  // line end is skipped if its text failed.
  int Write(CString const & text);
  int Write(char const * text) { return Write(CString(text)); }
  int Write(unsigned int id);
  int Write(int id) { return Write(static_cast<unsigned int>(id)); }
  int Write(char) = delete;  // would read as a string id
  int Writef(char const * format, ...) __attribute__((format(printf, 2, 3)));
  int WritefLine(char const * format, ...) __attribute__((format(printf, 2, 3)));
  int WritefLine(unsigned int id, ...);
  int WritefLine(unsigned int id, std::initializer_list<zp::FormatArg> args);
  template <class... Args>
  requires zp::FormatArgs<Args...>
  int WritefLine(unsigned int id, Args const &... args) { return WritefLine(id, {zp::FormatArg(args)...}); }
  int WriteLine(CString const & text);
  int WriteLine(char const * text) { return WriteLine(CString(text)); }
  int WriteLine(unsigned int id);
  int WriteLine(int id) { return WriteLine(static_cast<unsigned int>(id)); }
  int WriteLine();
  int WriteFormFeed();
  int WriteEndOfFile();

  // The next line without its end: its length, or -1 and an empty line at the end of the file. CR and NUL end a line, LF and 0x1A
  // are dropped wherever they stand, and a line comes in pieces of 2000 characters.
  int ReadLine(CString & line);

  // Lines of the file from its begin, or -1 if it doesn't exist. An open file is closed and opened again at its place, which it
  // finds after a problem too; one that was removed meanwhile, or for which memory doesn't suffice, stays closed. One that can't
  // be opened raises as its read does.
  int GetLineCount();

  // Puts the lines of ReadLine in place of what the array holds, tabs expanded to columns of 8: the number of entries, or -1 if
  // the file doesn't exist. A form feed at the begin of a line becomes an entry "\x01" in front of the rest, which is left out if
  // it is empty. Closed and opened as above; one that can't be opened raises, and the array is as it was.
  int InitStringArray(CStringArray * lines);

  // Shows the file in a report document, see BrowseFile. Closed and opened as above.
  int Browse();

  // Copies src into this file, behind its end with append, else in its place; an empty source changes nothing. Both stay open.
  // Bytes behind the end that came short are cut back; a copy in place that fails has lost what was there.
  int CopyFile(GPFile & src, int append);
  int CopyFile(CString const & src, int append);

  // Copy by names; without append the copy takes the source's times and is writable. A copy that fails is removed, also with
  // append, and with it what dest held; one onto itself, or where it can't be told whether it is, is refused. Where memory runs
  // out behind the copying, the times are missing.
  static int CopyFile(CString const & dest, CString const & src, int append);
  static int CopyFile(CString const & dest, GPFile & src, int append);

  static int Exists(CString const & name);
  static int IsEmpty(CString const & name);  // missing or of length 0
  static int DeleteFile(CString const & name);
  static int RenameFile(CString const & newName, CString const & oldName);
  static int CompareFiles(CString const & first, CString const & second);  // 1: equal sizes and modification times
  static int SetStatus(CString const & name, CFileStatus const & status);

 protected:
  // Notes the place of an open file and closes it for a scan. The destructor opens it again with the flags it had, less the one
  // that would truncate it, and goes back to that place, however the scan ends; a file that wasn't open is left closed.
  class ScanGuard {
   public:
    explicit ScanGuard(GPFile & file);
    ~ScanGuard();
    ScanGuard(ScanGuard const &) = delete;
    ScanGuard & operator=(ScanGuard const &) = delete;

   private:
    GPFile & m_File;
    int m_bWasOpen;
    unsigned int m_nFlags;
    ULONGLONG m_nPosition = 0;
  };

 private:
  int TryOpen(unsigned int flags);
  int TellOpenProblem();
  int WriteArgPtr(char const * format, va_list args);
  static int CopyStatus(CString const & dest, GPFile & src);
  bool ReadWhole(std::vector<BYTE> & bytes);
  int TakeBytes(std::vector<BYTE> const & bytes, int append);
  int WriteBehindEnd(void const * bytes, UINT count);
  void ForgetHandle();
  void NoteClosed();
  std::string_view FetchChunk(ULONGLONG position);

  CString m_strPath;
  int m_bExists = 0;
  unsigned int m_nOpenFlags = 0;
  int m_bIsOpen = 0;
  int m_nOpenProblem = 0;
  CFileStatus m_Status;
  int m_bWriteOK = 1;

  // What ReadLine has fetched ahead: bytes from m_nChunkStart on, as they were when m_nChanges was m_nChunkChanges.
  std::string m_Chunk;
  size_t m_nChunkSize = 0;  // of the bytes in use
  ULONGLONG m_nChunkStart = 0;
  unsigned int m_nChunkChanges = 0;
};

// Index entry of one live record.
class ZP_API GPActiveRec : public GPObject {
  DECLARE_SERIAL(GPActiveRec)
 public:
  // Where the fields stand in its stream, little-endian.
  static constexpr size_t positionOffset = 0;  // DWORD
  static constexpr size_t idOffset = 4;        // WORD
  static constexpr size_t lengthOffset = 6;    // WORD
  static constexpr size_t streamBytes = 8;

  GPActiveRec() = default;
  void Serialize(CArchive & ar) override;
  int Compare(GPObject const * other) const override;  // difference of the ids

  DWORD m_nFilePos = 0;  // offset of the block's header in the record file
  int m_nRecID = 0;
  DWORD m_nRecLen = 0;  // bytes
};

// Index entry of one free block.
class ZP_API GPEmptyRec : public GPObject {
  DECLARE_SERIAL(GPEmptyRec)
 public:
  static constexpr size_t positionOffset = 0;  // DWORD
  static constexpr size_t capacityOffset = 4;  // WORD
  static constexpr size_t streamBytes = 6;

  GPEmptyRec() = default;
  void Serialize(CArchive & ar) override;
  int Compare(GPObject const * other) const override;  // difference of the capacities

  DWORD m_nFilePos = 0;
  DWORD m_nBlockSize = 0;  // bytes, the header not counted
};

// A memory file that shows its block, which belongs to the file and goes with it.
class ZP_API GPMemFile : public CMemFile {
 public:
  GPMemFile() : CMemFile(1024) {}
  BYTE const * GetMemPtr() const { return m_lpBuffer; }
};

namespace zp {

class ActiveTable;
class BlockPositions;
class FreeTable;
class RecordImage;
struct ActiveEntry;
struct FreeBlock;
struct Place;

// What a store can hold.
inline constexpr int maxRecordID = 32767;
inline constexpr unsigned int maxRecordLength = 65535;  // bytes
inline constexpr DWORD maxBlockPosition = 0x7FFFFFFF;   // of a block's header; a file grows only as long as it ends below

// The position of a live record without a place in the record file, in memory and in the index file: it was to be stored, and
// the file couldn't be created or couldn't grow. It loads as 0 bytes; storing it looks for a place, deleting it takes it away.
inline constexpr DWORD noBlockPosition = 0xFFFFFFFF;

// What stands in front of each block's payload area in a record file: three 16-bit words, little-endian.
struct BlockHeader {
  static constexpr unsigned int byteCount = 6;
  static constexpr WORD freeMark = 0x8000;  // in the first word

  WORD id = 0;  // without the free mark
  bool isFree = false;
  WORD length = 0;    // bytes of the payload in use
  WORD capacity = 0;  // bytes of the payload area; the next block starts behind it

  // From and to byteCount bytes.
  ZP_API static BlockHeader Read(BYTE const * bytes);
  ZP_API void Write(BYTE * bytes) const;
};

// A block of a record file, as its header tells it.
struct RecordBlock : BlockHeader {
  ULONGLONG position = 0;  // offset of the header
};

// Walks the blocks of a record file from its begin by their headers alone, reading ahead in large pieces. Raises the file's
// exceptions.
class ZP_API BlockChain {
 public:
  enum class State {
    Walking,
    AtEnd,      // the last block ended with the file
    CutHeader,  // fewer bytes than a header are left
    PastEnd     // the block last given reaches behind the end of the file
  };

  explicit BlockChain(CFile const & file);

  // The next block; false when there is none, and for a block past the end only after it was given once.
  bool Next(RecordBlock & block);

  // The bytes in use of the block last given, as far as its area and the file hold them; valid until the next call.
  std::span<BYTE const> GetPayload();

  State GetState() const { return m_State; }
  ULONGLONG GetPosition() const { return m_nNext; }  // where the next block would start
  ULONGLONG GetFileLength() const { return m_nFileLength; }

 private:
  BYTE const * Fetch(ULONGLONG position, size_t count);

  CFile const & m_File;
  ULONGLONG m_nFileLength;
  ULONGLONG m_nNext = 0;
  State m_State = State::Walking;
  RecordBlock m_Block;
  std::vector<BYTE> m_Window;
  ULONGLONG m_nWindowStart = 0;
  size_t m_nWindowSize = 0;
};

}  // namespace zp

// Records of 1 to 65,535 bytes under ids from 0 to 32767. The record file changes at once, the index file at Close.
//
// Before a block that the index tells of is written to, its header is read once: a block that isn't the record's own, or isn't
// free where it should be, or reaches into its neighbour is left alone, and the record goes to another place. A write that fails
// ends in a warning, and the record that was there before stays, except that bytes of the same length, or that fit no smaller
// block, go over the old ones. An operation that raises leaves records and tables as they were, except where it says otherwise.
//
// The index is read when the store opens, the record file's lock is taken with the first record. Where another program has
// written the store in between, the tables are loaded anew with the lock. That first operation gives 0 and a warning, and nothing
// is changed, where this can't be done: this store has changes that its index file doesn't have, or the header object isn't the
// one in the file, or the file can't be read. Another program's work is seen by the times of the index file, which its owner
// keeps apart.
//
// While the record file is open under its lock, what is loaded again and again comes from memory, of which it takes 64 MiB at
// most; a record that was stored is read from the file once more. So a device that fails later doesn't raise for records that are
// in memory by then, and what a program without locks writes into the file may not be seen.
class ZP_API GPDataFile : public CObject {
 public:
  // Opens the store; newHeader makes the header object of a new one, null stands for a plain GPObject. accessMode are the
  // CFile flags for a record file that is read first. An index file that is damaged, or can't be read, raises the archive's or
  // file's exception.
  GPDataFile(CString const & indexFile, CString const & recFile, unsigned int accessMode, CObject * (*newHeader)());

  // Closes the store. Where the header object can't be stored the index gets a null one, and where the index can't be written
  // the changes are in the record file alone: a warning tells of both.
  ~GPDataFile() override;
  GPDataFile(GPDataFile const &) = delete;
  GPDataFile & operator=(GPDataFile const &) = delete;

  // Loads the index file, for which it waits up to two seconds while another program writes it, and looks anew whether there is a
  // record file. 0, and nothing done, while the record file is open or the store has changes that its index file doesn't have.
  // What it raises leaves the store closed.
  int Open(unsigned int accessMode);

  // Writes the index file if anything changed, and closes. 0 after a warning if the index file can't be opened, for two seconds
  // if another program has it, or was written by another while the record file wasn't locked; the exception of a header object
  // that can't be stored passes: then the store is open as it was and the files are untouched. A write to the index file that
  // fails ends in a warning alone.
  int Close();

  unsigned int GetAccessMode() const { return m_nAccessMode; }
  int IsEmpty() const;
  int GetRecCount() const;

  // 0 for a store without records; GetNextRecID is the last id plus 1.
  unsigned int GetFirstRecID() const;
  unsigned int GetLastRecID() const;
  unsigned int GetNextRecID() const;
  unsigned int GetRecLength(int id) const;

  // The record's bytes into buffer, of size bytes: their count, or 0 if there is no such record or it is longer than size.
  unsigned int LoadRec(void * buffer, unsigned int size, int id);

  // The object under id, or null. The caller owns it. Raises the archive's exception for bytes that are no object.
  CObject * LoadObj(int id);

  // 0 and nothing changed if the record file can't be opened or an existing record finds no place; 0 for a new record that finds
  // none, and the file's exception if the record file can't be created: the record is then without a place. 1 after a write that
  // failed: a new record is without a place, another one as it was.
  int StoreRec(void const * data, unsigned int length, int id);
  int StoreObj(CObject const * object, int id);  // raises the archive's exception for an object that can't be streamed

  // 0 and nothing changed if there is no such record or its block can't be marked as free.
  int DeleteRec(int id);

  // Cuts off what a write that failed has left behind the last block, where that failed as well; the next write there and Close
  // do it too.
  void CutTail();

  // Slides the live records together, cuts the record file and rebuilds both tables from the block headers; records without a
  // place are gone then. 0 and everything unchanged if there is no record file, it can't be opened, or its blocks don't form a
  // sound chain. Not safe against an interruption: work on a copy. The record file isn't locked afterwards and the index file is
  // the old one until Close, so no other program may use the store before. If the file's exception passes after records have
  // moved, the tables tell where each one is by then.
  int DegasRecFile();

  // Closes the store and gives both files the status, unless it can't be closed.
  void SetStatus(CFileStatus const & status);

 private:
  int LoadIndexFile();
  int StoreIndexFile();
  bool IsIndexAsLoaded() const;
  bool LoadChangedIndex();
  bool FollowIndexFile();
  bool TellChangedIndex() const;
  int TryClose();
  void CloseRecFile();
  void DropTables();
  int OpenRecFile(unsigned int flags);
  int OpenForStoring();
  void DropImage();
  bool LookForBytes(unsigned int size, int id, zp::ActiveEntry & entry) const;
  bool FindBytes(unsigned int size, int id, zp::ActiveEntry & entry);
  bool LoadFromImage(ULONGLONG position, void * buffer, UINT count);
  bool WriteBytes(ULONGLONG position, void const * bytes, UINT count);
  bool ReadHeader(DWORD position, zp::BlockHeader & header);
  bool ReadKnownHeader(DWORD position, zp::BlockHeader & header);
  bool HasBlock(zp::ActiveEntry & entry);
  bool FreeBlockOf(zp::ActiveEntry const & entry);
  bool IsFreeBlock(zp::FreeBlock const & block);
  bool FindFree(unsigned int length, zp::FreeBlock & block);
  bool FindPlace(unsigned int length, zp::Place & place);
  bool WriteAtPlace(void const * data, unsigned int length, int id, zp::Place const & place);
  bool WriteBlock(void const * data, unsigned int length, int id, zp::FreeBlock const & block);
  bool Append(void const * data, unsigned int length, int id);
  bool MarkFree(DWORD position, int id);
  void LeavePlace(int id, zp::Place const & place, unsigned int length);
  int StoreNewRec(void const * data, unsigned int length, int id, zp::ActiveEntry * entry);
  int ReplaceRec(void const * data, unsigned int length, zp::ActiveEntry & entry);
  int MoveRec(void const * data, unsigned int length, zp::ActiveEntry & entry, zp::Place const & place);
  int ShrinkRec(void const * data, unsigned int length, zp::ActiveEntry & entry);
  std::unique_ptr<zp::ActiveTable> SurveyChain() const;
  void SlideRecords(zp::ActiveTable & active, bool & hasMoved);

  CString m_strIndexFile;
  int m_bIndexDirty = 0;
  zp::HostStatus m_IndexStatus;  // of the file that was loaded
  CString m_strRecFile;
  GPFile m_RecFile;
  CObject * (*m_pfnNewHeader)();
  unsigned int m_nAccessMode = 0;

 public:
  CObject * m_pHeader = nullptr;  // the caller's header object; owned by the store, which never looks into it

 private:
  std::unique_ptr<zp::ActiveTable> m_pActiveRecs;    // in ascending id
  std::unique_ptr<zp::FreeTable> m_pEmptyRecs;       // in ascending capacity, the first freed first
  std::unique_ptr<zp::BlockPositions> m_pPositions;  // made when first needed
  ULONGLONG m_nRecFileLength = 0;                    // while the record file is open: where the last block ends
  bool m_bTail = false;                              // a write that failed may have left bytes behind it
  std::unique_ptr<zp::RecordImage> m_pImage;         // once records were loaded often from a file that is locked
  unsigned int m_nReads = 0;                         // before that
};
