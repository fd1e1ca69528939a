// Messages of the library kept off the terminal while objects are read.
#pragma once

#include <string>

#include <zpbase/platform/encoding.h>
#include <zpbase/platform/windows.h>

// Takes the messages with which containers of numbers tell that their bytes are damaged.
class MessageCatcher : public CUserInterface {
 public:
  MessageCatcher() : m_pFormer(SetUserInterface(this)) {}
  ~MessageCatcher() override { SetUserInterface(m_pFormer); }
  MessageCatcher(MessageCatcher const &) = delete;
  MessageCatcher & operator=(MessageCatcher const &) = delete;

  int ShowMessage(CString const & text, UINT, UINT) override
  {
    m_strMessage = zp::TextToUtf8(text.View());
    return IDOK;
  }
  int RunDialog(CDialog &) override { return IDCANCEL; }
  void Beep(UINT) override {}
  void SetWaitCursor(int) override {}

  std::string const & GetMessage() const { return m_strMessage; }

 private:
  CUserInterface * m_pFormer;
  std::string m_strMessage;
};
