// Pens, brushes and fonts: objects that hold their logical records.

#include <zpbase/platform/drawing.h>

IMPLEMENT_DYNAMIC(CGdiObject, CObject)
IMPLEMENT_DYNAMIC(CPen, CGdiObject)
IMPLEMENT_DYNAMIC(CBrush, CGdiObject)
IMPLEMENT_DYNAMIC(CFont, CGdiObject)

namespace {

template <class Record>
BOOL create(bool & created, Record & kept, Record const * record)
{
  if (created || record == nullptr) return FALSE;
  kept = *record;
  created = true;
  return TRUE;
}

template <class Record>
int copyOut(bool created, Record const & kept, Record * record)
{
  if (!created || record == nullptr) return 0;
  *record = kept;
  return sizeof(Record);
}

}  // namespace

BOOL CPen::CreatePenIndirect(LOGPEN const * pen)
{
  return create(m_bCreated, m_LogPen, pen);
}

int CPen::GetLogPen(LOGPEN * pen) const
{
  return copyOut(m_bCreated, m_LogPen, pen);
}

BOOL CBrush::CreateBrushIndirect(LOGBRUSH const * brush)
{
  return create(m_bCreated, m_LogBrush, brush);
}

int CBrush::GetLogBrush(LOGBRUSH * brush) const
{
  return copyOut(m_bCreated, m_LogBrush, brush);
}

BOOL CFont::CreateFontIndirectA(LOGFONT const * font)
{
  if (!create(m_bCreated, m_LogFont, font)) return FALSE;
  m_LogFont.lfFaceName[sizeof m_LogFont.lfFaceName - 1] = '\0';
  return TRUE;
}

int CFont::GetLogFont(LOGFONT * font) const
{
  return copyOut(m_bCreated, m_LogFont, font);
}
