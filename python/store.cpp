// Stores as mappings of record ids.

#include "python/store.h"

#include <algorithm>

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <zpbase/numeric.h>
#include <zpbase/store.h>

#include "python/component.h"
#include "python/library_call.h"
#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/records/payload.h"

namespace zp::python {

namespace {

// The program's words for a file that it can't place name an option of its command line.
StoreNames namesOf(std::string const & name, std::string const & recordName)
{
  try {
    return ResolveStore(name, recordName);
  } catch (Failure const & failure) {
    if (failure.GetStatus() != exitUsage || !IsRegularFile(name)) throw;
    throw Failure(name + ": has no extension of a store's file; name its record file with the argument record", exitUsage);
  }
}

}  // namespace

Store::Store(std::string const & name, std::string const & recordName, Mode mode)
    : m_Names(namesOf(name, recordName)), m_Mode(mode), m_nProcess(getpid())
{
  if (mode == Mode::Read)
    m_pReader = std::make_unique<StoredRecords>(m_Names);
  else
    m_pWriter = std::make_unique<StoreWriter>(m_Names, mode == Mode::Create ? StoreAccess::Create : StoreAccess::Change);
}

Store::~Store()
{
  if (IsClosed()) return;
  try {
    LetGo();
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "a store that was not closed could not be let go in full");
    PyErr_WriteUnraisable(nullptr);
  }
}

bool Store::IsOthersToChange() const
{
  return m_pWriter && getpid() != m_nProcess;
}

void Store::LetGo()
{
  if (IsOthersToChange()) return Abandon();  // without the library, which a thread of the other process may have left locked
  std::vector<std::string> told;
  {
    LibraryCall const call(told, LibraryCall::Others::GoOn);
    Abandon();
  }
  if (!m_bChanged) return;
  std::string const line = GetName() + ": was not closed; what was changed in it is undone";
  if (PyErr_WarnFormat(PyExc_ResourceWarning, 1, "%U", TextOf(line).ptr()) != 0) PyErr_WriteUnraisable(nullptr);
}

void Store::RequireOpen() const
{
  if (IsClosed()) throw Failure(GetName() + ": the store is closed");
  if (IsOthersToChange()) throw Failure(GetName() + ": was opened by another process, which alone changes it");
}

std::vector<int> Store::GetIDs() const
{
  RequireOpen();
  return m_pReader ? m_pReader->GetIDs() : m_pWriter->GetIDs();
}

bool Store::Has(int id) const
{
  RequireOpen();
  if (m_pWriter) return m_pWriter->Has(id);
  return std::binary_search(m_pReader->GetIDs().begin(), m_pReader->GetIDs().end(), id);
}

std::vector<BYTE> Store::Load(int id) const
{
  if (!Has(id)) return {};
  return m_pReader ? m_pReader->Load(id) : m_pWriter->Load(id);
}

void Store::ForEach(std::function<void(int id, std::span<BYTE const> bytes)> const & use) const
{
  RequireOpen();
  if (m_pReader) {
    m_pReader->ForEach("reading", use);
    return;
  }
  for (int const id : m_pWriter->GetIDs()) {
    try {
      use(id, m_pWriter->Load(id));
    } catch (Failure const & failure) {
      Tell(failure.what());
    }
  }
}

// A writer whose step failed has undone all and is at its end.
template <class Work>
void Store::Change(Work const & work)
{
  try {
    m_bChanged = true;
    work();
  } catch (...) {
    Abandon();
    m_bChanged = false;
    throw;
  }
}

void Store::Set(int id, std::vector<BYTE> const & bytes)
{
  RequireOpen();
  Change([&] { m_pWriter->Store(id, bytes); });
}

bool Store::Delete(int id)
{
  if (!Has(id)) return false;
  Change([&] { m_pWriter->Delete(id); });
  return true;
}

void Store::Close()
{
  if (IsOthersToChange()) return Abandon();
  std::unique_ptr<StoredRecords> const reader = std::move(m_pReader);
  std::unique_ptr<StoreWriter> const writer = std::move(m_pWriter);
  if (writer) writer->Close();
}

void Store::Abandon()
{
  m_pReader.reset();
  if (IsOthersToChange())
    static_cast<void>(m_pWriter.release());  // its end would undo what the other process changes
  else
    m_pWriter.reset();
}

