// Objects as trees of text for people: data id and its meaning, class, value; packed areas with the names of the coefficients.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "tools/records/object_json.h"

// The tree of a record's bytes, passed on line by line, each with its end; raw and unreadable ones as hex.
void WriteRecordTree(std::span<BYTE const> bytes, std::function<void(std::string_view)> const & pass);

// One line that tells what a record is: its first text.
std::string FirstText(CObject const & object);
