// AbortMsgBox: shows a message during a run, with a second button that stops the run.

#include "messages/abort_box_internal.h"

#include <zpbase/messages.h>
#include <zpbase/platform/message_map.h>

namespace {

constexpr UINT templateID = 323;
constexpr int messageControl = 1055;
constexpr UINT continueButton = 990;
constexpr UINT stopButton = 991;
constexpr COLORREF darkRed = 0x000080;

}  // namespace

AbortMsgBox::AbortMsgBox(CString const & text) : CDialog(templateID), m_strMessage(text) {}

int AbortMsgBox::DoModal()
{
  CDialog::DoModal();
  if (m_nResult == IDNO) {
    SetAbortFlag(1);
    SetSimulationInProgress(0);
  }
  return m_nResult;
}

BOOL AbortMsgBox::OnInitDialog()
{
  CDialog::OnInitDialog();
  SetDlgItemText(messageControl, m_strMessage);
  return TRUE;
}

HBRUSH AbortMsgBox::OnCtlColor(CDC * dc, CWnd * control, UINT type)
{
  HBRUSH const brush = CDialog::OnCtlColor(dc, control, type);
  if (type == CTLCOLOR_STATIC) dc->SetTextColor(darkRed);
  return brush;
}

void AbortMsgBox::OnContinue()
{
  m_nResult = IDYES;
  OnOK();
}

void AbortMsgBox::OnStop()
{
  m_nResult = IDNO;
  OnOK();
}

AFX_MSGMAP const * AbortMsgBox::GetMessageMap() const
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCtlColor<&AbortMsgBox::OnCtlColor>(),
                                                 zp::OnCommand<&AbortMsgBox::OnContinue>(continueButton),
                                                 zp::OnCommand<&AbortMsgBox::OnStop>(stopButton)};
  static constexpr AFX_MSGMAP map{&CDialog::GetThisMessageMap, entries};
  return &map;
}
