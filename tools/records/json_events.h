// JSON read as the events of its parser: the elements of one long list go by one at a time, so that no more than one is held.
#pragma once

#include <functional>
#include <istream>
#include <string>

#include "tools/records/object_json.h"

// What the stream holds, but for the elements of the array that is the outermost object's member of that name: each is given to
// take, and the array stands empty in the result. Raises Failure for what is no JSON, and for values nested deeper than any
// record.
Json ReadJson(std::istream & input, std::string const & member,
              std::function<void(Json const & rest, Json const & element)> take);

Json ReadJson(std::istream & input);
