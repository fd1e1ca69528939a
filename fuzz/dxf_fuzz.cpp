// Any bytes as a metafile, or one built from them: what zp dxf makes of it is a whole drawing that reads back without a fault, in
// the size that its records need. And any bytes as a drawing: reading it ends, with one look the same as the other.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/structured_input.h"
#include "tools/drawing/conversion.h"
#include "tools/drawing/dxf_picture.h"
#include "tools/drawing/dxf_reader.h"

namespace {

void require(bool holds)
{
  if (!holds) std::abort();
}

class MemoryDrawing : public DrawingOutput {
 public:
  std::string m_Bytes;

 private:
  void Append(std::string_view bytes) override { m_Bytes.append(bytes); }
};

DxfOpener openerOf(std::string_view bytes)
{
  return [bytes] {
    return [rest = bytes](char * buffer, size_t size) mutable {
      size_t const count = std::min(size, rest.size());
      std::memcpy(buffer, rest.data(), count);
      rest.remove_prefix(count);
      return count;
    };
  };
}

struct Seen {
  unsigned long long entities = 0;
  unsigned long long faults = 0;
  DxfCover cover;
};

Seen look(std::string_view drawing)
{
  DxfReader reader(openerOf(drawing)());
  Seen seen;
  unsigned long long shown = 0;
  reader.Read([&](DxfEntity const & entity) {
    seen.cover.Add(entity);
    ++shown;
  });
  seen.entities = reader.GetEntities();
  seen.faults = reader.GetProblems().GetCount();
  require(seen.entities == shown && reader.GetProblems().GetKept().size() <= DxfProblems::mostKept);
  return seen;
}

void convert(std::string_view bytes)
{
  HMETAFILE const metafile = SetMetaFileBitsEx(static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE const *>(bytes.data()));
  if (metafile == nullptr) return;
  MemoryDrawing drawing;
  Conversion const conversion = ConvertMetafile(metafile, drawing, {});
  DeleteMetaFile(metafile);
  constexpr size_t headSize = 3000;
  constexpr size_t mostOfWord = 200;     // a point of two words becomes a line
  constexpr size_t mostOfRecord = 2000;  // eight arcs, or four lines and eight arcs
  require(drawing.m_Bytes.size() <= headSize + bytes.size() * mostOfWord + conversion.records * mostOfRecord);
  require(look(drawing.m_Bytes).faults == 0);
}

void read(std::string_view bytes)
{
  Seen const seen = look(bytes);
  if (seen.entities >= 1000) return;
  bool isDrawn = false;
  DrawDxf(openerOf(bytes), seen.cover, PictureFormat::Svg, [&](std::string_view piece) { isDrawn |= !piece.empty(); });
  require(isDrawn);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  FuzzInput input(bytes);
  if (input.IsStructured()) {
    convert(metafileOf(input));
  } else {
    convert(bytes);
    read(bytes);
  }
  return 0;
}
