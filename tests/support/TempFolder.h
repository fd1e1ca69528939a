// A folder of its own for one test, gone with it, and whole files in and out of it.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <zpbase/platform/string.h>

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(TempFolder const &) = delete;
  TempFolder & operator=(TempFolder const &) = delete;

  std::filesystem::path const & Path() const { return m_Path; }

  // The inside name of a file in the folder.
  CString Name(std::string_view file) const;

  std::string Read(std::string_view file) const;
  void Write(std::string_view file, std::string_view bytes) const;
  bool Has(std::string_view file) const { return std::filesystem::exists(m_Path / file); }

 private:
  std::filesystem::path m_Path;
};

// The bytes that a text of hex pairs tells; words in double quotes stand for their characters.
std::string FromHex(std::string_view hex);
