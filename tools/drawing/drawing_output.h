// Where a drawing's records go, with their bytes counted.
#pragma once

#include <string_view>

#include <zpbase/store.h>

class DrawingOutput : public GPFile {
 public:
  DrawingOutput() : GPFile(CString()) {}

  using GPFile::Write;
  void Write(void const * bytes, UINT count) final
  {
    m_nBytes += count;
    Append({static_cast<char const *>(bytes), count});
  }
  unsigned long long GetBytes() const { return m_nBytes; }

 private:
  virtual void Append(std::string_view bytes) = 0;

  unsigned long long m_nBytes = 0;
};
