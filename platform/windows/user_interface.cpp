// The terminal's user interface: messages on standard error, wrapped to its width, and answers from standard input where both
// are terminals. The thread's messages are delivered while it waits for one. Without a terminal the safe answer is given at once,
// and shown.

#include <zpbase/platform/windows.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <string>
#include <utility>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/terminal.h>

#include "platform/file/descriptor_internal.h"
#include "platform/windows/wrap_text_internal.h"

namespace {

constexpr int standardInput = 0;
constexpr int standardError = 2;
constexpr size_t defaultWidth = 80;  // columns
constexpr size_t minWidth = 20;
constexpr int inputWait = 10;  // milliseconds between two looks at the thread's messages

// One thing that can be answered: its letter in "[y/n]", its words, and the id that it stands for.
struct Choice {
  char key;
  std::string words;
  int answer;
  bool isSafe;
};
using Choices = std::vector<Choice>;

Choices choicesOf(UINT style)
{
  switch (style & MB_TYPEMASK) {
    case MB_OKCANCEL:
      return {{'o', "OK", IDOK, false}, {'c', "Cancel", IDCANCEL, true}};
    case MB_ABORTRETRYIGNORE:
      return {{'a', "Abort", IDABORT, true}, {'r', "Retry", IDRETRY, false}, {'i', "Ignore", IDIGNORE, false}};
    case MB_YESNOCANCEL:
      return {{'y', "Yes", IDYES, false}, {'n', "No", IDNO, false}, {'c', "Cancel", IDCANCEL, true}};
    case MB_YESNO:
      return {{'y', "Yes", IDYES, false}, {'n', "No", IDNO, true}};
    case MB_RETRYCANCEL:
      return {{'r', "Retry", IDRETRY, false}, {'c', "Cancel", IDCANCEL, true}};
    default:
      return {};
  }
}

char const * iconWord(UINT style)
{
  switch (style & MB_ICONMASK) {
    case MB_ICONHAND:
      return "Error: ";
    case MB_ICONQUESTION:
      return "Question: ";
    case MB_ICONEXCLAMATION:
      return "Warning: ";
    case MB_ICONASTERISK:
      return "Note: ";
    default:
      return "";
  }
}

void write(std::string_view bytes)
{
  zp::WriteAll(standardError, bytes);
}

size_t columns()
{
  int const width = zp::GetHostCalls().Columns(standardError);
  return width > 0 ? std::max(static_cast<size_t>(width), minWidth) : defaultWidth;
}

void print(std::string_view text)
{
  write(zp::TextToUtf8(zp::WrapText(text, columns())));
}

bool canAsk()
{
  return IsTerminal(standardInput) && IsTerminal(standardError);
}

// Delivers what is there for the thread, up to a quit, which stays for the program's own loop.
void deliverMessages()
{
  CWinThread * const thread = AfxGetThread();
  for (MSG next; PeekMessageA(&next, PM_NOREMOVE) && next.message != WM_QUIT;) {
    if (thread != nullptr) {
      thread->PumpMessage();
    } else {
      PeekMessageA(&next, PM_REMOVE);
      DispatchMessageA(&next);
    }
  }
}

bool hasInput()
{
  return zp::GetHostCalls().WaitForInput(standardInput, inputWait) > 0;
}

// False at the end of the input, and when a message has made the answer needless.
bool readLine(std::string & line, std::function<bool()> const & isOver)
{
  line.clear();
  for (char c = 0;;) {
    deliverMessages();
    if (isOver()) return false;
    if (!hasInput()) continue;
    long const got = zp::GetHostCalls().Read(standardInput, &c, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    if (c == '\n') return true;
    line += c;
  }
}

// "[y/n]"
std::string keysOf(Choices const & choices)
{
  std::string keys = "[";
  for (Choice const & choice : choices) {
    if (keys.size() > 1) keys += '/';
    keys += choice.key;
  }
  return keys + "]";
}

Choice const & safeChoice(Choices const & choices)
{
  auto const safe = std::find_if(choices.begin(), choices.end(), [](Choice const & choice) { return choice.isSafe; });
  return safe != choices.end() ? *safe : choices.back();
}

// Asks until one of the keys is at the head of a line; the end of the input, or of what is asked for, is the safe choice.
Choice const & ask(Choices const & choices, std::function<bool()> const & isOver)
{
  if (!canAsk()) {
    write("(" + zp::TextToUtf8(safeChoice(choices).words) + ")\n");
    return safeChoice(choices);
  }
  for (std::string line;;) {
    write(keysOf(choices) + " ");
    if (!readLine(line, isOver)) return safeChoice(choices);
    size_t const first = line.find_first_not_of(" \t");
    char const key = first != std::string::npos ? zp::ToLower(line[first]) : '\0';
    auto const chosen = std::find_if(choices.begin(), choices.end(), [key](Choice const & choice) { return choice.key == key; });
    if (chosen != choices.end()) return *chosen;
  }
}

// A button's text without its '&', and the key that it marks, else its first letter that no earlier button has.
Choice choiceOf(std::string_view text, UINT id, bool isDefault, Choices const & others)
{
  Choice choice{'\0', {}, static_cast<int>(id), isDefault};
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '&')
      choice.words += text[i];
    else if (i + 1 < text.size())
      choice.key = zp::ToLower(text[i + 1]);
  }
  auto const taken = [&others](char key) {
    return std::any_of(others.begin(), others.end(), [key](Choice const & other) { return other.key == key; });
  };
  for (size_t i = 0; i < choice.words.size() && (choice.key == '\0' || taken(choice.key)); ++i)
    choice.key = zp::ToLower(choice.words[i]);
  return choice;
}

