// Any bytes as a text file that becomes a report, whose lines are those of ReadLine, and as a saved report document.

#include <stdlib.h>

#include <cstdint>
#include <fstream>
#include <string>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>
#include <zpbase/text.h>
#include <zpbase/views.h>

#include "fuzz/scratch_folder.h"

namespace {

void require(bool holds)
{
  if (!holds) abort();
}

// The entries that one line of a file becomes.
void addLine(CStringArray & entries, CString line)
{
  if (!line.IsEmpty() && line[0] == '\x0C') {
    entries.Add(CString("\x01"));
    if (line.Delete(0) == 0) return;
  }
  ExpandTabs(line, 8);
  entries.Add(line);
}

void readText(std::string_view bytes)
{
  std::string const name = scratchFolder() + "/report";
  std::ofstream(name, std::ios::binary | std::ios::trunc) << bytes;
  GPFile file(FromHostPath(name));
  CStringArray lines;
  require(file.InitStringArray(&lines) == lines.GetSize());
  CStringArray expected;
  require(file.Open(CFile::modeRead) != 0);
  for (CString line; file.ReadLine(line) != -1;) addLine(expected, line);
  require(lines.GetSize() == expected.GetSize());
  for (int i = 0; i < lines.GetSize(); ++i) require(lines[i] == expected[i]);
}

void readDocument(std::string_view bytes)
{
  std::string copy(bytes);
  CMemFile file(reinterpret_cast<BYTE *>(copy.data()), static_cast<UINT>(copy.size()));
  GPRptDoc doc(nullptr, nullptr);
  try {
    CArchive ar(&file, CArchive::load);
    doc.Serialize(ar);
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    require(doc.GetStartPosition() == nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  readText(bytes);
  readDocument(bytes);
  return 0;
}
