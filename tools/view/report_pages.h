// The lines of a report as its viewers need them: by page, numbered, and safe to show.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class CStringArray;

// Which characters the place has where a line is shown.
enum class ShownIn { utf8, ascii };

// A report's entries, which must stay as they are for as long as this lives. An entry of the single character 0x01 begins a new
// page; every other one is a line. Entries, lines and pages count from 0.
class ReportPages {
 public:
  explicit ReportPages(CStringArray const & entries);

  int GetEntryCount() const;
  int GetLineCount() const { return GetEntryCount() - static_cast<int>(m_Breaks.size()); }
  int GetPageCount() const { return static_cast<int>(m_Starts.size()); }

  bool IsBreak(int entry) const;
  int GetPageOf(int entry) const;
  int GetLineOf(int entry) const;     // how many lines stand in front of the entry
  int GetFirstEntry(int page) const;  // of the page's own lines
  int GetEndEntry(int page) const;    // behind its last line
  std::string_view GetText(int entry) const;

  // The first entry from start on, forward or backward and once round, that holds the pattern; -1 if none does. The case of ASCII
  // letters counts if the pattern has a capital.
  int Find(std::string_view pattern, int start, bool forward) const;

  // Where the pattern stands in a line, by the same rule, or npos.
  static size_t FindIn(std::string_view line, std::string_view pattern);

 private:
  CStringArray const & m_Entries;
  std::vector<int> m_Breaks;  // entries that begin a page
  std::vector<int> m_Starts;  // first entry of each page
};

// A piece of a line as it can stand on a terminal, in a page or a file: one shown character for each of the text's. Controls are
// shown by their pictures, in ASCII by a dot, and what that lacks by a question mark.
std::string ShownText(std::string_view text, ShownIn where);
