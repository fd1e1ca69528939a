// An index file as its bytes tell it, for the tools that mustn't depend on its being sound.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <zpbase/platform/runtime.h>

struct LiveEntry {
  unsigned long long m_nPosition;
  int m_nRecID;
  unsigned int m_nLength;
};

struct FreeEntry {
  unsigned long long m_nPosition;
  unsigned int m_nCapacity;
};

struct StoreIndex {
  enum State { Missing, Sound, UnknownClass, Damaged };

  State m_State = Missing;
  unsigned long long m_nProblem = 0;  // its offset
  std::string m_strProblem;           // one sentence with the offset in the index file
  bool m_bHeaderRead = false;         // whether m_pHeader is what the file holds
  std::unique_ptr<CObject> m_pHeader;
  std::vector<LiveEntry> m_Live;  // in the file's order, as far as it could be read
  std::vector<FreeEntry> m_Free;
};

// Reads the whole file. A missing or empty one is Missing. Raises Failure for one that can't be read at all.
StoreIndex ReadIndex(std::string const & name);
