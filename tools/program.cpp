// Output, whole files, failures and texts, for all commands.

#include "tools/program.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>
#include <zpbase/platform/terminal.h>

#include "tools/host_file.h"
#include "tools/input_file.h"
#include "tools/output_file.h"
#include "tools/shown_text.h"

namespace {

constexpr char const * tooLarge = "the file may not grow that large; check the limits of the shell (ulimit -f) and the disk's";

Teller g_pfnTeller = nullptr;

// The host's name in place of the inside one.
void showHostName(std::string & sentence, CString const & name)
{
  std::string const inside = zp::TextToUtf8(name.View());
  std::string host;
  size_t const at = inside.empty() || !ToHostPath(name.View(), host) ? std::string::npos : sentence.find(inside);
  if (at != std::string::npos) sentence.replace(at, inside.size(), host);
}

// A zero would end what() of the failure.
std::string withoutZeros(std::string line)
{
  for (size_t at = 0; (at = line.find('\0', at)) != std::string::npos;) line.replace(at, 1, "\\x00");
  return line;
}

}  // namespace

Failure::Failure(std::string const & line, int status) : std::runtime_error(withoutZeros(line)), m_nStatus(status) {}

void Print(std::string_view text)
{
  static bool const isTerminal = IsTerminal(1);
  std::string const shown = isTerminal ? VisibleLines(text) : "";
  if (isTerminal) text = shown;
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void PrintShown(std::string_view lines)
{
  Print(VisibleLines(lines));
}

void PrintLine(std::string_view line)
{
  Print(Visible(line) + "\n");
}

Teller SetTeller(Teller teller)
{
  return std::exchange(g_pfnTeller, teller);
}

void Tell(std::string_view line)
{
  if (g_pfnTeller != nullptr) return g_pfnTeller(line);
  std::fflush(stdout);
  try {
    std::string const shown = fmt::format("zp: {}\n", Visible(line));
    std::fwrite(shown.data(), 1, shown.size(), stderr);
  } catch (std::bad_alloc const &) {
    TellMemoryRanOut();
  }
}

void TellMemoryRanOut()
{
  std::fputs("zp: memory ran out; close other programs or work on smaller pieces\n", stderr);
}

void FlushOutput()
{
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    throw Failure(fmt::format("standard output: can't be written: {}", std::strerror(errno)));
  }
}

CString InsidePath(std::string const & hostName)
{
  if (hostName.find('\\') == std::string::npos) return FromHostPath(hostName);
  if (hostName.starts_with('/')) return CString(hostName);
  std::unique_ptr<char, decltype(&std::free)> const folder(zp::GetHostCalls().CurrentFolder(), &std::free);
  if (folder) return CString(fmt::format("{}/{}", folder.get(), hostName));
  throw Failure(fmt::format("{}: the folder that it is in can't be found: {}", hostName, std::strerror(errno)));
}

std::string ReadWholeFile(std::string const & name)
{
  auto const status = name == "-" ? std::nullopt : StatusOf(name);
  if (status && status->kind == zp::HostStatus::File) return InputFile(name).ReadAll();
  std::error_code ignored;
  if (status && status->kind == zp::HostStatus::Other && !std::filesystem::is_fifo(name, ignored))
    throw Failure(fmt::format("{}: is no file or pipe; name a file", name));
  constexpr size_t mostPiped = 0x4000000;  // bytes
  return InputFile(name).ReadAll(mostPiped, "what is taken from a pipe; name a file");
}

void WriteWholeFile(std::string const & name, std::string_view bytes)
{
  OutputFile file(name);
  file.Write(bytes);
  file.Commit();
}

std::string ReasonOf(int error)
{
  if (error == EWOULDBLOCK) return "another program keeps its folder locked; try again when that has ended";
  if (error == EFBIG) return tooLarge;
  return std::strerror(error);
}

void FailCreating(std::string const & name, char const * what, CFileException const & problem)
{
  bool const isRefused = problem.m_cause == CFileException::accessDenied;
  if (!isRefused && problem.m_cause != CFileException::fileNotFound && problem.m_cause != CFileException::badPath)
    FailOpening(name, what, problem);
  throw SystemFailure(fmt::format("{}: the {} can't be created: {}", name, what,
                                  isRefused ? "permission denied; check the folder" : "there is no such folder; check the name"),
                      isRefused ? EACCES : ENOENT);
}

void FailOpening(std::string const & name, char const * what, CFileException const & problem)
{
  std::string const subject = what != nullptr ? fmt::format("the {} ", what) : "";
  switch (problem.m_cause) {
    case CFileException::fileNotFound:
    case CFileException::badPath:
      throw SystemFailure(fmt::format("{}: there is no such {}; check the name", name, what != nullptr ? what : "file"), ENOENT);
    case CFileException::sharingViolation:
    case CFileException::lockViolation:
      throw SystemFailure(fmt::format("{}: {}is in use by another program; try again when that has ended", name, subject),
                          EWOULDBLOCK);
    case CFileException::accessDenied:
      throw SystemFailure(fmt::format("{}: {}can't be opened: access is denied; check its permissions", name, subject), EACCES);
    default:
      throw SystemFailure(fmt::format("{}: {}can't be opened: {}", name, subject, Describe(problem)), EIO);
  }
}

std::string ShownName(std::string const & file)
{
  return file == "-" ? "standard input" : file;
}

std::string Describe(CException const & exception)
{
  char text[512];
  exception.GetErrorMessage(text, sizeof text);
  std::string sentence = zp::TextToUtf8(text);
  if (auto const * const file = dynamic_cast<CFileException const *>(&exception)) {
    showHostName(sentence, file->m_strFileName);
    if (file->m_cause == CFileException::genericException && file->m_lOsError == ERROR_FILE_TOO_LARGE) sentence = tooLarge;
  }
  while (!sentence.empty() && (sentence.back() == '.' || sentence.back() == '\n')) sentence.pop_back();
  return sentence.empty() ? "an unknown failure" : sentence;
}

std::string Counted(unsigned long long count, std::string_view noun)
{
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

CString ToText(std::string_view utf8, std::string_view what)
{
  CString text;
  if (zp::Utf8ToText(utf8, text)) return text;
  if (std::u16string wide; !zp::Utf8ToWide(utf8, wide)) throw Failure(fmt::format("{}: \"{}\" is no UTF-8", what, utf8));
  throw Failure(fmt::format("{}: \"{}\" has characters outside Windows-1252; spell it with those of that code page", what, utf8));
}
