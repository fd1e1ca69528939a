// Control bars along a frame's sides. Tool bars are resources by number: the commands of their buttons.
#pragma once

#include <span>
#include <vector>

#include "windows.h"

// The style of a bar, which is no part of its window's style: where it may stand and what it shows.
enum ControlBarStyle : DWORD {
  CBRS_ALIGN_TOP = 0x2000,
  CBRS_ALIGN_ANY = 0xF000,
  CBRS_BORDER_BOTTOM = 0x0800,
  CBRS_TOP = CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM,
  CBRS_SIZE_DYNAMIC = 0x0004,
  CBRS_TOOLTIPS = 0x0010,
  CBRS_FLYBY = 0x0020,
  CBRS_ALL = 0x0004FFFF
};

// A style of a tool bar's window: buttons without edges.
inline constexpr DWORD TBSTYLE_FLAT = 0x0800;

class ZP_API CControlBar : public CWnd {
  DECLARE_DYNAMIC(CControlBar)
 public:
  DWORD GetBarStyle() const { return m_nBarStyle; }
  void SetBarStyle(DWORD style) { m_nBarStyle = style & CBRS_ALL; }

  // The sides on which the bar may be docked, none at first; and the frame that it is docked to, or null.
  void EnableDocking(DWORD sides) { m_nDockSides = sides & CBRS_ALIGN_ANY; }
  DWORD GetDockSides() const { return m_nDockSides; }
  CFrameWnd * GetDockingFrame() const { return m_pDockingFrame; }

 protected:
  void PostNcDestroy() override { m_pDockingFrame = nullptr; }

 private:
  friend class CFrameWnd;

  DWORD m_nBarStyle = 0;
  DWORD m_nDockSides = 0;
  CFrameWnd * m_pDockingFrame = nullptr;
};

class ZP_API CToolBar : public CControlBar {
  DECLARE_DYNAMIC(CToolBar)
 public:
  // style holds those of the window and of the bar.
  BOOL Create(CWnd * parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_TOOLBAR);
  BOOL LoadToolBar(UINT id);  // 0, and the buttons stay, if no module has it

  int GetCount() const { return static_cast<int>(m_Buttons.size()); }
  UINT GetItemID(int index) const;  // the button's command, 0 for a gap or outside

 private:
  std::vector<UINT> m_Buttons;
};

struct ToolBarResource {
  UINT id;
  std::span<UINT const> buttons;  // commands, 0 for a gap
};

namespace zp {

using FindToolBar = ToolBarResource const * (*)(UINT id);

// Puts a module of tool bars in front of those registered before, or takes it out again.
ZP_API void RegisterToolBarModule(FindToolBar find);
ZP_API void UnregisterToolBarModule(FindToolBar find);

}  // namespace zp
