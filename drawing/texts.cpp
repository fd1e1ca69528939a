// DXFDC: texts, measured by the font's record and squeezed or stretched to their rectangle. All in double precision.

#include <zpbase/drawing.h>

#include <algorithm>

#include <zpbase/text.h>

#include "drawing/entity_text_internal.h"
#include "drawing/flip_internal.h"

namespace {

constexpr LONG widthOfNoWidth = 5;

double widthOf(CRect const & box)
{
  return static_cast<double>(box.right) - box.left;
}

double heightOf(CRect const & box)
{
  return static_cast<double>(box.bottom) - box.top;
}

CRect normalized(tagRECT const * rect)
{
  CRect box;
  if (rect != nullptr) box = *rect;
  box.NormalizeRect();
  return box;
}

// A record's text ends at the first zero, as everywhere in the file.
std::string_view charactersOf(CString const & text)
{
  return text.GetString();
}

}  // namespace

CSize DXFDC::GetTextExtent(CString const & text) const
{
  LOGFONT font;
  if (m_DeletedFont)
    font = *m_DeletedFont;
  else if (m_pFont == nullptr || m_pFont->GetLogFont(&font) == 0)
    return {};
  int64_t const width = font.lfWidth != 0 ? font.lfWidth : widthOfNoWidth;
  return {static_cast<LONG>(text.GetLength() * width), font.lfHeight};
}

int DXFDC::ExtTextOutA(int x, int y, unsigned int, tagRECT const * rect, CString const & text, int *)
{
  CRect const box = normalized(rect);
  double const boxHeight = heightOf(box);
  if (text.IsEmpty() || boxHeight == 0) return 1;
  double const height = 0.5 * boxHeight;
  double const width = widthOf(box);
  double const margin = 0.2 * std::min(width, boxHeight);
  double const factor = ((width - 2 * margin) / text.GetLength()) / height;

  zp::EntityText records(*m_pFile, m_nTextColor);
  records.AddText(x + margin, zp::Flipped(y + (boxHeight + height) / 2), height, charactersOf(text), factor);
  records.Send();
  return 1;
}

int DXFDC::DrawTextA(CString const & text, tagRECT * rect, unsigned int format)
{
  CStringArray lines;
  int const longest = ChopString(lines, text);
  if (lines.GetSize() == 0) return 0;
  CRect const box = normalized(rect);
  double const pitch = heightOf(box) / lines.GetSize();
  double const height = 0.4 * pitch;
  if ((format & DT_CALCRECT) != 0 || longest <= 0 || pitch == 0) return static_cast<int>(height);

  double const width = widthOf(box);
  double const margin = 0.25 * std::min(width, pitch);
  double const factor = ((width - 2 * margin) / longest) / height;
  double y = box.bottom - 0.7 * pitch;
  zp::EntityText records(*m_pFile, m_nTextColor);
  for (int i = 0; i < lines.GetSize(); ++i, y -= pitch)
    if (!lines[i].IsEmpty()) records.AddText(box.left + margin, zp::Flipped(y), height, charactersOf(lines[i]), factor);
  records.Send();
  return static_cast<int>(height);
}
