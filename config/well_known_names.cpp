// Makes the accessors of the fixed names from their table.

#include <zpbase/config.h>

#include <string_view>

#define ZP_NAME(accessor, text) \
  char const * accessor()       \
  {                             \
    return text;                \
  }
#include <zpbase/well_known_names.h>

int GetTruncateSuffixLength()
{
  return static_cast<int>(std::string_view(GetTruncateSuffix()).size());
}
