#include "tests/support/TempFolder.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include <zpbase/platform/paths.h>

TempFolder::TempFolder()
{
  std::string name = (std::filesystem::temp_directory_path() / "zpbase-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  m_Path = name;
}

TempFolder::~TempFolder()
{
  std::error_code ignored;
  std::filesystem::remove_all(m_Path, ignored);
}

CString TempFolder::Name(std::string_view file) const
{
  return FromHostPath((m_Path / file).string());
}

std::string TempFolder::Read(std::string_view file) const
{
  std::ifstream in(m_Path / file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void TempFolder::Write(std::string_view file, std::string_view bytes) const
{
  std::ofstream out(m_Path / file, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string FromHex(std::string_view hex)
{
  std::string bytes;
  for (size_t i = 0; i < hex.size();) {
    if (hex[i] == '"') {
      size_t const end = hex.find('"', i + 1);
      bytes += hex.substr(i + 1, end - i - 1);
      i = end + 1;
    } else if (isxdigit(static_cast<unsigned char>(hex[i])) != 0) {
      bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
      i += 2;
    } else {
      ++i;
    }
  }
  return bytes;
}
