// Reads a numeric text file: finds its delimiter and columns, then takes the values of each line, whatever the file's header.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

namespace {

char const measured[] =
    "Vapour pressure of water\r\n"
    "T/K     p/kPa  runs\r\n"
    "273.16  0.6117 1-3\r\n"
    "298.15  3.1698 12\r\n"
    "\r\n"
    "373.12  101.32 5\r\n";

}  // namespace

int main()
{
  std::filesystem::path const path = std::filesystem::temp_directory_path() / "zp_read_columns.txt";
  std::ofstream(path, std::ios::binary) << measured;

  ParseFile file(FromHostPath(path.string()));
  std::printf("%d lines, up to %d values, delimiter code %d\n", file.GetLineCount(), file.GetMaxValuesPerLine(),
              file.GetDelimeter());

  // Columns come from the lines that hold nothing but values.
  CUIntArray starts;
  CUIntArray ends;
  file.GetColumnPositions(starts, ends);
  for (int i = 0; i < starts.GetSize(); ++i) std::printf("column %d: characters %u to %u\n", i + 1, starts[i], ends[i]);

  // A line's tokens are taken one by one, each as what it is.
  int runs = 0;
  while (file.ReadLine() != -1) {
    if (file.GetNextTokenType() != realToken) continue;  // headers and blank lines
    double const temperature = file.GetNext_Double();
    double const pressure = file.GetNext_Double();
    GPUIntArray numbers;
    ParseString rest(file);  // a copy that keeps its place
    CString text;
    rest.GetRemainingString(text);
    runs += ParseString(text).GetUIntArray(numbers, GPUIntArray::addUnique, GPUIntArray());
    std::printf("line %d: %.2f K, %.4f kPa, %d runs\n", file.GetCurLineNumber(), temperature, pressure, numbers.GetSize());
  }

  std::filesystem::remove(path);
  return runs == 5 ? 0 : 1;
}
