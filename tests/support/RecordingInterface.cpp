#include "tests/support/RecordingInterface.h"

int RecordingInterface::ShowMessage(CString const & text, UINT style, UINT helpId)
{
  m_Messages.push_back({std::string(text.View()), style, helpId});
  m_WhileShown();
  return m_nAnswer;
}

int RecordingInterface::RunDialog(CDialog & dialog)
{
  for (DialogControl const & control : dialog.GetTemplate().controls) {
    CString text;
    CWnd & window = *dialog.GetDlgItem(static_cast<int>(control.id));
    window.GetWindowText(text);
    m_DialogTexts.emplace_back(text.View());
    if (control.kind == DialogControl::Static) m_nStaticColor = dialog.GetControlTextColor(window, CTLCOLOR_STATIC);
  }
  m_WhileShown();
  if (m_nPress != 0) dialog.SendMessage(WM_COMMAND, m_nPress);
  return dialog.GetResult();
}
