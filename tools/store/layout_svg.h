// The layout of a record file, and its drawing.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/store/block_survey.h"

enum class AreaKind { Header, Live, Slack, Free, Unreadable };
inline constexpr size_t areaKinds = 5;

struct LayoutArea {
  AreaKind kind;
  unsigned long long start;
  unsigned long long bytes;
};

// The areas cover the file without a gap. The header of a free block counts as free.
struct StoreLayout {
  std::vector<LayoutArea> areas;
  std::array<unsigned long long, areaKinds> totals = {};
  unsigned long long bytes = 0;
  size_t records = 0;
  size_t freeBlocks = 0;

  // What compaction would win; nothing for a file that it refuses.
  unsigned long long GetWin() const;
  double ShareOf(unsigned long long part) const;  // percent of the file
};

StoreLayout LayoutOf(Survey const & survey);

// Gives pass the drawing's text in pieces.
void LayoutToSvg(StoreLayout const & layout, std::string const & title, std::function<void(std::string_view)> const & pass);
