// Reading shared texts.

#include "servers/embedded/shared_strings.h"

#include "servers/embedded/failure.h"
#include "servers/embedded/rich_text.h"

namespace embedded {
namespace {

// What the texts may take in memory for each byte of the file, and besides. Each stands there once, so they don't pack well.
constexpr uint64_t bytesForOne = 64;
constexpr uint64_t bytesForAny = 1u << 20;
constexpr uint64_t bytesAround = 24;  // a text

class StringsHandler {
 public:
  static constexpr XmlNamespace const & space = sheetNamespace;

  explicit StringsHandler(uint64_t mostBytes) : m_nMostBytes(mostBytes) {}

  bool Start(std::string_view name, XmlAttributes attributes)
  {
    switch (m_Where) {
      case Where::Outside:
        if (name != "sst") throw BookFailure("The part of shared texts holds something else");
        m_Where = Where::List;
        m_bPreserve = PreservesBlanks(attributes, false);
        return true;
      case Where::List:
        if (name != "si") return false;
        m_Where = Where::Text;
        m_Text.Begin(PreservesBlanks(attributes, m_bPreserve));
        return true;
      case Where::Text:
        break;
    }
    return m_Text.Start(name, attributes);
  }

  void End()
  {
    if (m_Where != Where::Text || m_Text.End()) return;
    m_Where = Where::List;
    std::string_view const text = m_Text.Get();
    m_nBytes += sizeof(SharedText) + (text.empty() ? 0 : text.size() + bytesAround);
    if (m_nBytes > m_nMostBytes) throw BookFailure("The file unpacks to more shared texts than one of its size may have");
    m_Texts.emplace_back(text);
    m_bFormats = m_bFormats || m_Text.HasFormats();
  }

  void Characters(std::string_view text)
  {
    if (m_Where == Where::Text) m_Text.Characters(text);
  }

  std::vector<SharedText> & GetTexts() { return m_Texts; }
  bool HasFormats() const { return m_bFormats; }

 private:
  enum class Where : unsigned char { Outside, List, Text };

  Where m_Where = Where::Outside;
  RichText m_Text;
  std::vector<SharedText> m_Texts;
  uint64_t m_nBytes = 0;
  uint64_t m_nMostBytes;
  bool m_bPreserve = false;
  bool m_bFormats = false;
};

}  // namespace

std::vector<SharedText> ReadSharedStrings(PartStream part, UnkeptList & unkept)
{
  StringsHandler handler(bytesForOne * part.GetPackage().GetPackedBytes() + bytesForAny);
  ReadXml(std::move(part), handler);
  if (handler.HasFormats()) unkept.Add(Unkept::RichTexts);
  return std::move(handler.GetTexts());
}

}  // namespace embedded
