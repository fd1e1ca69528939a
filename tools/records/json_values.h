// Checked reading of JSON members, and numbers that keep every bit.
#pragma once

#include <string>

#include "tools/records/object_json.h"

// The member of that name. Raises Failure if it is missing.
Json const & Member(Json const & json, char const * name);

// Raise Failure for a member of another kind or outside the bounds.
long long IntegerMember(Json const & json, char const * name, long long low, long long high);
std::string TextMember(Json const & json, char const * name);
Json const & ArrayMember(Json const & json, char const * name);
std::vector<BYTE> HexMember(Json const & json, char const * name);
float FloatMember(Json const & json, char const * name);
double DoubleMember(Json const & json, char const * name);

// The same of a value by itself, such as an element of an array.
long long IntegerOf(Json const & value, char const * name, long long low, long long high);
double DoubleOf(Json const & value, char const * name);
