#include "tests/support/Dxf.h"

Canvas::Canvas(int height)
    : m_File(m_Folder.Name("drawing.dxf")),
      m_Target((m_File.Open(CFile::modeCreate | CFile::modeReadWrite), m_File), &m_Context, height)
{
}

Canvas::~Canvas()
{
  DXFDC::ResetDrawingHeight();
}

void Canvas::SelectPen(UINT style, COLORREF color)
{
  LOGPEN const record{style, {1, 0}, color};
  auto pen = std::make_unique<CPen>();
  pen->CreatePenIndirect(&record);
  m_Target.SelectObject(pen.get());
  m_Selected.push_back(std::move(pen));
}

void Canvas::SelectFont(LONG height, LONG width)
{
  LOGFONT record{};
  record.lfHeight = height;
  record.lfWidth = width;
  auto font = std::make_unique<CFont>();
  font->CreateFontIndirectA(&record);
  m_Target.SelectObject(font.get());
  m_Selected.push_back(std::move(font));
}

std::string Canvas::Bytes()
{
  std::string const all = m_Folder.Read("drawing.dxf");
  std::string const drawn = all.substr(m_nTaken);
  m_nTaken = all.size();
  return drawn;
}

std::vector<std::string> Canvas::Records()
{
  std::vector<std::string> records;
  std::string const bytes = Bytes();
  for (size_t at = 0; at < bytes.size();) {
    size_t const codeEnd = bytes.find("\r\n", at);
    size_t const valueEnd = bytes.find("\r\n", codeEnd + 2);
    if (valueEnd == std::string::npos) return records.emplace_back("odd lines"), records;
    std::string const code = bytes.substr(at, codeEnd - at);
    std::string const value = bytes.substr(codeEnd + 2, valueEnd - codeEnd - 2);
    if (code == "  0")
      records.push_back(value);
    else if (code != "  8" || value != "FS_OBJECT")
      records.back() += "|" + value;
    at = valueEnd + 2;
  }
  return records;
}

CPoint Canvas::Position()
{
  CPoint const position = m_Target.MoveTo(0, 0);
  m_Target.MoveTo(position);
  return position;
}
