// Feeding expat.

#include "servers/embedded/xml_reader.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include "servers/embedded/failure.h"

namespace embedded {
namespace {

constexpr int bytesAtOnce = 128 << 10;

struct ElementSearch {
  bool Start(std::string_view name, XmlAttributes)
  {
    found = found || std::find(names.begin(), names.end(), name) != names.end();
    return true;
  }
  void End() {}
  void Characters(std::string_view) {}

  XmlNamespace const & space;
  std::initializer_list<std::string_view> names;
  bool found = false;
};

}  // namespace

char const * XmlAttributes::FindIn(XmlNamespace const & space, std::string_view name) const
{
  for (char const ** at = m_pList; *at != nullptr; at += 2)
    if (char const * const own = space.FindOwnName(*at); own != nullptr && name == own) return at[1];
  return nullptr;
}

bool XmlAttributes::Has(std::string_view name, std::string_view value) const
{
  char const * const found = Find(name);
  return found != nullptr && value == found;
}

void FailAtDepth()
{
  throw BookFailure("The file holds elements within elements more than " + std::to_string(mostDepth) + " deep");
}

PartBuffer::PartBuffer(PartStream & part) : m_Part(part), m_Block(bytesAtOnce) {}

bool PartBuffer::Fill()
{
  if (m_bEnd) return false;
  std::copy(m_Block.begin() + static_cast<std::ptrdiff_t>(m_nBegin), m_Block.begin() + static_cast<std::ptrdiff_t>(m_nEnd),
            m_Block.begin());
  m_nEnd -= std::exchange(m_nBegin, 0);
  size_t const got = m_Part.Read(std::span(m_Block).subspan(m_nEnd));
  m_nEnd += got;
  m_bEnd = got == 0;
  return !m_bEnd;
}

XmlParser::XmlParser() : m_pParser(XML_ParserCreateNS(nullptr, '|'))
{
  if (m_pParser == nullptr) throw std::bad_alloc();
  XML_SetUserData(m_pParser, this);
  XML_SetStartDoctypeDeclHandler(m_pParser, OnDoctype);
}

XmlParser::~XmlParser()
{
  XML_ParserFree(m_pParser);
}

void XmlParser::OnDoctype(void * self, char const *, char const *, char const *, int)
{
  try {
    throw BookFailure("The file declares a type of document, which no .xlsx file may");
  } catch (...) {
    static_cast<XmlParser *>(self)->KeepException();
  }
}

void XmlParser::KeepException()
{
  if (!m_Exception) m_Exception = std::current_exception();
  m_nPassed = passesAll;  // expat may have a call or two left
  XML_StopParser(m_pParser, XML_FALSE);
}

void XmlParser::WatchPlain(XmlNamespace const & space)
{
  m_pSpace = &space;
  XML_SetNamespaceDeclHandler(m_pParser, OnNamespace, OnNamespaceEnd);
  XML_SetStartCdataSectionHandler(m_pParser, OnSection);
}

void XmlParser::OnNamespace(void * self, char const * prefix, char const * identifier)
{
  if (prefix != nullptr) return;
  try {
    From(self).m_Known.push_back(From(self).m_pSpace->Is(identifier));
  } catch (...) {
    From(self).KeepException();
  }
}

void XmlParser::OnNamespaceEnd(void * self, char const * prefix)
{
  if (prefix == nullptr && !From(self).m_Known.empty()) From(self).m_Known.pop_back();
}

bool XmlParser::IsBetweenElements() const
{
  return !m_Known.empty() && m_Known.back() && !m_bSection && CountTold() == m_nFed;
}

void XmlParser::ReadAll(PartStream & part)
{
  for (size_t got = 1; got > 0;) {
    void * const buffer = XML_GetBuffer(m_pParser, bytesAtOnce);
    if (buffer == nullptr) throw std::bad_alloc();
    got = part.Read({static_cast<char *>(buffer), static_cast<size_t>(bytesAtOnce)});
    CheckFed(part, XML_ParseBuffer(m_pParser, static_cast<int>(got), got == 0 ? XML_TRUE : XML_FALSE), got);
  }
}

void XmlParser::Feed(PartStream const & part, std::span<char const> bytes)
{
  XML_Bool const isLast = bytes.empty() ? XML_TRUE : XML_FALSE;
  CheckFed(part, XML_Parse(m_pParser, bytes.data(), static_cast<int>(bytes.size()), isLast), bytes.size());
}

void XmlParser::Pass(std::string_view bytes)
{
  m_nLinesPast += static_cast<uint64_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

// What expat has been fed and hasn't told yet is the beginning of one token.
void XmlParser::CheckFed(PartStream const & part, XML_Status status, size_t bytes)
{
  if (m_Exception) std::rethrow_exception(m_Exception);
  if (status != XML_STATUS_OK) Fail(part);
  m_nFed += bytes;
  if (bytes > 0 && m_nFed - CountTold() > mostTokenBytes)
    throw BookFailure("The part " + part.GetName() + " has a longer tag or comment than a workbook may have");
}

uint64_t XmlParser::CountTold() const
{
  XML_Index const told = XML_GetCurrentByteIndex(m_pParser);
  return static_cast<uint64_t>(told < 0 ? 0 : told);
}

void XmlParser::Fail(PartStream const & part) const
{
  XML_Error const error = XML_GetErrorCode(m_pParser);
  if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  throw BookFailure("The part " + part.GetName() + " is damaged: " + XML_ErrorString(error) + " in line " +
                    std::to_string(XML_GetCurrentLineNumber(m_pParser) + m_nLinesPast));
}

bool HasElement(PartStream part, XmlNamespace const & space, std::initializer_list<std::string_view> names)
{
  ElementSearch search = {space, names};
  ReadXml(std::move(part), search);
  return search.found;
}

}  // namespace embedded
