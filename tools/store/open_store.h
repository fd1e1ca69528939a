// The one way to a store's two files, for every command: lock first, then an exchange that was interrupted is finished, then
// the index is read, once.
//
// Who only looks shares the record file with others who do, from here to the end. Who changes the store has the record file for
// itself. GPDataFile takes that lock too, with its first change, and a lock belongs to one open; so the index file's lock covers
// the step between: it is taken while the record file is held, and kept until the changed index is written. Record file before
// index file is everyone's order, and nobody waits for a lock.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <zpbase/store.h>

#include "tools/store/block_survey.h"
#include "tools/store/index_reader.h"
#include "tools/store/store_names.h"

enum class StoreAccess {
  Look,     // beside others; the index may be missing or damaged
  Replace,  // for this program alone; the index may be missing or damaged
  Change,   // for this program alone; both files must be there, and the index readable
  Create    // as Change, but where neither file is there the store is a new one
};

class OpenStore {
 public:
  // Raises Failure for files that are missing, in use, or refused by the system, and for a record file without its index file
  // where both are needed. With Change and Create also for faults in the blocks or in the index.
  OpenStore(StoreNames const & names, StoreAccess access);
  ~OpenStore();

  StoreNames const & GetNames() const { return m_Names; }
  std::string const & GetEndedExchange() const { return m_strEnded; }  // what was done about one; empty for nothing

  // With Look and Replace: the locked record file.
  CFile const & GetRecordFile() const { return m_RecordFile; }

  // The index as its bytes tell it, read at the first call.
  StoreIndex & GetIndex();
  void RequireIndexFile() const;

  // Raises Failure for an index that is missing, empty beside records, or not to be read here.
  void RequireUsableIndex();

  // With Change and Create: the store, whose record file is locked by its first change; and its blocks, which were found sound.
  GPDataFile & GetTables() { return *m_pTables; }
  Survey TakeSurvey() { return std::move(m_Survey); }
  bool IsNew() const { return m_bNew; }

  // Lets the store write its index, and lets it go. Without this it happens at the end.
  void Close();

 private:
  // The files of a new store, gone again at the end if nothing was stored in them.
  class NewFiles {
   public:
    explicit NewFiles(StoreNames const & names) : m_Names(names) {}
    ~NewFiles();
    NewFiles(NewFiles const &) = delete;
    NewFiles & operator=(NewFiles const &) = delete;
    void Watch() { m_bWatched = true; }

   private:
    StoreNames const & m_Names;
    bool m_bWatched = false;
  };

  bool OpenRecordFile(unsigned int furtherMode = 0);
  void LockRecordFile();
  void LockIndexFile();
  void EndExchange();
  void ReadTables();
  void RequirePlainFiles() const;
  [[noreturn]] void FailEmptyIndex() const;

  StoreNames m_Names;
  StoreAccess m_Access;
  NewFiles m_NewFiles;
  CFile m_RecordFile;
  CFile m_IndexFile;
  std::string m_strEnded;
  bool m_bNew = false;
  std::optional<StoreIndex> m_Index;
  Survey m_Survey;
  std::unique_ptr<GPDataFile> m_pTables;
};
