// The message box of a running simulation.

#pragma once

#include <zpbase/platform/windows.h>

class AbortMsgBox : public CDialog {
 public:
  explicit AbortMsgBox(CString const & text);

  int DoModal() override;  // IDYES: the run goes on; IDNO: it is stopped; -1: dismissed
  BOOL OnInitDialog() override;

 protected:
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  HBRUSH OnCtlColor(CDC * dc, CWnd * control, UINT type);
  void OnContinue();
  void OnStop();

  CString m_strMessage;
  int m_nResult = -1;
};
