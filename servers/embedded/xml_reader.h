// Streams the XML of a part to a handler: the elements of the namespaces that it knows, with what stands in them. What belongs to
// other namespaces is passed over with all that is in it. Declarations of document types are refused, and with them entities.
#pragma once

#include <cstring>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>

#include "servers/embedded/limits.h"
#include "servers/embedded/package.h"
#include "servers/embedded/plain_xml.h"

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

  // Whether it has that identifier, which stands without a bar; null is none.
  bool Is(char const * identifier) const
  {
    return identifier != nullptr &&
           (transitional.substr(0, transitional.size() - 1) == identifier || strict.substr(0, strict.size() - 1) == identifier);
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

// The bytes of a part in a block that is filled again behind what is left of it.
class PartBuffer {
 public:
  explicit PartBuffer(PartStream & part);

  // Reads on, up to the block's end. False where the part has ended.
  bool Fill();

  std::span<char> GetRest() { return std::span(m_Block).subspan(m_nBegin, m_nEnd - m_nBegin); }
  void Drop(size_t count) { m_nBegin += count; }

  // Whether reading on would bring more.
  bool CanGrow() const { return !m_bEnd && m_nEnd - m_nBegin < m_Block.size(); }

 private:
  PartStream & m_Part;
  std::vector<char> m_Block;
  size_t m_nBegin = 0;
  size_t m_nEnd = 0;
  bool m_bEnd = false;
};

// What the readers of all parts share: expat, its bounds, and the way of exceptions around it.
class XmlParser {
 public:
  XmlParser();
  ~XmlParser();
  XmlParser(XmlParser const &) = delete;
  XmlParser & operator=(XmlParser const &) = delete;

 protected:
  static constexpr unsigned int passesAll = ~0U;

  void ReadAll(PartStream & part);

  // Has the parser tell what IsBetweenElements has to know. The namespace is borrowed.
  void WatchPlain(XmlNamespace const & space);

  // Of the part that is being read; none for its end.
  void Feed(PartStream const & part, std::span<char const> bytes);

  // Counts what is read past the parser.
  void Pass(std::string_view bytes);

  // Whether an element may begin where the parser stands, one of that namespace if it has no prefix.
  bool IsBetweenElements() const;

  // Ends the reading with the exception that is being handled.
  void KeepException();

  XML_Parser m_pParser;
  unsigned int m_nDepth = 0;
  unsigned int m_nPassed = 0;  // the depth of the element that is passed over; 0 outside one

 private:
  static XmlParser & From(void * self) { return *static_cast<XmlParser *>(self); }
  static void XMLCALL OnDoctype(void * self, char const *, char const *, char const *, int);
  static void XMLCALL OnNamespace(void * self, char const * prefix, char const * identifier);
  static void XMLCALL OnNamespaceEnd(void * self, char const * prefix);
  static void XMLCALL OnSection(void * self) { From(self).m_bSection = true; }

  void CheckFed(PartStream const & part, XML_Status status, size_t bytes);
  uint64_t CountTold() const;
  [[noreturn]] void Fail(PartStream const & part) const;

  std::exception_ptr m_Exception;
  uint64_t m_nFed = 0;
  uint64_t m_nLinesPast = 0;  // that the parser hasn't seen
  XmlNamespace const * m_pSpace = nullptr;
  std::vector<bool> m_Known;  // for each default namespace that is declared here, whether it is that one
  bool m_bSection = false;
};

[[noreturn]] void FailAtDepth();

// Handler has an XmlNamespace `space` and members
//   bool Start(std::string_view name, XmlAttributes attributes)   false to pass over the element with all that is in it
//   void End()                                                   of the last element that was started and isn't over
//   void Characters(std::string_view text)                       a piece of what stands in that element
// and, if it wants to know of them,
//   void PassForeign()                                           before an element of another namespace is passed over
// and, if it has many plain elements in one place,
//   std::string_view plainTag                                    how their tags begin, such as "<row"
//   bool TakesPlain() const                                      whether it is at that place
template <class Handler>
class XmlReader : public XmlParser {
 public:
  // The handler is borrowed as long as the reader lives.
  explicit XmlReader(Handler & handler) : m_Handler(handler)
  {
    XML_SetElementHandler(m_pParser, OnStart, OnEnd);
    XML_SetCharacterDataHandler(m_pParser, OnCharacters);
  }

  // Gives the part to the handler to its end. Throws what the handler throws, and BookFailure for what is no XML or passes a
  // bound.
  void Read(PartStream & part)
  {
    if constexpr (requires { m_Handler.TakesPlain(); })
      ReadMixed(part);
    else
      ReadAll(part);
  }

 private:
  static XmlReader & From(void * self) { return *static_cast<XmlReader *>(static_cast<XmlParser *>(self)); }

  template <class Call>
  static void Guarded(void * self, Call call)
  {
    XmlReader & reader = From(self);
    try {
      call(reader);
    } catch (...) {
      reader.KeepException();
    }
  }

  static void XMLCALL OnStart(void * self, char const * name, char const ** attributes)
  {
    Guarded(self, [&](XmlReader & reader) {
      char const * const own = reader.m_Handler.space.FindOwnName(name);
      reader.Start(own != nullptr ? std::string_view(own) : std::string_view(), attributes);
    });
  }

  static void XMLCALL OnEnd(void * self, char const *)
  {
    Guarded(self, [](XmlReader & reader) { reader.End(); });
  }

  static void XMLCALL OnCharacters(void * self, char const * text, int length)
  {
    Guarded(self, [&](XmlReader & reader) { reader.Characters({text, static_cast<size_t>(length)}); });
  }

  // An element of another namespace has no name.
  void Start(std::string_view own, char const ** attributes)
  {
    ++m_nDepth;
    if (m_nPassed != 0 && m_nDepth <= mostDepth) return;
    if (m_nDepth > mostDepth) FailAtDepth();
    if (!own.empty() && m_Handler.Start(own, XmlAttributes(attributes))) return;
    if constexpr (requires { m_Handler.PassForeign(); })
      if (own.empty()) m_Handler.PassForeign();
    m_nPassed = m_nDepth;
  }

  void End()
  {
    unsigned int const depth = m_nDepth--;
    if (m_nPassed == 0)
      m_Handler.End();
    else if (m_nPassed == depth)
      m_nPassed = 0;
  }

  void Characters(std::string_view text)
  {
    if (m_nPassed == 0) m_Handler.Characters(text);
  }

  // Plain elements don't go through the parser, which takes several times as long for them.
  void ReadMixed(PartStream & part)
  {
    WatchPlain(m_Handler.space);
    PartBuffer buffer(part);
    while (buffer.Fill() || !buffer.GetRest().empty()) {
      while (!buffer.GetRest().empty() && TakeSome(part, buffer)) {
      }
    }
    Feed(part, {});
  }

  // False if more has to be read first.
  bool TakeSome(PartStream const & part, PartBuffer & buffer)
  {
    std::span<char> const rest = buffer.GetRest();
    size_t length = 0;
    if (m_nPassed == 0 && m_Handler.TakesPlain() && IsBetweenElements()) {
      PlainElement::Found const found = m_Plain.Scan(rest);
      if (found == PlainElement::Found::Cut && buffer.CanGrow()) return false;
      if (found == PlainElement::Found::Whole) length = m_Plain.GetLength();
    }
    std::string_view const bytes(rest.data(), rest.size());
    if (length > 0)
      TakePlain(bytes.substr(0, length));
    else
      Feed(part, rest.first(length = std::min(bytes.find(Handler::plainTag, 1), bytes.size())));
    buffer.Drop(length);
    return true;
  }

  void TakePlain(std::string_view bytes)
  {
    Pass(bytes);
    m_Plain.Replay([this](std::string_view name, char const ** attributes) { Start(name, attributes); },
                   [this](std::string_view text) { Characters(text); }, [this] { End(); });
  }

  Handler & m_Handler;
  PlainElement m_Plain;
};

template <class Handler>
void ReadXml(PartStream part, Handler & handler)
{
  XmlReader<Handler>(handler).Read(part);
}

// Whether a part has an element of one of the names.
bool HasElement(PartStream part, XmlNamespace const & space, std::initializer_list<std::string_view> names);

}  // namespace embedded
