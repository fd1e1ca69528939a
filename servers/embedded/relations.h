// What the parts of a package lead to.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "servers/embedded/package.h"

namespace embedded {

struct Relation {
  std::string id;
  std::string kind;    // the last step of its type, such as "worksheet": the same in transitional and strict files
  std::string target;  // the name of a part, whether it is there or not; empty for what lies outside the package
};

class Relations {
 public:
  // Those of a part, or of the package for an empty name. None where no part tells any.
  Relations(Package & package, std::string const & part);

  // Null where there is none. Borrowed from this object.
  Relation const * FindById(std::string_view id) const;
  Relation const * FindByKind(std::string_view kind) const;

  std::vector<Relation> const & GetAll() const { return m_Relations; }

 private:
  std::vector<Relation> m_Relations;
};

}  // namespace embedded
