// ParseFile: a whole text file in memory, its line ends found once, its lines given one after the other.

#include <zpbase/text.h>

#include <algorithm>
#include <array>
#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <zpbase/platform/system_error.h>
#include <zpbase/platform/windows.h>

namespace {

constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';
constexpr char substitute = 26;
constexpr ULONGLONG maxFileLength = 0x7FFFFFFF - 2;  // bytes; two more may be appended

bool endsLine(char c)
{
  return c == carriageReturn || c == '\0';
}

bool belongsToLineEnd(char c)
{
  return c == lineFeed || c == substitute;
}

constexpr ptrdiff_t blockLength = 64;
constexpr ptrdiff_t sampleLength = 0x10000;       // whole blocks, by whose lines those of the rest are foretold
constexpr size_t mostForetold = size_t{1} << 24;  // lines

// One bit for each of the 64 characters at p: set where it ends a line.
uint64_t lineEnds(char const * p)
{
  uint64_t ends = 0;
#ifdef __SSE2__
  __m128i const returns = _mm_set1_epi8(carriageReturn);
  for (int i = 0; i < blockLength; i += 16) {
    __m128i const text = _mm_loadu_si128(reinterpret_cast<__m128i const *>(p + i));
    __m128i const found = _mm_or_si128(_mm_cmpeq_epi8(text, returns), _mm_cmpeq_epi8(text, _mm_setzero_si128()));
    ends |= uint64_t{static_cast<unsigned int>(_mm_movemask_epi8(found))} << i;
  }
#else
  for (int i = 0; i < blockLength; ++i) ends |= uint64_t{endsLine(p[i])} << i;
#endif
  return ends;
}

// Makes room for the lines that a sample foretells, so that they needn't move as they become more.
void reserveLines(std::vector<DWORD> & offsets, size_t contentLength)
{
  size_t const foretold = offsets.size() * (contentLength / sampleLength + 1);
  offsets.reserve(std::min(foretold + foretold / 8, mostForetold));
  zp::PreferLargePages(offsets.data(), offsets.capacity() * sizeof(DWORD));
}

// Opens the file once more, for the exception that tells why it doesn't open.
[[noreturn]] void raiseOpenProblem(CString const & path)
{
  CFile again;
  CFileException problem(CFileException::sharingViolation, ERROR_SHARING_VIOLATION);  // for a file that opens by now
  again.Open(path, CFile::modeRead, &problem);
  AfxThrowFileException(problem.m_cause, problem.m_lOsError, path);
}

}  // namespace

ParseFile::ParseFile(CString const & path) : m_File(path)
{
  CWaitCursor const waiting;
  LoadContent();
  InitLineOffsets();
}

ParseFile::~ParseFile() = default;

void ParseFile::LoadContent()
{
  if (!m_File.Open(CFile::modeRead)) raiseOpenProblem(m_File.GetFilePath());
  ULONGLONG const length = m_File.GetLength();
  if (length > maxFileLength) AfxThrowFileException(CFileException::genericException, -1, m_File.GetFilePath());
  if (length != 0) {
    m_Content = zp::PageBlock(static_cast<size_t>(length) + 2);
    m_nContentLength = m_File.Read(m_Content.Get(), static_cast<UINT>(length));
  }
  m_File.Close();
  char * const content = m_Content.Get();
  if (m_nContentLength != 0 && content[m_nContentLength - 1] == substitute) --m_nContentLength;
  if (m_nContentLength == 0) return;
  char const lastByte = content[m_nContentLength - 1];
  if (lastByte == carriageReturn || lastByte == lineFeed) return;
  content[m_nContentLength++] = carriageReturn;
  content[m_nContentLength++] = lineFeed;
}

// Every line end becomes a zero byte, and the line behind it starts after the LFs and SUBs that belong to the line end.
void ParseFile::InitLineOffsets()
{
  char * const first = m_Content.Get();
  char * const last = first + m_nContentLength;
  auto const endLine = [this, first, last](char * end) {
    *end++ = '\0';
    while (end != last && belongsToLineEnd(*end)) ++end;
    m_LineOffsets.push_back(static_cast<DWORD>(end - first));
  };
  m_LineOffsets.assign(1, 0);
  char * p = first;
  for (; last - p >= blockLength; p += blockLength) {
    if (p - first == sampleLength) reserveLines(m_LineOffsets, m_nContentLength);
    for (uint64_t ends = lineEnds(p); ends != 0; ends &= ends - 1) endLine(p + std::countr_zero(ends));
  }
  for (; p != last; ++p) {
    if (endsLine(*p)) endLine(p);
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
  char const * const content = m_Content.Get();
  DWORD const next = m_LineOffsets[static_cast<size_t>(m_nCurLine)];
  DWORD end = next - 1;
  while (content[end] != '\0') --end;
  SetLine({content + m_nReadPos, end - m_nReadPos});
  m_nReadPos = m_nCurLine < m_nLineCount ? next : m_nContentLength;
  return GetLength();
}

// LFs and SUBs are passed over wherever they stand, those behind the line's end with it, so the line is over at the first
// character of the next one, and a piece at the first that it has no room for.
int ParseFile::ParseLine()
{
  std::array<char, maxParsedLine> line;
  size_t count = 0;
  bool ended = false;
  DWORD position = m_nReadPos;
  for (; position != m_nContentLength; ++position) {
    char const c = m_Content.Get()[position];
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
