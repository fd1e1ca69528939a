// Joining texts.

#include "servers/embedded/rich_text.h"

#include "servers/embedded/cell_text.h"
#include "servers/embedded/failure.h"

namespace embedded {
namespace {

constexpr XmlNamespace xmlNamespace = {"http://www.w3.org/XML/1998/namespace|", "http://www.w3.org/XML/1998/namespace|"};

[[noreturn]] void failAtLength()
{
  throw BookFailure("The file holds a text of more than " + std::to_string(mostTextUnits) + " characters");
}

}  // namespace

bool PreservesBlanks(XmlAttributes attributes, bool around)
{
  char const * const space = attributes.FindIn(xmlNamespace, "space");
  return space != nullptr ? std::string_view(space) == "preserve" : around;
}

void RichText::Begin(bool preserve)
{
  m_bPreserves[0] = preserve;
  m_strText.clear();
  m_nDepth = 0;
  m_bInPiece = m_bFormats = false;
}

bool RichText::Start(std::string_view name, XmlAttributes attributes)
{
  if (m_bInPiece) return false;
  if (name == "t") {
    m_bInPiece = true;
    m_nPiece = m_strText.size();
  } else if (name != "r" || m_nDepth != 0) {
    m_bFormats = m_bFormats || name == "rPr" || name == "rPh";
    return false;
  }
  ++m_nDepth;
  m_bPreserves[m_nDepth] = PreservesBlanks(attributes, m_bPreserves[m_nDepth - 1]);
  return true;
}

void RichText::Characters(std::string_view text)
{
  if (!m_bInPiece) return;
  if (m_strText.size() + text.size() > mostTextBytes) failAtLength();
  m_strText += text;
}

bool RichText::End()
{
  if (m_nDepth == 0) return false;
  bool const preserve = m_bPreserves[m_nDepth--];
  if (!m_bInPiece) return true;
  m_bInPiece = false;
  if (preserve) return true;
  std::string_view const piece = std::string_view(m_strText).substr(m_nPiece);
  std::string_view const trimmed = TrimBlanks(piece);
  if (trimmed.size() != piece.size()) m_strText.replace(m_nPiece, std::string::npos, std::string(trimmed));
  return true;
}

std::string_view RichText::Get()
{
  return TakeEscapesOut(m_strText, m_strPlain);
}

std::string_view TakeEscapesOut(std::string_view text, std::string & storage)
{
  if (text.find("_x") != std::string_view::npos) {
    storage = Unescape(text);
    text = storage;
  }
  if (text.size() > mostTextUnits && CountUnits(text) > mostTextUnits) failAtLength();
  return text;
}

}  // namespace embedded
