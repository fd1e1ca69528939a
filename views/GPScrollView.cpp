// GPScrollView: keys, commands, cursor and repainting of the scrolling views.

#include <zpbase/views.h>

#include <algorithm>
#include <utility>

#include <zpbase/config.h>
#include <zpbase/drawing.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/message_map.h>

#include "views/main_window_internal.h"

IMPLEMENT_DYNAMIC(GPScrollView, CScrollView)

namespace {

constexpr UINT acceleratorTable = 16;
constexpr UINT escapeCommand = 0x03E5;
constexpr UINT contextHelpCommand = 0xA803;
constexpr UINT helpTopicsCommand = 0xA804;
constexpr UINT graphicsPageSetupCommand = 0xA8A1;
constexpr UINT reportPageSetupCommand = 0xA8A2;

// The main window's own commands, which those above become.
constexpr UINT mainContextHelp = 0xE145;
constexpr UINT mainHelpFinder = 0xE143;
constexpr UINT mainGraphicsPageSetup = 0xA881;
constexpr UINT mainReportPageSetup = 0xA882;

constexpr LONG margin = 2;  // units of the device around what is invalidated

void postToMainWindow(UINT command)
{
  CWnd * const main = zp::GetThreadMainWindow();
  if (main != nullptr) main->PostMessage(WM_COMMAND, command);
}

LONG shifted(LONG value, LONG by)
{
  return static_cast<LONG>(std::clamp<LONGLONG>(LONGLONG{value} + by, INT32_MIN, INT32_MAX));
}

}  // namespace

GPScrollView::~GPScrollView() = default;

int GPScrollView::OnCreate(CREATESTRUCT * create)
{
  if (CScrollView::OnCreate(create) == -1) return -1;
  m_hAccel = LoadAcceleratorsA(GetZPLWResourceHandle(), MAKEINTRESOURCEA(acceleratorTable));
  EnableToolTips(TRUE);
  return 0;
}

BOOL GPScrollView::PreTranslateMessage(tagMSG * message)
{
  bool const fromKeyboard = message->message >= WM_KEYDOWN && message->message <= WM_KEYLAST;
  if (fromKeyboard && TranslateAcceleratorA(m_hWnd, m_hAccel, message) != 0) return TRUE;
  return CWnd::PreTranslateMessage(message);
}

void GPScrollView::OnEscape()
{
  PostMessage(WM_RBUTTONDOWN, MK_RBUTTON);
  PostMessage(WM_RBUTTONUP);
}

BOOL GPScrollView::OnSetCursor(CWnd * window, UINT hitTest, UINT message)
{
  if (window != this || m_hCursor == nullptr) return CScrollView::OnSetCursor(window, hitTest, message);
  ::SetCursor(m_hCursor);
  return TRUE;
}

void GPScrollView::ShowCursor(HCURSOR cursor)
{
  m_hCursor = cursor;
  m_hSavedCursor = ::SetCursor(cursor);
}

void GPScrollView::SetCursor(unsigned int resource)
{
  CWinApp const * const app = AfxGetApp();
  ShowCursor(app != nullptr ? app->LoadCursor(resource) : nullptr);
}

void GPScrollView::SetCursor(char const * name)
{
  CWinApp const * const app = AfxGetApp();
  ShowCursor(app != nullptr ? app->LoadStandardCursor(name) : nullptr);
}

void GPScrollView::RestoreCursor()
{
  m_hCursor = std::exchange(m_hSavedCursor, nullptr);
  ::SetCursor(m_hCursor);
}

void GPScrollView::InvalidateLogRect(CRect const & rect, int erase)
{
  GPClientDC const dc(this);
  CRect device(rect);
  dc.LPtoDP(device);
  device.NormalizeRect();
  RECT const area{shifted(device.left, -margin), shifted(device.top, -margin), shifted(device.right, margin),
                  shifted(device.bottom, margin)};
  InvalidateRect(&area, erase);
}

void GPScrollView::OnContextHelp()
{
  postToMainWindow(mainContextHelp);
}

void GPScrollView::OnHelpTopics()
{
  postToMainWindow(mainHelpFinder);
}

void GPScrollView::OnGraphicsPageSetup()
{
  postToMainWindow(mainGraphicsPageSetup);
}

void GPScrollView::OnReportPageSetup()
{
  postToMainWindow(mainReportPageSetup);
}

AFX_MSGMAP const * GPScrollView::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCreate<&GPScrollView::OnCreate>(),
                                                 zp::OnCommand<&GPScrollView::OnEscape>(escapeCommand),
                                                 zp::OnSetCursor<&GPScrollView::OnSetCursor>(),
                                                 zp::OnCommand<&GPScrollView::OnContextHelp>(contextHelpCommand),
                                                 zp::OnCommand<&GPScrollView::OnHelpTopics>(helpTopicsCommand),
                                                 zp::OnCommand<&GPScrollView::OnGraphicsPageSetup>(graphicsPageSetupCommand),
                                                 zp::OnCommand<&GPScrollView::OnReportPageSetup>(reportPageSetupCommand)};
  static constexpr AFX_MSGMAP map{&CScrollView::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * GPScrollView::GetMessageMap() const
{
  return GetThisMessageMap();
}
