// Makes the zip archive of an .xlsx file in memory: the same bytes for the same parts, whenever and wherever.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace embedded {

class PackageWriter {
 public:
  // The parts follow one another in the archive as they are added. The name is used as it stands.
  void Add(std::string name, std::string content) { m_Parts.emplace_back(std::move(name), std::move(content)); }

  // The bytes of the archive, which have been read again: each part is in it whole. Throws BookFailure where that fails, also
  // because the archive has more parts or bytes than a reader takes. The parts are gone then.
  std::string Finish();

 private:
  std::string Pack() const;
  void Check(std::string const & packed) const;

  std::vector<std::pair<std::string, std::string>> m_Parts;
};

}  // namespace embedded
