// Reading relations.

#include "servers/embedded/relations.h"

#include <algorithm>

#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/package_names.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

class RelationsHandler {
 public:
  static constexpr XmlNamespace space = {"http://schemas.openxmlformats.org/package/2006/relationships|",
                                         "http://purl.oclc.org/ooxml/package/relationships|"};

  RelationsHandler(std::string const & part, std::vector<Relation> & relations) : m_strPart(part), m_Relations(relations) {}

  bool Start(std::string_view name, XmlAttributes attributes)
  {
    if (name == "Relationships") return true;
    if (name != "Relationship") return false;
    char const * const id = attributes.Find("Id");
    char const * const type = attributes.Find("Type");
    char const * const target = attributes.Find("Target");
    if (id == nullptr || type == nullptr || target == nullptr) return true;
    if (m_Relations.size() == mostParts) throw BookFailure("The file has more relations than a workbook may have");
    std::string_view const kind(type);
    bool const isOutside = attributes.Has("TargetMode", "External");
    m_Relations.push_back({id, std::string(kind.substr(kind.rfind('/') + 1)), isOutside ? "" : ResolveTarget(m_strPart, target)});
    return true;
  }
  void End() {}
  void Characters(std::string_view) {}

 private:
  std::string const & m_strPart;
  std::vector<Relation> & m_Relations;
};

template <class Test>
Relation const * find(std::vector<Relation> const & relations, Test test)
{
  auto const found = std::find_if(relations.begin(), relations.end(), test);
  return found == relations.end() ? nullptr : &*found;
}

}  // namespace

Relations::Relations(Package & package, std::string const & part)
{
  std::string const teller = RelationsOf(part);
  if (!package.Has(teller)) return;
  RelationsHandler handler(part, m_Relations);
  ReadXml(package.Open(teller, mostBookPartBytes), handler);
}

Relation const * Relations::FindById(std::string_view id) const
{
  return find(m_Relations, [&](Relation const & relation) { return relation.id == id; });
}

Relation const * Relations::FindByKind(std::string_view kind) const
{
  return find(m_Relations, [&](Relation const & relation) { return relation.kind == kind; });
}

}  // namespace embedded
