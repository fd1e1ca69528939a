// The records of a store for commands that only read: by the index, or by the block headers when the index can't be read here.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "tools/store/index_reader.h"
#include "tools/store/session.h"

class RecordSource {
 public:
  // Tells on standard error when the records come from the block headers.
  explicit RecordSource(StoreNames const & names);

  std::vector<int> const & GetIDs() const { return m_IDs; }  // ascending
  std::vector<BYTE> Load(int id);

  // The store's header object, or null; false if it can't be read.
  bool HasHeader() const { return m_bHasHeader; }
  CObject const * GetHeader() const { return m_pSession != nullptr ? m_pSession->Get().m_pHeader : m_Index.m_pHeader.get(); }

 private:
  void ReadBlocks();

  StoreNames m_Names;
  std::unique_ptr<StoreSession> m_pSession;
  StoreIndex m_Index;
  CFile m_File;
  std::map<int, zp::RecordBlock> m_Blocks;
  std::vector<int> m_IDs;
  bool m_bHasHeader = true;
};
