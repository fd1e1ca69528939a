// How each class is told in JSON.
#pragma once

#include <memory>
#include <span>

#include "tools/records/object_json.h"

struct ObjectForm {
  CRuntimeClass * (*getClass)();
  void (*write)(Json & json, CObject const & object);
  std::unique_ptr<CObject> (*read)(Json const & json);
};

// Sets, vectors and matrices: their numbers as "values", row by row behind "rows" and "columns" for a matrix.
std::span<ObjectForm const> GetNumberForms();
