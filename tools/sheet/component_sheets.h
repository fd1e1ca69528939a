// Components as two sheets of a workbook: "Constants" with their texts, numbers and groups, "Correlations" with the coefficients,
// both with an id, a name and a row for each component. The heads tell what a column is and its unit.
#pragma once

#include "tools/records/components.h"
#include "tools/sheet/sheet_arguments.h"

// Adds the sheets to the workbook of the arguments, or makes it. Raises Failure, with the file as it was, if a sheet of such a
// name is there; what the server refuses passes.
void WriteComponentSheets(ComponentTable const & table, SheetArguments const & where);
