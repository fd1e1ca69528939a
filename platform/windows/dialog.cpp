// CDialog: a modal dialog on a template, from making its controls to its result.

#include <zpbase/platform/message_map.h>

#include "platform/windows/dialog_internal.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)
IMPLEMENT_DYNAMIC(CPropertySheet, CWnd)

CDialog::CDialog(UINT templateId, CWnd * parent) : m_nTemplateID(templateId), m_pDialogParent(parent) {}

CDialog::~CDialog()
{
  DestroyWindow();
}

void CDialog::CreateControls()
{
  for (DialogControl const & control : m_pTemplate->controls) {
    m_Controls.push_back(std::make_unique<CWnd>());
    m_Controls.back()->Create(control.text, WS_CHILD, this, control.id);
  }
}

// A parent that has no window is as good as none.
int CDialog::DoModal()
{
  m_pTemplate = zp::FindTemplate(m_nTemplateID);
  bool const hasParent = m_pDialogParent != nullptr && m_pDialogParent->GetSafeHwnd() != nullptr;
  CWnd * const parent = hasParent ? m_pDialogParent : nullptr;
  if (m_pTemplate == nullptr || !Create(m_pTemplate->title, WS_OVERLAPPED, parent)) return -1;
  struct Window {
    CDialog & dialog;
    ~Window()
    {
      dialog.DestroyWindow();
      dialog.m_Controls.clear();
    }
  } const window{*this};
  m_bEnded = false;
  m_nResult = -1;
  CreateControls();
  OnInitDialog();
  if (!m_bEnded) GetUserInterface().RunDialog(*this);
  if (!m_bEnded) OnCancel();
  return m_nResult;
}

BOOL CDialog::OnInitDialog()
{
  return TRUE;
}

void CDialog::EndDialog(int result)
{
  m_nResult = result;
  m_bEnded = true;
}

COLORREF CDialog::GetControlTextColor(CWnd & control, UINT type)
{
  CDC dc;
  AFX_CTLCOLOR const question{&dc, &control, type};
  SendMessage(WM_CTLCOLOR, 0, reinterpret_cast<LPARAM>(&question));
  return dc.GetTextColor();
}

void CDialog::OnOK()
{
  EndDialog(IDOK);
}

void CDialog::OnCancel()
{
  EndDialog(IDCANCEL);
}

AFX_MSGMAP const * CDialog::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCommand<&CDialog::OnOK>(IDOK),
                                                 zp::OnCommand<&CDialog::OnCancel>(IDCANCEL)};
  static constexpr AFX_MSGMAP map{&CWnd::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * CDialog::GetMessageMap() const
{
  return GetThisMessageMap();
}
