// The records of a store for commands that only read: by the index, or by the block headers when the index can't be read here.
#pragma once

#include <functional>
#include <vector>

#include "tools/program.h"
#include "tools/store/open_store.h"

class StoredRecords {
 public:
  // Tells on standard error when the records come from the block headers.
  explicit StoredRecords(StoreNames const & names);

  std::vector<int> const & GetIDs() const { return m_IDs; }  // ascending

  // Raises Failure for bytes that aren't all there, and for a block that isn't the record which the index has in it.
  std::vector<BYTE> Load(int id) const;

  // Gives use each record, its bytes for the call alone. One that can't be read, or for which use raises Failure, is told on
  // standard error and left out; the result is how many. An OutputFailure passes.
  size_t ForEach(char const * label, std::function<void(int id, std::span<BYTE const> bytes)> const & use) const;

  StoreNames const & GetNames() const { return m_Store.GetNames(); }

  // The file that tells which records there are.
  std::string const & GetRecordsName() const { return m_bByIndex ? GetNames().index : GetNames().record; }

  // Whether the index had to be done without because it is damaged or lost.
  bool IsIndexLost() const { return m_bIndexLost; }

  // The store's header object, or null; false if it can't be read.
  bool HasHeader() const { return m_bHasHeader; }
  CObject const * GetHeader() { return m_Store.GetIndex().header.get(); }

 private:
  void FindByIndex();
  void FindByHeaders();

  OpenStore m_Store;
  void Sort();
  std::span<BYTE const> Fetch(RecordWindow & window, zp::RecordBlock const & wanted) const;

  std::vector<zp::RecordBlock> m_Blocks;  // by id
  std::vector<int> m_IDs;
  bool m_bHasHeader = true;
  bool m_bByIndex = true;
  bool m_bIndexLost = false;
};

// The end of a command that gave ForEach's use every record, of which some were left out: their count is told. They, and an index
// that is lost, are no failure with skip.
ExitStatus EndOfReading(StoredRecords const & records, size_t left, bool skip);
