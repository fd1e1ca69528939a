// Keeps an application's settings in a profile file of its own, reads them back with their defaults, and shows the file.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <zpbase/config.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/paths.h>

int main()
{
  std::filesystem::path const file = std::filesystem::temp_directory_path() / "zp_keep_settings.ini";
  std::filesystem::remove(file);

  CWinApp app("Example");  // now the one that all settings belong to
  app.SetProfileFile(FromHostPath(file.string()));

  // A read with a default makes the setting exist; the next one finds it.
  CString report;
  GetSysString(report, GetReportSectionKey(), GetDefReportName(), "monthly");
  SetSysInt("Misc", "CompSelectBy", 2);
  SetSysLong("Misc", "Runs", -1);  // longs are unsigned 32-bit text
  SetSysFlag("Misc", GetAllowBeepKey(), 1);
  SetSysBinary("Misc", "Tag", "O");

  // Preferences read the same store, once.
  std::printf("beep %d, escape %d, 0 degrees C are %g K\n", AllowBeep(), AllowEsc(), GetKBase());
  std::printf("report %s, runs %ld, colour of labels %06lX\n", report.GetString(), GetSysLong("Misc", "Runs", 0),
              GetEULabelColor());

  bool const asKept = AllowBeep() == 1 && GetCompSelectBy() == 2;
  std::ifstream content(file);
  std::cout << content.rdbuf();
  content.close();
  std::filesystem::remove(file);
  return asKept ? 0 : 1;
}
