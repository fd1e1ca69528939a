// A zip archive of parts that aren't packed, made byte by byte, so that it can also be wrong: for tests and for the fuzz target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class StoredPackage {
 public:
  void Add(std::string_view name, std::string_view content)
  {
    std::string fields = LittleEndian(20, 2) + LittleEndian(0, 8) + LittleEndian(ChecksumOf(content), 4) +
                         LittleEndian(content.size(), 4) + LittleEndian(content.size(), 4) + LittleEndian(name.size(), 2) +
                         LittleEndian(0, 2);
    m_strDirectory.append("PK\1\2").append(LittleEndian(20, 2)).append(fields);
    m_strDirectory.append(LittleEndian(0, 10)).append(LittleEndian(m_strParts.size(), 4)).append(name);
    m_strParts.append("PK\3\4").append(fields).append(name).append(content);
    ++m_nParts;
  }

  std::string Finish() const
  {
    return m_strParts + m_strDirectory + std::string("PK\5\6") + LittleEndian(0, 4) + LittleEndian(m_nParts, 2) +
           LittleEndian(m_nParts, 2) + LittleEndian(m_strDirectory.size(), 4) + LittleEndian(m_strParts.size(), 4) +
           LittleEndian(0, 2);
  }

 private:
  static std::string LittleEndian(uint64_t value, size_t bytes)
  {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) text += static_cast<char>(i < 8 ? value >> (8 * i) & 0xFF : 0);
    return text;
  }

  static uint32_t ChecksumOf(std::string_view content)
  {
    uint32_t sum = ~0U;
    for (char const c : content) {
      sum ^= static_cast<unsigned char>(c);
      for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
  }

  std::string m_strParts;
  std::string m_strDirectory;
  uint64_t m_nParts = 0;
};

// A workbook of one worksheet, "Data", of this XML, and of shared texts of that one where there is any.
inline StoredPackage MakeBookPackage(std::string_view sheet, std::string_view texts)
{
  constexpr std::string_view main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
  std::string const office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
  std::string const list = "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  StoredPackage package;
  package.Add("_rels/.rels", list + "<Relationship Id=\"b\" Type=\"" + office + "/officeDocument\" Target=\"xl/workbook.xml\"/>" +
                                 "</Relationships>");
  package.Add("xl/workbook.xml", std::string("<workbook xmlns=\"").append(main) + "\" xmlns:r=\"" + office +
                                     "\"><sheets><sheet name=\"Data\" sheetId=\"1\" r:id=\"s\"/></sheets></workbook>");
  package.Add("xl/_rels/workbook.xml.rels",
              list + "<Relationship Id=\"s\" Type=\"" + office + "/worksheet\" Target=\"worksheets/sheet1.xml\"/>" +
                  "<Relationship Id=\"t\" Type=\"" + office + "/sharedStrings\" Target=\"sharedStrings.xml\"/></Relationships>");
  package.Add("xl/worksheets/sheet1.xml", sheet);
  if (!texts.empty()) package.Add("xl/sharedStrings.xml", texts);
  return package;
}
