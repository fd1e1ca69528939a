// Members and elements, each laid out by itself.

#include "tools/json_pieces.h"

#include "tools/json_output.h"

namespace {

constexpr size_t jsonPieceBytes = 0x10000;

}  // namespace

void JsonPieces::Member(std::string_view key, nlohmann::ordered_json const & value)
{
  Key(key);
  Value(value, "  ");
}

void JsonPieces::BeginList(std::string_view key)
{
  Key(key);
  m_strText += '[';
  m_bListEmpty = true;
}

void JsonPieces::Element(nlohmann::ordered_json const & value)
{
  m_strText += m_bListEmpty ? "\n    " : ",\n    ";
  m_bListEmpty = false;
  Value(value, "    ");
}

void JsonPieces::EndList()
{
  m_strText += m_bListEmpty ? "]" : "\n  ]";
}

void JsonPieces::End()
{
  m_strText += "\n}";
  m_pfnPass(m_strText);
  m_strText.clear();
}

void JsonPieces::Key(std::string_view key)
{
  m_strText += m_bEmpty ? "{\n  \"" : ",\n  \"";
  m_bEmpty = false;
  m_strText.append(key) += "\": ";
}

// No line ends inside a text, for JSON escapes those.
void JsonPieces::Value(nlohmann::ordered_json const & value, std::string_view indent)
{
  for (char const c : DumpJson(value, 2)) {
    m_strText += c;
    if (c == '\n') m_strText += indent;
  }
  if (m_strText.size() < jsonPieceBytes) return;
  m_pfnPass(m_strText);
  m_strText.clear();
}
