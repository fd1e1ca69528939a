// Counting a metafile's records and finding its bounds.

#include "tools/drawing/metafile_survey.h"

#include <algorithm>

namespace {

bool isEmpty(RECT const & box)
{
  return box.left >= box.right || box.top >= box.bottom;
}

bool meet(RECT const & a, RECT const & b)
{
  return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

}  // namespace

MetafileSurvey::MetafileSurvey(HMETAFILE metafile)
{
  auto const look = [](HDC, HANDLETABLE *, METARECORD * record, int, LPARAM user) {
    reinterpret_cast<MetafileSurvey *>(user)->Look(*record);
    return 1;
  };
  zp::MetaFileFacts const facts = zp::GetMetaFileFacts(metafile);
  if (facts.placeable && !isEmpty(facts.bounds)) m_Header = facts.bounds;
  m_bWhole = EnumMetaFile(nullptr, metafile, look, reinterpret_cast<LPARAM>(this)) != 0;
  m_bUpwards = m_Extent && m_Extent->cy < 0;
}

void MetafileSurvey::Look(METARECORD const & record)
{
  ++m_nRecords;
  ++m_Counts[record.rdFunction];
  RecordWords const words(record);
  if (record.rdFunction == META_SETWINDOWORG && !m_Origin)
    m_Origin = POINT{words[1], words[0]};
  else if (record.rdFunction == META_SETWINDOWEXT && !m_Extent && words[0] != 0 && words[1] != 0)
    m_Extent = SIZE{words[1], words[0]};
  else
    LookAtPoints(record.rdFunction, words);
}

// Parameters stand in the reverse order of the calls: y before x, the second corner before the first.
void MetafileSurvey::LookAtPoints(WORD function, RecordWords const & words)
{
  switch (function) {
    case META_POLYGON:
    case META_POLYLINE: {
      DWORD const points = std::min(static_cast<DWORD>(std::max(words[0], 0)), words.GetCount() / 2);
      for (DWORD i = 0; i < points; ++i) AddPoint(words[1 + 2 * i], words[2 + 2 * i]);
      return;
    }
    case META_LINETO:
    case META_MOVETO:
    case META_EXTTEXTOUT:
      return AddPoint(words[1], words[0]);
    case META_SETPIXEL:
      return AddPoint(words[3], words[2]);
    case META_TEXTOUT:
      return AddPoint(words[words.GetCount() - 1], words[words.GetCount() - 2]);
    case META_ELLIPSE:
    case META_RECTANGLE:
      AddPoint(words[3], words[2]);
      return AddPoint(words[1], words[0]);
    case META_ROUNDRECT:
      AddPoint(words[5], words[4]);
      return AddPoint(words[3], words[2]);
    case META_ARC:
    case META_PIE:
    case META_CHORD:
      AddPoint(words[7], words[6]);
      return AddPoint(words[5], words[4]);
    default:
      return;
  }
}

void MetafileSurvey::AddPoint(int x, int y)
{
  if (!m_Drawn) m_Drawn = RECT{x, y, x, y};
  m_Drawn->left = std::min(m_Drawn->left, x);
  m_Drawn->right = std::max(m_Drawn->right, x);
  m_Drawn->top = std::min(m_Drawn->top, y);
  m_Drawn->bottom = std::max(m_Drawn->bottom, y);
}

RECT MetafileSurvey::GetBounds() const
{
  std::optional<RECT> told = m_Header;
  if (m_Extent) {
    POINT const origin = m_Origin.value_or(POINT{0, 0});
    auto const [left, right] = std::minmax({origin.x, origin.x + m_Extent->cx});
    auto const [top, bottom] = std::minmax({origin.y, origin.y + m_Extent->cy});
    told = RECT{left, top, right, bottom};
  }
  RECT bounds = told && (!m_Drawn || meet(*told, *m_Drawn)) ? *told : m_Drawn.value_or(RECT{0, 0, 0, 0});
  bounds.right = std::max(bounds.right, bounds.left + 1);
  bounds.bottom = std::max(bounds.bottom, bounds.top + 1);
  return bounds;
}
