// Drawing export and the small things of drawing: the context that writes a picture as DXF entities, contexts that prepare
// themselves for a view, pen-and-fill and number-format records, and the tables of colours and fill patterns.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/drawing.h"
#include "platform/metafile.h"
#include "platform/string.h"

class CView;
class GPFile;

namespace zp {
class EntityText;
class MetaFileReplay;
}  // namespace zp

// A drawing target with the operations of a device context that writes DXF entities to a file instead of painting: LINE, POINT,
// CIRCLE, ARC and TEXT on the layer "FS_OBJECT", in colour numbers and line types. It writes nothing else; what must stand in
// front of the entities and behind them is the business of who opens the file. See docs/formats/dxf.md for the records.
//
// Logical coordinates are written as they are, but each Y as DrawingHeight - Y; origins, extents and modes are kept and change
// nothing. Outlines are drawn with the pen, shapes are never filled. With a pen of style PS_NULL nothing is drawn but texts,
// whose colour is the text colour.
//
// The records of a primitive are in the file when it returns; they leave in one Write(void const *, UINT), those of a very long
// one in a few. A write that fails shows in the file's IsWriteOK and its warning, never in a primitive's result.
//
// A rectangle is taken with its sides swapped as needed, by all but Rectangle. Primitives give 1 unless said otherwise.
class ZP_API DXFDC : public CObject {
  DECLARE_DYNAMIC(DXFDC)
 public:
  static constexpr int maxObjects = 100;

  // Keeps the file, which stays the caller's and open, and takes origins, extents, modes and position over from dc.
  DXFDC(GPFile & file, CDC * dc, int height);
  ~DXFDC() override;  // destroys the objects of the table
  DXFDC(DXFDC const &) = delete;
  DXFDC & operator=(DXFDC const &) = delete;

  // The height by which all contexts flip Y: that given to the constructor last.
  static LONG DrawingHeight;
  static void ResetDrawingHeight() { DrawingHeight = 0; }  // as when the process starts

  // Give the former value.
  int SetBkMode(int mode);
  int SetMapMode(int mode);
  COLORREF SetBkColor(COLORREF color);
  COLORREF SetTextColor(COLORREF color);
  CPoint SetViewportOrg(tagPOINT origin);
  CPoint SetViewportOrg(int x, int y) { return SetViewportOrg(tagPOINT{x, y}); }
  CSize SetViewportExt(tagSIZE extent);
  CSize SetViewportExt(int cx, int cy) { return SetViewportExt(tagSIZE{cx, cy}); }
  CPoint SetWindowOrg(tagPOINT origin);
  CPoint SetWindowOrg(int x, int y) { return SetWindowOrg(tagPOINT{x, y}); }
  CSize SetWindowExt(tagSIZE extent);
  CSize SetWindowExt(int cx, int cy) { return SetWindowExt(tagSIZE{cx, cy}); }

  // Give the former object, null for none or one that a metafile has deleted since. One that a metafile has made goes when the
  // metafile deletes it: don't select it anew after further records. The object stays the caller's; a pen's and a brush's record
  // is copied, a font's is read when text is measured. A null pen or brush changes nothing, a null font is none.
  CPen * SelectObject(CPen * pen);
  CBrush * SelectObject(CBrush * brush);
  CFont * SelectObject(CFont * font);

  // Moves the current position, and gives the former one.
  CPoint MoveTo(tagPOINT point);
  CPoint MoveTo(int x, int y) { return MoveTo(tagPOINT{x, y}); }

  // The current position ends at the last point, for polygons at the first. No points draw nothing.
  int LineTo(tagPOINT point);
  int LineTo(int x, int y) { return LineTo(tagPOINT{x, y}); }
  int Polyline(tagPOINT * points, int count);
  int Polygon(tagPOINT * points, int count);

  int Rectangle(tagRECT const * rect);  // four lines; ends at (left, top)
  int Rectangle(int left, int top, int right, int bottom);