namespace {

struct Loaded {
  std::vector<BYTE> bytes;
  Payload payload;
};

constexpr int noID = -1;

// A record id, or noID for a number that none can have. Raises TypeError for what is no whole number.
int idOf(py::handle key)
{
  auto const number = py::reinterpret_steal<py::object>(PyNumber_Index(key.ptr()));
  if (!number) throw py::error_already_set();
  int overflow = 0;
  long const id = PyLong_AsLongAndOverflow(number.ptr(), &overflow);
  return overflow == 0 && id >= 0 && id <= maxRecordID ? static_cast<int>(id) : noID;
}

[[noreturn]] void failMissing(py::handle key)
{
  PyErr_SetObject(PyExc_KeyError, key.ptr());
  throw py::error_already_set();
}

template <class Object>
std::shared_ptr<Object> taken(Payload & payload)
{
  return std::shared_ptr<Object>(static_cast<Object *>(payload.object.release()));
}

py::object objectOf(Loaded & loaded)
{
  Payload & payload = loaded.payload;
  if (payload.object != nullptr) {
    CRuntimeClass const * const itsClass = payload.object->GetRuntimeClass();
    if (itsClass == RUNTIME_CLASS(GPDataArray)) return py::cast(Component(taken<GPDataArray>(payload)));
    if (itsClass == RUNTIME_CLASS(GPVector)) return py::cast(taken<GPVector>(payload));
    if (itsClass == RUNTIME_CLASS(GPIntVector)) return py::cast(taken<GPIntVector>(payload));
    if (itsClass == RUNTIME_CLASS(GPMatrix)) return py::cast(taken<GPMatrix>(payload));
  }
  return py::cast(Record{payload.className, {loaded.bytes.begin(), loaded.bytes.end()}});
}

py::bytes bytesOf(std::vector<BYTE> const & bytes)
{
  return {reinterpret_cast<char const *>(bytes.data()), bytes.size()};
}

py::object get(Store const & store, py::handle key)
{
  int const id = idOf(key);
  Loaded loaded = InLibrary([&] {
    Loaded record = {store.Load(id), {}};
    record.payload = DecodePayload(record.bytes);
    return record;
  });
  if (loaded.bytes.empty()) failMissing(key);
  if (loaded.payload.state == Payload::Raw) return bytesOf(loaded.bytes);
  if (loaded.payload.state != Payload::Damaged) return objectOf(loaded);
  throw Failure(fmt::format("{}: record {}: is no sound {}: {}; read_bytes gives its bytes", store.GetName(), id,
                            loaded.payload.className, loaded.payload.problem));
}

py::bytes getBytes(Store const & store, py::handle key)
{
  int const id = idOf(key);
  std::vector<BYTE> const bytes = InLibrary([&] { return store.Load(id); });
  if (bytes.empty()) failMissing(key);
  return bytesOf(bytes);
}

bool has(Store const & store, py::handle key)
{
  int const id = PyIndex_Check(key.ptr()) != 0 ? idOf(key) : noID;
  return InLibrary([&] { return store.Has(id); });
}

void requireStorable(int size, char const * what)
{
  if (size > maxStreamedCount)
    throw py::value_error(py::str("{} {} are more than the {} of a record").format(size, what, maxStreamedCount));
}

template <class Vector>
std::vector<BYTE> vectorBytesOf(py::handle value)
{
  auto const & vector = value.cast<Vector const &>();
  requireStorable(vector.GetSize(), "elements");
  return EncodeObject(vector);
}

std::vector<BYTE> matrixBytesOf(GPMatrix const & matrix)
{
  requireStorable(matrix.GetRows(), "rows");
  requireStorable(matrix.GetCols(), "columns");
  return EncodeObject(matrix);
}

std::vector<BYTE> recordBytesOf(py::handle value)
{
  if (py::isinstance<Component>(value)) return EncodeObject(value.cast<Component const &>().GetData());
  if (py::isinstance<GPVector>(value)) return vectorBytesOf<GPVector>(value);
  if (py::isinstance<GPIntVector>(value)) return vectorBytesOf<GPIntVector>(value);
  if (py::isinstance<GPMatrix>(value)) return matrixBytesOf(value.cast<GPMatrix const &>());
  if (py::isinstance<Record>(value)) {
    std::string const & bytes = value.cast<Record const &>().bytes;
    return {bytes.begin(), bytes.end()};
  }
  if (!PyBytes_Check(value.ptr()) && !PyByteArray_Check(value.ptr()) && !PyMemoryView_Check(value.ptr()))
    throw py::type_error("a record is a Component, a Vector, an IntVector, a Matrix, a Record or bytes");
  auto const raw = py::bytes(py::reinterpret_steal<py::object>(PyBytes_FromObject(value.ptr())));
  std::string_view const bytes = raw;
  return {bytes.begin(), bytes.end()};
}

void requireChanging(Store const & store)
{
  if (!store.IsReading()) return;
  py::object const kind = py::module_::import("io").attr("UnsupportedOperation");
  PyErr_SetObject(kind.ptr(), TextOf(store.GetName() + ": is open for reading; open it with mode \"r+\"").ptr());
  throw py::error_already_set();
}

void set(Store & store, py::handle key, py::handle value)
{
  requireChanging(store);
  int const id = idOf(key);
  if (id == noID) throw py::value_error(py::str("{}: a record id is from 0 to {}").format(key, maxRecordID));
  std::vector<BYTE> const bytes = recordBytesOf(value);
  if (bytes.empty() || bytes.size() > maxRecordLength)
    throw py::value_error(
        py::str("record {} would have {} bytes, and one has 1 to {}").format(id, bytes.size(), maxRecordLength));
  InLibrary([&] { store.Set(id, bytes); });
}

void remove(Store & store, py::handle key)
{
  requireChanging(store);
  int const id = idOf(key);
  if (!InLibrary([&] { return store.Delete(id); })) failMissing(key);
}

void clear(Store & store)
{
  requireChanging(store);
  InLibrary([&] {
    for (int const id : store.GetIDs()) store.Delete(id);
  });
}

// With an exception on its way, what was changed is undone.
void leave(Store & store, py::handle kind)
{
  InLibrary([&] {
    if (kind.is_none())
      store.Close();
    else
      store.Abandon();
  });
}

Store::Mode modeOf(std::string const & mode)
{
  if (mode == "r") return Store::Mode::Read;
  if (mode == "r+") return Store::Mode::Change;
  if (mode == "a") return Store::Mode::Create;
  throw py::value_error(py::str("mode is \"r\", \"r+\" or \"a\", not {!r}").format(mode));
}

std::unique_ptr<Store> openStore(py::object const & path, std::string const & mode, py::object const & record)
{
  Store::Mode const chosen = modeOf(mode);
  std::string const name = HostNameOf(path);
  std::string const recordName = record.is_none() ? "" : HostNameOf(record);
  return InLibrary([&] { return std::make_unique<Store>(name, recordName, chosen); });
}

constexpr char const * storeDoc =
    "A record store: a mapping of record ids, 0 to 32767, to Components, Vectors, IntVectors, Matrices, Records and bytes.\n\n"
    "A reader shares the store with other readers. Who changes it has it alone; the changes stand on disk once the store is\n"
    "closed, and leaving a with block by an exception undoes them. A write that fails undoes them too, and closes the store.";

}  // namespace

