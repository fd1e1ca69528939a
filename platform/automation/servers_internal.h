// What the loader of servers asks the table of servers.

#pragma once

#include <string_view>

namespace zp {

bool IsAutomationServer(std::string_view progId);

}  // namespace zp
