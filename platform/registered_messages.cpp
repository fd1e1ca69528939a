// The process's table of messages that are named by strings.

#include <zpbase/platform/messages.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace {

constexpr UINT k_FirstId = 0xC000;
constexpr UINT k_LastId = 0xFFFF;
constexpr size_t k_LongestName = 255;

// Others register while the program is being loaded, so the table is made at its first use.
std::unordered_map<std::string, UINT> & registered()
{
  static std::unordered_map<std::string, UINT> ids;
  return ids;
}

}  // namespace

UINT RegisterWindowMessageA(char const * name)
{
  std::string_view const text = name != nullptr ? name : "";
  if (text.empty() || text.size() > k_LongestName) return 0;
  auto & ids = registered();
  auto const found = ids.find(std::string(text));
  if (found != ids.end()) return found->second;
  if (ids.size() > k_LastId - k_FirstId) return 0;
  auto const id = static_cast<UINT>(k_FirstId + ids.size());
  ids.emplace(text, id);
  return id;
}
