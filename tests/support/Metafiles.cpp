#include "tests/support/Metafiles.h"

#include <zpbase/platform/bytes.h>

#include "tests/support/TempFolder.h"

namespace {

void append(std::string & bytes, int word)
{
  char pair[2];
  zp::WriteLittle(pair, static_cast<WORD>(word));
  bytes.append(pair, 2);
}

}  // namespace

std::string MetaRecord(WORD function, std::initializer_list<int> words, std::string_view bytes)
{
  std::string record(4, '\0');
  append(record, function);
  for (int const word : words) append(record, word);
  record += bytes;
  if (record.size() % 2 != 0) record += '\0';
  zp::WriteLittle(record.data(), static_cast<DWORD>(record.size() / 2));
  return record;
}

std::string MetaHeader()
{
  return FromHex("01 00 09 00 00 03 00 00 00 00 05 00 00 00 00 00 00 00");
}

std::string MetaEnd()
{
  return FromHex("03 00 00 00 00 00");
}

std::string PlaceableHeader()
{
  return FromHex("D7 CD C6 9A 00 00 00 00 00 00 90 01 2C 01 A0 05 00 00 00 00 00 00");
}
