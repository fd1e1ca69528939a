// The columns that a table of components may have, and what a row of them says.
#pragma once

#include <string>
#include <vector>

#include <zpbase/data.h>

#include "tools/records/data_ids.h"

constexpr int equationPart = -1;

struct Column {
  std::string name;
  DataMeaning const * meaning;  // null for the id
  int part;                     // index of a coefficient, or equationPart
};

using Cells = std::vector<std::string>;  // of all columns

std::vector<Column> const & AllColumns();
size_t FirstColumnOf(DataMeaning const & meaning);

// Raises Failure for text that the column can't have.
void RequireCell(Column const & column, std::string const & cell);

// The items of a row whose cells are as required.
void LoadComponent(GPDataArray & data, Cells const & cells);
