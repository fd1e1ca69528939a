// Objects as trees of text for people: data id and its meaning, class, value; packed areas with the names of the coefficients.
#pragma once

#include <span>
#include <string>

#include "tools/records/object_json.h"

// The tree of a record's bytes, each line with its end; raw and unreadable ones as hex.
std::string RecordTree(std::span<BYTE const> bytes);

// One line that tells what a record is: its first text.
std::string FirstText(CObject const & object);
