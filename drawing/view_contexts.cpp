// Device contexts that have the view prepare them.

#include <zpbase/drawing.h>
#include <zpbase/platform/documents.h>

GPClientDC::GPClientDC(CView * view) : CClientDC(view)
{
  view->OnPrepareDC(this, nullptr);
}

GPClientDC::~GPClientDC() = default;

GPPaintDC::GPPaintDC(CView * view) : CPaintDC(view)
{
  view->OnPrepareDC(this, nullptr);
}

GPPaintDC::~GPPaintDC() = default;
