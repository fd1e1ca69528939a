// Elements so plain that they need no parser: ASCII alone, no prefixes, entities, comments or sections, attributes between double
// quotes. Such are the rows of most sheets. Everything else is left to expat, which decides what is well-formed.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace embedded {

class PlainElement {
 public:
  enum class Found { Whole, Cut, Other };

  // Looks for such an element, with blanks in front of it, where the bytes begin. Cut: they end before it does. The bytes stay as
  // they are until Replay, and have to stay where they are.
  Found Scan(std::span<char> bytes);

  // Of a whole one with the blanks in front of it.
  size_t GetLength() const { return static_cast<size_t>(m_pAt - m_pBegin); }

  // Calls start(name, attributes as expat lists them), text(text) and end() for all that is in a whole one, and puts zeros behind
  // names and values of attributes.
  template <class Start, class Text, class End>
  void Replay(Start start, Text text, End end);

 private:
  enum class Kind : unsigned char { Start, Text, End };

  struct Step {
    std::string_view text;
    size_t attributes;  // where they begin
    Kind kind;
  };

  bool ScanAll();
  bool ScanTag();
  bool ScanStart();
  bool ScanAttributes();
  bool ScanAttribute();
  bool ScanEnd();
  void ScanText();

  std::string_view TakeRun(unsigned char kind);
  bool Take(char c);
  bool IsAt(char c) const { return m_pAt != m_pEnd && *m_pAt == c; }
  bool Fail();

  char * m_pBegin = nullptr;
  char * m_pAt = nullptr;
  char * m_pEnd = nullptr;
  Found m_Found = Found::Other;
  std::vector<Step> m_Steps;
  std::vector<std::string_view> m_Open;
  std::vector<std::string_view> m_Names;   // of the attributes
  std::vector<char const *> m_Attributes;  // as expat lists them
  std::vector<char *> m_Ends;              // of their names and values
};

template <class Start, class Text, class End>
void PlainElement::Replay(Start start, Text text, End end)
{
  for (char * const each : m_Ends) *each = '\0';
  for (Step const & step : m_Steps) {
    switch (step.kind) {
      case Kind::Start:
        start(step.text, m_Attributes.data() + step.attributes);
        break;
      case Kind::Text:
        text(step.text);
        break;
      case Kind::End:
        end();
        break;
    }
  }
}

}  // namespace embedded
