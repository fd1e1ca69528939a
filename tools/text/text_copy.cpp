// Line ends, and files that go again.

#include "tools/text/text_copy.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <random>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

// A zero byte ends a line too, with the LFs behind it.
bool isLoneLineFeed(std::string_view bytes, size_t place)
{
  return bytes[place] == '\n' && (place == 0 || (bytes[place - 1] != '\r' && bytes[place - 1] != '\0'));
}

}  // namespace

size_t CountLoneLineFeeds(std::string_view bytes)
{
  size_t lone = 0;
  for (size_t place = bytes.find('\n'); place != std::string_view::npos; place = bytes.find('\n', place + 1))
    lone += isLoneLineFeed(bytes, place);
  return lone;
}

std::string WithLineEnds(std::string_view bytes, size_t lone)
{
  std::string complete;
  complete.reserve(bytes.size() + lone);
  size_t taken = 0;
  for (size_t place = bytes.find('\n'); place != std::string_view::npos; place = bytes.find('\n', place + 1)) {
    if (!isLoneLineFeed(bytes, place)) continue;
    complete.append(bytes, taken, place - taken).append("\r\n");
    taken = place + 1;
  }
  return complete.append(bytes, taken);
}

TemporaryTextFile::TemporaryTextFile(std::string_view content)
{
  constexpr unsigned int ownersAlone = 0600;
  std::error_code ignored;
  auto const folder = std::filesystem::temp_directory_path(ignored);
  m_strName = ((ignored ? "/tmp" : folder) / fmt::format("zp_text_{:08x}", std::random_device()())).string();
  HostFile file;
  bool const isOpen = file.Open(m_strName, zp::hostWrite | zp::hostCreate | zp::hostNew, ownersAlone);
  if (isOpen && file.Write(content) && file.Close()) return;
  int const error = errno;
  if (isOpen) DropFile(m_strName);
  throw Failure(fmt::format("{}: a copy with CR LF line ends can't be written: {}; TMPDIR names another folder", m_strName,
                            std::strerror(error)));
}

TemporaryTextFile::~TemporaryTextFile()
{
  DropFile(m_strName);
}