  // Corners with the full width and height of their ellipse; ends where it began, at the bottom right.
  int RoundRect(tagRECT const * rect, tagPOINT corner);
  int RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight);

  // A circle of half the width where width and height differ by less than 8 in a hundred, and then the position stays; else an
  // oval, which ends at its right.
  int Ellipse(tagRECT const * rect);
  int Ellipse(int left, int top, int right, int bottom);

  // From start's angle to end's, and end becomes the current position. Angles are those of the four points where the rectangle's
  // axes meet its edges: right 0, bottom 90, left 180, top 270; every other point has the angle -1. Of ovals whole quarters are
  // drawn. The chord closes the arc with a line, the pie with two through the centre; both end at start.
  int Arc(tagRECT const * rect, tagPOINT start, tagPOINT end);
  int Arc(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY);
  int Chord(tagRECT const * rect, tagPOINT start, tagPOINT end);
  int Chord(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY);
  int Pie(tagRECT const * rect, tagPOINT start, tagPOINT end);
  int Pie(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY);

  COLORREF SetPixel(int x, int y, COLORREF color);  // a point in the pen's colour; gives color

  // Characters times the font's width, 5 for 0, and the font's height with its sign; (0, 0) without a font. A font that a
  // metafile deleted while it was selected still counts.
  CSize GetTextExtent(CString const & text) const;

  // The text at (x, y), squeezed or stretched to the rectangle's size. Nothing for an empty text, or a rectangle of no height.
  int ExtTextOutA(int x, int y, unsigned int options, tagRECT const * rect, CString const & text, int * widths);

  // The lines of text, which end in CR LF, in the rectangle from its bottom up. Gives the height of a line's text, 0 for no
  // lines; with DT_CALCRECT in format that is all.
  int DrawTextA(CString const & text, tagRECT * rect, unsigned int format);

  // Replays one record of a metafile into the DXFDC that user is the address of. Always 1. Records of other kinds, and records
  // too short for what they tell, have no effect beyond what is there, and neither has an object that memory doesn't hold. Memory
  // that runs out for the points of a polygon or the characters of a text is std::bad_alloc.
  static int EnumMetaFileProc(HDC dc, HANDLETABLE * table, METARECORD * record, int objects, long user);

 private:
  friend class zp::MetaFileReplay;

  bool IsNothingDrawn() const { return (m_LogPen.lopnStyle & PS_STYLE_MASK) == PS_NULL; }
  void DrawLine(zp::EntityText & records, tagPOINT to);
  void DrawPolyline(zp::EntityText & records, tagPOINT const * points, int count);
  void DrawArc(zp::EntityText & records, tagRECT const & rect, tagPOINT start, tagPOINT end);
  void KeepObject(std::unique_ptr<CGdiObject> object);
  void SelectKept(int index);
  void DeleteKept(int index);

  GPFile * m_pFile;
  CPoint m_ViewportOrg;
  CSize m_ViewportExt;
  CPoint m_WindowOrg;
  CSize m_WindowExt;
  std::array<std::unique_ptr<CGdiObject>, maxObjects> m_Objects;  // of the metafiles replayed
  CBrush * m_pBrush = nullptr;
  LOGBRUSH m_LogBrush{};
  CPen * m_pPen = nullptr;
  LOGPEN m_LogPen{};
  CFont * m_pFont = nullptr;
  int m_nBkMode;
  int m_nMapMode;
  COLORREF m_nTextColor = 0;
  COLORREF m_nBkColor = 0;
  CPoint m_Position;
  std::optional<LOGFONT> m_DeletedFont;  // of the selected font, once it was deleted
};

// The colour number of a colour, 7 for one that isn't in the table.
ZP_API int DXFColorFromCOLORREF(COLORREF color);

// The line type of a pen style, by its low four bits; "CONTINUOUS" for one that isn't in the table.
ZP_API char const * DXFLineTypeFromPenStyle(UINT style);

// Contexts that have called the view's OnPrepareDC, so that they are ready for logical coordinates.
class ZP_API GPClientDC : public CClientDC {
 public:
  explicit GPClientDC(CView * view);
  ~GPClientDC() override;
};

class ZP_API GPPaintDC : public CPaintDC {
 public:
  explicit GPPaintDC(CView * view);
  ~GPPaintDC() override;
};

// A pen and a fill.
class ZP_API GPPaintBox : public CObject {
 public:
  GPPaintBox() = default;
  GPPaintBox(unsigned long penColor, unsigned int penWidth, unsigned int penStyle, unsigned long fillColor,
             unsigned int fillPattern);
  GPPaintBox(GPPaintBox const & other) = default;
  GPPaintBox & operator=(GPPaintBox const & other) = default;
  ~GPPaintBox() override;

  COLORREF m_nPenColor = 0;
  UINT m_nPenWidth = 1;  // at least 1
  UINT m_nPenStyle = PS_SOLID;
  COLORREF m_nFillColor = 0xFFFFFFFF;  // the last row of the colour table
  UINT m_nFillPattern = 0xFFFF;        // the first row of the fill pattern table
};

// Four numbers that the modules above know the meaning of, and a number format. An assignment whose memory runs out has taken
// the numbers.
class ZP_API GPFSheetVals : public CObject {
 public:
  GPFSheetVals();                                                                                // 0, 1, 1, 64
  GPFSheetVals(unsigned long first, int second, int third, int fourth, CString const & format);  // an empty format: "%.4g"
  GPFSheetVals(GPFSheetVals const & other) = default;
  GPFSheetVals & operator=(GPFSheetVals const & other) = default;
  ~GPFSheetVals() override;

  UINT m_nFirst;
  int m_nSecond;
  int m_nThird;
  int m_nFourth;
  CString m_strFormat;
};

// The colour table of 21 rows. Colours are 0x00BBGGRR; the last row is 0xFFFFFFFF. An index outside the table gives its first
// row.
ZP_API unsigned long GetCOLORREF(int index);
ZP_API int GetColorTableIndex(unsigned long color);  // the first row, or -1

// The colour of the next row that isn't kept out of the cycle, rows 17 to 20 are; behind the last one, and for a colour that
// isn't in the table, that of row 0.
ZP_API unsigned long GetNextCOLORREF(unsigned long color);

// The fill patterns: 0xFFFF and six hatch styles. An index outside the table gives its first row.
ZP_API unsigned int const * GetFillPatternTableAddress();
ZP_API unsigned int GetFillPatternTableSize();
ZP_API unsigned int GetFillPattern(unsigned int index);
ZP_API int GetFillPatternTableIndex(unsigned int pattern);  // the first row, or -1
