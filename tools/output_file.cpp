// Writing beside the file and exchanging the two.

#include "tools/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <random>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"

namespace {

constexpr size_t bufferBytes = 0x20000;

std::string followLinks(std::string const & name)
{
  std::error_code error;
  std::filesystem::path const target = std::filesystem::canonical(name, error);
  return error ? name : target.string();
}

}  // namespace

OutputFile::OutputFile(std::string const & name) : m_strName(name), m_strTarget(followLinks(name))
{
  if (name == "-") return;
  std::error_code ignored;
  bool const isDevice = FileExists(m_strTarget) && !std::filesystem::is_regular_file(m_strTarget, ignored);
  if (!isDevice) m_strTemporary = fmt::format("{}.{:08x}.zp-part", m_strTarget, std::random_device()());
  m_pFile.reset(std::fopen((isDevice ? m_strTarget : m_strTemporary).c_str(), isDevice ? "wb" : "wbx"));
  if (!m_pFile) Fail(errno);
  std::setvbuf(m_pFile.get(), nullptr, _IOFBF, bufferBytes);
}

OutputFile::~OutputFile()
{
  m_pFile.reset();
  if (!m_strTemporary.empty()) std::remove(m_strTemporary.c_str());
}

void OutputFile::Fail(int error) const
{
  throw Failure(fmt::format("{}: can't be written: {}{}", m_strName, std::strerror(error),
                            m_strTemporary.empty() ? "" : "; nothing was changed"));
}

void OutputFile::Write(std::string_view bytes)
{
  if (!m_pFile) return Print(bytes);
  if (std::fwrite(bytes.data(), 1, bytes.size(), m_pFile.get()) != bytes.size()) Fail(errno);
}

void OutputFile::Commit()
{
  if (!m_pFile) return;
  if (std::fclose(m_pFile.release()) != 0) Fail(errno);
  if (m_strTemporary.empty()) return;
  std::error_code ignored;
  if (FileExists(m_strTarget)) {
    std::filesystem::permissions(m_strTemporary, std::filesystem::status(m_strTarget, ignored).permissions(), ignored);
  }
  int error = 0;
  if (!MoveFileDurably(FromHostPath(m_strTemporary), FromHostPath(m_strTarget), &error)) Fail(error);
  m_strTemporary.clear();
}
