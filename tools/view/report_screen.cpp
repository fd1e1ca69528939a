// The viewer on ncurses: what stands on the screen follows from the first entry and column, so that every change ends in one
// drawing of the whole.

#include "tools/view/report_screen.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include <curses.h>
#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

#include "tools/view/report_pages.h"

namespace {

constexpr int sideStep = 8;      // columns
constexpr int numberWidth = 8;   // of a line number and the blank behind it
constexpr int escapeDelay = 25;  // milliseconds until a lone Escape counts
constexpr int escapeKey = 27;
constexpr int deleteKey = 127;
constexpr char const * keysHint = "q leaves, / searches, n N go on, [ ] pages, l numbers";

// By a character of three bytes that no other encoding reads so.
bool isUtf8Locale()
{
  constexpr char picture[] = "\xE2\x90\x9B";
  wchar_t read = 0;
  return std::mbtowc(&read, picture, sizeof picture - 1) == 3 && read == 0x241B;
}

// Takes the last character off, all its bytes.
void dropLast(std::string & utf8)
{
  while (!utf8.empty() && (static_cast<unsigned char>(utf8.back()) & 0xC0) == 0x80) utf8.pop_back();
  if (!utf8.empty()) utf8.pop_back();
}

// The terminal in the state that a viewer needs, and its own state afterwards.
class Terminal {
 public:
  Terminal()
  {
    std::setlocale(LC_CTYPE, "");
    m_pScreen = newterm(nullptr, stdout, stdin);
    if (m_pScreen == nullptr) return;
    set_term(m_pScreen);
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    set_escdelay(escapeDelay);
    curs_set(0);
  }
  ~Terminal()
  {
    if (m_pScreen == nullptr) return;
    endwin();
    delscreen(m_pScreen);
  }
  Terminal(Terminal const &) = delete;
  Terminal & operator=(Terminal const &) = delete;

  bool IsThere() const { return m_pScreen != nullptr; }

 private:
  SCREEN * m_pScreen = nullptr;
};

class Viewer {
 public:
  Viewer(ReportPages const & report, std::string const & title)
      : m_Report(report), m_strTitle(title), m_Where(isUtf8Locale() ? ShownIn::utf8 : ShownIn::ascii)
  {
  }

  void Run()
  {
    while (!m_bDone) {
      Draw();
      Obey(getch());
    }
  }

 private:
  int Rows() const { return std::max(LINES - 1, 1); }

  void GoTo(int entry) { m_nTop = std::clamp(entry, 0, std::max(m_Report.GetEntryCount() - 1, 0)); }
  void GoToPage(int step)
  {
    if (m_Report.GetEntryCount() == 0) return;
    int const page = std::clamp(m_Report.GetPageOf(m_nTop) + step, 0, m_Report.GetPageCount() - 1);
    GoTo(m_Report.GetFirstEntry(page));
  }

  void Obey(int key)
  {
    struct Row {
      int key;
      void (Viewer::*act)();
    };
    static constexpr Row rows[] = {
        {'q', &Viewer::Leave},
        {'Q', &Viewer::Leave},
        {escapeKey, &Viewer::Leave},
        {ERR, &Viewer::Leave},
        {KEY_DOWN, &Viewer::LineDown},
        {'j', &Viewer::LineDown},
        {'\n', &Viewer::LineDown},
        {KEY_UP, &Viewer::LineUp},
        {'k', &Viewer::LineUp},
        {KEY_NPAGE, &Viewer::ScreenDown},
        {' ', &Viewer::ScreenDown},
        {KEY_PPAGE, &Viewer::ScreenUp},
        {'b', &Viewer::ScreenUp},
        {KEY_HOME, &Viewer::GoToBegin},
        {'g', &Viewer::GoToBegin},
        {KEY_END, &Viewer::GoToEnd},
        {'G', &Viewer::GoToEnd},
        {']', &Viewer::PageDown},
        {'[', &Viewer::PageUp},
        {KEY_RIGHT, &Viewer::ColumnsRight},
        {KEY_LEFT, &Viewer::ColumnsLeft},
        {'l', &Viewer::SwitchNumbers},
        {'/', &Viewer::AskPattern},
        {'n', &Viewer::FindNext},
        {'N', &Viewer::FindPrevious},
        {KEY_RESIZE, &Viewer::Resize},
    };
    m_strNote.clear();
    for (Row const & row : rows)
      if (row.key == key) return (this->*row.act)();
    m_strNote = keysHint;
  }

