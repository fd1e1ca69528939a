// The kinds of what isn't kept, and by which parts and elements they are known.

#include "servers/embedded/unkept.h"

#include <algorithm>
#include <array>
#include <optional>

namespace embedded {
namespace {

constexpr std::array<char const *, static_cast<size_t>(Unkept::Count)> phrases = {
    "formulas (their values stay)",
    "cell formats (values and dates stay as numbers)",
    "fonts and readings inside texts",
    "widths, heights, hidden rows and columns",
    "merged cells (their values stay)",
    "filters and outlines",
    "conditional formats",
    "validation rules",
    "hyperlinks",
    "defined names",
    "drawings and pictures",
    "what the charts show (their names stay)",
    "comments",
    "tables",
    "pivot tables",
    "macros",
    "protection",
    "page set-up",
    "zoom, grid lines and frozen panes",
    "named styles",
    "the theme",
    "settings of calculation",
    "document properties",
    "dialog and macro sheets",
    "links to other workbooks",
    "other contents",
};

// A name, or of a part the beginning where it ends in a slash or a letter that stands for more; nothing for what can be made
// anew.
struct Known {
  std::string_view name;
  std::optional<Unkept> kind;
};

constexpr std::array parts = {
    Known{"docprops/custom.xml", Unkept::Properties},
    Known{"xl/dialogsheets/", Unkept::OtherSheets},
    Known{"xl/macrosheets/", Unkept::OtherSheets},
    Known{"xl/vbaproject", Unkept::Macros},
    Known{"xl/vbadata", Unkept::Macros},
    Known{"xl/drawings/", Unkept::Drawings},
    Known{"xl/media/", Unkept::Drawings},
    Known{"xl/charts/", Unkept::Drawings},
    Known{"xl/comments", Unkept::Comments},
    Known{"xl/threadedcomments/", Unkept::Comments},
    Known{"xl/persons/", Unkept::Comments},
    Known{"xl/tables/", Unkept::Tables},
    Known{"xl/pivot", Unkept::PivotTables},
    Known{"xl/slicer", Unkept::PivotTables},
    Known{"xl/externallinks/", Unkept::OtherBooks},
    Known{"xl/printersettings/", Unkept::PageSetup},
};

constexpr std::array sheetElements = {
    Known{"dimension", {}},
    Known{"sheetCalcPr", {}},
    Known{"phoneticPr", {}},
    Known{"mergeCells", Unkept::MergedCells},
    Known{"autoFilter", Unkept::Filters},
    Known{"sortState", Unkept::Filters},
    Known{"conditionalFormatting", Unkept::ConditionalFormats},
    Known{"dataValidations", Unkept::Validations},
    Known{"hyperlinks", Unkept::Links},
    Known{"sheetProtection", Unkept::Protection},
    Known{"protectedRanges", Unkept::Protection},
    Known{"rowBreaks", Unkept::PageSetup},
    Known{"colBreaks", Unkept::PageSetup},
    Known{"drawing", Unkept::Drawings},
    Known{"legacyDrawing", Unkept::Drawings},
    Known{"picture", Unkept::Drawings},
    Known{"tableParts", Unkept::Tables},
};

constexpr std::array bookElements = {
    Known{"fileVersion", {}},
    Known{"fileRecoveryPr", {}},
    Known{"fileSharing", Unkept::Protection},
    Known{"workbookProtection", Unkept::Protection},
    Known{"externalReferences", Unkept::OtherBooks},
    Known{"pivotCaches", Unkept::PivotTables},
};

}  // namespace

void UnkeptList::AddPart(std::string_view part)
{
  auto const * const found =
      std::find_if(parts.begin(), parts.end(), [&](Known const & known) { return part.starts_with(known.name); });
  if (found == parts.end())
    Add(Unkept::Other);
  else if (found->kind)
    Add(*found->kind);
}

void UnkeptList::AddSheetElement(std::string_view element)
{
  auto const * const found =
      std::find_if(sheetElements.begin(), sheetElements.end(), [&](Known const & known) { return known.name == element; });
  if (found == sheetElements.end())
    Add(Unkept::Other);
  else if (found->kind)
    Add(*found->kind);
}

void UnkeptList::AddBookElement(std::string_view element)
{
  auto const * const found =
      std::find_if(bookElements.begin(), bookElements.end(), [&](Known const & known) { return known.name == element; });
  if (found == bookElements.end())
    Add(Unkept::Other);
  else if (found->kind)
    Add(*found->kind);
}

std::vector<std::string> UnkeptList::GetPhrases() const
{
  std::vector<std::string> told;
  for (size_t i = 0; i < phrases.size(); ++i)
    if ((m_nKinds >> i & 1U) != 0) told.emplace_back(phrases[i]);
  return told;
}

}  // namespace embedded
