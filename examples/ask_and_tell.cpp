// Tells a user things and asks, through an interface of the program's own; then a run that is paused, goes on by a timer, and is
// stopped from a message.

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/windows.h>
#include <zpbase/text.h>

namespace {

// A program with windows of its own shows messages there; this one prints them and answers by itself.
class Printer : public CUserInterface {
 public:
  int ShowMessage(CString const & text, UINT style, UINT helpId) override
  {
    std::printf("message (style %u, help %u): %s\n", style, helpId, text.GetString());
    return (style & MB_TYPEMASK) == MB_YESNO ? IDNO : IDOK;
  }

  int RunDialog(CDialog & dialog) override
  {
    for (DialogControl const & control : dialog.GetTemplate().controls) {
      CString text;
      dialog.GetDlgItem(static_cast<int>(control.id))->GetWindowText(text);
      std::printf("dialog: %s\n", text.GetString());
    }
    dialog.SendMessage(WM_COMMAND, 991);  // the second button: stop the run
    return dialog.GetResult();
  }

  void Beep(UINT) override {}
  void SetWaitCursor(int) override {}
};

void goOn(HWND, unsigned int, unsigned int, unsigned long)
{
  std::printf("the timer ends the pause\n");
  ClearPauseFlag();
}

int runSimulation()
{
  CWnd window;
  window.Create("Run");
  unsigned int const timer = SetTimer(window.GetSafeHwnd(), GetNextTimerID(), 20, &goOn);
  SetSimulationInProgress(1);
  SetPauseFlag(1);
  int steps = 0;
  for (; AbortRun() == 0; ++steps)
    if (steps == 2) BeepMsgBox(CString("Tray 3 is dry."), MB_OK, 0, 0);
  KillTimer(window.GetSafeHwnd(), timer);
  return steps;
}

}  // namespace

int main()
{
  std::filesystem::path const folder = std::filesystem::temp_directory_path() / "zp_ask_and_tell";
  std::filesystem::create_directories(folder);
  CWinApp app("Example");
  app.SetProfileFile(FromHostPath((folder / "example.ini").string()));
  std::strcpy(job_path, FromHostPath((folder / "").string()));

  Printer printer;
  SetUserInterface(&printer);
  PrintfMsgBox(43782, "C:\\job\\feeds.obj", 3, "It ends early.");
  SystemErrorMsgBox(112, CString("Writing the results"));
  int const mayQuit = QuitZephlow();

  PutWarning("Stream %d has no flow", 7);  // needs no answer: a line in the job's file
  std::cout << std::ifstream(folder / "WARNINGS").rdbuf();

  int const steps = runSimulation();
  std::printf("stopped after %d steps\n", steps);
  SetUserInterface(nullptr);
  std::filesystem::remove_all(folder);
  return mayQuit == 0 && steps == 3 ? 0 : 1;
}
