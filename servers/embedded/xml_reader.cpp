// Feeding expat.

#include "servers/embedded/xml_reader.h"

#include <algorithm>
#include <new>

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

void XmlParser::Read(PartStream & part)
{
  for (uint64_t fed = 0;;) {
    void * const buffer = XML_GetBuffer(m_pParser, bytesAtOnce);
    if (buffer == nullptr) throw std::bad_alloc();
    size_t const got = part.Read({static_cast<char *>(buffer), static_cast<size_t>(bytesAtOnce)});
    XML_Status const status = XML_ParseBuffer(m_pParser, static_cast<int>(got), got == 0 ? XML_TRUE : XML_FALSE);
    if (m_Exception) std::rethrow_exception(m_Exception);
    if (status != XML_STATUS_OK) Fail(part);
    if (got == 0) return;
    fed += got;
    CheckToken(part, fed);
  }
}

// What expat has been fed and hasn't told yet is the beginning of one token.
void XmlParser::CheckToken(PartStream const & part, uint64_t fed) const
{
  XML_Index const told = XML_GetCurrentByteIndex(m_pParser);
  if (fed - static_cast<uint64_t>(told < 0 ? 0 : told) <= mostTokenBytes) return;
  throw BookFailure("The part " + part.GetName() + " has a longer tag or comment than a workbook may have");
}

void XmlParser::Fail(PartStream const & part) const
{
  XML_Error const error = XML_GetErrorCode(m_pParser);
  if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  throw BookFailure("The part " + part.GetName() + " is damaged: " + XML_ErrorString(error) + " in line " +
                    std::to_string(XML_GetCurrentLineNumber(m_pParser)));
}

bool HasElement(PartStream part, XmlNamespace const & space, std::initializer_list<std::string_view> names)
{
  ElementSearch search = {space, names};
  ReadXml(std::move(part), search);
  return search.found;
}

}  // namespace embedded
