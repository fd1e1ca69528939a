// Views: windows that show a document.
#pragma once

#include "windows.h"

struct CPrintInfo;

// What a view draws goes through OnDraw, on a context that OnPrepareDC has made ready for the view's logical coordinates.
class ZP_API CView : public CWnd {
  DECLARE_DYNAMIC(CView)
 public:
  // Sets modes, origins and extents of dc; info is null for a screen. Here nothing is set.
  virtual void OnPrepareDC(CDC * dc, CPrintInfo * info = nullptr);

 protected:
  virtual void OnDraw(CDC * dc) = 0;
};
