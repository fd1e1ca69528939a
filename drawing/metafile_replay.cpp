// The replay of metafile records into a DXFDC, and its table of the objects that the metafiles have created.

#include <zpbase/drawing.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include <zpbase/platform/bytes.h>

static_assert(sizeof(long) == sizeof(void *), "the callback's user value holds an address");

namespace zp {

namespace {

// The parameter words of a record, in whatever place it stands. Nothing behind the record's size is read.
class Parameters {
 public:
  explicit Parameters(METARECORD const * record) : m_pWords(reinterpret_cast<BYTE const *>(record) + headSize)
  {
    DWORD const words = ReadLittle<DWORD>(reinterpret_cast<BYTE const *>(record));
    m_nCount = words > headWords ? int64_t{words} - headWords : 0;
  }

  int64_t Count() const { return m_nCount; }

  // A word, signed; 0 behind the record's end.
  int operator[](int64_t index) const { return index >= 0 && index < m_nCount ? ReadLittle<int16_t>(m_pWords + 2 * index) : 0; }

  COLORREF Color(int64_t index) const
  {
    return static_cast<WORD>((*this)[index]) | static_cast<COLORREF>(static_cast<WORD>((*this)[index + 1])) << 16;
  }

  // Up to count bytes from a word on, as far as they stand in front of word end.
  std::string_view Bytes(int64_t index, int64_t count, int64_t end) const
  {
    int64_t const there = 2 * (std::min(end, m_nCount) - index);
    if (count <= 0 || there <= 0) return {};
    return {reinterpret_cast<char const *>(m_pWords + 2 * index), static_cast<size_t>(std::min(count, there))};
  }

 private:
  static constexpr size_t headSize = 6;
  static constexpr DWORD headWords = 3;

  BYTE const * m_pWords;
  int64_t m_nCount;
};

}  // namespace

// One static function for each record that isn't an operation of the context as it stands.
class MetaFileReplay {
 public:
  static void SelectObject(DXFDC & dc, Parameters const & p) { dc.SelectKept(p[0]); }
  static void DeleteObject(DXFDC & dc, Parameters const & p) { dc.DeleteKept(p[0]); }

  static void CreatePen(DXFDC & dc, Parameters const & p)
  {
    LOGPEN const record{static_cast<UINT>(p[0]), {p[1], p[2]}, p.Color(3)};
    auto pen = std::make_unique<CPen>();
    if (pen->CreatePenIndirect(&record)) dc.KeepObject(std::move(pen));
  }

  static void CreateBrush(DXFDC & dc, Parameters const & p)
  {
    LOGBRUSH const record{static_cast<UINT>(p[0]), p.Color(1), static_cast<UINT>(p[3])};
    auto brush = std::make_unique<CBrush>();
    if (brush->CreateBrushIndirect(&record)) dc.KeepObject(std::move(brush));
  }

  // A record that ends inside the face name, or earlier, is as good as a whole one: its rest is zeros.
  static void CreateFont(DXFDC & dc, Parameters const & p)
  {
    LOGFONT record{};
    LONG * const numbers[] = {&record.lfHeight, &record.lfWidth, &record.lfEscapement, &record.lfOrientation, &record.lfWeight};
    for (int i = 0; i < 5; ++i) *numbers[i] = p[i];
    if (record.lfWidth == 0) record.lfWidth = 2 * record.lfHeight / 3;
    if (record.lfWidth == 0) record.lfWidth = 1;
    BYTE * const fields[] = {&record.lfItalic,       &record.lfUnderline,     &record.lfStrikeOut, &record.lfCharSet,
                             &record.lfOutPrecision, &record.lfClipPrecision, &record.lfQuality,   &record.lfPitchAndFamily};
    for (int i = 0; i < 8; ++i) *fields[i] = static_cast<BYTE>(p[5 + i / 2] >> (8 * (i % 2)));
    std::string_view const face = p.Bytes(9, sizeof record.lfFaceName, p.Count());
    std::copy(face.begin(), face.end(), record.lfFaceName);
    auto font = std::make_unique<CFont>();
    if (font->CreateFontIndirectA(&record)) dc.KeepObject(std::move(font));
  }

