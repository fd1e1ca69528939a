// How each class is told in JSON.
#pragma once

#include <memory>
#include <span>

#include "tools/records/json_text.h"
#include "tools/records/object_json.h"

struct ObjectForm {
  CRuntimeClass * (*getClass)();
  void (*write)(JsonText & json, CObject const & object);  // its members
  std::unique_ptr<CObject> (*read)(Json const & json);
};

// Sets, vectors and matrices: their numbers as "values", row by row behind "rows" and "columns" for a matrix.
std::span<ObjectForm const> GetNumberForms();
