// Reading with bounds.

#include "tools/input_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include <fmt/format.h>

#include "tools/program.h"

InputFile::InputFile(std::string const & name) : m_strName(ShownName(name)), m_pStream(name == "-" ? &std::cin : &m_File)
{
  std::ios::sync_with_stdio(false);
  if (name == "-") return;
  std::error_code ignored;
  if (std::filesystem::is_directory(name, ignored)) throw Failure(fmt::format("{}: is a folder; name a file", name));
  errno = 0;
  m_File.open(name, std::ios::binary);
  if (!m_File.is_open()) throw Failure(fmt::format("{}: can't be opened: {}; check the name", name, std::strerror(errno)));
}

std::string InputFile::ReadAll(size_t atMost, std::string const & what)
{
  constexpr size_t pieceBytes = 0x10000;
  std::string bytes;
  while (m_pStream->good() && bytes.size() <= atMost) {
    size_t const former = bytes.size();
    bytes.resize(former + pieceBytes);
    m_pStream->read(&bytes[former], pieceBytes);
    bytes.resize(former + static_cast<size_t>(m_pStream->gcount()));
  }
  RequireRead();
  if (bytes.size() <= atMost) return bytes;
  throw Failure(fmt::format("{}: has more than the {} bytes of {}", m_strName, atMost, what));
}

void InputFile::RequireRead() const
{
  if (m_pStream->bad()) throw Failure(fmt::format("{}: can't be read", m_strName));
}
