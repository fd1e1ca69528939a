// Values of cells as text, and back.
#pragma once

#include <string>
#include <string_view>

#include <zpbase/platform/variants.h>

// A field of a CSV line: numbers in the shortest form that gives the same double, TRUE and FALSE, errors as spreadsheets write
// them, and nothing for an empty cell. Texts are quoted where they must be.
void AppendCsvCell(std::string & line, VARIANT const & value);

// The same as JSON: null for an empty cell, {"error":"#N/A"} for an error.
void AppendJsonCell(std::string & json, VARIANT const & value);

// The value of a field in well-formed UTF-8: a number is one as JSON has it, finite, and no integer beyond what a double holds;
// TRUE, FALSE and errors are what they say, a blank field is an empty cell, and everything else a text.
COleVariant ReadCsvCell(std::string_view field);
