// Two names that together address something, as the key of a hash table that doesn't regard the case of ASCII letters.
#pragma once

#include <zpbase/platform/ascii.h>

namespace zp {

struct NamePair {
  std::string_view first;
  std::string_view second;
};

struct HashNames {
  size_t operator()(NamePair const & names) const { return HashNoCase(names.second, HashNoCase(names.first)); }
};

struct EqualNames {
  bool operator()(NamePair const & a, NamePair const & b) const
  {
    return EqualsNoCase(a.second, b.second) && EqualsNoCase(a.first, b.first);
  }
};

}  // namespace zp
