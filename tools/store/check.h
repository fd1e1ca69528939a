// Whether the two files of a store keep every promise of their format.
#pragma once

#include <string>
#include <vector>

#include "tools/store/store_names.h"
#include "tools/store/survey.h"

struct StoreFault {
  std::string m_strFile;
  long long m_nOffset;  // -1 for an entry of the index, which its text tells
  std::string m_strText;
};

struct CheckReport {
  StoreIndex m_Index;
  Survey m_Survey;
  std::vector<StoreFault> m_Faults;  // those of the index file first, then by offset
  std::vector<std::string> m_Notes;  // what is no fault, but can't be looked into
  size_t m_nRecords = 0;             // live blocks
  size_t m_nFree = 0;
};

// Looks at an open record file and at the index file; changes neither.
CheckReport CheckStore(StoreNames const & names, CFile const & recordFile);
