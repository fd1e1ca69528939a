// Streams the XML of a part to a handler: the elements of the namespaces that it knows, with what stands in them. What belongs to
// other namespaces is passed over with all that is in it. Declarations of document types are refused, and with them entities.
#pragma once

#include <cstring>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>

#include <expat.h>

#include "servers/embedded/limits.h"
#include "servers/embedded/package.h"

namespace embedded {

// A namespace by its transitional and its strict name, each with the bar that separates it from an element's own name.
struct XmlNamespace {
  std::string_view transitional;
  std::string_view strict;

  // The part of the name behind the namespace; null for one of another.
  char const * FindOwnName(char const * name) const
  {
    if (std::strncmp(name, transitional.data(), transitional.size()) == 0) return name + transitional.size();
    return std::strncmp(name, strict.data(), strict.size()) == 0 ? name + strict.size() : nullptr;
  }
};

inline constexpr XmlNamespace sheetNamespace = {"http://schemas.openxmlformats.org/spreadsheetml/2006/main|",
                                                "http://purl.oclc.org/ooxml/spreadsheetml/main|"};

// The attributes of an element. Those without a prefix have their bare names.
class XmlAttributes {
 public:
  explicit XmlAttributes(char const ** list) : m_pList(list) {}

  // Null for one that isn't there.
  char const * Find(std::string_view name) const
  {
    for (char const ** at = m_pList; *at != nullptr; at += 2)
      if (name == *at) return at[1];
    return nullptr;
  }

  // The same for one of a namespace, such as r:id.
  char const * FindIn(XmlNamespace const & space, std::string_view name) const;

  bool Has(std::string_view name, std::string_view value) const;
  bool IsEmpty() const { return *m_pList == nullptr; }

  // Whether a switch such as hidden is on.
  bool IsOn(std::string_view name) const { return Has(name, "1") || Has(name, "true"); }

  char const ** GetList() const { return m_pList; }

 private:
  char const ** m_pList;
};

// What the readers of all parts share: expat, its bounds, and the way of exceptions around it.
class XmlParser {
 public:
  XmlParser();
  ~XmlParser();
  XmlParser(XmlParser const &) = delete;
  XmlParser & operator=(XmlParser const &) = delete;

  // Gives the part to the handler to its end. Throws what the handler throws, and BookFailure for what is no XML or passes a
  // bound.
  void Read(PartStream & part);

 protected:
  static constexpr unsigned int passesAll = ~0U;

  // Ends the reading with the exception that is being handled.
  void KeepException();

  XML_Parser m_pParser;
  unsigned int m_nDepth = 0;
  unsigned int m_nPassed = 0;  // the depth of the element that is passed over; 0 outside one

 private:
  static void XMLCALL OnDoctype(void * self, char const *, char const *, char const *, int);

  void CheckToken(PartStream const & part, uint64_t fed) const;
  [[noreturn]] void Fail(PartStream const & part) const;

  std::exception_ptr m_Exception;
};

[[noreturn]] void FailAtDepth();

// Handler has an XmlNamespace `space` and members
//   bool Start(std::string_view name, XmlAttributes attributes)   false to pass over the element with all that is in it
//   void End()                                                   of the last element that was started and isn't over
//   void Characters(std::string_view text)                       a piece of what stands in that element
// and, if it wants to know of them,
//   void PassForeign()                                           before an element of another namespace is passed over
template <class Handler>
class XmlReader : public XmlParser {
 public:
  // The handler is borrowed as long as the reader lives.
  explicit XmlReader(Handler & handler) : m_Handler(handler)
  {
    XML_SetElementHandler(m_pParser, OnStart, OnEnd);
    XML_SetCharacterDataHandler(m_pParser, OnCharacters);
  }

 private:
  static XmlReader & From(void * self) { return *static_cast<XmlReader *>(static_cast<XmlParser *>(self)); }

  static void XMLCALL OnStart(void * self, char const * name, char const ** attributes)
  {
    XmlReader & reader = From(self);
    ++reader.m_nDepth;
    if (reader.m_nPassed != 0 && reader.m_nDepth <= mostDepth) return;
    try {
      if (reader.m_nDepth > mostDepth) FailAtDepth();
      char const * const own = reader.m_Handler.space.FindOwnName(name);
      if constexpr (requires { reader.m_Handler.PassForeign(); })
        if (own == nullptr) reader.m_Handler.PassForeign();
      if (own == nullptr || !reader.m_Handler.Start(own, XmlAttributes(attributes))) reader.m_nPassed = reader.m_nDepth;
    } catch (...) {
      reader.KeepException();
    }
  }

  static void XMLCALL OnEnd(void * self, char const *)
  {
    XmlReader & reader = From(self);
    unsigned int const depth = reader.m_nDepth--;
    if (reader.m_nPassed != 0) {
      if (reader.m_nPassed == depth) reader.m_nPassed = 0;
      return;
    }
    try {
      reader.m_Handler.End();
    } catch (...) {
      reader.KeepException();
    }
  }

  static void XMLCALL OnCharacters(void * self, char const * text, int length)
  {
    XmlReader & reader = From(self);
    if (reader.m_nPassed != 0) return;
    try {
      reader.m_Handler.Characters(std::string_view(text, static_cast<size_t>(length)));
    } catch (...) {
      reader.KeepException();
    }
  }

  Handler & m_Handler;
};

template <class Handler>
void ReadXml(PartStream part, Handler & handler)
{
  XmlReader<Handler>(handler).Read(part);
}

// Whether a part has an element of one of the names.
bool HasElement(PartStream part, XmlNamespace const & space, std::initializer_list<std::string_view> names);

}  // namespace embedded
