// A component as Python sees it: the items of a record under the names that the table of data ids gives them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <zpbase/data.h>

#include "python/bindings.h"
#include "tools/records/data_ids.h"

namespace zp::python {

// The coefficients of a property correlation, which are all that a store keeps of it.
struct Correlation {
  std::vector<float> coefficients;
  std::optional<int> equation;            // its number, for a correlation that has one
  DataMeaning const * meaning = nullptr;  // null for one that isn't a component's
};

// A record of a class that has no form of its own here.
struct Record {
  std::string className;
  std::string bytes;
};

class Component {
 public:
  Component() : m_pData(std::make_shared<GPDataArray>()) {}
  explicit Component(std::shared_ptr<GPDataArray> data) : m_pData(std::move(data)) {}

  GPDataArray const & GetData() const { return *m_pData; }

  // Names of values, and numbers of data ids without a name, each once, in the order of the items.
  py::list GetKeys() const;
  bool Has(py::handle key) const { return Find(key) != nullptr; }

  // Raises KeyError.
  py::object Get(py::handle key) const;

  // None for a value that isn't there.
  py::object GetOrNone(char const * name) const;

  // Takes a value by its name; a blank text and 0 are no values and remove it. Raises KeyError, TypeError and ValueError, and
  // then the value is as it was.
  void Set(py::handle key, py::handle value);
  void Delete(py::handle key);
  void Clear() { m_pData = std::make_shared<GPDataArray>(); }

  // The values of some kinds, by name.
  py::dict GetConstants() const;
  py::dict GetCorrelations() const;

 private:
  GPData const * Find(py::handle key) const;

  std::shared_ptr<GPDataArray> m_pData;
};

// The double that has the shortest decimal with the same 32 bits.
double ShortestDouble(float value);

// The 32-bit number next to value. Raises ValueError where that is infinite, or 0 for what isn't 0.
float Narrowed(double value);

// What an item holds.
py::object ValueOf(GPData const & item);

// The item that a value makes, or null for no value. Raises TypeError and ValueError.
std::unique_ptr<GPData> MakeItem(DataMeaning const & meaning, py::handle value);

}  // namespace zp::python
