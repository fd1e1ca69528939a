// CView: the first of the windows that show documents.

#include <zpbase/platform/documents.h>

IMPLEMENT_DYNAMIC(CView, CWnd)

void CView::OnPrepareDC(CDC *, CPrintInfo *) {}
