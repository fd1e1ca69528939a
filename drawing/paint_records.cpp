// The plain records of a pen with a fill, and of four numbers with their format.

#include <zpbase/drawing.h>

#include <algorithm>

namespace {

constexpr char const * defaultFormat = "%.4g";

}  // namespace

GPPaintBox::GPPaintBox(unsigned long penColor, unsigned int penWidth, unsigned int penStyle, unsigned long fillColor,
                       unsigned int fillPattern)
    : m_nPenColor(static_cast<COLORREF>(penColor)),
      m_nPenWidth(std::max(penWidth, 1U)),
      m_nPenStyle(penStyle),
      m_nFillColor(static_cast<COLORREF>(fillColor)),
      m_nFillPattern(fillPattern)
{
}

GPPaintBox::~GPPaintBox() = default;

GPFSheetVals::GPFSheetVals() : GPFSheetVals(0, 1, 1, 64, CString()) {}

GPFSheetVals::GPFSheetVals(unsigned long first, int second, int third, int fourth, CString const & format)
    : m_nFirst(static_cast<UINT>(first)), m_nSecond(second), m_nThird(third), m_nFourth(fourth), m_strFormat(format)
{
  if (format.IsEmpty()) m_strFormat = defaultFormat;
}

GPFSheetVals::~GPFSheetVals() = default;
