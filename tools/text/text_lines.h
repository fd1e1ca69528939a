// The lines of a numeric text file for the commands of zp text: every file that people call text comes to lines here, or the
// reason is said.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/text.h>

#include "tools/program.h"
#include "tools/progress.h"

struct TextOptions {
  std::string file;
  int skip = 0;
  int report = 20;
  std::string delimiter;  // empty: the one that makes most lines numeric
  std::string comment;
  bool decimalComma = false;
  std::vector<std::string> missing;  // words of missing values beside the usual ones
  std::vector<std::string> columns;  // numbers, ranges and names of those that are looked at; none: all
  bool json = false;
  bool tellsLineEnds = true;

  std::string Name() const { return ShownName(file); }  // for messages
};

class TextLines {
 public:
  // Reads the file, or a pipe to its end. What ParseFile can't take as it stands goes through a copy, with a word on standard
  // error where some lines end in CR LF and others in LF alone. passes is how often all lines will be read, for the progress bar.
  // Raises Failure.
  TextLines(TextOptions const & options, int passes);

  int GetCount() const { return m_nCount; }
  bool IsEmpty() const { return m_bEmpty; }

  void Rewind();

  // The next line behind the skipped ones; false at the end.
  bool Next();
  int GetNumber() const { return m_pFile->GetCurLineNumber(); }
  int GetLength() const { return m_pFile->GetLength(); }  // as it stands in the file
  std::string_view Get() const { return m_Line; }         // in front of a comment
  bool IsComment() const { return m_bComment; }           // there is nothing else
  void EndProgress() { m_Progress.reset(); }              // clears the bar

 private:
  std::string m_strComment;
  int m_nSkip;
  bool m_bEmpty = false;
  std::unique_ptr<ParseFile> m_pFile;
  int m_nCount = 0;
  std::string_view m_Line;
  bool m_bComment = false;
  unsigned long long m_nDone = 0;
  std::optional<Progress> m_Progress;
};

// Parses the text as a file of its own, which is gone afterwards. name is the one that failures tell. Raises Failure.
std::unique_ptr<ParseFile> ParseCopy(std::string_view text, std::string const & name);

std::string_view TrimBlanks(std::string_view text);
