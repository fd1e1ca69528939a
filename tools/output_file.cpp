// Writing beside the file and exchanging the two.

#include "tools/output_file.h"

#include <cerrno>
#include <random>
#include <utility>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>

namespace {

constexpr size_t pieceBytes = 0x20000;

}  // namespace

OutputFile::OutputFile(std::string const & name) : m_strName(name)
{
  if (name == "-") return;
  m_strTarget = FollowedName(name);
  auto const former = StatusOf(m_strTarget);
  m_bDevice = former && former->kind != zp::HostStatus::File;
  if (!m_bDevice) {
    m_strTemporary = fmt::format("{}.{:08x}.zp-part", m_strTarget, std::random_device()());
    m_Unfinished.emplace(m_strTemporary);
  }
  if (!m_File.Open(GetWrittenName(), zp::hostWrite | (m_bDevice ? 0U : zp::hostCreate | zp::hostNew))) Fail(errno);
  if (m_bDevice || !former || TakeOver(*former)) return;
  int const error = errno;
  DropFile(m_strTemporary);
  Fail(error);
}

OutputFile::~OutputFile()
{
  m_File.Close();
  if (!m_strTemporary.empty()) DropFile(m_strTemporary);
}

void OutputFile::Fail(int error) const
{
  throw OutputFailure(
      fmt::format("{}: can't be written: {}{}", m_strName, ReasonOf(error), m_bDevice ? "" : "; nothing was changed"), error);
}

void OutputFile::Write(std::string_view bytes)
{
  m_nBytes += bytes.size();
  if (!m_File.IsOpen()) return Print(bytes);
  if (m_Gathered.size() + bytes.size() > pieceBytes) WriteGathered();
  if (bytes.size() < pieceBytes)
    m_Gathered.append(bytes);
  else if (!m_File.Write(bytes))
    Fail(errno);
}

void OutputFile::WriteGathered()
{
  if (!m_File.Write(m_Gathered)) Fail(errno);
  m_Gathered.clear();
}

void OutputFile::Finish()
{
  if (!m_File.IsOpen()) return;
  WriteGathered();
  if (!m_File.Close()) Fail(errno);
  if (m_strTemporary.empty()) return;
  auto const status = StatusOf(m_strTemporary);
  if (!status || static_cast<unsigned long long>(status->size) != m_nBytes) Fail(EIO);
}

void OutputFile::Commit()
{
  Finish();
  if (m_strTemporary.empty()) return;
  int error = 0;
  bool const isMoved = MoveFileDurably(InsidePath(m_strTemporary), InsidePath(m_strTarget), &error);
  Removal const left = isMoved ? Removal::Missing : TryToRemove(m_strTemporary);
  std::string const temporary = std::exchange(m_strTemporary, "");
  if (isMoved) return;
  if (left == Removal::Removed) Fail(error);
  throw Failure(fmt::format("{}: {}: {}", m_strName,
                            left == Removal::Missing ? "was written, but may not outlive a failure of the machine"
                                                     : "may not have been replaced; the new one may still be " + temporary,
                            ReasonOf(error)));
}

// The former file's permissions, and its owner where that is allowed.
bool OutputFile::TakeOver(zp::HostStatus const & former) const
{
  zp::HostCalls const & host = zp::GetHostCalls();
  bool const sameOwner = host.SetOwner(m_File.Get(), former.user, former.group) == 0;
  return host.SetMode(m_File.Get(), former.mode & (sameOwner ? 07777 : 0777)) == 0;
}
