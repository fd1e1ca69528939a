// What a sheet of a chart shows: nothing that would be lost in a chart made here.
#pragma once

#include <set>
#include <string>

#include "servers/embedded/package.h"
#include "servers/embedded/unkept.h"

namespace embedded {

// Adds to unkept where the chart of the part shows anything. The parts that a chart is made of are added to parts: they need
// not be told again by their names.
void LookIntoChart(Package & package, std::string const & part, std::set<std::string> & parts, UnkeptList & unkept);

}  // namespace embedded
