// A file or standard input, read from its begin to its end.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>

#include "tools/host_file.h"

class InputFile {
 public:
  // name is a host name; "-" stands for standard input. Raises Failure for a folder and for what can't be opened.
  explicit InputFile(std::string const & name);

  // Raises Failure where it can't be read on, or turns bad; RequireRead tells why.
  std::istream & GetStream() { return m_Stream; }

  // All of it. Raises Failure as soon as there are more than atMost bytes; what says what holds no more, such as "a record".
  std::string ReadAll(size_t atMost = SIZE_MAX, std::string const & what = "");

  // At most so many bytes, 0 at the end. Raises Failure.
  size_t Read(char * buffer, size_t count) { return m_Buffer.Take(buffer, count); }

  // Raises Failure if the reading has come to an end by an error.
  void RequireRead() const;

 private:
  class Buffer : public std::streambuf {
   public:
    explicit Buffer(std::string const & name);
    size_t Take(char * buffer, size_t count);
    int GetError() const { return m_nError; }
    [[noreturn]] void Fail() const;

   protected:
    int_type underflow() override;

   private:
    std::string m_strName;
    std::unique_ptr<HostFile> m_pFile;
    std::array<char, 0x10000> m_Piece;
    int m_nError = 0;
  };

  std::string m_strName;
  Buffer m_Buffer;
  std::istream m_Stream;
};
