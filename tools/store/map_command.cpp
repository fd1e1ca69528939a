// zp store map: where the record file is live, slack and free, as text and as a drawing.

#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "tools/output_file.h"
#include "tools/output_names.h"
#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/block_survey.h"
#include "tools/store/layout_svg.h"
#include "tools/store/open_store.h"

namespace {

constexpr size_t rowCells = 64;
constexpr size_t mostMapRows = 8;

constexpr std::array<char, areaKinds> areaMarks = {'h', '#', '+', '.', '?'};
constexpr std::array<char const *, areaKinds> areaNames = {"headers of live blocks", "live", "slack", "free", "unreadable"};

// The picture in cells: each shows what most of its bytes are, records before the rest.
std::string cellsOf(StoreLayout const & layout)
{
  size_t const count = static_cast<size_t>(std::min<unsigned long long>(layout.bytes, rowCells * mostMapRows));
  std::vector<std::array<unsigned long long, areaKinds>> bytes(count);
  for (LayoutArea const & area : layout.areas) {
    for (unsigned long long at = area.start; at < area.start + area.bytes;) {
      auto const cell = static_cast<size_t>(at * count / layout.bytes);
      unsigned long long const cellEnd = ((cell + 1) * layout.bytes + count - 1) / count;
      unsigned long long const end = std::min(cellEnd, area.start + area.bytes);
      bytes[cell][area.kind == AreaKind::Header ? 1 : static_cast<size_t>(area.kind)] += end - at;
      at = end;
    }
  }
  std::string cells;
  for (auto const & cell : bytes)
    cells += areaMarks[static_cast<size_t>(std::max_element(cell.begin(), cell.end()) - cell.begin())];
  return cells;
}

void printMap(StoreNames const & names, StoreLayout const & layout)
{
  std::string const cells = cellsOf(layout);
  for (size_t start = 0; start < cells.size(); start += rowCells) {
    PrintLine(fmt::format("{:>10}  {}", start * layout.bytes / std::max<size_t>(cells.size(), 1), cells.substr(start, rowCells)));
  }
  PrintLine(fmt::format("{}: {}, {}, {}", names.record, Counted(layout.bytes, "byte"), Counted(layout.records, "record"),
                        Counted(layout.freeBlocks, "free block")));
  for (size_t kind = 0; kind < areaKinds; ++kind) {
    if (layout.totals[kind] == 0) continue;
    char const mark = static_cast<AreaKind>(kind) == AreaKind::Header ? ' ' : areaMarks[kind];
    PrintLine(fmt::format("  {}  {:<22}  {:>10}  {:5.1f}%", mark, areaNames[kind], layout.totals[kind],
                          layout.ShareOf(layout.totals[kind])));
  }
  PrintLine(fmt::format("compaction would win {} bytes, {:.1f}%", layout.GetWin(), layout.ShareOf(layout.GetWin())));
}

void printMapAsJson(StoreLayout const & layout)
{
  Json json = {{"bytes", layout.bytes}, {"records", layout.records}, {"free_blocks", layout.freeBlocks}};
  constexpr std::array<char const *, areaKinds> keys = {"headers", "live", "slack", "free", "unreadable"};
  for (size_t kind = 0; kind < areaKinds; ++kind) json[keys[kind]] = layout.totals[kind];
  json["compaction_wins"] = layout.GetWin();
  Print(DumpJson(json, 2) + "\n");
}

StoreLayout readLayout(StoreNames const & names)
{
  OpenStore store(names, StoreAccess::Look);
  return LayoutOf(SurveyRecordFile(store.GetRecordFile(), store.GetIndex()));
}

struct MapCommand : StoreArguments {
  static constexpr char const * name = "map";
  static constexpr char const * help = "Show which parts of the record file are live, slack and free";
  static constexpr char const * example = "zp store map job --svg map.svg";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    RequireNamed(command.add_option("--svg", svg, "Also draw it into this SVG file, - for standard output instead of the text"));
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    RefuseOverwriting({}, {svg, json ? "-" : ""});
    StoreLayout const layout = readLayout(names);
    if (!svg.empty()) RequireOtherFile(names, svg);
    if (!svg.empty()) {
      OutputFile output(svg);
      LayoutToSvg(layout, names.record, [&](std::string_view piece) { output.Write(piece); });
      output.Commit();
    }
    if (svg == "-") return exitDone;
    if (json) {
      printMapAsJson(layout);
    } else {
      printMap(names, layout);
    }
    return exitDone;
  }

  std::string svg;
};

}  // namespace

void AddMapCommand(CLI::App & family, int & status)
{
  AddCommand<MapCommand>(family, status);
}
