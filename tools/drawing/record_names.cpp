// The published table of metafile functions.

#include "tools/drawing/record_names.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace metafile {

namespace {

// In the order of the numbers.
constexpr Function functions[] = {
    {0x0000, "META_EOF", Use::End},
    {0x001E, "META_SAVEDC", Use::Setting},
    {0x0035, "META_REALIZEPALETTE", Use::Setting},
    {0x0037, "META_SETPALENTRIES", Use::Setting},
    {0x00F7, "META_CREATEPALETTE", Use::Object},
    {0x00F8, "META_CREATEBRUSH", Use::Object},
    {0x0102, "META_SETBKMODE", Use::Replayed},
    {0x0103, "META_SETMAPMODE", Use::Replayed},
    {0x0104, "META_SETROP2", Use::Setting},
    {0x0105, "META_SETRELABS", Use::Setting},
    {0x0106, "META_SETPOLYFILLMODE", Use::Setting},
    {0x0107, "META_SETSTRETCHBLTMODE", Use::Setting},
    {0x0108, "META_SETTEXTCHAREXTRA", Use::Setting},
    {0x0127, "META_RESTOREDC", Use::Setting},
    {0x012A, "META_INVERTREGION", Use::Drawing},
    {0x012B, "META_PAINTREGION", Use::Drawing},
    {0x012C, "META_SELECTCLIPREGION", Use::Setting},
    {0x012D, "META_SELECTOBJECT", Use::Replayed},
    {0x012E, "META_SETTEXTALIGN", Use::Setting},
    {0x0139, "META_RESIZEPALETTE", Use::Setting},
    {0x0142, "META_DIBCREATEPATTERNBRUSH", Use::Object},
    {0x0149, "META_SETLAYOUT", Use::Setting},
    {0x01F0, "META_DELETEOBJECT", Use::Replayed},
    {0x01F9, "META_CREATEPATTERNBRUSH", Use::Object},
    {0x0201, "META_SETBKCOLOR", Use::Replayed},
    {0x0209, "META_SETTEXTCOLOR", Use::Replayed},
    {0x020A, "META_SETTEXTJUSTIFICATION", Use::Setting},
    {0x020B, "META_SETWINDOWORG", Use::Replayed},
    {0x020C, "META_SETWINDOWEXT", Use::Replayed},
    {0x020D, "META_SETVIEWPORTORG", Use::Replayed},
    {0x020E, "META_SETVIEWPORTEXT", Use::Replayed},
    {0x020F, "META_OFFSETWINDOWORG", Use::Setting},
    {0x0211, "META_OFFSETVIEWPORTORG", Use::Setting},
    {0x0213, "META_LINETO", Use::Replayed},
    {0x0214, "META_MOVETO", Use::Replayed},
    {0x0220, "META_OFFSETCLIPRGN", Use::Setting},
    {0x0228, "META_FILLREGION", Use::Drawing},
    {0x0231, "META_SETMAPPERFLAGS", Use::Setting},
    {0x0234, "META_SELECTPALETTE", Use::Setting},
    {0x02FA, "META_CREATEPENINDIRECT", Use::Replayed},
    {0x02FB, "META_CREATEFONTINDIRECT", Use::Replayed},
    {0x02FC, "META_CREATEBRUSHINDIRECT", Use::Replayed},
    {0x02FD, "META_CREATEBITMAPINDIRECT", Use::Object},
    {0x0324, "META_POLYGON", Use::Replayed},
    {0x0325, "META_POLYLINE", Use::Replayed},
    {0x0410, "META_SCALEWINDOWEXT", Use::Setting},
    {0x0412, "META_SCALEVIEWPORTEXT", Use::Setting},
    {0x0415, "META_EXCLUDECLIPRECT", Use::Setting},
    {0x0416, "META_INTERSECTCLIPRECT", Use::Setting},
    {0x0418, "META_ELLIPSE", Use::Replayed},
    {0x0419, "META_FLOODFILL", Use::Drawing},
    {0x041B, "META_RECTANGLE", Use::Replayed},
    {0x041F, "META_SETPIXEL", Use::Replayed},
    {0x0429, "META_FRAMEREGION", Use::Drawing},
    {0x0436, "META_ANIMATEPALETTE", Use::Setting},
    {0x0521, "META_TEXTOUT", Use::Replayed},
    {0x0538, "META_POLYPOLYGON", Use::Drawing},
    {0x0548, "META_EXTFLOODFILL", Use::Drawing},
    {0x061C, "META_ROUNDRECT", Use::Replayed},
    {0x061D, "META_PATBLT", Use::Drawing},
    {0x0626, "META_ESCAPE", Use::Setting},
    {0x06FE, "META_CREATEBITMAP", Use::Object},
    {0x06FF, "META_CREATEREGION", Use::Object},
    {0x0817, "META_ARC", Use::Replayed},
    {0x081A, "META_PIE", Use::Replayed},
    {0x0830, "META_CHORD", Use::Replayed},
    {0x0922, "META_BITBLT", Use::Drawing},
    {0x0940, "META_DIBBITBLT", Use::Drawing},
    {0x0A32, "META_EXTTEXTOUT", Use::Replayed},
    {0x0B23, "META_STRETCHBLT", Use::Drawing},
    {0x0B41, "META_DIBSTRETCHBLT", Use::Drawing},
    {0x0D33, "META_SETDIBTODEV", Use::Drawing},
    {0x0F43, "META_STRETCHDIB", Use::Drawing},
};

}  // namespace

Function FunctionOf(unsigned int number)
{
  auto const row = std::lower_bound(std::begin(functions), std::end(functions), number,
                                    [](Function const & function, unsigned int wanted) { return function.number < wanted; });
  if (row != std::end(functions) && row->number == number) return *row;
  return {number, nullptr, Use::Setting};
}

std::string NameOf(unsigned int number)
{
  char const * const name = FunctionOf(number).name;
  return name != nullptr ? name : fmt::format("0x{:04X}", number);
}

}  // namespace metafile
