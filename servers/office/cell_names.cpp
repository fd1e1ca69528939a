// Reading the names of cells and blocks.
#include "cell_names.h"

#include <algorithm>

namespace office {
namespace {

struct Place {
  int32_t column;
  int32_t row;
};

bool skip(std::u16string_view & text, char16_t mark)
{
  if (text.empty() || text.front() != mark) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<Place> takePlace(std::u16string_view & text)
{
  Place place{0, 0};
  skip(text, u'$');
  for (; !text.empty() && place.column <= mostColumns; text.remove_prefix(1)) {
    char16_t const letter = static_cast<char16_t>(text.front() & ~0x20);
    if (letter < u'A' || letter > u'Z') break;
    place.column = place.column * 26 + (letter - u'A' + 1);
  }
  skip(text, u'$');
  for (; !text.empty() && text.front() >= u'0' && text.front() <= u'9' && place.row <= mostRows; text.remove_prefix(1))
    place.row = place.row * 10 + (text.front() - u'0');
  if (place.column < 1 || place.column > mostColumns || place.row < 1 || place.row > mostRows) return std::nullopt;
  return Place{place.column - 1, place.row - 1};
}

}  // namespace

std::optional<Area> ParseArea(std::u16string_view name)
{
  std::optional<Place> const first = takePlace(name);
  if (!first) return std::nullopt;
  std::optional<Place> const last = skip(name, u':') ? takePlace(name) : first;
  if (!last || !name.empty()) return std::nullopt;
  return Area{std::min(first->column, last->column), std::min(first->row, last->row), std::max(first->column, last->column),
              std::max(first->row, last->row)};
}

}  // namespace office
