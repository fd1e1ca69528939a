// JSON values on their way out: whatever bytes are in their texts, what is written is JSON, and no terminal is steered by it.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "tools/shown_text.h"

// On one line without an indent.
template <class Value>
std::string DumpJson(Value const & json, int indent = -1)
{
  return VisibleJson(json.dump(indent, ' ', false, Value::error_handler_t::replace));
}