  static void Polygon(DXFDC & dc, Parameters const & p)
  {
    std::vector<tagPOINT> points = PointsOf(p);
    dc.Polygon(points.data(), static_cast<int>(points.size()));
  }

  static void Polyline(DXFDC & dc, Parameters const & p)
  {
    std::vector<tagPOINT> points = PointsOf(p);
    dc.Polyline(points.data(), static_cast<int>(points.size()));
  }

  // The place stands in the last two words, wherever the text ends.
  static void TextOut(DXFDC & dc, Parameters const & p)
  {
    int64_t const place = p.Count() - 2;
    ShowText(dc, p[place + 1], p[place], ETO_CLIPPED, p.Bytes(1, p[0], place));
  }

  static void ExtTextOut(DXFDC & dc, Parameters const & p)
  {
    auto const options = static_cast<UINT>(p[3]);
    int const first = (options & (ETO_OPAQUE | ETO_CLIPPED)) != 0 ? 8 : 4;  // behind a rectangle, which serves for nothing
    ShowText(dc, p[1], p[0], options, p.Bytes(first, p[2], p.Count()));
  }

 private:
  // As many as the record says, and has.
  static std::vector<tagPOINT> PointsOf(Parameters const & p)
  {
    std::vector<tagPOINT> points;
    int64_t const count = std::clamp<int64_t>(p[0], 0, (p.Count() - 1) / 2);
    points.reserve(static_cast<size_t>(count));
    for (int64_t i = 0; i < count; ++i) points.push_back({p[1 + 2 * i], p[2 + 2 * i]});
    return points;
  }

  static void ShowText(DXFDC & dc, int x, int y, UINT options, std::string_view characters)
  {
    CString const text(characters);
    CSize const extent = dc.GetTextExtent(text);
    tagRECT const rect{x, y, x + extent.cx, y + extent.cy};
    dc.ExtTextOutA(x, y, options, &rect, text, nullptr);
  }
};

namespace {

struct ReplayRow {
  WORD function;
  int words;  // parameters without which the record has no effect
  void (*replay)(DXFDC & dc, Parameters const & p);
};

// In ascending order of the function.
constexpr ReplayRow rows[] = {
    {META_SETBKMODE, 1, [](DXFDC & dc, Parameters const & p) { dc.SetBkMode(p[0]); }},
    {META_SETMAPMODE, 1, [](DXFDC & dc, Parameters const & p) { dc.SetMapMode(p[0]); }},
    {META_SELECTOBJECT, 1, MetaFileReplay::SelectObject},
    {META_DELETEOBJECT, 1, MetaFileReplay::DeleteObject},
    {META_SETBKCOLOR, 2, [](DXFDC & dc, Parameters const & p) { dc.SetBkColor(p.Color(0)); }},
    {META_SETTEXTCOLOR, 2, [](DXFDC & dc, Parameters const & p) { dc.SetTextColor(p.Color(0)); }},
    {META_SETWINDOWORG, 2, [](DXFDC & dc, Parameters const & p) { dc.SetWindowOrg(p[1], p[0]); }},
    {META_SETWINDOWEXT, 2, [](DXFDC & dc, Parameters const & p) { dc.SetWindowExt(p[1], p[0]); }},
    {META_SETVIEWPORTORG, 2, [](DXFDC & dc, Parameters const & p) { dc.SetViewportOrg(p[1], p[0]); }},
    {META_SETVIEWPORTEXT, 2, [](DXFDC & dc, Parameters const & p) { dc.SetViewportExt(p[1], p[0]); }},
    {META_LINETO, 2, [](DXFDC & dc, Parameters const & p) { dc.LineTo(p[1], p[0]); }},
    {META_MOVETO, 2, [](DXFDC & dc, Parameters const & p) { dc.MoveTo(p[1], p[0]); }},
    {META_CREATEPENINDIRECT, 0, MetaFileReplay::CreatePen},
    {META_CREATEFONTINDIRECT, 0, MetaFileReplay::CreateFont},
    {META_CREATEBRUSHINDIRECT, 0, MetaFileReplay::CreateBrush},
    {META_POLYGON, 1, MetaFileReplay::Polygon},
    {META_POLYLINE, 1, MetaFileReplay::Polyline},
    {META_ELLIPSE, 4, [](DXFDC & dc, Parameters const & p) { dc.Ellipse(p[3], p[2], p[1], p[0]); }},
    {META_RECTANGLE, 4, [](DXFDC & dc, Parameters const & p) { dc.Rectangle(p[3], p[2], p[1], p[0]); }},
    {META_SETPIXEL, 4, [](DXFDC & dc, Parameters const & p) { dc.SetPixel(p[3], p[2], p.Color(0)); }},
    {META_TEXTOUT, 3, MetaFileReplay::TextOut},
    {META_ROUNDRECT, 6, [](DXFDC & dc, Parameters const & p) { dc.RoundRect(p[5], p[4], p[3], p[2], p[1], p[0]); }},
    {META_ARC, 8, [](DXFDC & dc, Parameters const & p) { dc.Arc(p[7], p[6], p[5], p[4], p[3], p[2], p[1], p[0]); }},
    {META_PIE, 8, [](DXFDC & dc, Parameters const & p) { dc.Pie(p[7], p[6], p[5], p[4], p[3], p[2], p[1], p[0]); }},
    {META_CHORD, 8, [](DXFDC & dc, Parameters const & p) { dc.Chord(p[7], p[6], p[5], p[4], p[3], p[2], p[1], p[0]); }},
    {META_EXTTEXTOUT, 4, MetaFileReplay::ExtTextOut},
};

}  // namespace

}  // namespace zp

