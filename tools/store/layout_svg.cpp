// Layout of a record file and its drawing as SVG.

#include "tools/store/layout_svg.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/pictures/picture.h"

namespace {

constexpr double leftEdge = 90;
constexpr double top = 64;
constexpr double rowWidth = 800;
constexpr double rowHeight = 18;
constexpr double rowStep = 24;
constexpr double pageWidth = leftEdge + rowWidth + 30;
constexpr unsigned long long mostPictureRows = 24;
constexpr unsigned long long leastRowBytes = 256;

constexpr std::array<Rgb, areaKinds> colours = {0x1B4F72, 0x2E86C1, 0xF5B041, 0xE5E8E8, 0xC0392B};
constexpr Rgb black = 0;
constexpr Rgb grey = 0x666666;
constexpr double textSize = 13;
constexpr double titleSize = 17;
constexpr std::array<char const *, areaKinds> legendNames = {"header", "live", "slack", "free", "unreadable"};

unsigned long long rowBytesOf(StoreLayout const & layout)
{
  return std::max(leastRowBytes, (layout.bytes + mostPictureRows - 1) / mostPictureRows);
}

void addArea(Picture & picture, LayoutArea const & area, unsigned long long rowBytes)
{
  for (unsigned long long at = area.start, end = area.start + area.bytes; at < end;) {
    unsigned long long const row = at / rowBytes;
    unsigned long long const stop = std::min(end, (row + 1) * rowBytes);
    double const scale = rowWidth / static_cast<double>(rowBytes);
    picture.AddRectangle(leftEdge + static_cast<double>(at - row * rowBytes) * scale, top + static_cast<double>(row) * rowStep,
                         static_cast<double>(stop - at) * scale, rowHeight);
    at = stop;
  }
}

// Neighbours of one kind are one area: what is thinner than a hair isn't drawn alone.
void addAreas(Picture & picture, StoreLayout const & layout, AreaKind kind, unsigned long long rowBytes)
{
  unsigned long long const hair = rowBytes / 4000;
  LayoutArea merged = {};
  for (LayoutArea const & area : layout.areas) {
    if (merged.bytes > 0 && (area.bytes <= hair || merged.kind == area.kind)) {
      merged.bytes += area.bytes;
    } else {
      if (merged.kind == kind) addArea(picture, merged, rowBytes);
      merged = area;
    }
  }
  if (merged.kind == kind) addArea(picture, merged, rowBytes);
}

void drawAreas(Picture & picture, StoreLayout const & layout, unsigned long long rowBytes)
{
  for (size_t kind = 0; kind < areaKinds; ++kind) {
    if (layout.totals[kind] == 0) continue;
    addAreas(picture, layout, static_cast<AreaKind>(kind), rowBytes);
    picture.Fill(colours[kind]);
  }
}

void drawLegend(Picture & picture, StoreLayout const & layout, double y)
{
  double x = leftEdge;
  for (size_t kind = 0; kind < areaKinds; ++kind) {
    if (layout.totals[kind] == 0) continue;
    picture.FillRectangle(x, y - 10, 12, 12, colours[kind]);
    picture.DrawText(x + 18, y, fmt::format("{} {:.1f}%", legendNames[kind], layout.ShareOf(layout.totals[kind])), textSize,
                     black);
    x += 140;
  }
}

void add(StoreLayout & layout, AreaKind kind, unsigned long long start, unsigned long long bytes)
{
  if (bytes == 0) return;
  layout.areas.push_back({kind, start, bytes});
  layout.totals[static_cast<size_t>(kind)] += bytes;
}

void addBlock(StoreLayout & layout, zp::RecordBlock const & block)
{
  constexpr unsigned long long header = zp::BlockHeader::byteCount;
  if (block.isFree) {
    ++layout.freeBlocks;
    return add(layout, AreaKind::Free, block.position, header + block.capacity);
  }
  ++layout.records;
  WORD const length = std::min(block.length, block.capacity);
  add(layout, AreaKind::Header, block.position, header);
  add(layout, AreaKind::Live, block.position + header, length);
  add(layout, AreaKind::Slack, block.position + header + length, static_cast<WORD>(block.capacity - length));
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
    add(layout, AreaKind::Unreadable, at, block.block.position - at);
    addBlock(layout, block.block);
    at = block.block.position + zp::BlockHeader::byteCount + block.block.capacity;
  }
  add(layout, AreaKind::Unreadable, at, layout.bytes - at);
  return layout;
}

void LayoutToSvg(StoreLayout const & layout, std::string const & title, std::function<void(std::string_view)> const & pass)
{
  unsigned long long const rowBytes = rowBytesOf(layout);
  unsigned long long const rows = (layout.bytes + rowBytes - 1) / rowBytes;
  double const legendY = top + static_cast<double>(rows) * rowStep + 24;
  Picture picture(PictureFormat::Svg, pageWidth, legendY + 20, pass);
  picture.DrawText(leftEdge, 26, title, titleSize, black);
  picture.DrawText(leftEdge, 48,
                   fmt::format("{} bytes, {} records, {} free blocks; compaction would win {} bytes, {:.1f}%", layout.bytes,
                               layout.records, layout.freeBlocks, layout.GetWin(), layout.ShareOf(layout.GetWin())),
                   textSize, black);
  for (unsigned long long row = 0; row * rowBytes < layout.bytes; ++row) {
    picture.DrawText(leftEdge - 10, top + static_cast<double>(row) * rowStep + 14, fmt::format("{}", row * rowBytes), textSize,
                     grey, TextSide::Right);
  }
  drawAreas(picture, layout, rowBytes);
  drawLegend(picture, layout, legendY);
  picture.Finish();
}
