// A file of the host that is open.
#pragma once

#include <unistd.h>

#include <utility>

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
  int Take() { return std::exchange(m_nFile, -1); }
  void Close()
  {
    if (m_nFile >= 0) close(Take());
  }

 private:
  int m_nFile = -1;
};

}  // namespace zp
