// A DXF target in a folder of its own, and what has been drawn on it: as bytes, or a record as its values between bars.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <zpbase/drawing.h>
#include <zpbase/store.h>

#include "tests/support/TempFolder.h"

class Canvas {
 public:
  explicit Canvas(int height = 100);
  ~Canvas();

  DXFDC * operator->() { return &m_Target; }
  DXFDC & Target() { return m_Target; }
  GPFile & File() { return m_File; }

  // Selects a pen of that style and colour.
  void SelectPen(UINT style, COLORREF color);

  // Selects a font of that height and width.
  void SelectFont(LONG height, LONG width);

  // What was drawn since the last call.
  std::string Bytes();

  // The same as "LINE|CONTINUOUS|     7|10.0|90.0|20.0|90.0": the values of each record less the layer's.
  std::vector<std::string> Records();

  CPoint Position();

 private:
  TempFolder m_Folder;
  GPFile m_File;
  CDC m_Context;
  std::vector<std::unique_ptr<CGdiObject>> m_Selected;
  DXFDC m_Target;
  size_t m_nTaken = 0;
};
