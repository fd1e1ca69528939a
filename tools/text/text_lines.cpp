// Reading a text file: what can't be text is refused, what ParseFile would take otherwise than meant is put right in a copy.

#include "tools/text/text_lines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/file.h>
#include <zpbase/platform/memory_pages.h>

#include "tools/host_file.h"
#include "tools/input_file.h"
#include "tools/interrupt_guard.h"
#include "tools/program.h"
#include "tools/text/character_set.h"
#include "tools/text/text_copy.h"
#include "tools/text_marks.h"

namespace {

constexpr long long mostBytes = 0x7FFFFFFF - 2;  // that ParseFile takes

[[noreturn]] void failTooLong(std::string const & name)
{
  throw Failure(fmt::format("{}: is too long: at most {} bytes can be parsed at once; split it", name, mostBytes));
}

bool isPipe(std::string const & name)
{
  std::error_code ignored;
  return name == "-" || std::filesystem::is_fifo(name, ignored);
}

void requireRegularFile(std::string const & name)
{
  auto const status = StatusOf(name);
  if (!status) throw SystemFailure(fmt::format("{}: there is no such file; check the name", name), ENOENT);
  if (status->kind == zp::HostStatus::Folder) throw SystemFailure(fmt::format("{}: is a folder; name a file", name), EISDIR);
  if (status->kind != zp::HostStatus::File)
    throw Failure(fmt::format("{}: is no file or pipe; give a file's name, or - for standard input", name));
  if (status->size > mostBytes) failTooLong(name);
}

// Bytes as they come, in a block that grows.
class Content {
 public:
  explicit Content(size_t expected) : m_Block(expected + leastRoom), m_nCapacity(expected + leastRoom) {}

  std::string_view View() const { return {m_Block.Get() + m_nSkipped, m_nSize - m_nSkipped}; }
  void RemovePrefix(size_t count) { m_nSkipped += count; }

  // Takes what read gives until that is nothing. read is given a place and how many bytes it may take.
  template <class Read>
  void Gather(Read read, std::string const & name)
  {
    for (size_t count = 0; (count = read(m_Block.Get() + m_nSize, m_nCapacity - m_nSize)) > 0;) {
      m_nSize += count;
      if (m_nSize > size_t{mostBytes}) failTooLong(name);
      if (m_nCapacity - m_nSize < leastRoom) grow();
    }
  }

 private:
  static constexpr size_t leastRoom = 0x10000;

  void grow()
  {
    zp::PageBlock larger(2 * m_nCapacity);
    std::memcpy(larger.Get(), m_Block.Get(), m_nSize);
    m_Block = std::move(larger);
    m_nCapacity *= 2;
  }

  zp::PageBlock m_Block;
  size_t m_nCapacity;
  size_t m_nSize = 0;
  size_t m_nSkipped = 0;
};

Content readPipe(std::string const & hostName, std::string const & name)
{
  InputFile input(hostName);
  Content content(0);
  content.Gather([&](char * place, size_t room) { return input.Read(place, room); }, name);
  return content;
}

// The size that the system tells may be 0 for a file that has content, so the file is read to its end.
Content readFile(std::string const & name)
{
  requireRegularFile(name);
  try {
    CFile file;
    CFileException problem;
    if (!file.Open(InsidePath(name), CFile::modeRead | CFile::shareDenyWrite, &problem)) FailOpening(name, nullptr, problem);
    Content content(static_cast<size_t>(std::min<ULONGLONG>(file.GetLength(), mostBytes)));
    content.Gather([&](char * place, size_t room) -> size_t { return file.Read(place, static_cast<UINT>(room)); }, name);
    return content;
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    throw Failure(fmt::format("{}: can't be read: {}", name, Describe(*caught)));
  }
}

bool isWide(std::string_view bytes)
{
  if (HasWideMark(bytes)) return true;
  if (bytes.size() < 4) return false;
  bool const evenZero = bytes[0] == '\0' && bytes[2] == '\0';
  bool const oddZero = bytes[1] == '\0' && bytes[3] == '\0';
  return evenZero != oddZero;
}

std::unique_ptr<ParseFile> parse(std::string const & hostName, std::string const & name)
{
  try {
    return std::make_unique<ParseFile>(InsidePath(hostName));
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    FailOpening(name, nullptr, *caught);
  }
}

// ParseFile reads a file by its name: what comes from elsewhere, or isn't as it expects, is given to it as a copy.
std::unique_ptr<ParseFile> load(TextOptions const & options, bool & isEmpty)
{
  std::string const name = options.Name();
  bool const isPiped = isPipe(options.file);
  std::optional<Content> content(isPiped ? readPipe(options.file, name) : readFile(options.file));
  if (isWide(content->View()))
    throw Failure(fmt::format("{}: is UTF-16 text; convert it, as by iconv -f UTF-16 -t WINDOWS-1252", name));
  bool const isMarked = content->View().starts_with(utf8Mark);
  if (isMarked) content->RemovePrefix(utf8Mark.size());
  std::string_view const bytes = content->View();
  isEmpty = bytes.empty();
  size_t const lone = CountLoneLineFeeds(bytes);
  if (lone != 0) {
    if (options.tellsLineEnds && bytes.find("\r\n") != std::string_view::npos) {
      Tell(fmt::format("{}: {} in LF alone, others in CR LF; the file may be of two halves", name,
                       lone == 1 ? "1 line ends" : fmt::format("{} lines end", lone)));
    }
    std::string const complete = WithLineEnds(bytes, lone);
    content.reset();
    return ParseCopy(complete, name);
  }
  auto const status = isPiped || isMarked ? std::nullopt : StatusOf(options.file);
  if (!status || static_cast<size_t>(status->size) != bytes.size()) return ParseCopy(bytes, name);
  content.reset();
  return parse(options.file, name);
}

}  // namespace

std::unique_ptr<ParseFile> ParseCopy(std::string_view text, std::string const & name)
{
  if (text.size() > size_t{mostBytes}) failTooLong(name);
  InterruptGuard const guard;
  TemporaryTextFile const copy(text);
  auto file = parse(copy.Name(), name);
  if (InterruptGuard::IsInterrupted()) throw Failure("interrupted; nothing was read", exitInterrupted);
  return file;
}

std::string_view TrimBlanks(std::string_view text)
{
  constexpr CharacterSet surrounding(" \t\f\v\n\r\x1A");
  while (!text.empty() && surrounding.Has(text.front())) text.remove_prefix(1);
  while (!text.empty() && surrounding.Has(text.back())) text.remove_suffix(1);
  return text;
}

TextLines::TextLines(TextOptions const & options, int passes)
    : m_strComment(options.comment), m_nSkip(options.skip), m_pFile(load(options, m_bEmpty)), m_nCount(m_pFile->GetLineCount())
{
  m_Progress.emplace("reading " + options.Name(), static_cast<unsigned long long>(passes) * static_cast<unsigned>(m_nCount));
  Rewind();
}

void TextLines::Rewind()
{
  m_pFile->GotoLineNumber(std::min(m_nSkip, m_nCount) + 1);
}

bool TextLines::Next()
{
  if (m_pFile->ReadLine() == -1) return false;
  if (m_Progress) m_Progress->Reach(++m_nDone);
  m_Line = static_cast<CString const &>(*m_pFile).View();
  m_bComment = false;
  if (m_strComment.empty()) return true;
  size_t const place = m_Line.find(m_strComment);
  if (place == std::string_view::npos) return true;
  m_Line = m_Line.substr(0, place);
  m_bComment = TrimBlanks(m_Line).empty();
  return true;
}
