// CWindowPlacement: the places of windows as texts in the settings.

#include <zpbase/config.h>
#include <zpbase/views.h>

#include <algorithm>
#include <charconv>
#include <span>
#include <string_view>

namespace {

constexpr char section[] = "WindowPlacement";

// What keeps its size, and has its left and top alone in the settings.
bool isDialog(CWnd const & window)
{
  return window.IsKindOf(RUNTIME_CLASS(CDialog)) || window.IsKindOf(RUNTIME_CLASS(CPropertySheet));
}

void skipBlanks(std::string_view & text)
{
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
}

// Reads numbers with commas between them, as many as there are in that form; the others stay.
void readNumbers(std::string_view text, std::span<LONG * const> numbers)
{
  for (size_t i = 0; i < numbers.size(); ++i) {
    if (i != 0) {
      if (!text.starts_with(',')) return;
      text.remove_prefix(1);
    }
    skipBlanks(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    LONG number;
    auto const [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc()) return;
    *numbers[i] = number;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
  }
}

LONG sum(LONG low, LONGLONG extent)
{
  return static_cast<LONG>(std::clamp<LONGLONG>(low + extent, INT32_MIN, INT32_MAX));
}

}  // namespace

void CWindowPlacement::Save(char const * key, CWnd * window)
{
  if (key == nullptr || window == nullptr || !window->GetWindowPlacement(this)) return;
  RECT const & place = rcNormalPosition;
  CString value;
  if (isDialog(*window))
    value.Format("%d, %d", place.left, place.top);
  else
    value.Format("%d, %d, %d, %d", place.left, place.top, place.right, place.bottom);
  SetSysString(section, key, value);
}

void CWindowPlacement::Restore(char const * key, CWnd * window)
{
  if (key == nullptr || window == nullptr || !window->GetWindowPlacement(this)) return;
  RECT & place = rcNormalPosition;
  CString value;
  if (GetSysString(value, section, key, CString()) != 0) {
    if (isDialog(*window)) {
      LONGLONG const width = LONGLONG{place.right} - place.left;
      LONGLONG const height = LONGLONG{place.bottom} - place.top;
      LONG * const fields[] = {&place.left, &place.top};
      readNumbers(value.View(), fields);
      place.right = sum(place.left, width);
      place.bottom = sum(place.top, height);
    } else {
      LONG * const fields[] = {&place.left, &place.top, &place.right, &place.bottom};
      readNumbers(value.View(), fields);
    }
  }
  window->SetWindowPlacement(this);
}
