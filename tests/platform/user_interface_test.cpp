// The terminal's user interface, in processes of their own: without a terminal, and on one.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include <zpbase/messages.h>
#include <zpbase/platform/windows.h>

namespace {

struct Outcome {
  std::string shown;
  int answer;
};

std::string readAll(int file)
{
  std::string bytes;
  char part[512];
  for (ssize_t got; (got = read(file, part, sizeof part)) > 0;) bytes.append(part, static_cast<size_t>(got));
  return bytes;
}

Outcome finish(pid_t child, int file)
{
  Outcome outcome{readAll(file), -1};
  close(file);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) outcome.answer = WEXITSTATUS(status);
  return outcome;
}

// Standard error is a pipe, and standard input one that stays open and silent.
Outcome withoutTerminal(std::function<int()> const & show)
{
  int errors[2];
  int input[2];
  if (pipe(errors) != 0 || pipe(input) != 0) return {"no pipe", -1};
  pid_t const child = fork();
  if (child == 0) {
    dup2(errors[1], STDERR_FILENO);
    dup2(input[0], STDIN_FILENO);
    close(errors[0]);
    close(errors[1]);
    _exit(show());
  }
  close(errors[1]);
  Outcome const outcome = finish(child, errors[0]);
  close(input[0]);
  close(input[1]);
  return outcome;
}

// A terminal of 40 columns on which typed stands already.
Outcome onTerminal(std::string const & typed, std::function<int()> const & show)
{
  winsize const size{24, 40, 0, 0};
  int terminal = -1;
  pid_t const child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) {
    setenv("TERM", "dumb", 1);
    _exit(show());
  }
  if (write(terminal, typed.data(), typed.size()) < 0) return {"no terminal", -1};
  return finish(child, terminal);
}

int ask()
{
  return AfxMessageBox("Leave?", MB_YESNO | MB_ICONQUESTION);
}

int tellDuringRun()
{
  SetSimulationInProgress(1);
  return BeepMsgBox(CString("Tray 3 is dry."), MB_OK, 0, 0);
}

TEST(Terminal, GivesTheSafeAnswerWithoutATerminal)
{
  struct Row {
    UINT style;
    char const * shown;
    int answer;
  } const rows[] = {
      {MB_OK | MB_ICONHAND, "Error: Leave?\n", IDOK},
      {MB_OK | MB_ICONEXCLAMATION, "Warning: Leave?\n", IDOK},
      {MB_OK | MB_ICONASTERISK, "Note: Leave?\n", IDOK},
      {MB_OKCANCEL, "Leave?\n(Cancel)\n", IDCANCEL},
      {MB_YESNO | MB_ICONQUESTION, "Question: Leave?\n(No)\n", IDNO},
      {MB_YESNOCANCEL, "Leave?\n(Cancel)\n", IDCANCEL},
      {MB_RETRYCANCEL, "Leave?\n(Cancel)\n", IDCANCEL},
      {MB_ABORTRETRYIGNORE, "Leave?\n(Abort)\n", IDABORT},
  };
  for (Row const & row : rows) {
    Outcome const outcome = withoutTerminal([&row] { return AfxMessageBox("Leave?", row.style); });
    EXPECT_EQ(outcome.shown, row.shown);
    EXPECT_EQ(outcome.answer, row.answer) << row.shown;
  }
  Outcome const run = withoutTerminal(&tellDuringRun);
  EXPECT_EQ(run.shown, "Tray 3 is dry.\n(Continue)\n");
  EXPECT_EQ(run.answer, IDYES);
}

TEST(Terminal, AsksUntilAKeyFits)
{
  EXPECT_EQ(onTerminal("y\n", &ask).answer, IDYES);
  EXPECT_EQ(onTerminal(" No\n", &ask).answer, IDNO);
  Outcome const twice = onTerminal("what\n\nY\n", &ask);
  EXPECT_EQ(twice.answer, IDYES);
  EXPECT_NE(twice.shown.find("Question: Leave?"), std::string::npos);
  EXPECT_NE(twice.shown.find("[y/n] "), std::string::npos);
  EXPECT_EQ(onTerminal("\x04", &ask).answer, IDNO) << "end of the input";

  Outcome const run = onTerminal("s\n", &tellDuringRun);
  EXPECT_EQ(run.answer, IDNO);
  EXPECT_NE(run.shown.find("c: Continue, s: Stop the run"), std::string::npos);
  EXPECT_NE(run.shown.find("\x1b[38;2;128;0;0m"), std::string::npos);
}

