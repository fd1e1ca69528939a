// JSON read as the events of its parser: the elements of one long list go by one at a time, so that no more than one is held.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <string_view>

#include "tools/records/object_json.h"

constexpr size_t mostJsonBytes = 0x1000000;  // of a record with every blank that one can wish for

// A place in a text, in bytes.
struct TextPlace {
  size_t line = 1;
  size_t column = 1;

  void Pass(std::string_view bytes);
};

// What the stream holds, but for the elements of the array that is the outermost object's member of that name: each is given to
// take, and the array stands empty in the result. Raises Failure for what is no JSON, for values nested deeper than any record,
// for a member that no record has or that stands twice, and as soon as one element, or what stands in front of the first or
// behind the last, has more than mostJsonBytes. What only people read is null in the result.
// begin is where the stream stands, for the Failure that tells where the JSON is none.
Json ReadJson(std::istream & input, std::string const & member, std::function<void(Json const & rest, Json const & element)> take,
              TextPlace begin = {});

Json ReadJson(std::istream & input);
