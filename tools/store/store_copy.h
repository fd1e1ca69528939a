// A copy of a store beside it that is changed, looked at and then put in its place, so that the store is whole at every moment.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "tools/store/open_store.h"
#include "tools/store/store_check.h"

// Ctrl-C was pressed; nothing was changed.
class Interrupted {};

class StoreCopy {
 public:
  // Of a store that was opened with Replace and checked. Copies both files. Raises Failure, or Interrupted after Ctrl-C, as the
  // others do; what was written goes then.
  StoreCopy(OpenStore & old, CheckReport const & report);
  ~StoreCopy();
  StoreCopy(StoreCopy const &) = delete;
  StoreCopy & operator=(StoreCopy const &) = delete;

  // Lets change work on the copy, and writes its index.
  void Change(std::function<void(GPDataFile & tables)> const & change);

  // The copy must be sound, and hold what is told of its records: in place of each of the old store's what other gives for it, or
  // what it was for null; and count with a place in all.
  using Other = std::function<std::vector<BYTE> const *(int id)>;
  void Check(size_t count, Other const & other);

  unsigned long long GetSize() const;  // of the record file
  void PutInPlace();

 private:
  [[noreturn]] void Differ(std::string const & how) const;
  [[noreturn]] void DifferInBytes(std::string const & how) const;
  void Copy(CFile const & from, std::string const & fromName, std::string const & toName);

  OpenStore & m_Old;
  CheckReport const & m_Report;
  StoreNames m_New;
  bool m_bSwapped = false;
};