// Text in the colour that the dialog wants for it, on a terminal.
void printStatic(CDialog & dialog, CWnd & control)
{
  CString text;
  control.GetWindowText(text);
  COLORREF const color = dialog.GetControlTextColor(control, CTLCOLOR_STATIC);
  bool const colored = color != 0 && IsTerminal(standardError);
  if (colored) {
    CString start;
    start.Format("\x1b[38;2;%u;%u;%um", color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
    write(start.View());
  }
  print(text.View());
  if (colored) write("\x1b[0m");
}

class Terminal : public CUserInterface {
 public:
  int ShowMessage(CString const & text, UINT style, UINT) override
  {
    print(iconWord(style) + std::string(text.View()));
    Choices const choices = choicesOf(style);
    return choices.empty() ? IDOK : ask(choices, [] { return false; }).answer;
  }

  int RunDialog(CDialog & dialog) override
  {
    Choices choices;
    for (DialogControl const & control : dialog.GetTemplate().controls) {
      CWnd * const window = dialog.GetDlgItem(static_cast<int>(control.id));
      if (control.kind == DialogControl::Static)
        printStatic(dialog, *window);
      else
        choices.push_back(choiceOf(control.text, control.id, control.isDefault, choices));
    }
    while (!dialog.IsEnded() && !choices.empty()) {
      if (canAsk()) print(legend(choices));
      int const answer = ask(choices, [&dialog] { return dialog.IsEnded(); }).answer;
      if (!dialog.IsEnded()) dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(answer));
      if (!canAsk()) break;
    }
    return dialog.GetResult();
  }

  void Beep(UINT) override
  {
    if (IsTerminal(standardError)) write("\a");
  }

  void SetWaitCursor(int) override {}

 private:
  // "c: Continue, s: Stop the run"
  static std::string legend(Choices const & choices)
  {
    std::string text;
    for (Choice const & choice : choices) {
      if (!text.empty()) text += ", ";
      text += choice.key + (": " + choice.words);
    }
    return text;
  }
};

CUserInterface * g_pInstalled = nullptr;
int g_nWaiting = 0;  // wait cursors

}  // namespace

CUserInterface * SetUserInterface(CUserInterface * ui)
{
  return std::exchange(g_pInstalled, ui);
}

CUserInterface & GetUserInterface()
{
  static Terminal terminal;
  return g_pInstalled != nullptr ? *g_pInstalled : terminal;
}

CWaitCursor::CWaitCursor()
{
  if (g_nWaiting++ == 0) GetUserInterface().SetWaitCursor(1);
}

CWaitCursor::~CWaitCursor()
{
  if (--g_nWaiting == 0) GetUserInterface().SetWaitCursor(0);
}

int AfxMessageBox(char const * text, UINT type, UINT helpId)
{
  return GetUserInterface().ShowMessage(text, type, helpId);
}

void MessageBeep(UINT type)
{
  GetUserInterface().Beep(type);
}
