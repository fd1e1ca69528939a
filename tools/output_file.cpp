// Writing beside the file and exchanging the two.

#include "tools/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <random>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/host_calls.h>
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
  if (!isDevice) TakeOver();
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
  int error = 0;
  bool const isMoved = MoveFileDurably(FromHostPath(m_strTemporary), FromHostPath(m_strTarget), &error);
  if (!isMoved && FileExists(m_strTemporary)) Fail(error);
  m_strTemporary.clear();
  if (isMoved) return;
  throw Failure(
      fmt::format("{}: was written, but may not outlive a failure of the machine: {}", m_strName, std::strerror(error)));
}

// The former file's permissions, and its owner where that is allowed.
void OutputFile::TakeOver() const
{
  zp::HostCalls const & host = zp::GetHostCalls();
  zp::HostStatus former;
  if (host.GetStatusOf(m_strTarget.c_str(), former) != 0) return;
  int const file = host.Open(m_strTemporary.c_str(), zp::hostRead, 0);
  if (file < 0) return;
  bool const sameOwner = host.SetOwner(file, former.user, former.group) == 0;
  host.SetMode(file, former.mode & (sameOwner ? 07777 : 0777));
  host.Close(file);
}