// The lowest free slot is the number by which the metafile knows the object. Without one it goes.
void DXFDC::KeepObject(std::unique_ptr<CGdiObject> object)
{
  for (auto & slot : m_Objects) {
    if (slot != nullptr) continue;
    slot = std::move(object);
    return;
  }
}

void DXFDC::SelectKept(int index)
{
  if (index < 0 || index >= maxObjects || m_Objects[static_cast<size_t>(index)] == nullptr) return;
  CGdiObject * const object = m_Objects[static_cast<size_t>(index)].get();
  if (object->IsKindOf(RUNTIME_CLASS(CPen)))
    SelectObject(static_cast<CPen *>(object));
  else if (object->IsKindOf(RUNTIME_CLASS(CBrush)))
    SelectObject(static_cast<CBrush *>(object));
  else if (object->IsKindOf(RUNTIME_CLASS(CFont)))
    SelectObject(static_cast<CFont *>(object));
}

// Selected objects are deleted as a matter of routine. What was drawn with stays: pen and brush are copied when they are
// selected, the font's record is kept here; the object itself is no longer reached.
void DXFDC::DeleteKept(int index)
{
  if (index < 0 || index >= maxObjects) return;
  auto & slot = m_Objects[static_cast<size_t>(index)];
  if (slot == nullptr) return;
  if (slot.get() == m_pPen) m_pPen = nullptr;
  if (slot.get() == m_pBrush) m_pBrush = nullptr;
  if (slot.get() == m_pFont) {
    if (LOGFONT font; m_pFont->GetLogFont(&font) != 0) m_DeletedFont = font;
    m_pFont = nullptr;
  }
  slot.reset();
}

int DXFDC::EnumMetaFileProc(HDC, HANDLETABLE *, METARECORD * record, int, long user)
{
  DXFDC & dc = *reinterpret_cast<DXFDC *>(user);
  auto const function = zp::ReadLittle<WORD>(reinterpret_cast<BYTE const *>(record) + sizeof(DWORD));
  auto const * const row = std::lower_bound(std::begin(zp::rows), std::end(zp::rows), function,
                                            [](zp::ReplayRow const & a, WORD b) { return a.function < b; });
  if (row == std::end(zp::rows) || row->function != function) return 1;
  zp::Parameters const parameters(record);
  if (parameters.Count() >= row->words) row->replay(dc, parameters);
  return 1;
}
