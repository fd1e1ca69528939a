// What the files of a store held before they were changed, to be put back when a change fails half-way.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <zpbase/platform/host_calls.h>

#include "tools/store/block_survey.h"
#include "tools/store/store_names.h"

class StoreBackup {
 public:
  // Of a store that was just surveyed, while nobody else can change it.
  StoreBackup(StoreNames const & names, Survey survey);

  // Keeps the bytes of the record's block; to be called before its first change.
  void Keep(int id);

  // To be called as soon as the store has been closed: a change of the files from then on is another program's.
  void NoteClosed();

  // Puts back what Keep has kept, the headers, the length and the index; but nothing over another program's change. False if that
  // can't be done. Tells why what the system says to count more bytes in either file; empty if it takes them.
  bool Restore(size_t count, std::string & why) const;

 private:
  using Times = std::optional<std::array<zp::HostTime, 2>>;

  Times WriteTimes() const;  // none if the system can't say
  void RestoreBlocks(CFile & file) const;
  void RestoreIndex(CFile & file) const;

  StoreNames m_Names;
  Times m_Closed;
  Survey m_Before;
  std::string m_Index;
  std::map<int, size_t> m_Blocks;                  // of each live id, among the blocks before
  std::map<size_t, std::vector<BYTE>> m_Payloads;  // by the block
};
