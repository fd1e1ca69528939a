// What the files of a store held before they were changed, to be put back when a change fails half-way.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <zpbase/platform/host_calls.h>

#include "tools/store/block_survey.h"
#include "tools/store/store_names.h"

// What the system says to count more bytes in the file, which is as it was afterwards; empty if it takes them.
std::string WhyNoRoom(CFile & file, size_t count);

class StoreBackup {
 public:
  // Of a store that was just surveyed, while nobody else can change it.
  StoreBackup(StoreNames const & names, Survey survey);

  // Keeps the bytes of the record's block; to be called before its first change.
  void Keep(int id);

  // To be called while the store still has the record file locked, when nothing more is written there, and as soon as it has been
  // closed: a change of the file from then on is another program's.
  void NoteRecordFile() { m_Record = StateOf(m_Names.record); }
  void NoteIndexFile() { m_Index = StateOf(m_Names.index); }

  // Whether the record file is still as it was noted.
  bool IsRecordFileOurs() const { return m_Record && StateOf(m_Names.record) == m_Record; }

  // Puts back what Keep has kept, the headers, the length and the index; but nothing over another program's change. False if that
  // can't be done. Tells why what the system says to count more bytes in either file; empty if it takes them.
  bool Restore(size_t count, std::string & why) const;

 private:
  struct FileState {
    uint64_t file;
    uint64_t device;
    LONGLONG size;  // bytes
    zp::HostTime modified;

    bool operator==(FileState const &) const = default;
  };

  static std::optional<FileState> StateOf(std::string const & name);  // none if the system can't say
  bool IsOurs() const { return IsRecordFileOurs() && m_Index && StateOf(m_Names.index) == m_Index; }
  void RestoreBlocks(CFile & file) const;
  void RestoreIndex(CFile & file) const;

  StoreNames m_Names;
  std::optional<FileState> m_Record;
  std::optional<FileState> m_Index;
  Survey m_Before;
  std::string m_IndexBytes;
  std::map<int, size_t> m_Blocks;                  // of each live id, among the blocks before
  std::map<size_t, std::vector<BYTE>> m_Payloads;  // by the block
};
