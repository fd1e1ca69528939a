// Encodings and quotes.

#include "tools/text/cell_text.h"

#include <zpbase/platform/encoding.h>

std::string InUtf8(std::string_view bytes)
{
  std::u16string wide;
  return zp::Utf8ToWide(bytes, wide) ? std::string(bytes) : zp::TextToUtf8(bytes);
}

std::string CellText(Cell const & cell)
{
  std::string_view const text = WithoutQuotes(cell.text);
  if (text == cell.text) return InUtf8(text);
  std::string single;
  for (size_t i = 0; i < text.size(); ++i) {
    single += text[i];
    if (text.substr(i, 2) == "\"\"") ++i;
  }
  return InUtf8(single);
}
