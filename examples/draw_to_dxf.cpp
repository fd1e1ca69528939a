// Draws a small picture as DXF: what stands in front of the entities and behind them is the program's, the entities are DXFDC's.

#include <cstdio>
#include <filesystem>

#include <zpbase/drawing.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>
#include <zpbase/well_known_names.h>

namespace {

constexpr int height = 300;  // of the drawing: every Y is written as 300 less Y

void select(DXFDC & dc, CPen & pen, UINT style, COLORREF color)
{
  LOGPEN const record{style, {1, 0}, color};
  pen.CreatePenIndirect(&record);
  dc.SelectObject(&pen);
}

// A vessel with a feed, a level and its name.
void draw(DXFDC & dc, CPen & solid, CPen & dashed)
{
  select(dc, solid, PS_SOLID, 0xFF0000);
  tagRECT const vessel{100, 50, 200, 250};
  dc.Rectangle(&vessel);
  dc.Ellipse(110, 60, 190, 140);
  dc.MoveTo(20, 100);
  dc.LineTo(100, 100);
  select(dc, dashed, PS_DASH, 0x0000FF);
  tagPOINT level[] = {{100, 180}, {150, 175}, {200, 180}};
  dc.Polyline(level, 3);
  dc.SetTextColor(0x808080);
  tagRECT label{100, 190, 200, 240};
  dc.DrawTextA("V-101\r\nFlash drum", &label, 0);
}

}  // namespace

int main()
{
  std::filesystem::path const path = std::filesystem::temp_directory_path() / (std::string("zp_vessel") + GetDXFExt());
  GPFile file(FromHostPath(path.string()));
  if (!file.Open(CFile::modeCreate)) return 1;
  file.WriteLine("  0\r\nSECTION\r\n  2\r\nENTITIES");
  CDC context;
  CPen solid;  // selected objects are the caller's and outlive the context
  CPen dashed;
  {
    DXFDC dc(file, &context, height);
    draw(dc, solid, dashed);
  }
  file.WriteLine("  0\r\nENDSEC\r\n  0\r\nEOF");
  bool const written = file.IsWriteOK() != 0;
  file.Close();

  std::printf("%s: %d lines\n", path.filename().c_str(), file.GetLineCount());
  bool const whole = written && file.GetLineCount() == 4 + 7 * 16 + 12 + 2 * 16 + 4;  // lines, a circle, two texts
  std::filesystem::remove(path);
  return whole ? 0 : 1;
}
