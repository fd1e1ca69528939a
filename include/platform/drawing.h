// Drawing without painting: plane records, pens, brushes and fonts as their logical records, and device contexts. A CDC is its
// state.
#pragma once

#include <utility>

#include "runtime.h"
#include "types.h"

class CWnd;

// A device, as metafile callbacks are handed it; there is none here, so it is null.
struct HDC__;
using HDC = HDC__ *;

struct tagPOINT {
  LONG x;
  LONG y;
};
struct tagSIZE {
  LONG cx;
  LONG cy;
};
struct tagRECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
using POINT = tagPOINT;
using SIZE = tagSIZE;
using RECT = tagRECT;

constexpr bool operator==(POINT const & a, POINT const & b)
{
  return a.x == b.x && a.y == b.y;
}
constexpr bool operator==(SIZE const & a, SIZE const & b)
{
  return a.cx == b.cx && a.cy == b.cy;
}
constexpr bool operator==(RECT const & a, RECT const & b)
{
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

class CPoint : public tagPOINT {
 public:
  constexpr CPoint() : tagPOINT{} {}
  constexpr CPoint(LONG initX, LONG initY) : tagPOINT{initX, initY} {}
  constexpr CPoint(POINT const & point) : tagPOINT(point) {}
};

class CSize : public tagSIZE {
 public:
  constexpr CSize() : tagSIZE{} {}
  constexpr CSize(LONG initCX, LONG initCY) : tagSIZE{initCX, initCY} {}
  constexpr CSize(SIZE const & size) : tagSIZE(size) {}
};

class CRect : public tagRECT {
 public:
  constexpr CRect() : tagRECT{} {}
  constexpr CRect(LONG l, LONG t, LONG r, LONG b) : tagRECT{l, t, r, b} {}
  constexpr CRect(RECT const & rect) : tagRECT(rect) {}

  operator RECT const *() const { return this; }
  operator RECT *() { return this; }

  // Differences modulo 2^32.
  LONG Width() const { return static_cast<LONG>(static_cast<DWORD>(right) - static_cast<DWORD>(left)); }
  LONG Height() const { return static_cast<LONG>(static_cast<DWORD>(bottom) - static_cast<DWORD>(top)); }

  // Swaps the sides as needed, so that right isn't less than left, nor bottom than top.
  void NormalizeRect()
  {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
  }
};

// Pen styles: the low four bits of a style word. Those above tell caps, joins and the type.
enum PenStyle : UINT {
  PS_SOLID = 0,
  PS_DASH = 1,
  PS_DOT = 2,
  PS_DASHDOT = 3,
  PS_DASHDOTDOT = 4,
  PS_NULL = 5,
  PS_INSIDEFRAME = 6,
  PS_STYLE_MASK = 0xF
};

enum BrushStyle : UINT { BS_SOLID = 0, BS_NULL = 1, BS_HATCHED = 2 };

enum HatchStyle : UINT { HS_HORIZONTAL = 0, HS_VERTICAL = 1, HS_FDIAGONAL = 2, HS_BDIAGONAL = 3, HS_CROSS = 4, HS_DIAGCROSS = 5 };

enum BackgroundMode : int { TRANSPARENT = 1, OPAQUE = 2 };
enum MappingMode : int { MM_TEXT = 1, MM_ISOTROPIC = 7, MM_ANISOTROPIC = 8 };
enum TextOutOption : UINT { ETO_OPAQUE = 2, ETO_CLIPPED = 4 };
enum DrawTextFormat : UINT { DT_CALCRECT = 0x400 };

struct tagLOGPEN {
  UINT lopnStyle;
  POINT lopnWidth;  // x alone counts
  COLORREF lopnColor;
};
struct tagLOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  UINT lbHatch;
};
struct tagLOGFONTA {
  LONG lfHeight;
  LONG lfWidth;
  LONG lfEscapement;  // tenths of a degree, as the next
  LONG lfOrientation;
  LONG lfWeight;
  BYTE lfItalic;
  BYTE lfUnderline;
  BYTE lfStrikeOut;
  BYTE lfCharSet;
  BYTE lfOutPrecision;
  BYTE lfClipPrecision;
  BYTE lfQuality;
  BYTE lfPitchAndFamily;
  char lfFaceName[32];  // up to 31 characters and a zero
};
using LOGPEN = tagLOGPEN;
using LOGBRUSH = tagLOGBRUSH;
using LOGFONT = tagLOGFONTA;

