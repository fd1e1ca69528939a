// Metafiles put together record by record.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include <zpbase/platform/bytes.h>

class MetafileBytes {
 public:
  MetafileBytes & Add(unsigned int function, std::initializer_list<int> words, std::string_view characters = "")
  {
    std::string record(6 + 2 * words.size(), '\0');
    char * place = record.data() + 6;
    for (int const word : words) {
      zp::WriteLittle(place, static_cast<uint16_t>(word));
      place += 2;
    }
    record += characters;
    if (record.size() % 2 != 0) record += '\0';
    zp::WriteLittle(record.data(), static_cast<uint32_t>(record.size() / 2));
    zp::WriteLittle(record.data() + 4, static_cast<uint16_t>(function));
    m_Records += record;
    return *this;
  }

  MetafileBytes & Pen(int style, int colorLow) { return Add(0x02FA, {style, 1, 0, colorLow, 0}); }
  MetafileBytes & Select(int index) { return Add(0x012D, {index}); }
  MetafileBytes & Line(int x, int y, int toX, int toY) { return Add(0x0214, {y, x}).Add(0x0213, {toY, toX}); }
  MetafileBytes & Text(int x, int y, std::string_view text)
  {
    return Add(0x0A32, {y, x, static_cast<int>(text.size()), 0}, text);
  }
  MetafileBytes & Window(int x, int y, int width, int height) { return Add(0x020B, {y, x}).Add(0x020C, {height, width}); }

  std::string Plain() const
  {
    std::string const records = m_Records + std::string("\3\0\0\0\0\0", 6);
    std::string header(18, '\0');
    zp::WriteLittle(header.data(), uint16_t{1});
    zp::WriteLittle(header.data() + 2, uint16_t{9});
    zp::WriteLittle(header.data() + 4, uint16_t{0x300});
    zp::WriteLittle(header.data() + 6, static_cast<uint32_t>((header.size() + records.size()) / 2));
    return header + records;
  }

  // With the header that tells a frame.
  std::string Placeable(int left, int top, int right, int bottom) const
  {
    std::string header(22, '\0');
    zp::WriteLittle(header.data(), uint32_t{0x9AC6CDD7});
    char * place = header.data() + 6;
    for (int const word : {left, top, right, bottom, 1000}) {
      zp::WriteLittle(place, static_cast<uint16_t>(word));
      place += 2;
    }
    uint16_t sum = 0;
    for (size_t i = 0; i < 20; i += 2) sum = static_cast<uint16_t>(sum ^ zp::ReadLittle<uint16_t>(header.data() + i));
    zp::WriteLittle(header.data() + 20, sum);
    return header + Plain();
  }

 private:
  std::string m_Records;
};
