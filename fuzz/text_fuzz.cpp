// Any bytes as a text file and as one line: every reading operation ends, stays inside the text and agrees with itself.

#include <stdlib.h>

#include <cstdint>
#include <fstream>
#include <string>

#include <zpbase/platform/number_text.h>
#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

#include "fuzz/scratch_folder.h"

namespace {

void require(bool holds)
{
  if (!holds) abort();
}

// A text without runs of many numbers, so that a range stays short.
bool hasLongNumber(std::string_view text)
{
  int digits = 0;
  for (char const c : text) {
    digits = c >= '0' && c <= '9' ? digits + 1 : 0;
    if (digits > 4) return true;
  }
  return false;
}

void readLine(std::string_view text, char first)
{
  ParseString line{CString(text)};
  if (first & 1) line.SetTokenDelimeters(CString(first));
  if (first & 2) line.SetDelimeterLimit(first >> 2);
  CStringArray tokens;
  ParseString tokenLine(line);
  int const count = tokenLine.BuildTokenArray(tokens);
  require(count == tokens.GetSize() && tokenLine.GetNextTokenType() == noToken);

  CUIntArray starts;
  CUIntArray ends;
  require(line.GetValuePositions(starts, ends) == (line.GetValueCount() != 0));
  line.GetValueStrings(tokens, starts, ends);
  line.GetValueStrings(tokens, 5);
  ParseString values(line);
  while (values.GetNextTokenType() != noToken) {
    ParseString sameValues(values);
    double const value = values.GetNext_Double();
    CString token;
    sameValues.GetNextString(token);
    double const same = zp::TextToDouble(token.View());
    require(value == same || (value != value && same != same));
  }
  GPUIntArray numbers;
  if (!hasLongNumber(text)) line.GetUIntArray(numbers, static_cast<unsigned char>(first) & 7, GPUIntArray());
}

void readFile(std::string_view bytes)
{
  std::string const name = scratchFolder() + "/text";
  std::ofstream(name, std::ios::binary | std::ios::trunc) << bytes;
  ParseFile file(FromHostPath(name));
  int lines = 0;
  for (int length; (length = file.ReadLine()) != -1; ++lines) require(length == file.GetLength());
  require(lines == file.GetLineCount());
  for (int line = 1; line <= lines; ++line) require(file.GotoLineNumber(line) && file.ReadLine() != -1);
  file.GotoLineNumber(1);
  while (file.ParseLine() != -1) require(file.GetLength() <= ParseFile::maxParsedLine);
  CUIntArray starts;
  CUIntArray ends;
  file.GetDelimeter();
  file.GetMaxValuesPerLine();
  require(file.GetColumnPositions(starts, ends) == (starts.GetSize() != 0) && starts.GetSize() == ends.GetSize());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  readFile(bytes);
  readLine(bytes, size != 0 ? bytes[0] : ' ');
  return 0;
}
