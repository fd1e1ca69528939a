// Makes a job's folders, puts a unit file into one and finds it again by its name alone; then sets a report's lines in order.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

namespace {

// The length with its zero fits in the array.
void setDirectory(char (&directory)[260], CString const & path)
{
  std::snprintf(directory, sizeof directory, "%s\\", path.GetString());
}

// The report's lines in columns, with digits in groups of three.
int printReport(CString const & report)
{
  CStringArray lines;
  int const longest = ChopString(lines, report);
  for (int i = 0; i < lines.GetSize(); ++i) {
    CString line = lines[i];
    ExpandTabs(line, 8);
    std::printf("%s\n", line.GetString());
  }
  CString flow("1234567");
  InsertSpaces(flow, -3);  // from the right: "1 234 567"
  PadString(flow, 12);     // blanks up to that width
  std::printf("%s|\n", flow.GetString());
  return longest;
}

}  // namespace

int main()
{
  std::filesystem::path const folder = std::filesystem::temp_directory_path() / "zp_find_a_file";
  CString const job = FromHostPath((folder / "job" / "case1").string());

  // All folders on the way are made, the last part included; a failure has been shown already.
  if (!MakeParentDirectories(job)) return 1;
  setDirectory(job_path, job);
  std::ofstream(folder / "job" / "case1" / "pump.UF") << "a unit";

  // A name without an extension is a unit's first, then a pool's, then the system's.
  CString found;
  if (!FindZephlowFile(found, "pump")) return 1;
  CString name;
  CString extension;
  ExtractFileName(name, found);
  ExtractFileExtension(extension, found);
  std::printf("%s\nstem %s, extension %s, folder %s\n", found.GetString(), name.GetString(), extension.GetString(),
              GetDirectoryPrefix(found, 0).GetString());

  int const longest = printReport("unit\tflow\r\npump\t12.5\r\n");
  bool const isJobs = GetDirectoryPrefix(found, 1).CompareNoCase(job_path) == 0 && DirExists(job);
  std::filesystem::remove_all(folder);
  return isJobs && longest == 9 ? 0 : 1;
}
