// The blocks of a record file, found by their headers and, where those lead astray, with the help of the index.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <zpbase/store.h>

#include "tools/store/index_reader.h"

struct SurveyBlock {
  zp::RecordBlock block;
  bool isTrusted;  // on the chain from the begin, or where the index has just this record
  bool fits;       // ends inside the file, and before the next block that the index has
};

// Where the chain of headers breaks.
struct ChainBreak {
  unsigned long long position;
  unsigned long long resumed;  // where the next block was found, or the file's length
  std::string problem;
};

struct Survey {
  unsigned long long fileLength = 0;
  std::vector<SurveyBlock> blocks;  // in ascending position
  std::vector<ChainBreak> breaks;
};

// Walks a record file. The headers alone count as long as they meet the file's end. Where they break, the walk goes on at the
// next block that the index has and the file confirms, and without one where the longest chain begins.
Survey SurveyRecordFile(CFile const & file, StoreIndex const & index);

// Bytes of a record file for those who want many of them, mostly in ascending order: read ahead in large pieces.
class RecordWindow {
 public:
  static constexpr size_t usualPiece = 0x40000;

  // piece is how much is read at least.
  explicit RecordWindow(CFile const & file, size_t piece = usualPiece) : m_File(file), m_nPiece(piece) {}

  // As many as the file holds; valid until the next call.
  std::span<BYTE const> Fetch(unsigned long long position, size_t count);

 private:
  CFile const & m_File;
  size_t m_nPiece;
  std::vector<BYTE> m_Bytes;
  unsigned long long m_nStart = 0;
  size_t m_nSize = 0;
};

// The record's bytes, as far as its block and the file hold them.
std::vector<BYTE> ReadPayload(CFile const & file, zp::RecordBlock const & block);
