// Metafiles as DXF drawings.

#include <pybind11/stl.h>

#include "python/library_call.h"
#include "tools/drawing/conversion.h"
#include "tools/drawing/drawing_file.h"
#include "tools/drawing/file_names.h"
#include "tools/drawing/metafile_input.h"
#include "tools/drawing/record_names.h"
#include "tools/output_names.h"

namespace zp::python {

namespace {

py::dict resultOf(Conversion const & conversion, unsigned long long bytes)
{
  py::dict result;
  result["records"] = conversion.records;
  result["bytes"] = bytes;
  result["height"] = conversion.height;
  result["whole"] = conversion.whole;
  result["y_upwards"] = conversion.upwards;
  result["texts_with_line_ends"] = conversion.brokenTexts;
  result["texts_without_size"] = conversion.sizelessTexts;
  result["shapes_without_pen"] = conversion.fillings;
  result["skipped_drawing_records"] = conversion.skippedDrawing;
  py::dict skipped;
  for (auto const & [function, count] : conversion.skipped) skipped[py::str(std::string(metafile::NameOf(function)))] = count;
  result["skipped"] = skipped;
  return result;
}

py::dict convert(py::object const & source, py::object const & target, std::optional<int> height)
{
  std::string const input = HostNameOf(source);
  std::string const output = HostNameOf(target);
  if (input == "-" || output == "-") throw py::value_error("\"-\" is no file here; write ./- for one of that name");
  unsigned long long bytes = 0;
  Conversion const conversion = InLibrary([&] {
    RefuseOverwriting({input}, {output});
    Metafile const metafile = OpenMetafile(input);
    DrawingFile file(output);
    Conversion result = ConvertMetafile(metafile.get(), file, height);
    file.Finish();
    bytes = file.GetBytes();
    file.Replace();
    return result;
  });
  return resultOf(conversion, bytes);
}

}  // namespace

void AddDrawing(py::module_ & module)
{
  module.def(
      "metafile_to_dxf", &convert, py::arg("source"), py::arg("target"), py::arg("height") = py::none(),
      "Turns a Windows metafile (.wmf) into a DXF drawing, which takes the target's place whole or not at all.\n\n"
      "y is counted from height, in the metafile's units, by default from the lower edge of its bounds. The result tells\n"
      "how many records there were, the bytes written, the height, whether the metafile was whole, and what was left out.");
}

}  // namespace zp::python
