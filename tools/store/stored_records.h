// The records of a store for commands that only read: by the index, or by the block headers when the index can't be read here.
#pragma once

#include <map>
#include <vector>

#include "tools/store/open_store.h"

class StoredRecords {
 public:
  // Tells on standard error when the records come from the block headers.
  explicit StoredRecords(StoreNames const & names);

  std::vector<int> const & GetIDs() const { return m_IDs; }  // ascending
  std::vector<BYTE> Load(int id) const;

  // The store's header object, or null; false if it can't be read.
  bool HasHeader() const { return m_bHasHeader; }
  CObject const * GetHeader() { return m_Store.GetIndex().header.get(); }

 private:
  void FindByIndex();
  void FindByHeaders();

  OpenStore m_Store;
  std::map<int, zp::RecordBlock> m_Blocks;
  std::vector<int> m_IDs;
  bool m_bHasHeader = true;
  bool m_bByIndex = true;
};
