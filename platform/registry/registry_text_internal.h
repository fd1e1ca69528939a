// The registration-entries text form, line by line.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <zpbase/platform/registry.h>

namespace zp {

// One line with those that continue it. DeleteKey and DeleteValue are the lines [-path] and "name"=-.
struct RegistryLine {
  enum Kind { Other, Key, DeleteKey, Value, DeleteValue };

  Kind kind = Other;
  size_t begin = 0;
  size_t end = 0;         // behind the line end
  std::string_view path;  // the key the line names or stands under
  std::string name;       // the value's name without its quotes and escapes; empty is the key's default value
  DWORD type = REG_NONE;
  std::string data;
};

// True for a text that is empty or begins with the form's first line.
bool IsRegistryText(std::string_view text);

// Visits every line; what isn't well formed is Other.
void WalkRegistryText(std::string_view text, std::function<void(RegistryLine const &)> const & visit);

// A value's line or lines, with line ends.
std::string RegistryValueText(std::string_view name, DWORD type, std::string_view data, std::string_view lineEnd);

// The line that removes a value.
std::string RegistryRemovalText(std::string_view name, std::string_view lineEnd);

// True for the whole path of a key: names that a line can hold, 512 levels at most.
bool IsRegistryPath(std::string_view path);

// True for a value's name that a line can hold.
bool FitsRegistryLine(std::string_view name);

}  // namespace zp
