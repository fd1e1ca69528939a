// Reading with bounds.

#include "tools/input_file.h"

#include <cerrno>
#include <cstring>

#include <fmt/format.h>

#include "tools/program.h"

InputFile::Buffer::Buffer(std::string const & name)
    : m_strName(ShownName(name)), m_pFile(name == "-" ? std::make_unique<HostFile>(0) : std::make_unique<HostFile>())
{
  if (m_pFile->IsOpen()) return;
  if (IsFolder(name)) throw SystemFailure(fmt::format("{}: is a folder; name a file", name), EISDIR);
  if (m_pFile->Open(name, zp::hostRead)) return;
  int const error = errno;
  throw SystemFailure(fmt::format("{}: can't be opened: {}; check {}", name, std::strerror(error),
                                  error == EACCES ? "its permissions" : "the name"),
                      error);
}

size_t InputFile::Buffer::Take(char * buffer, size_t count)
{
  long const got = m_pFile->Read(buffer, count);
  if (got >= 0) return static_cast<size_t>(got);
  m_nError = errno;
  Fail();
}

void InputFile::Buffer::Fail() const
{
  throw SystemFailure(fmt::format("{}: can't be read: {}", m_strName, std::strerror(m_nError)), m_nError);
}

// A stream that meets the failure turns bad; others that read here let it pass.
InputFile::Buffer::int_type InputFile::Buffer::underflow()
{
  size_t const count = Take(m_Piece.data(), m_Piece.size());
  setg(m_Piece.data(), m_Piece.data(), m_Piece.data() + count);
  return count > 0 ? traits_type::to_int_type(m_Piece[0]) : traits_type::eof();
}

InputFile::InputFile(std::string const & name) : m_strName(ShownName(name)), m_Buffer(name), m_Stream(&m_Buffer) {}

std::string InputFile::ReadAll(size_t atMost, std::string const & what)
{
  constexpr size_t pieceBytes = 0x10000;
  std::string bytes;
  for (size_t count = 1; count > 0 && bytes.size() <= atMost;) {
    size_t const former = bytes.size();
    bytes.resize(former + pieceBytes);
    count = Read(&bytes[former], pieceBytes);
    bytes.resize(former + count);
  }
  if (bytes.size() <= atMost) return bytes;
  throw Failure(fmt::format("{}: has more than the {} bytes of {}", m_strName, atMost, what));
}

void InputFile::RequireRead() const
{
  if (m_Buffer.GetError() != 0) m_Buffer.Fail();
}
