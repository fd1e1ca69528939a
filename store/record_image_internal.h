// What of a record file is read again and again, kept in memory.
//
// The file is seen in pages. A page is read at the second touch of one of its records, so that a single look costs what it costs
// without this. Each page is divided into grains, and knows which of them are as the file is: whoever writes to the file lets the
// grains be forgotten first, and they are read anew with the next record in them. It serves files alone that nobody else writes
// to.
#pragma once

#include <memory>
#include <vector>

#include <zpbase/platform/file.h>

namespace zp {

class RecordImage {
 public:
  static constexpr unsigned int readsBefore = 16;  // of a file, before this is worth while
  static constexpr size_t maxBytes = 0x4000000;    // of memory for pages

  // The file stays the caller's, open all the time, and must outlive the image, as must its length, which the caller keeps: up to
  // there it is read, so that no read has to find the end.
  RecordImage(CFile const & file, ULONGLONG const & length) : m_File(file), m_nLength(length) {}

  // Gives count bytes at position. False, with any bytes in buffer, where they are to be read from the file: at the first touch,
  // behind the end of the file, where reading the page raises, and where memory is short.
  bool Read(ULONGLONG position, void * buffer, UINT count);

  void Forget(ULONGLONG position, ULONGLONG count);
  void ForgetFrom(ULONGLONG position);  // all up to the end, which may become another

 private:
  static constexpr UINT pageBytes = 0x10000;
  static constexpr UINT grainBytes = pageBytes / 64;
  static constexpr size_t maxPages = maxBytes / pageBytes;
  static constexpr ULONGLONG unknownEnd = UINT64_MAX;

  struct Page {
    BYTE * bytes = nullptr;
    uint64_t good = 0;  // a bit for each grain that is as in the file
    bool isTouched = false;
  };

  static uint64_t GrainsOf(UINT start, UINT end);
  bool Load(size_t index, uint64_t wanted);
  bool Touch(Page & page);
  BYTE * TakeRoom();
  void ReadGrains(size_t index, uint64_t missing);

  CFile const & m_File;
  ULONGLONG const & m_nLength;
  std::vector<Page> m_Pages;                     // from the begin of the file on
  ULONGLONG m_nEnd = unknownEnd;                 // of the file, once a read came to it
  std::vector<std::unique_ptr<BYTE[]>> m_Rooms;  // for several pages each
  BYTE * m_pRoom = nullptr;                      // for the next page
  size_t m_nRoomLeft = 0;                        // pages behind m_pRoom
  size_t m_nPagesTaken = 0;
};

}  // namespace zp
