// A file of the host that is open, and whole contents through it.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <zpbase/platform/host_calls.h>

namespace zp {

// An open descriptor, or -1. It closes itself unless it is taken.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int file) : m_nFile(file) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor && other) noexcept : m_nFile(other.Take()) {}
  Descriptor & operator=(Descriptor && other) noexcept
  {
    int const file = other.Take();
    Close();
    m_nFile = file;
    return *this;
  }

  int Get() const { return m_nFile; }
  bool IsOpen() const { return m_nFile >= 0; }
  int Take() { return std::exchange(m_nFile, -1); }
  void Close()
  {
    if (m_nFile >= 0) GetHostCalls().Close(Take());
  }

 private:
  int m_nFile = -1;
};

// All of the bytes; 0 or the host's error number.
int WriteAll(int file, std::string_view bytes);

// Appends what is between the position and the end of the file; 0 or the host's error number.
int ReadAll(int file, std::string & bytes);

}  // namespace zp
