// A user interface that writes down what it is told and answers what a test wants.

#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <zpbase/platform/windows.h>

class RecordingInterface : public CUserInterface {
 public:
  struct Message {
    std::string text;
    UINT style;
    UINT helpId;
  };

  RecordingInterface() : m_pFormer(SetUserInterface(this)) {}
  ~RecordingInterface() override { SetUserInterface(m_pFormer); }

  int ShowMessage(CString const & text, UINT style, UINT helpId) override;

  // Keeps the texts of the dialog's controls and presses the button of m_nPress, unless that is 0.
  int RunDialog(CDialog & dialog) override;
  void Beep(UINT type) override { m_Beeps.push_back(type); }
  void SetWaitCursor(int) override {}

  std::vector<Message> m_Messages;
  std::vector<UINT> m_Beeps;
  std::vector<std::string> m_DialogTexts;
  COLORREF m_nStaticColor = 0;
  int m_nAnswer = IDOK;
  UINT m_nPress = 0;
  std::function<void()> m_WhileShown = [] {};

 private:
  CUserInterface * m_pFormer;
};
