// Where and how the loops let things fail.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/HostFaults.h"

inline constexpr HostFault hostFaults[] = {{EIO},          {EIO, true}, {ENOSPC},           {ENOSPC, true},      {EACCES},
                                           {EACCES, true}, {EINTR},     {EIO, false, true}, {ENOSPC, true, true}};

// The places 1 to count, or an even sample of them unless ZP_FAULTS is "all".
inline std::vector<int> PlacesOf(int count, int sampled)
{
  char const * const wanted = std::getenv("ZP_FAULTS");
  int const number = wanted != nullptr && std::string_view(wanted) == "all" ? count : std::min(count, sampled);
  std::vector<int> places;
  for (int i = 0; i < number; ++i) places.push_back(1 + static_cast<int>(static_cast<long>(count) * i / number));
  return places;
}

inline std::string Told(int place, HostFault const & fault)
{
  return "host call " + std::to_string(place) + ", error " + std::to_string(fault.error) + (fault.forGood ? " for good" : "") +
         (fault.comesShort ? ", short" : "");
}
