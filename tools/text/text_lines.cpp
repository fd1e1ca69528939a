// Reading a text file: what can't be text is refused, what ParseFile would take otherwise than meant is put right in a copy.

#include "tools/text/text_lines.h"

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/file.h>
#include <zpbase/platform/paths.h>

#include "tools/host_file.h"
#include "tools/input_file.h"
#include "tools/program.h"
#include "tools/text/text_copy.h"

namespace {

constexpr long long mostBytes = 0x7FFFFFFF - 2;  // that ParseFile takes

[[noreturn]] void failTooLong(std::string const & name)
{
  throw Failure(fmt::format("{}: is too long: at most {} bytes can be parsed at once; split it", name, mostBytes));
}

void requireRegularFile(std::string const & name)
{
  auto const status = StatusOf(name);
  if (!status) throw Failure(fmt::format("{}: there is no such file; check the name", name));
  if (status->kind == zp::HostStatus::Folder) throw Failure(fmt::format("{}: is a folder; name a file", name));
  if (status->kind != zp::HostStatus::File)
    throw Failure(fmt::format("{}: is no regular file; give a file's name, or - for standard input", name));
  if (status->size > mostBytes) failTooLong(name);
}

template <class Read>
std::string gather(Read read, std::string const & name)
{
  std::string bytes;
  char piece[0x10000];
  for (size_t count = 0; (count = read(piece, sizeof piece)) > 0;) {
    bytes.append(piece, count);
    if (bytes.size() > size_t{mostBytes}) failTooLong(name);
  }
  return bytes;
}

std::string readStandardInput(std::string const & name)
{
  InputFile input("-");
  return gather([&](char * piece, size_t size) { return input.Read(piece, size); }, name);
}

// The size that the system tells may be 0 for a file that has content, so the file is read to its end.
std::string readFile(std::string const & name)
{
  requireRegularFile(name);
  try {
    CFile file;
    CFileException problem;
    if (!file.Open(FromHostPath(name), CFile::modeRead | CFile::shareDenyWrite, &problem)) FailOpening(name, nullptr, problem);
    return gather([&](char * piece, size_t size) -> size_t { return file.Read(piece, static_cast<UINT>(size)); }, name);
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    throw Failure(fmt::format("{}: can't be read: {}", name, Describe(*caught)));
  }
}

bool isWide(std::string_view bytes)
{
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  if (bytes.size() < 4) return false;
  bool const evenZero = bytes[0] == '\0' && bytes[2] == '\0';
  bool const oddZero = bytes[1] == '\0' && bytes[3] == '\0';
  return evenZero != oddZero;
}

std::unique_ptr<ParseFile> parse(std::string const & hostName, std::string const & name)
{
  try {
    return std::make_unique<ParseFile>(FromHostPath(hostName));
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    FailOpening(name, nullptr, *caught);
  }
}

// ParseFile reads a file by its name: what comes from elsewhere, or isn't as it expects, is given to it as a copy.
std::unique_ptr<ParseFile> load(TextOptions const & options, bool & isEmpty)
{
  std::string const name = options.Name();
  bool const isPiped = options.file == "-";
  std::string bytes = isPiped ? readStandardInput(name) : readFile(options.file);
  if (isWide(bytes)) throw Failure(fmt::format("{}: is UTF-16 text; convert it, as by iconv -f UTF-16 -t WINDOWS-1252", name));
  bool const isMarked = bytes.starts_with(utf8Mark);
  if (isMarked) bytes.erase(0, utf8Mark.size());
  isEmpty = bytes.empty();
  size_t const lone = CompleteLineEnds(bytes);
  if (lone != 0) {
    Tell(fmt::format("{}: {} in LF alone where ParseFile expects CR LF; a copy that has both was read", name,
                     lone == 1 ? "1 line ends" : fmt::format("{} lines end", lone)));
  }
  auto const status = isPiped || isMarked || lone != 0 ? std::nullopt : StatusOf(options.file);
  if (status && static_cast<size_t>(status->size) == bytes.size()) {
    std::string().swap(bytes);
    return parse(options.file, name);
  }
  return ParseCopy(bytes, name);
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
  constexpr std::string_view blanks = " \t\f\v\n\r\x1A";
  size_t const first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
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
