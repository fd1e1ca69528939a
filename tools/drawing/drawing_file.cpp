// Writing a drawing beside the file whose place it takes.

#include "tools/drawing/drawing_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"

namespace fs = std::filesystem;

namespace {

constexpr size_t pieceSize = 0x100000;  // bytes
constexpr int mostLeftovers = 100;

[[noreturn]] void fail(std::string const & name, int problem)
{
  throw Failure(fmt::format("{}: can't be written: {}; nothing was changed", name, std::strerror(problem)));
}

bool isReplaced(std::string const & target)
{
  std::error_code ignored;
  return target != "-" && (!FileExists(target) || fs::is_regular_file(target, ignored));
}

// Creates a file beside the one that target leads to, so that it can take its place.
std::FILE * createBeside(std::string const & target, std::string & name)
{
  std::error_code ignored;
  std::string const place = FileExists(target) ? fs::canonical(target, ignored).string() : target;
  for (int number = 0; number < mostLeftovers; ++number) {
    name = fmt::format("{}.new{}", place, number);
    if (std::FILE * const file = std::fopen(name.c_str(), "wbx")) return file;
    if (errno != EEXIST) break;
  }
  fail(target, errno);
}

std::FILE * openOutput(std::string const & target, std::string & name)
{
  if (isReplaced(target)) return createBeside(target, name);
  name = target;
  if (target == "-") return stdout;
  if (std::FILE * const file = std::fopen(target.c_str(), "wb")) return file;
  fail(target, errno);
}

}  // namespace

void DrawingFile::CloseFile::operator()(std::FILE * file) const
{
  if (file != stdout) std::fclose(file);
}

DrawingFile::DrawingFile(std::string const & target)
    : m_strTarget(target), m_pOutput(openOutput(target, m_strWritten)), m_bReplaces(isReplaced(target))
{
  std::setvbuf(m_pOutput.get(), nullptr, _IONBF, 0);
  m_Gathered.reserve(pieceSize);
}

DrawingFile::~DrawingFile()
{
  m_pOutput.reset();
  std::error_code ignored;
  if (m_bReplaces) fs::remove(m_strWritten, ignored);
}

void DrawingFile::Append(std::string_view bytes)
{
  if (m_Gathered.size() + bytes.size() > pieceSize) WriteGathered();
  m_Gathered.append(bytes);
}

void DrawingFile::WriteGathered()
{
  if (m_nProblem == 0 && std::fwrite(m_Gathered.data(), 1, m_Gathered.size(), m_pOutput.get()) != m_Gathered.size())
    m_nProblem = errno;
  m_Gathered.clear();
}

void DrawingFile::Finish()
{
  WriteGathered();
  if (m_nProblem == 0 && std::fflush(m_pOutput.get()) != 0) m_nProblem = errno;
  m_pOutput.reset();
  if (m_nProblem != 0) fail(m_strTarget, m_nProblem);
  if (!m_bReplaces) return;
  std::error_code error;
  unsigned long long const length = fs::file_size(m_strWritten, error);
  if (error) fail(m_strTarget, error.value());
  if (length != GetBytes()) fail(m_strTarget, EIO);
}

void DrawingFile::Replace()
{
  if (!m_bReplaces) return;
  std::error_code ignored;
  if (FileExists(m_strTarget)) fs::permissions(m_strWritten, fs::status(m_strTarget).permissions(), ignored);
  int error = 0;
  if (!MoveFileDurably(FromHostPath(m_strWritten), FromHostPath(m_strTarget), &error)) fail(m_strTarget, error);
  m_bReplaces = false;
}
