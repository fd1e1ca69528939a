// ParseFile: a whole text file in memory, its line ends found once, its lines given one after the other.
#include <array>
#include <bit>
#include <cstring>

#include <zpbase/platform/windows.h>
#include <zpbase/text.h>

namespace {

constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';
constexpr char substitute = 26;
constexpr ULONGLONG maxFileLength = 0x7FFFFFFF - 2;  // bytes; two more may be appended

constexpr uint64_t eachByte = 0x0101010101010101;
constexpr uint64_t eachHighBit = 0x8080808080808080;

// The high bit of the lowest zero byte of a word, and of no byte below it.
uint64_t zeroBytes(uint64_t word)
{
  return (word - eachByte) & ~word & eachHighBit;
}

bool belongsToLineEnd(char c)
{
  return c == lineFeed || c == substitute;
}

// The first CR or zero byte from p on, or last. Eight bytes a step.
char * findLineEnd(char * p, char * last)
{
  if constexpr (std::endian::native == std::endian::little) {
    for (; last - p >= 8; p += 8) {
      uint64_t word;
      std::memcpy(&word, p, sizeof word);
      uint64_t const found = zeroBytes(word) | zeroBytes(word ^ (eachByte * carriageReturn));
      if (found != 0) return p + std::countr_zero(found) / 8;
    }
  }
  while (p != last && *p != carriageReturn && *p != '\0') ++p;
  return p;
}

class WaitCursor {
 public:
  WaitCursor() { GetUserInterface().SetWaitCursor(1); }
  ~WaitCursor() { GetUserInterface().SetWaitCursor(0); }
  WaitCursor(WaitCursor const &) = delete;
  WaitCursor & operator=(WaitCursor const &) = delete;
};

}  // namespace

ParseFile::ParseFile(CString const & path) : m_File(path)
{
  WaitCursor const waiting;
  LoadContent();
  InitLineOffsets();
}

ParseFile::~ParseFile() = default;

void ParseFile::LoadContent()
{
  if (!m_File.Exists()) AfxThrowFileException(CFileException::fileNotFound, 2, m_File.GetFilePath());
  m_File.Open(CFile::modeRead);
  ULONGLONG const length = m_File.GetLength();
  if (length > maxFileLength) AfxThrowFileException(CFileException::genericException, -1, m_File.GetFilePath());
  if (length != 0) {
    m_pContent = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(length) + 2);
    zp::PreferLargePages(m_pContent.get(), static_cast<size_t>(length));
    m_nContentLength = m_File.Read(m_pContent.get(), static_cast<UINT>(length));
  }
  m_File.Close();
  if (m_nContentLength != 0 && m_pContent[m_nContentLength - 1] == substitute) --m_nContentLength;
  if (m_nContentLength == 0) return;
  char const lastByte = m_pContent[m_nContentLength - 1];
  if (lastByte == carriageReturn || lastByte == lineFeed) return;
  m_pContent[m_nContentLength++] = carriageReturn;
  m_pContent[m_nContentLength++] = lineFeed;
}

// Every line end becomes a zero byte, and the line behind it starts after the LFs and SUBs that belong to the line end.
void ParseFile::InitLineOffsets()
{
  char * const first = m_pContent.get();
  char * const last = first + m_nContentLength;
  m_LineOffsets.assign(1, 0);
  for (char * p = first; (p = findLineEnd(p, last)) != last;) {
    *p++ = '\0';
    while (p != last && belongsToLineEnd(*p)) ++p;
    m_LineOffsets.push_back(static_cast<DWORD>(p - first));
  }
  m_nLineCount = static_cast<int>(m_LineOffsets.size()) - 1;
  if (m_nLineCount == 0) m_LineOffsets.clear();
}

int ParseFile::GotoLineNumber(int line)
{
  if (m_nLineCount == 0 || line < 1 || line - 1 > m_nLineCount) return 0;
  bool const isEnd = line - 1 == m_nLineCount;
  m_nCurLine = isEnd ? -1 : line - 1;
  m_nReadPos = isEnd ? m_nContentLength : m_LineOffsets[static_cast<size_t>(line - 1)];
  return 1;
}

// What is read next belongs to the current line if the read position lies behind a piece of it; otherwise it is a new line.
inline void ParseFile::CountLine()
{
  bool const isInside =
      m_nCurLine >= 1 && m_nCurLine <= m_nLineCount && m_nReadPos < m_LineOffsets[static_cast<size_t>(m_nCurLine)];
  if (!isInside) ++m_nCurLine;
}

// A line ends in front of the LFs and SUBs that precede the next one. What stands behind the last line is passed over with it.
int ParseFile::ReadLine()
{
  if (m_nLineCount == 0 || m_nReadPos >= m_LineOffsets.back()) {
    m_nReadPos = m_nContentLength;
    SetLine({});
    return -1;
  }
  CountLine();
  char const * const content = m_pContent.get();
  DWORD const next = m_LineOffsets[static_cast<size_t>(m_nCurLine)];
  DWORD end = next - 1;
  while (content[end] != '\0') --end;
  SetLine({content + m_nReadPos, end - m_nReadPos});
  m_nReadPos = m_nCurLine < m_nLineCount ? next : m_nContentLength;
  return GetLength();
}

int ParseFile::ParseLine()
{
  std::array<char, maxParsedLine> line;
  size_t count = 0;
  bool ended = false;
  DWORD position = m_nReadPos;
  for (; position != m_nContentLength; ++position) {
    char const c = m_pContent[position];
    if (belongsToLineEnd(c)) continue;
    if (ended || (c != '\0' && count == line.size())) break;
    if (c == '\0') {
      ended = true;
    } else {
      line[count++] = c;
    }
  }
  bool const atEnd = position == m_nContentLength && count == 0;
  if (!atEnd) CountLine();
  m_nReadPos = position;
  SetLine({line.data(), count});
  return atEnd ? -1 : static_cast<int>(count);
}

void ParseFile::Close()
{
  if (m_File.IsOpen()) m_File.Close();
}
