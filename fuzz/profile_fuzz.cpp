// Any bytes as a profile file: every setting is listed and read, one is changed and taken out again, and the others stay.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include <zpbase/platform/application.h>

#include "fuzz/scratch_folder.h"

namespace {

void require(bool holds)
{
  if (!holds) std::abort();
}

std::string contentOf(CWinApp & app)
{
  std::string content;
  for (zp::Setting const & setting : app.ListSettings()) {
    content += std::string(setting.section.View()) + '.' + std::string(setting.key.View()) + '=' +
               std::string(setting.data.View()) + ';';
    app.GetProfileInt(setting.section, setting.key, 0);
    BYTE * bytes = nullptr;
    UINT length = 0;
    app.GetProfileBinary(setting.section, setting.key, &bytes, &length);
    delete[] bytes;
  }
  return content;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string const file = scratchFolder() + "/app.ini";
  std::ofstream(file, std::ios::binary).write(reinterpret_cast<char const *>(data), static_cast<std::streamsize>(size));
  CWinApp app("fuzz");
  app.SetProfileFile(file.c_str());
  std::string const before = contentOf(app);
  bool const isNew = CString(before.c_str()).MakeLower().Find("zz section") < 0 && before.find('\0') == std::string::npos;
  std::string const text(reinterpret_cast<char const *>(data), size);
  if (app.WriteProfileString("zz section", "key", text.c_str()))
    require(app.GetProfileString("ZZ SECTION", "KEY") == text.c_str());
  require(app.WriteProfileBinary("zz section", "key", data, static_cast<UINT>(size)));
  BYTE * bytes = nullptr;
  UINT length = 0;
  bool const found = app.GetProfileBinary("zz section", "key", &bytes, &length);
  require(found == (size > 0) && (!found || (length == size && std::equal(bytes, bytes + length, data))));
  delete[] bytes;
  require(app.WriteProfileString("zz section", "key", nullptr));
  require(!isNew || contentOf(app) == before);
  return 0;
}