void AddStore(py::module_ & module)
{
  py::class_<Store>(module, "Store", storeDoc)
      .def_property_readonly(
          "name", [](Store const & store) { return TextOf(store.GetName()); }, "The name of the index file.")
      .def_property_readonly(
          "closed", [](Store const & store) { return InLibrary([&] { return store.IsClosed(); }); }, "Whether it was closed.")
      .def("__getitem__", &get)
      .def("__setitem__", &set)
      .def("__delitem__", &remove)
      .def("clear", &clear,
           "Deletes all records. Of a store that is open for reading nothing is deleted, and this raises "
           "io.UnsupportedOperation.\n"
           "A write that fails undoes all that was changed since the store was opened, raises and closes the store.")
      .def("__contains__", &has)
      .def("__len__", [](Store const & store) { return InLibrary([&] { return store.GetIDs(); }).size(); })
      .def("__iter__", [](Store const & store) { return py::iter(py::cast(InLibrary([&] { return store.GetIDs(); }))); })
      .def("__enter__",
           [](py::object const & self) {
             InLibrary([&store = self.cast<Store const &>()] { return store.GetIDs(); });
             return self;
           })
      .def("__exit__", [](Store & store, py::handle kind, py::handle, py::handle) { leave(store, kind); })
      .def("read_bytes", &getBytes, py::arg("id"), "The record's bytes, whatever they hold.")
      .def("to_pandas", &FrameOf,
           "A DataFrame with a row for each component, indexed by its id, and the columns of an exported table that are used.\n"
           "Numbers and coefficients are float32 as they are stored, NaN where there is none; attrs[\"units\"] has the units.\n"
           "Records that are no components are left out; a warning names those that can't be read.")
      .def(
          "close", [](Store & store) { InLibrary([&] { store.Close(); }); }, "Ends it; what was changed stands on disk then.")
      .def("__repr__", [](Store const & store) { return py::str("<Store {!r}>").format(TextOf(store.GetName())); });
  module.def(
      "open", &openStore, py::arg("path"), py::arg("mode") = "r", py::arg("record") = py::none(),
      "Opens a store by the name of either file or their stem.\n\n"
      "mode is \"r\" to read, \"r+\" to change a store that there is, \"a\" to make one if there is none. record names the\n"
      "record file of an index file without a known extension. Raises FileNotFoundError, PermissionError, BlockingIOError\n"
      "for a store that is in use, and ValueError for one that is damaged.");
}

}  // namespace zp::python