constexpr DialogControl askedControls[] = {{DialogControl::Static, 1, "Drain\tit?", false},
                                           {DialogControl::Button, 41, "&Drain fill&", false},
                                           {DialogControl::Button, 42, "Don't", false},
                                           {DialogControl::Button, 43, "ddoo", false}};
constexpr DialogTemplate askedDialog{901, "Drain", askedControls};

// Ends with the number of the button that is pressed.
int runDialog()
{
  class Asked : public CDialog {
   public:
    Asked() : CDialog(901) {}
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
      if (message == WM_COMMAND && wParam > IDCANCEL) EndDialog(static_cast<int>(wParam));
      return CDialog::WindowProc(message, wParam, lParam);
    }
  } dialog;
  zp::RegisterTemplateModule([](UINT id) -> DialogTemplate const * { return id == askedDialog.id ? &askedDialog : nullptr; });
  return static_cast<int>(dialog.DoModal());
}

TEST(Terminal, GivesEachButtonAKeyOfItsOwnAndPressesTheLastIfNoneIsSafe)
{
  Outcome const silent = withoutTerminal(&runDialog);
  EXPECT_EQ(silent.shown, "Drain it?\n(ddoo)\n");
  EXPECT_EQ(silent.answer, 43);
  for (auto const & [typed, answer] : {std::pair("D\n", 41), {"x\no\n", 42}, {"o\n", 42}, {"\x04", 43}}) {
    Outcome const asked = onTerminal(typed, &runDialog);
    EXPECT_EQ(asked.answer, answer) << asked.shown;
    EXPECT_NE(asked.shown.find("d: Drain fill, o: Don't, o: ddoo"), std::string::npos) << asked.shown;
  }
}

// Tells on standard error that a message has come.
class TellingWindow : public CWnd {
 public:
  LRESULT WindowProc(UINT message, WPARAM, LPARAM) override
  {
    return message == WM_CREATE ? 0 : write(STDERR_FILENO, "delivered", 9);
  }
};

class DialogEndedByAMessage : public CDialog {
 public:
  DialogEndedByAMessage() : CDialog(323) {}
  BOOL OnInitDialog() override { return PostMessage(WM_USER); }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
  {
    if (message == WM_USER) EndDialog(77);
    return CDialog::WindowProc(message, wParam, lParam);
  }
};

TEST(Terminal, DeliversMessagesWhileItWaits)
{
  Outcome const outcome = onTerminal("y\n", [] {
    TellingWindow window;
    window.Create("w");
    window.PostMessage(WM_USER);
    PostQuitMessage(1);
    return ask();
  });
  EXPECT_EQ(outcome.answer, IDYES);
  EXPECT_NE(outcome.shown.find("delivered"), std::string::npos);
  EXPECT_EQ(onTerminal("", [] { return static_cast<int>(DialogEndedByAMessage().DoModal()); }).answer, 77);
}

TEST(Terminal, WrapsAtBlanksAndLetsNoTextSteerIt)
{
  Outcome const outcome = withoutTerminal([] {
    return AfxMessageBox(
        "The file C:\\a very long path\\that nobody wants to read in one line\\a.obj\r\n\x1b[2J\x07\x9D Temp\xE9rature");
  });
  EXPECT_EQ(outcome.shown,
            "The file C:\\a very long path\\that nobody wants to read in one line\\a.obj\n?[2J?? Temp\xC3\xA9rature\n");
  Outcome const narrow = onTerminal("", [] { return AfxMessageBox("one two three four five six seven eight nine ten"); });
  EXPECT_EQ(narrow.shown, "one two three four five six seven eight\r\nnine ten\r\n");
  Outcome const word = withoutTerminal([] { return AfxMessageBox(std::string(170, 'x').c_str()); });
  EXPECT_EQ(word.shown, std::string(80, 'x') + '\n' + std::string(80, 'x') + '\n' + std::string(10, 'x') + '\n');
}

}  // namespace
