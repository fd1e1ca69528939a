// The process's table of messages that are named by strings.

#include <zpbase/platform/messages.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

constexpr UINT firstId = 0xC000;
constexpr UINT ids = 0x4000;
constexpr size_t longestName = 255;

// Others register while the program is being loaded, so the table is made at its first use.
std::unordered_map<UINT, std::string> & registered()
{
  static std::unordered_map<UINT, std::string> names;
  return names;
}

// The upper 14 bits of FNV-1a over the bytes, so that each process gives a string the same id without asking another.
UINT placeOf(std::string_view name)
{
  uint64_t hash = 0xCBF29CE484222325u;
  for (char const c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
  return static_cast<UINT>(hash >> 50);
}

}  // namespace

UINT RegisterWindowMessageA(char const * name)
{
  std::string_view const text = name != nullptr ? name : "";
  if (text.empty() || text.size() > longestName) return 0;
  UINT const place = placeOf(text);
  for (UINT i = 0; i < ids; ++i) {
    UINT const id = firstId + (place + i) % ids;
    if (registered().try_emplace(id, text).first->second == text) return id;
  }
  return 0;
}
