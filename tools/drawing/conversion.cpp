// Replaying a metafile between the head and the tail of a drawing.

#include "tools/drawing/conversion.h"

#include <algorithm>

#include <zpbase/store.h>

#include "tools/drawing/dxf_frame.h"
#include "tools/drawing/record_names.h"

namespace {

constexpr int fontsOnSide = 40;  // heights of the font that is selected at first, in the smaller side of the picture

// The characters of a text record, and how many there are of them in the record.
struct RecordText {
  char * characters;
  size_t length;
};

RecordText textOf(METARECORD & record)
{
  RecordWords const words(record);
  bool const extended = record.rdFunction == META_EXTTEXTOUT;
  bool const boxed = extended && (static_cast<UINT>(words[3]) & (ETO_OPAQUE | ETO_CLIPPED)) != 0;
  DWORD const start = !extended ? 1 : boxed ? 8 : 4;
  int const told = words[extended ? 2 : 0];
  if (told <= 0 || words.GetCount() <= start) return {nullptr, 0};
  size_t const room = size_t{2} * (words.GetCount() - start);
  return {reinterpret_cast<char *>(record.rdParm + start), std::min(static_cast<size_t>(told), room)};
}

bool isFilled(WORD function)
{
  switch (function) {
    case META_POLYGON:
    case META_RECTANGLE:
    case META_ROUNDRECT:
    case META_ELLIPSE:
    case META_PIE:
    case META_CHORD:
      return true;
    default:
      return false;
  }
}

class Replay {
 public:
  Replay(DrawingOutput & out, int height, int side, Conversion & conversion)
      : m_Output(out), m_Target(out, &m_Device, height), m_Conversion(conversion)
  {
    LOGFONT font{};
    font.lfHeight = std::max(side / fontsOnSide, 1);
    font.lfWidth = std::max(font.lfHeight * 2 / 3, LONG{1});
    m_Font.CreateFontIndirect(&font);
    m_Target.SelectObject(&m_Font);
  }

  void Run(HMETAFILE metafile)
  {
    auto const replay = [](HDC, HANDLETABLE *, METARECORD * record, int, LPARAM user) {
      return reinterpret_cast<Replay *>(user)->Take(*record);
    };
    EnumMetaFile(nullptr, metafile, replay, reinterpret_cast<LPARAM>(this));
  }

 private:
  int Take(METARECORD & record)
  {
    if (record.rdFunction == META_TEXTOUT || record.rdFunction == META_EXTTEXTOUT) TakeText(textOf(record));
    if (metafile::FunctionOf(record.rdFunction).use == metafile::Use::Object) return KeepNumber();
    unsigned long long const before = m_Output.GetBytes();
    DXFDC::EnumMetaFileProc(nullptr, nullptr, &record, 0, reinterpret_cast<LPARAM>(&m_Target));
    m_Conversion.fillings += m_Output.GetBytes() == before && isFilled(record.rdFunction);
    return 1;
  }

  void TakeText(RecordText const & text)
  {
    constexpr std::string_view lineBreakers("\0\n\r\x1A", 4);
    bool broken = false;
    for (size_t i = 0; i < text.length; ++i) {
      if (lineBreakers.find(text.characters[i]) == std::string_view::npos) continue;
      text.characters[i] = ' ';
      broken = true;
    }
    m_Conversion.brokenTexts += broken;
    m_Conversion.sizelessTexts += text.length > 0 && m_Target.GetTextExtent(CString('x')).cy == 0;
  }

  // An object that isn't replayed takes a number all the same: a brush, which draws nothing, holds its place.
  int KeepNumber()
  {
    struct {
      METARECORD head;
      WORD words[3];
    } brush = {{7, META_CREATEBRUSHINDIRECT, {BS_NULL}}, {0, 0, 0}};
    return DXFDC::EnumMetaFileProc(nullptr, nullptr, &brush.head, 0, reinterpret_cast<LPARAM>(&m_Target));
  }

  DrawingOutput & m_Output;
  CDC m_Device;
  CFont m_Font;
  DXFDC m_Target;
  Conversion & m_Conversion;
};

Conversion resultOf(MetafileSurvey const & survey)
{
  Conversion result;
  result.records = survey.GetRecords();
  result.upwards = survey.IsUpwards();
  result.whole = survey.IsWhole();
  for (auto const & [function, count] : survey.GetCounts()) {
    metafile::Use const use = metafile::FunctionOf(function).use;
    if (use == metafile::Use::Replayed || use == metafile::Use::End) continue;
    result.skipped.emplace(function, count);
    if (use == metafile::Use::Drawing) result.skippedDrawing += count;
  }
  return result;
}

void write(DrawingOutput & out, std::string const & text)
{
  out.Write(text.data(), static_cast<UINT>(text.size()));
}

int flipped(int height, int y)
{
  return static_cast<int>(std::clamp<LONGLONG>(LONGLONG{height} - y, INT32_MIN, INT32_MAX));
}

}  // namespace

Conversion ConvertMetafile(HMETAFILE metafile, DrawingOutput & out, std::optional<int> height)
{
  MetafileSurvey const survey(metafile);
  Conversion result = resultOf(survey);
  RECT const bounds = survey.GetBounds();
  result.height = height.value_or(bounds.bottom);
  write(out, DxfHead({bounds.left, flipped(result.height, bounds.bottom), bounds.right, flipped(result.height, bounds.top)}));
  Replay(out, result.height, std::min(bounds.right - bounds.left, bounds.bottom - bounds.top), result).Run(metafile);
  write(out, DxfTail());
  return result;
}
