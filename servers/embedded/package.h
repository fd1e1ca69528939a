// The zip archive of an .xlsx file: its parts by name, read as streams to their checked ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>

struct zip;
struct zip_file;
struct zip_source;

namespace embedded {

class Package;

// A part that is being read. It doesn't outlive its package.
class PartStream {
 public:
  // The part's bytes in order, as many as are there up to the size of the buffer; 0 at the end, behind which the checksum is
  // known to be right. Throws BookFailure for a damaged part, and where a bound on unpacked bytes is passed.
  size_t Read(std::span<char> buffer);

  std::string const & GetName() const { return m_strName; }
  Package const & GetPackage() const { return m_Package; }

 private:
  friend class Package;
  struct Closer {
    void operator()(zip_file * file) const;
  };

  PartStream(Package & package, std::string const & name, zip_file * file, uint64_t mostBytes);

  Package & m_Package;
  std::string m_strName;
  std::unique_ptr<zip_file, Closer> m_pFile;
  uint64_t m_nLeft;
};

class Package {
 public:
  // The path is the host's; the bytes are borrowed as long as the package lives. Both throw BookFailure where there is no
  // archive, or one that can't be trusted: with a name twice, with parts that are locked, or beyond a bound.
  explicit Package(std::string const & path);
  explicit Package(std::span<std::byte const> bytes);

  bool Has(std::string const & part) const { return m_Parts.count(part) != 0; }

  uint64_t GetPackedBytes() const { return m_nPacked; }  // of the file

  // The names of all parts with their numbers in the archive.
  std::map<std::string, uint64_t> const & GetParts() const { return m_Parts; }

  // A part that is there, with at most so many bytes.
  PartStream Open(std::string const & part, uint64_t mostBytes);

 private:
  friend class PartStream;
  struct Closer {
    void operator()(zip * archive) const;
  };

  void OpenArchive(zip_source * source);
  void ListParts();

  std::unique_ptr<zip, Closer> m_pArchive;
  std::map<std::string, uint64_t> m_Parts;
  uint64_t m_nPacked = 0;
  uint64_t m_nLeft;  // bytes that may still be unpacked
};

}  // namespace embedded
