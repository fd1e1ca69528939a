#include "tests/views/application.h"

IMPLEMENT_DYNCREATE(NotingView, GPScrollView)
IMPLEMENT_DYNCREATE(MainFrame, CMDIFrameWnd)
