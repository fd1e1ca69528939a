// The records of a store for commands that change them, with every way in which that fails told.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "tools/store/open_store.h"
#include "tools/store/store_backup.h"

class StoreWriter {
 public:
  // access is Change or Create. Tells on standard error of an exchange that was finished first.
  StoreWriter(StoreNames const & names, StoreAccess access);

  // What was changed is undone unless Close has come to its end.
  ~StoreWriter();
  StoreWriter(StoreWriter const &) = delete;
  StoreWriter & operator=(StoreWriter const &) = delete;

  bool IsNew() const { return m_Store.IsNew(); }
  bool Has(int id) { return m_Store.GetTables().GetRecLength(id) > 0; }

  std::vector<int> GetIDs();  // ascending, as changed so far

  // The record's bytes, none where there is no such record. Raises Failure, or the file's exception; nothing is undone then.
  std::vector<BYTE> Load(int id);

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

  void Try(size_t bytes, std::function<void()> const & step);
  bool Apply(std::function<bool()> const & step);
  bool IsStored(int id, std::span<BYTE const> bytes);
  void CloseStore();
  void LookAtDisk();
  bool IsChanged(OpenStore & store) const;
  bool TakeBack(size_t bytes, std::string & why);

  OpenStore m_Store;
  StoreBackup m_Backup;
  bool m_bLocked = false;           // whether the store has locked the record file
  bool m_bClosed = false;           // from then on others may have changed the store
  bool m_bEnded = false;            // what was changed is to stay, or was taken back
  std::map<int, Change> m_Changes;  // by id
};
