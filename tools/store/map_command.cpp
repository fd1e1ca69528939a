// zp store map: where the record file is live, slack and free, as text and as a drawing.

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/exchange.h"
#include "tools/store/layout_svg.h"
#include "tools/store/session.h"
#include "tools/store/store_commands.h"
#include "tools/store/survey.h"

namespace {

struct MapArguments : StoreArguments {
  std::string m_strSvg;
};

constexpr size_t rowCells = 64;
constexpr size_t mostRows = 8;

constexpr std::array<char, areaKinds> marks = {'h', '#', '+', '.', '?'};
constexpr std::array<char const *, areaKinds> areaNames = {"headers of live blocks", "live", "slack", "free", "unreadable"};

// The picture in cells: each shows what most of its bytes are, records before the rest.
std::string cellsOf(StoreLayout const & layout)
{
  size_t const count = static_cast<size_t>(std::min<unsigned long long>(layout.m_nBytes, rowCells * mostRows));
  std::vector<std::array<unsigned long long, areaKinds>> bytes(count);
  for (LayoutArea const & area : layout.m_Areas) {
    for (unsigned long long at = area.m_nStart; at < area.m_nStart + area.m_nBytes;) {
      auto const cell = static_cast<size_t>(at * count / layout.m_nBytes);
      unsigned long long const cellEnd = ((cell + 1) * layout.m_nBytes + count - 1) / count;
      unsigned long long const end = std::min(cellEnd, area.m_nStart + area.m_nBytes);
      bytes[cell][area.m_Kind == AreaKind::Header ? 1 : static_cast<size_t>(area.m_Kind)] += end - at;
      at = end;
    }
  }
  std::string cells;
  for (auto const & cell : bytes) cells += marks[static_cast<size_t>(std::max_element(cell.begin(), cell.end()) - cell.begin())];
  return cells;
}

void printMap(StoreNames const & names, StoreLayout const & layout)
{
  std::string const cells = cellsOf(layout);
  for (size_t start = 0; start < cells.size(); start += rowCells) {
    Print(
        fmt::format("{:>10}  {}\n", start * layout.m_nBytes / std::max<size_t>(cells.size(), 1), cells.substr(start, rowCells)));
  }
  Print(fmt::format("{}: {}, {}, {}\n", names.m_strRecord, Counted(layout.m_nBytes, "byte"), Counted(layout.m_nRecords, "record"),
                    Counted(layout.m_nFreeBlocks, "free block")));
  for (size_t kind = 0; kind < areaKinds; ++kind) {
    if (layout.m_Totals[kind] == 0) continue;
    char const mark = static_cast<AreaKind>(kind) == AreaKind::Header ? ' ' : marks[kind];
    Print(fmt::format("  {}  {:<22}  {:>10}  {:5.1f}%\n", mark, areaNames[kind], layout.m_Totals[kind],
                      layout.ShareOf(layout.m_Totals[kind])));
  }
  Print(fmt::format("compaction would win {} bytes, {:.1f}%\n", layout.GetWin(), layout.ShareOf(layout.GetWin())));
}

void printMapAsJson(StoreLayout const & layout)
{
  Json json = {{"bytes", layout.m_nBytes}, {"records", layout.m_nRecords}, {"free_blocks", layout.m_nFreeBlocks}};
  constexpr std::array<char const *, areaKinds> keys = {"headers", "live", "slack", "free", "unreadable"};
  for (size_t kind = 0; kind < areaKinds; ++kind) json[keys[kind]] = layout.m_Totals[kind];
  json["compaction_wins"] = layout.GetWin();
  Print(json.dump(2) + "\n");
}

StoreLayout readLayout(StoreNames const & names)
{
  CFile file;
  OpenRecordFile(file, names, StoreAccess::Read);
  return LayoutOf(SurveyRecordFile(file, ReadIndex(names.m_strIndex)));
}

void map(MapArguments const & arguments)
{
  StoreNames const names = arguments.GetNames();
  RequireNoSwap(names);
  StoreLayout const layout = readLayout(names);
  if (!arguments.m_strSvg.empty()) WriteWholeFile(arguments.m_strSvg, LayoutToSvg(layout, names.m_strRecord));
  if (arguments.m_strSvg == "-") return;
  arguments.m_bJson ? printMapAsJson(layout) : printMap(names, layout);
}

}  // namespace

void AddMapCommand(CLI::App & store, int & status)
{
  static_cast<void>(status);
  auto const arguments = std::make_shared<MapArguments>();
  CLI::App * const command =
      AddStoreCommand(store, *arguments, "map", "Show which parts of the record file are live, slack and free");
  command->add_option("--svg", arguments->m_strSvg, "Also draw it into this SVG file, - for standard output instead of the text");
  command->callback([arguments] { map(*arguments); });
}
