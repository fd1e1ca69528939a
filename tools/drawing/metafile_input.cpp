// Reading the file, and telling what else it may be.

#include "tools/drawing/metafile_input.h"

#include <string_view>

#include <fmt/format.h>

#include "tools/program.h"

namespace {

bool isEnhanced(std::string_view bytes)
{
  constexpr size_t place = 40;  // of the mark in an enhanced metafile's header
  return bytes.size() > place && bytes.substr(place, 4) == " EMF";
}

}  // namespace

Metafile OpenMetafile(std::string const & name)
{
  std::string const bytes = ReadWholeFile(name);
  if (bytes.size() <= UINT32_MAX) {
    Metafile metafile(SetMetaFileBitsEx(static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE const *>(bytes.data())));
    if (metafile) return metafile;
  }
  throw Failure(fmt::format("{}: {}", name,
                            isEnhanced(bytes) ? "is an enhanced metafile (EMF); save the picture as WMF"
                                              : "doesn't begin as a metafile (WMF); check which program wrote it"));
}
