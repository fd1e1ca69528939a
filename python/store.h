// An open store for Python: reading beside others, or changing alone until Close keeps the changes.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <unistd.h>

#include "python/bindings.h"
#include "tools/store/store_writer.h"
#include "tools/store/stored_records.h"

namespace zp::python {

// Its methods but the destructor run in the library (see library_call.h) and raise Failure and the framework's exceptions; those
// of a closed store raise py::value_error.
class Store {
 public:
  enum class Mode { Read, Change, Create };

  Store(std::string const & name, std::string const & recordName, Mode mode);

  // What was changed is undone unless the store was closed, and Python hears of that. A process that was forked off lets a store
  // go in silence: what the other one changes in it is the other one's.
  ~Store();
  Store(Store const &) = delete;
  Store & operator=(Store const &) = delete;

  std::string const & GetName() const { return m_Names.index; }
  bool IsReading() const { return m_Mode == Mode::Read; }
  bool IsClosed() const { return m_pReader == nullptr && m_pWriter == nullptr; }

  std::vector<int> GetIDs() const;
  bool Has(int id) const;
  std::vector<BYTE> Load(int id) const;  // none for no such record

  // Gives use each record, ascending, its bytes for the call alone. One that can't be read is told and left out.
  void ForEach(std::function<void(int id, std::span<BYTE const> bytes)> const & use) const;

  void Set(int id, std::vector<BYTE> const & bytes);
  bool Delete(int id);  // false for no such record
  void Close();
  void Abandon();  // undoes what was changed

 private:
  void LetGo();  // of a store that was not closed
  bool IsOthersToChange() const;
  void RequireOpen() const;
  template <class Work>
  void Change(Work const & work);

  StoreNames m_Names;
  Mode m_Mode;
  pid_t m_nProcess;  // that opened it
  std::unique_ptr<StoredRecords> m_pReader;
  std::unique_ptr<StoreWriter> m_pWriter;
  bool m_bChanged = false;
};

// The components of a store as a pandas DataFrame.
py::object FrameOf(Store const & store);

}  // namespace zp::python