// A pen, brush or font. It is nothing until it was created from a record; creating it again gives 0 and changes nothing.
class ZP_API CGdiObject : public CObject {
  DECLARE_DYNAMIC(CGdiObject)
 public:
  CGdiObject(CGdiObject const &) = delete;
  CGdiObject & operator=(CGdiObject const &) = delete;

 protected:
  CGdiObject() = default;

  bool m_bCreated = false;
};

// GetLog... copies the record: its size, or 0, with the record left alone, for an object that wasn't created.

class ZP_API CPen : public CGdiObject {
  DECLARE_DYNAMIC(CPen)
 public:
  BOOL CreatePenIndirect(LOGPEN const * pen);
  int GetLogPen(LOGPEN * pen) const;

 private:
  LOGPEN m_LogPen{};
};

class ZP_API CBrush : public CGdiObject {
  DECLARE_DYNAMIC(CBrush)
 public:
  BOOL CreateBrushIndirect(LOGBRUSH const * brush);
  int GetLogBrush(LOGBRUSH * brush) const;

 private:
  LOGBRUSH m_LogBrush{};
};

class ZP_API CFont : public CGdiObject {
  DECLARE_DYNAMIC(CFont)
 public:
  BOOL CreateFontIndirectA(LOGFONT const * font);  // of the face name 31 characters count
  BOOL CreateFontIndirect(LOGFONT const * font) { return CreateFontIndirectA(font); }
  int GetLogFont(LOGFONT * font) const;

 private:
  LOGFONT m_LogFont{};
};

// The state of a device context. Setters give the former value. Extents count in the modes MM_ISOTROPIC and MM_ANISOTROPIC
// alone, the same in both; everywhere else a logical unit is one of the device.
class ZP_API CDC : public CObject {
  DECLARE_DYNAMIC(CDC)
 public:
  CDC() = default;
  CDC(CDC const &) = delete;
  CDC & operator=(CDC const &) = delete;

  virtual COLORREF SetTextColor(COLORREF color);
  COLORREF GetTextColor() const { return m_nTextColor; }

  int SetBkMode(int mode);
  int GetBkMode() const { return m_nBkMode; }
  int SetMapMode(int mode);
  int GetMapMode() const { return m_nMapMode; }

  CPoint SetViewportOrg(POINT origin);
  CPoint SetViewportOrg(int x, int y) { return SetViewportOrg(POINT{x, y}); }
  CPoint GetViewportOrg() const { return m_ViewportOrg; }
  CSize SetViewportExt(SIZE extent);
  CSize SetViewportExt(int cx, int cy) { return SetViewportExt(SIZE{cx, cy}); }
  CSize GetViewportExt() const { return m_ViewportExt; }
  CPoint SetWindowOrg(POINT origin);
  CPoint SetWindowOrg(int x, int y) { return SetWindowOrg(POINT{x, y}); }
  CPoint GetWindowOrg() const { return m_WindowOrg; }
  CSize SetWindowExt(SIZE extent);
  CSize SetWindowExt(int cx, int cy) { return SetWindowExt(SIZE{cx, cy}); }
  CSize GetWindowExt() const { return m_WindowExt; }

  CPoint MoveTo(POINT position);
  CPoint MoveTo(int x, int y) { return MoveTo(POINT{x, y}); }
  CPoint GetCurrentPosition() const { return m_Position; }

  // Logical coordinates to those of the device, rounded to the nearest and kept inside 32 bits. An extent of 0 counts as 1.
  void LPtoDP(POINT * points, int count = 1) const;
  void LPtoDP(RECT * rect) const;

 private:
  COLORREF m_nTextColor = 0;  // black
  int m_nBkMode = OPAQUE;
  int m_nMapMode = MM_TEXT;
  CPoint m_ViewportOrg;
  CSize m_ViewportExt{1, 1};
  CPoint m_WindowOrg;
  CSize m_WindowExt{1, 1};
  CPoint m_Position;
};

// The contexts of a window's inside, and of its inside while it is repainted. The window may be null or without a handle.
class ZP_API CClientDC : public CDC {
  DECLARE_DYNAMIC(CClientDC)
 public:
  explicit CClientDC(CWnd * window);

  CWnd * GetWindow() const { return m_pWnd; }

 private:
  CWnd * m_pWnd;
};

class ZP_API CPaintDC : public CDC {
  DECLARE_DYNAMIC(CPaintDC)
 public:
  explicit CPaintDC(CWnd * window);

  CWnd * GetWindow() const { return m_pWnd; }

 private:
  CWnd * m_pWnd;
};
