// Layout of a record file and its drawing as SVG.

#include "tools/store/layout_svg.h"

#include <algorithm>

#include <fmt/format.h>

namespace {

constexpr double left = 90;
constexpr double top = 64;
constexpr double rowWidth = 800;
constexpr double rowHeight = 18;
constexpr double rowStep = 24;
constexpr double pageWidth = left + rowWidth + 30;
constexpr unsigned long long mostRows = 24;
constexpr unsigned long long leastRowBytes = 256;

constexpr std::array<char const *, areaKinds> colours = {"#1b4f72", "#2e86c1", "#f5b041", "#e5e8e8", "#c0392b"};
constexpr std::array<char const *, areaKinds> names = {"header", "live", "slack", "free", "unreadable"};

std::string escaped(std::string const & text)
{
  std::string out;
  for (char const c : text) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c == '>')
      out += "&gt;";
    else if (static_cast<unsigned char>(c) >= 0x20)
      out += c;
  }
  return out;
}

unsigned long long rowBytesOf(StoreLayout const & layout)
{
  return std::max(leastRowBytes, (layout.bytes + mostRows - 1) / mostRows);
}

void drawArea(std::string & svg, LayoutArea const & area, unsigned long long rowBytes)
{
  for (unsigned long long at = area.start, end = area.start + area.bytes; at < end;) {
    unsigned long long const row = at / rowBytes;
    unsigned long long const stop = std::min(end, (row + 1) * rowBytes);
    double const scale = rowWidth / static_cast<double>(rowBytes);
    svg += fmt::format("<rect x=\"{:.2f}\" y=\"{:.0f}\" width=\"{:.2f}\" height=\"{:.0f}\" fill=\"{}\"/>\n",
                       left + static_cast<double>(at - row * rowBytes) * scale, top + static_cast<double>(row) * rowStep,
                       static_cast<double>(stop - at) * scale, rowHeight, colours[static_cast<size_t>(area.kind)]);
    at = stop;
  }
}

// Neighbours of one kind are one area: what is thinner than a hair isn't drawn alone.
std::vector<LayoutArea> mergedAreas(StoreLayout const & layout, unsigned long long rowBytes)
{
  unsigned long long const hair = rowBytes / 4000;
  std::vector<LayoutArea> merged;
  for (LayoutArea const & area : layout.areas) {
    bool const thin = area.bytes <= hair;
    if (!merged.empty() && (thin || merged.back().kind == area.kind))
      merged.back().bytes += area.bytes;
    else
      merged.push_back(area);
  }
  return merged;
}

std::string legendOf(StoreLayout const & layout, double y)
{
  std::string svg;
  double x = left;
  for (size_t kind = 0; kind < areaKinds; ++kind) {
    if (layout.totals[kind] == 0) continue;
    svg += fmt::format("<rect x=\"{:.0f}\" y=\"{:.0f}\" width=\"12\" height=\"12\" fill=\"{}\"/>\n", x, y - 10, colours[kind]);
    svg += fmt::format("<text x=\"{:.0f}\" y=\"{:.0f}\">{} {:.1f}%</text>\n", x + 18, y, names[kind],
                       layout.ShareOf(layout.totals[kind]));
    x += 140;
  }
  return svg;
}

void add(StoreLayout & layout, AreaKind kind, unsigned long long start, unsigned long long bytes)
{
  if (bytes == 0) return;
  layout.areas.push_back({kind, start, bytes});
  layout.totals[static_cast<size_t>(kind)] += bytes;
}

void addBlock(StoreLayout & layout, zp::RecordBlock const & block)
{
  constexpr unsigned long long headerBytes = zp::BlockChain::headerSize;
  if (block.bFree) {
    ++layout.freeBlocks;
    return add(layout, AreaKind::Free, block.nPosition, headerBytes + block.nCapacity);
  }
  ++layout.records;
  WORD const length = std::min(block.nLength, block.nCapacity);
  add(layout, AreaKind::Header, block.nPosition, headerBytes);
  add(layout, AreaKind::Live, block.nPosition + headerBytes, length);
  add(layout, AreaKind::Slack, block.nPosition + headerBytes + length, static_cast<WORD>(block.nCapacity - length));
}

}  // namespace

unsigned long long StoreLayout::GetWin() const
{
  if (totals[static_cast<size_t>(AreaKind::Unreadable)] > 0) return 0;
  return totals[static_cast<size_t>(AreaKind::Slack)] + totals[static_cast<size_t>(AreaKind::Free)];
}

double StoreLayout::ShareOf(unsigned long long part) const
{
  return bytes == 0 ? 0.0 : 100.0 * static_cast<double>(part) / static_cast<double>(bytes);
}

StoreLayout LayoutOf(Survey const & survey)
{
  StoreLayout layout;
  layout.bytes = survey.fileLength;
  unsigned long long at = 0;
  for (SurveyBlock const & block : survey.blocks) {
    if (!block.fits) continue;
    add(layout, AreaKind::Unreadable, at, block.block.nPosition - at);
    addBlock(layout, block.block);
    at = block.block.nPosition + zp::BlockChain::headerSize + block.block.nCapacity;
  }
  add(layout, AreaKind::Unreadable, at, layout.bytes - at);
  return layout;
}

std::string LayoutToSvg(StoreLayout const & layout, std::string const & title)
{
  unsigned long long const rowBytes = rowBytesOf(layout);
  auto const rows = static_cast<double>((layout.bytes + rowBytes - 1) / rowBytes);
  double const legendY = top + rows * rowStep + 24;
  std::string svg = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 {0:.0f} {1:.0f}\" "
      "font-family=\"sans-serif\" font-size=\"13\">\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n",
      pageWidth, legendY + 20);
  svg += fmt::format("<text x=\"{:.0f}\" y=\"26\" font-size=\"17\">{}</text>\n", left, escaped(title));
  svg += fmt::format(
      "<text x=\"{:.0f}\" y=\"48\">{} bytes, {} records, {} free blocks; compaction would win {} bytes, "
      "{:.1f}%</text>\n",
      left, layout.bytes, layout.records, layout.freeBlocks, layout.GetWin(), layout.ShareOf(layout.GetWin()));
  for (unsigned long long row = 0; row * rowBytes < layout.bytes; ++row) {
    svg += fmt::format("<text x=\"{:.0f}\" y=\"{:.0f}\" text-anchor=\"end\" fill=\"#666\">{}</text>\n", left - 10,
                       top + static_cast<double>(row) * rowStep + 14, row * rowBytes);
  }
  for (LayoutArea const & area : mergedAreas(layout, rowBytes)) drawArea(svg, area, rowBytes);
  return svg + legendOf(layout, legendY) + "</svg>\n";
}
