// CDC: the state of a device context.

#include <zpbase/platform/drawing.h>

#include <utility>

IMPLEMENT_DYNAMIC(CDC, CObject)

COLORREF CDC::SetTextColor(COLORREF color)
{
  return std::exchange(m_nTextColor, color);
}
