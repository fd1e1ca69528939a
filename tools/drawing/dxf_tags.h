// The pairs of lines that a DXF file is made of: a group code and its value.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

struct DxfTag {
  int code = 0;
  std::string_view value;       // valid until the next tag is read
  unsigned long long line = 0;  // of the value, from 1
};

// What is wrong with a file, and where.
struct DxfProblem {
  unsigned long long line;
  std::string what;
};

class DxfProblems {
 public:
  static constexpr size_t mostKept = 100;

  void Add(unsigned long long line, std::string what);
  std::vector<DxfProblem> const & GetKept() const { return m_Kept; }
  unsigned long long GetCount() const { return m_nCount; }

 private:
  std::vector<DxfProblem> m_Kept;
  unsigned long long m_nCount = 0;
};

// Reads tags from bytes that come in pieces; its memory doesn't grow with the file. Lines end with CR LF.
class DxfTagReader {
 public:
  // Fills a buffer with the next bytes and gives their count, 0 at the end.
  using Source = std::function<size_t(char * buffer, size_t size)>;
  static constexpr size_t longestLine = 0x10000;

  DxfTagReader(Source source, DxfProblems & problems);

  // False at the end of the bytes, and from the first pair on that can't be read, which is told.
  bool Next(DxfTag & tag);

  unsigned long long GetLine() const { return m_nLine; }  // lines read so far

 private:
  bool NextLine(std::string_view & line);
  bool Refill();
  std::string_view WithoutLineEnd(std::string_view line);
  bool Stop(std::string what);

  Source m_Source;
  DxfProblems & m_Problems;
  std::vector<char> m_Buffer;
  size_t m_nBegin = 0;  // of the bytes that aren't read yet
  size_t m_nEnd = 0;
  unsigned long long m_nLine = 0;
  bool m_bDrained = false;
  bool m_bStopped = false;
  bool m_bToldLineEnd = false;
};

// The number that a value is, blanks around it allowed; false if it is none.
bool DxfInteger(std::string_view value, int & number);
bool DxfReal(std::string_view value, double & number);  // finite and no larger than 1e12 either way

// A value for people: cut short, in UTF-8, with control characters as points.
std::string DxfShown(std::string_view value);
