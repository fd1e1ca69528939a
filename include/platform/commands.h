// Command targets: the objects that messages and commands reach through message maps, and the items of a user interface, such as
// those of a menu, that a target updates. A target can also be an automation object, see automation.h.
#pragma once

#include <memory>
#include <span>

#include "string.h"
#include "types.h"

#include "runtime.h"

class CCmdTarget;
struct AFX_DISPMAP;
struct AFX_INTERFACEMAP;
struct IDispatch;

// What is asked of a command's handler: to carry it out, or to update the item that stands for it.
inline constexpr int CN_COMMAND = 0;
inline constexpr int CN_UPDATE_COMMAND_UI = -1;

// A message map: which handler takes a message, and for WM_COMMAND a range of commands. The high word of a command's nMessage is
// the code, one of those above or a control's notification below 0xFFFF. Entries are made by the functions of message_map.h.
struct AFX_MSGMAP_ENTRY {
  UINT nMessage;
  UINT nID;
  UINT nLastID;
  LRESULT (*pHandler)(CCmdTarget & target, WPARAM wParam, LPARAM lParam);
};

struct AFX_MSGMAP {
  AFX_MSGMAP const * (*pfnGetBaseMap)();  // null at the root
  std::span<AFX_MSGMAP_ENTRY const> entries;
};

// Who would carry out a command.
struct AFX_CMDHANDLERINFO {
  CCmdTarget * pTarget;
  AFX_MSGMAP_ENTRY const * pEntry;
};

namespace zp {
class AutomationPart;
}

class ZP_API CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)
 public:
  ~CCmdTarget() override;  // interfaces that are still held answer that the object is gone
  CCmdTarget(CCmdTarget const &) = delete;
  CCmdTarget & operator=(CCmdTarget const &) = delete;

  // True, with the handler's answer, if this map or one of its bases has a handler. A message above 0xFFFF has none.
  bool CallHandler(UINT message, WPARAM wParam, LPARAM lParam, LRESULT & answer);

  // Sends a command along the target's route: TRUE if a handler on it took it. extra goes to the handler; for
  // CN_UPDATE_COMMAND_UI it is the CCmdUI. With info nothing is called; it gets the handler that would be.
  virtual BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info);

  // Makes the object an automation object. Its interface, null before, stays the object's unless addRef is set.
  void EnableAutomation();
  IDispatch * GetIDispatch(BOOL addRef);

 protected:
  CCmdTarget();
  static AFX_MSGMAP const * GetThisMessageMap();
  virtual AFX_MSGMAP const * GetMessageMap() const;
  static AFX_DISPMAP const * GetThisDispatchMap();
  virtual AFX_DISPMAP const * GetDispatchMap() const;
  static AFX_INTERFACEMAP const * GetThisInterfaceMap();
  virtual AFX_INTERFACEMAP const * GetInterfaceMap() const;

 private:
  friend class zp::AutomationPart;

  AFX_MSGMAP_ENTRY const * FindEntry(UINT message, WPARAM wParam) const;

  zp::AutomationPart * m_pAutomation = nullptr;  // counted by those who hold the interface
};

// An item of the user interface that stands for a command. Handlers of CN_UPDATE_COMMAND_UI set its state; who shows items
// derives from it, or reads the state afterwards.
class ZP_API CCmdUI {
 public:
  explicit CCmdUI(UINT id) : m_nID(id) {}
  virtual ~CCmdUI() = default;

  virtual void Enable(BOOL on = TRUE);
  virtual void SetCheck(int check = 1);  // 0 off, 1 on, 2 neither
  virtual void SetText(char const * text);

  // Asks the target's route for the state: TRUE if a handler gave it. With disableIfNoHandler an item whose state nobody gives
  // is enabled as long as somebody carries out its command.
  BOOL DoUpdate(CCmdTarget * target, BOOL disableIfNoHandler);

  UINT m_nID;
  BOOL m_bEnableChanged = FALSE;  // the last DoUpdate called Enable

  BOOL IsEnabled() const { return m_bEnabled; }
  int GetCheck() const { return m_nCheck; }
  CString const & GetText() const { return m_strText; }  // empty: as it was made

 private:
  BOOL m_bEnabled = TRUE;
  int m_nCheck = 0;
  CString m_strText;
};
