// Functions on strings: cutting at line ends, tabs, groups and blanks.

#include <zpbase/text.h>

#include <algorithm>

#include <zpbase/platform/encoding.h>
#include <zpbase/well_known_names.h>

#include "text/tabs_internal.h"

namespace zp {

std::string ExpandedTabs(std::string_view text, size_t column, size_t tabWidth)
{
  std::string out;
  out.reserve(text.size());
  for (char const c : text) {
    size_t const count = c == '\t' ? tabWidth - column % tabWidth : 1;
    out.append(count, c == '\t' ? ' ' : c);
    column += count;
  }
  return out;
}

}  // namespace zp

// A CR with another character behind it keeps that one, so that CR CR LF ends no line.
int ChopString(CStringArray & lines, CString const & text)
{
  std::string_view const lineEnd = GetCRLFString();
  std::string_view const all = text.View();
  size_t longest = 0;
  for (size_t cut = 0; cut < all.size();) {
    size_t end = cut;
    while (end < all.size() && all.substr(end, lineEnd.size()) != lineEnd) {
      bool const keepsNext = all[end] == lineEnd[0] && end + 1 < all.size();
      end += keepsNext ? 2 : 1;
    }
    lines.Add(CString(all.substr(cut, end - cut)));
    longest = std::max(longest, end - cut);
    cut = end + lineEnd.size();
  }
  return static_cast<int>(longest);
}

unsigned int ExpandTabs(CString & text, int tabWidth)
{
  std::string_view const all = text.View();
  auto const tabs = static_cast<unsigned int>(std::count(all.begin(), all.end(), '\t'));
  if (tabs != 0) text = CString(zp::ExpandedTabs(all, 0, tabWidth > 0 ? static_cast<size_t>(tabWidth) : 1));
  return tabs;
}

void InsertSpaces(CString & text, int group)
{
  if (text.IsEmpty() || group == 0) return;
  std::string_view const all = text.View();
  size_t const size = group > 0 ? static_cast<size_t>(group) : size_t{0} - static_cast<size_t>(group);
  size_t cut = group > 0 ? std::min(size, all.size()) : all.size() % size;
  std::string out(all.substr(0, cut));
  for (; cut < all.size(); cut += std::min(size, all.size() - cut)) {
    out += ' ';
    out += all.substr(cut, size);
  }
  text = CString(std::move(out));
}

int RemoveSpaces(CString & text)
{
  std::string out(text.View());
  std::erase(out, ' ');
  text = CString(std::move(out));
  return text.GetLength();
}

int PadString(CString & text, int width)
{
  if (text.GetLength() > width) return 0;
  text += CString(' ', width - text.GetLength());
  return 1;
}

int IsCharDigit(char c)
{
  return IsCharAlphaNumericA(c) && !IsCharAlphaA(c);
}

int IsCharDigit(unsigned int c)
{
  return c >= '0' && c <= '9';
}

int FindString(CStringArray const & array, CString const & text)
{
  for (int i = 0; i < array.GetSize(); ++i) {
    if (array[i] == text) return i;
  }
  return -1;
}
