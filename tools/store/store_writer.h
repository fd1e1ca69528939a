// The records of a store for commands that change them, with every way in which that fails told.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>

#include "tools/store/open_store.h"
#include "tools/store/store_backup.h"

class StoreWriter {
 public:
  // access is Change or Create. Tells on standard error of an exchange that was finished first.
  StoreWriter(StoreNames const & names, StoreAccess access);

  bool IsNew() const { return m_Store.IsNew(); }
  bool Has(int id) { return m_Store.GetTables().GetRecLength(id) > 0; }

  void SetHeader(std::unique_ptr<CObject> header);

  // Raise Failure for a write that didn't reach the file, when everything since the begin has been undone.
  void Store(int id, std::span<BYTE const> bytes);
  void Delete(int id);

  // Writes the index, and looks whether both files hold what they should. Raises Failure if not, as above.
  void Close();

 private:
  struct Change {
    size_t length;  // 0 for a deleted record
    size_t hash;
  };

  bool Apply(std::function<bool()> const & step);
  std::string FaultOnDisk();
  bool IsChanged(OpenStore & store) const;
  [[noreturn]] void Undo(std::string const & what, size_t bytes);

  OpenStore m_Store;
  StoreBackup m_Backup;
  bool m_bLocked = false;           // whether the store has locked the record file
  std::map<int, Change> m_Changes;  // by id
};
