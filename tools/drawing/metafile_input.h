// A metafile from a file.
#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include <zpbase/drawing.h>

struct DeleteMetafile {
  void operator()(HMETAFILE metafile) const { DeleteMetaFile(metafile); }
};
using Metafile = std::unique_ptr<std::remove_pointer_t<HMETAFILE>, DeleteMetafile>;

// Raises Failure for a file that can't be read, and for one that doesn't begin as a metafile.
Metafile OpenMetafile(std::string const & name);
