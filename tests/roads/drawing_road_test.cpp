// The road of one drawing: the bytes of a metafile become a file, which is opened, walked and replayed into DXF entities; and
// real metafiles, whole, cut and with sizes that lie.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <utility>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/paths.h>

#include "tests/support/Dxf.h"

namespace {

BOOL replayInto(Canvas & canvas, HMETAFILE metafile)
{
  return EnumMetaFile(nullptr, metafile, DXFDC::EnumMetaFileProc, reinterpret_cast<LPARAM>(&canvas.Target()));
}

TEST(DrawingRoad, LeadsFromTheBytesOfAMetafileToThoseOfTheDxf)
{
  TempFolder const folder;
  folder.Write("valve.wmf", FromHex("D7 CD C6 9A 00 00 00 00 00 00 90 01 2C 01 A0 05 00 00 00 00 00 00"  // 400 by 300
                                    "01 00 09 00 00 03 00 00 00 00 02 00 00 00 00 00 00 00"
                                    "05 00 00 00 0B 02 00 00 00 00"                    // window origin
                                    "08 00 00 00 FA 02 01 22 01 00 00 00 FF 00 00 00"  // dashed red pen
                                    "0F 00 00 00 FB 02 14 00 00 00 00 00 00 00 90 01 00 00 00 00 00 00 00 00 \"Arial\" 00"
                                    "04 00 00 00 2D 01 00 00"  // both selected
                                    "04 00 00 00 2D 01 01 00"
                                    "04 00 00 00 F0 01 00 00"  // and the pen deleted
                                    "0A 00 00 00 25 03 03 00 0A 00 0A 00 14 00 0A 00 14 00 1E 00"
                                    "08 00 00 00 FC 02 00 00 00 00 00 00 00 00"  // takes the pen's slot
                                    "00 00 07 00 00 00 18 04 32 00 32 00 00 00 00 00"
                                    "03 00 00 00 00 00"));
  HMETAFILE const metafile = GetMetaFile(folder.Name("valve.wmf"));
  ASSERT_NE(metafile, nullptr);
  Canvas canvas(zp::GetMetaFileFacts(metafile).bounds.bottom);
  canvas.File().WriteLine("head");
  EXPECT_EQ(replayInto(canvas, metafile), TRUE);
  canvas->SetTextColor(0xFFFF00);
  tagRECT const rect{0, 0, 39, 20};
  canvas->ExtTextOutA(0, 100, 0, &rect, "V-1", nullptr);
  canvas.File().WriteLine("tail");
  EXPECT_EQ(canvas->GetTextExtent("V-1"), CSize(39, 20));
  EXPECT_EQ(canvas.Bytes(),
            "head\r\n"
            "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\nDASHED\r\n 62\r\n     1\r\n 10\r\n10.0\r\n 20\r\n290.0\r\n 11\r\n20.0\r\n"
            " 21\r\n290.0\r\n"
            "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\nDASHED\r\n 62\r\n     1\r\n 10\r\n20.0\r\n 20\r\n290.0\r\n 11\r\n20.0\r\n"
            " 21\r\n270.0\r\n"
            "  0\r\nCIRCLE\r\n  8\r\nFS_OBJECT\r\n 62\r\n     1\r\n 10\r\n25.0\r\n 20\r\n275.0\r\n 40\r\n25.0\r\n"
            "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n     4\r\n 10\r\n4.00\r\n 20\r\n185.00\r\n 40\r\n10.00\r\n  1\r\nV-1\r\n"
            " 41\r\n1.03\r\n"
            "tail\r\n");
  EXPECT_EQ(DeleteMetaFile(metafile), TRUE);
}

std::string bytesOf(std::filesystem::path const & path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// A file that keeps nothing but the count of what it was given.
class CountingFile : public GPFile {
 public:
  CountingFile() : GPFile(CString()) {}
  void Write(void const *, UINT count) override { m_nWritten += count; }
  size_t m_nWritten = 0;
};

size_t replayed(std::string_view bytes, BOOL & whole)
{
  std::vector<BYTE> const exact(bytes.begin(), bytes.end());  // so that a byte behind it is seen
  HMETAFILE const metafile = SetMetaFileBitsEx(static_cast<UINT>(exact.size()), exact.data());
  if (metafile == nullptr) return 0;
  CountingFile file;
  CDC context;
  DXFDC dc(file, &context, 300);
  whole = EnumMetaFile(nullptr, metafile, DXFDC::EnumMetaFileProc, reinterpret_cast<LPARAM>(&dc));
  DeleteMetaFile(metafile);
  DXFDC::ResetDrawingHeight();
  return file.m_nWritten;
}

TEST(DrawingRoad, TakesRealMetafilesCutAtEachByteAndWithEachSizeAtItsExtremes)
{
  for (char const * const name : {"ink_lines.wmf", "lo_text.wmf"}) {
    std::string const bytes = bytesOf(std::filesystem::path(ZP_SOURCE_DIR "/tests/metafiles") / name);
    BOOL whole = FALSE;
    size_t const full = replayed(bytes, whole);
    EXPECT_TRUE(whole) << name;
    EXPECT_GT(full, 300U) << name;
    for (size_t length = 0; length < bytes.size(); ++length) EXPECT_LE(replayed(bytes.substr(0, length), whole), full);

    for (size_t at = 40; at + 6 < bytes.size();) {
      auto const size = zp::ReadLittle<DWORD>(bytes.data() + at);
      for (DWORD const lie : {0U, 1U, 3U, size - 1, size + 1, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        std::string lying = bytes;
        zp::WriteLittle(lying.data() + at, lie);
        replayed(lying, whole);
      }
      // Counts, lengths, indexes and coordinates of the record.
      for (size_t word = at + 6; word < at + 2 * size && word < at + 16; word += 2)
        for (int const lie : {-32768, -1, 100, 32767}) {
          std::string lying = bytes;
          zp::WriteLittle(lying.data() + word, static_cast<WORD>(lie));
          EXPECT_LT(replayed(lying, whole), full + 40 * bytes.size()) << name << " " << word;
        }
      at += 2 * size;
    }
  }
}

TEST(DrawingRoad, ReplaysAsMuchOfEachRealMetafileAsItDraws)
{
  struct {
    char const * name;
    size_t lines, texts;
  } const rows[] = {{"ink_lines.wmf", 7, 0}, {"ink_polygons.wmf", 12, 0}, {"lo_text.wmf", 0, 3}, {"lo_draw.wmf", 317, 2}};
  for (auto const & row : rows) {
    HMETAFILE const metafile = GetMetaFile(CString(std::string(ZP_SOURCE_DIR "/tests/metafiles/") + row.name));
    ASSERT_NE(metafile, nullptr);
    Canvas canvas(300);
    replayInto(canvas, metafile);
    DeleteMetaFile(metafile);
    size_t lines = 0, texts = 0;
    for (std::string const & record : canvas.Records()) {
      lines += record.rfind("LINE|", 0) == 0;
      texts += record.rfind("TEXT|", 0) == 0;
    }
    EXPECT_EQ(std::pair(lines, texts), std::pair(row.lines, row.texts)) << row.name;
  }
}

}  // namespace
