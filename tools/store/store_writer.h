// The records of a store for commands that change them, with every way in which that fails told.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>

#include "tools/store/open_store.h"

class StoreWriter {
 public:
  // access is Change or Create. Tells on standard error of an exchange that was finished first.
  StoreWriter(StoreNames const & names, StoreAccess access);

  bool IsNew() const { return m_Store.IsNew(); }
  bool Has(int id) { return m_Store.GetTables().GetRecLength(id) > 0; }

  void SetHeader(std::unique_ptr<CObject> header);

  // Raise Failure for a write that didn't reach the file.
  void Store(int id, std::span<BYTE const> bytes);
  void Delete(int id);

  // Writes the index. Raises Failure if it didn't reach the file.
  void Close();

 private:
  bool Change(std::function<bool()> const & step);
  bool HasChanges(StoreIndex const & index) const;

  OpenStore m_Store;
  bool m_bLocked = false;              // whether the store has locked the record file
  std::map<int, size_t> m_NewLengths;  // of the changed records, 0 for a deleted one
};
