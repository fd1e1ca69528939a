// GPFile::InitStringArray: a text file as the lines of a report.

#include <zpbase/platform/bytes.h>
#include <zpbase/store.h>
#include <zpbase/text.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr int growthStep = 100;
constexpr UINT chunkSize = 0x40000;  // bytes fetched at a time
constexpr size_t maxLine = 2000;     // characters; a longer line comes in pieces, as ReadLine gives them
constexpr int tabWidth = 8;
constexpr char formFeed = '\x0C';
constexpr char substitute = '\x1A';
constexpr char pageMark[] = "\x01";

// The first control character from p on, or end.
char const * findControl(char const * p, char const * end)
{
  constexpr uint64_t ones = 0x0101010101010101;
  constexpr uint64_t blanks = 0x20 * ones;
  constexpr uint64_t highBits = 0x80 * ones;
  for (; end - p >= 8; p += 8) {
    uint64_t word;
    std::memcpy(&word, p, sizeof word);
    word = zp::LittleEndian(word);
    // The lowest mark is exact; a borrow can only make marks above it.
    if (uint64_t const below = (word - blanks) & ~word & highBits; below != 0) return p + std::countr_zero(below) / 8;
  }
  while (p != end && static_cast<BYTE>(*p) >= 0x20) ++p;
  return p;
}

// Cuts bytes into lines as ReadLine does, and adds each as an entry.
class ReportLines {
 public:
  explicit ReportLines(CStringArray & entries) : m_Entries(entries) {}

  void Take(std::string_view bytes);
  void Finish();  // the last line needs no end

 private:
  void AddLine(std::string_view line);
  void EndLine(std::string_view rest);

  CStringArray & m_Entries;
  std::string m_Line;  // what is known of a line that isn't all of one piece
  bool m_bTabs = false;
};

void ReportLines::Take(std::string_view bytes)
{
  char const * const end = bytes.data() + bytes.size();
  char const * start = bytes.data();  // of what belongs to the line and isn't in m_Line
  char const * p = start;
  while (p != end) {
    size_t const room = maxLine - m_Line.size() - static_cast<size_t>(p - start);
    char const * const limit = p + std::min(room, static_cast<size_t>(end - p));
    p = findControl(p, limit);
    if (p != limit && *p != '\r' && *p != '\0' && *p != '\n' && *p != substitute) {
      m_bTabs = m_bTabs || *p == '\t';
      ++p;
    }
    std::string_view const rest(start, static_cast<size_t>(p - start));
    if (m_Line.size() + rest.size() == maxLine) {
      EndLine(rest);
      start = p;
    } else if (p != limit && (*p == '\r' || *p == '\0')) {
      EndLine(rest);
      start = ++p;
    } else if (p != limit && (*p == '\n' || *p == substitute)) {
      m_Line += rest;
      start = ++p;
    }
  }
  m_Line.append(start, end);
}

void ReportLines::EndLine(std::string_view rest)
{
  if (m_Line.empty()) return AddLine(rest);
  m_Line += rest;
  AddLine(m_Line);
  m_Line.clear();
}

void ReportLines::AddLine(std::string_view line)
{
  bool const tabs = std::exchange(m_bTabs, false);
  if (!line.empty() && line.front() == formFeed) {
    m_Entries.Add(CString(pageMark));
    line.remove_prefix(1);
    if (line.empty()) return;
  }
  CString entry(line);
  if (tabs) ExpandTabs(entry, tabWidth);
  m_Entries.Add(std::move(entry));
}

void ReportLines::Finish()
{
  if (!m_Line.empty()) EndLine({});
}

// Makes room for the entries that a file will have if its rest is like what has been read, but for at most a few times those that
// are there, and gives the room that there is.
int makeRoom(CStringArray & entries, double share, int room)
{
  constexpr double slack = 1.02;
  constexpr double atLeastTimes = 1.25;  // of the room that there was
  constexpr int atMostTimes = 16;
  double const size = entries.GetSize();
  if (size / share <= room || size * atMostTimes < 2.0 * room) return room;
  double const wanted = std::max(size / share * slack, room * atLeastTimes);
  room = static_cast<int>(std::min({wanted, size * atMostTimes, double{INT32_MAX}}));
  entries.Reserve(room);
  return room;
}

}  // namespace

int GPFile::InitStringArray(CStringArray * lines)
{
  ScanGuard const guard(*this);
  if (!m_bExists) return -1;
  Open(modeRead);
  ULONGLONG const length = GetLength();  // raises for a file that can't be opened
  lines->SetSize(0, growthStep);
  ReportLines report(*lines);
  auto const chunk = std::make_unique_for_overwrite<char[]>(chunkSize);
  ULONGLONG position = 0;
  int room = 0;
  while (UINT const got = ReadAt(position, chunk.get(), chunkSize)) {
    report.Take({chunk.get(), got});
    position += got;
    if (position < length) room = makeRoom(*lines, static_cast<double>(position) / static_cast<double>(length), room);
  }
  report.Finish();
  Close();
  lines->SetSize(lines->GetSize());
  lines->FreeExtra();
  return lines->GetSize();
}
