// A record store opened for a command, with every way in which that fails told.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <zpbase/store.h>

#include "tools/store/store_names.h"

inline constexpr int maxRecordID = 32767;
inline constexpr size_t maxRecordBytes = 65535;

enum class StoreAccess {
  Read,   // both files must be there; other readers may read too
  Write,  // both files must be there, for this program alone
  Create  // a missing store is a new one
};

class StoreSession {
 public:
  StoreSession(StoreNames const & names, StoreAccess access);

  GPDataFile & Get() { return *m_pStore; }
  std::vector<int> GetIDs() const;

  void SetHeader(std::unique_ptr<CObject> header);

  // A record's bytes. Raises Failure for one that isn't there or can't be read.
  std::vector<BYTE> Load(int id);

  // Raise Failure for a write that didn't reach the file.
  void Store(int id, std::span<BYTE const> bytes);
  void Delete(int id);

  // Writes the index. Raises Failure if it didn't reach the file.
  void Close();

 private:
  StoreNames m_Names;
  std::unique_ptr<GPDataFile> m_pStore;
};

// Raises Failure for a file that is missing, in use, or refused by the system. A file that may be missing gives false for that.
bool RequireFile(std::string const & name, char const * what, unsigned int mode, bool mayBeMissing = false);

// Opens the record file, with its failures told: shared for reading, or for this program alone.
void OpenRecordFile(CFile & file, StoreNames const & names, StoreAccess access);

// Runs step for each of count numbers with a progress bar, ending early after Ctrl-C: true if it came to the end.
bool ForEachStep(char const * label, size_t count, std::function<void(size_t)> const & step);