  void Leave() { m_bDone = true; }
  void LineDown() { GoTo(m_nTop + 1); }
  void LineUp() { GoTo(m_nTop - 1); }
  void ScreenDown() { GoTo(m_nTop + Rows()); }
  void ScreenUp() { GoTo(m_nTop - Rows()); }
  void GoToBegin() { GoTo(0); }
  void GoToEnd() { GoTo(m_Report.GetEntryCount() - Rows()); }
  void PageDown() { GoToPage(1); }
  void PageUp() { GoToPage(-1); }
  void ColumnsRight() { m_nLeft += sideStep; }
  void ColumnsLeft() { m_nLeft = std::max(m_nLeft - sideStep, 0); }
  void SwitchNumbers() { m_bNumbers = !m_bNumbers; }
  void FindNext() { Search(m_nTop + 1, true); }
  void FindPrevious() { Search(m_nTop - 1, false); }
  void Resize() { clear(); }

  void AskPattern()
  {
    std::string typed;
    curs_set(1);
    bool const isEntered = Type(typed);
    curs_set(0);
    if (!isEntered || typed.empty()) return;
    m_strPattern = PatternOf(typed);
    Search(m_nTop, true);
  }

  // A line of typing on the last row; false if it was given up.
  bool Type(std::string & typed)
  {
    for (;;) {
      m_strNote = "/" + typed;
      Draw();
      int const key = getch();
      if (key == '\n' || key == KEY_ENTER) break;
      if (key == escapeKey || key == ERR) {
        m_strNote.clear();
        return false;
      }
      if (key == KEY_BACKSPACE || key == deleteKey || key == '\b')
        dropLast(typed);
      else if (key >= ' ' && key <= 0xFF)
        typed += static_cast<char>(key);
    }
    m_strNote.clear();
    return true;
  }

  // What was typed, in the characters of the report.
  std::string PatternOf(std::string const & typed) const
  {
    CString text;
    return m_Where == ShownIn::utf8 && zp::Utf8ToText(typed, text) ? std::string(text.View()) : typed;
  }

  void Search(int start, bool forward)
  {
    int const count = m_Report.GetEntryCount();
    if (m_strPattern.empty() || count == 0) return;
    int const found = m_Report.Find(m_strPattern, (start + count) % count, forward);
    if (found < 0) {
      m_strNote = "not found";
      return;
    }
    GoTo(found);
    int const column = static_cast<int>(ReportPages::FindIn(m_Report.GetText(found), m_strPattern));
    if (column < m_nLeft || column >= m_nLeft + COLS - numberWidth) m_nLeft = std::max(column - sideStep, 0);
  }

  void Draw() const
  {
    erase();
    for (int row = 0; row < Rows() && m_nTop + row < m_Report.GetEntryCount(); ++row) DrawEntry(row, m_nTop + row);
    DrawStatus();
    refresh();
  }

  void DrawEntry(int row, int entry) const
  {
    move(row, 0);
    if (m_Report.IsBreak(entry)) {
      attron(A_DIM);
      addnstr(fmt::format("---- page {} ----", m_Report.GetPageOf(entry) + 1).c_str(), COLS);
      attroff(A_DIM);
      return;
    }
    int width = COLS;
    if (m_bNumbers && width > numberWidth) {
      attron(A_DIM);
      AddShown(fmt::format("{:>{}} ", m_Report.GetLineOf(entry) + 1, numberWidth - 1));
      attroff(A_DIM);
      width -= numberWidth;
    }
    std::string_view const text = m_Report.GetText(entry);
    if (static_cast<size_t>(m_nLeft) >= text.size()) return;
    AddShown(ShownText(text.substr(static_cast<size_t>(m_nLeft), static_cast<size_t>(width)), m_Where));
  }

  void DrawStatus() const
  {
    std::string status = m_strNote;
    if (status.empty()) {
      if (m_Report.GetEntryCount() == 0)
        status += "empty";
      else
        status += fmt::format("line {} of {}, page {} of {}", std::min(m_Report.GetLineOf(m_nTop) + 1, m_Report.GetLineCount()),
                              m_Report.GetLineCount(), m_Report.GetPageOf(m_nTop) + 1, m_Report.GetPageCount());
      if (m_nLeft > 0) status += fmt::format(", column {}", m_nLeft + 1);
      status += "  " + m_strTitle;
    }
    attron(A_REVERSE);
    mvaddnstr(LINES - 1, 0, status.c_str(), std::max(COLS - 1, 0));
    attroff(A_REVERSE);
  }

  static void AddShown(std::string const & text) { addstr(text.c_str()); }

  ReportPages const & m_Report;
  std::string m_strTitle;
  ShownIn m_Where;
  int m_nTop = 0;   // entry
  int m_nLeft = 0;  // column
  bool m_bNumbers = false;
  bool m_bDone = false;
  std::string m_strPattern;
  std::string m_strNote;  // in place of the status, until the next key
};

}  // namespace

bool ShowReport(ReportPages const & report, std::string const & title)
{
  Terminal const terminal;
  if (!terminal.IsThere()) return false;
  Viewer(report, title).Run();
  return true;
}
