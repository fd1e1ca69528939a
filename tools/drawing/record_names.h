// The functions of metafile records.
#pragma once

#include <string>

namespace metafile {

// What a replay makes of a record.
enum class Use {
  Replayed,
  End,      // of the file
  Setting,  // passed over; it changes how later records look, or nothing
  Object,   // passed over; it makes an object that takes a number
  Drawing   // passed over, and something that it would have drawn is missing
};

struct Function {
  unsigned int number;
  char const * name;
  Use use;
};

// A row for any number; for one that no published function has, the name is null.
Function FunctionOf(unsigned int number);

std::string NameOf(unsigned int number);  // "META_ESCAPE", or "0x1234"

}  // namespace metafile
