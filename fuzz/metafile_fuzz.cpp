// Any bytes as a metafile, or one built from them, replayed into DXF: the walk ends, its records stay inside the bytes, and what
// comes out is in proportion to them and made of whole pairs of lines, as far as the texts let it.

#include <stdlib.h>

#include <cstdint>
#include <string>
#include <string_view>

#include <zpbase/drawing.h>
#include <zpbase/store.h>

#include "fuzz/structured_input.h"

namespace {

void require(bool holds)
{
  if (!holds) abort();
}

// A file in memory that checks each write as it comes.
class CheckedFile : public GPFile {
 public:
  CheckedFile() : GPFile(CString()) {}
  void Write(void const * buffer, UINT count) override
  {
    std::string_view const bytes(static_cast<char const *>(buffer), count);
    require(bytes.substr(0, 5) == "  0\r\n" && bytes.substr(bytes.size() - 2) == "\r\n");
    m_nWritten += count;
  }
  size_t m_nWritten = 0;
};

struct Replay {
  DXFDC & dc;
  CheckedFile & file;
  size_t records = 0;
};

// The most that a point or a shape comes to, as eight arcs and four lines of long numbers; and the constants of a record.
constexpr size_t shapeRoom = 4096;
constexpr size_t recordRoom = 256;

int replay(HDC dc, HANDLETABLE * table, METARECORD * record, int objects, LPARAM user)
{
  auto & walk = *reinterpret_cast<Replay *>(user);
  size_t const before = walk.file.m_nWritten;
  require(DXFDC::EnumMetaFileProc(dc, table, record, objects, reinterpret_cast<long>(&walk.dc)) == 1);
  size_t const bound = record->rdFunction == META_POLYGON || record->rdFunction == META_POLYLINE ? recordRoom * record->rdSize
                                                                                                 : shapeRoom + 2 * record->rdSize;
  require(walk.file.m_nWritten - before <= bound);
  ++walk.records;
  return 1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  FuzzInput input({reinterpret_cast<char const *>(data), size});
  std::string const built = input.IsStructured() ? metafileOf(input) : std::string();
  if (!built.empty()) {
    data = reinterpret_cast<uint8_t const *>(built.data());
    size = built.size();
  }
  HMETAFILE const metafile = SetMetaFileBitsEx(static_cast<UINT>(size), data);
  if (metafile == nullptr) return 0;
  CheckedFile file;
  CDC context;
  DXFDC dc(file, &context, zp::GetMetaFileFacts(metafile).bounds.bottom);
  Replay walk{dc, file};
  for (int i = 0; i < 2; ++i)
    EnumMetaFile(nullptr, metafile, replay, reinterpret_cast<LPARAM>(&walk));  // with the table full, too
  require(walk.records <= 2 * size / 6);
  DeleteMetaFile(metafile);
  return 0;
}
