// Archives through libzip.

#include "servers/embedded/package.h"

#include <array>
#include <cstring>
#include <string_view>

#include <zip.h>

#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/package_names.h"

namespace embedded {
namespace {

constexpr std::string_view compoundMark = "\xD0\xCF\x11\xE0";  // of the older format, and of what is locked by a password

class ZipError {
 public:
  ZipError() { zip_error_init(&m_Error); }
  ~ZipError() { zip_error_fini(&m_Error); }
  ZipError(ZipError const &) = delete;
  ZipError & operator=(ZipError const &) = delete;

  zip_error_t * Get() { return &m_Error; }
  std::string GetText() { return zip_error_strerror(&m_Error); }

 private:
  zip_error_t m_Error = {};
};

struct SourceCloser {
  void operator()(zip_source_t * source) const { zip_source_free(source); }
};
using Source = std::unique_ptr<zip_source_t, SourceCloser>;

// The text is made in an error of our own: a source never frees the one that is made in its own.
std::string errorOf(zip_source_t * source)
{
  zip_error_t const * const error = zip_source_error(source);
  ZipError own;
  zip_error_set(own.Get(), zip_error_code_zip(error), zip_error_code_system(error));
  return own.GetText();
}

uint64_t sizeOf(zip_source_t * source)
{
  zip_stat_t state = {};
  zip_stat_init(&state);
  if (zip_source_stat(source, &state) != 0) throw BookFailure("The file can't be opened: " + errorOf(source));
  if ((state.valid & ZIP_STAT_SIZE) == 0) throw BookFailure("The file is no plain file");
  if (state.size > mostPackedBytes) throw BookFailure("The file has more bytes than a workbook may have");
  return state.size;
}

// Tells the files that people take for .xlsx files from damaged ones.
void checkMark(zip_source_t * source)
{
  if (zip_source_open(source) != 0) throw BookFailure("The file can't be opened: " + errorOf(source));
  std::array<char, compoundMark.size()> start = {};
  zip_int64_t const got = zip_source_read(source, start.data(), start.size());
  zip_source_close(source);
  if (got < 0) throw BookFailure("The file can't be read: " + errorOf(source));
  std::string_view const mark(start.data(), static_cast<size_t>(got));
  if (mark == compoundMark) throw BookFailure("The file is locked by a password, or it is one of the older format .xls");
  if (!mark.starts_with("PK")) throw BookFailure("The file is no .xlsx file: it is no zip archive");
}

}  // namespace

void PartStream::Closer::operator()(zip_file * file) const
{
  zip_fclose(file);
}

PartStream::PartStream(Package & package, std::string const & name, zip_file * file, uint64_t mostBytes)
    : m_Package(package), m_strName(name), m_pFile(file), m_nLeft(mostBytes)
{
}

size_t PartStream::Read(std::span<char> buffer)
{
  zip_int64_t const got = zip_fread(m_pFile.get(), buffer.data(), buffer.size());
  if (got < 0) {
    throw BookFailure("The part " + m_strName + " is damaged: " + zip_error_strerror(zip_file_get_error(m_pFile.get())));
  }
  auto const bytes = static_cast<uint64_t>(got);
  if (bytes > m_nLeft || bytes > m_Package.m_nLeft) {
    throw BookFailure("The part " + m_strName + " has more bytes than a workbook may have");
  }
  m_nLeft -= bytes;
  m_Package.m_nLeft -= bytes;
  return static_cast<size_t>(bytes);
}

void Package::Closer::operator()(zip * archive) const
{
  zip_discard(archive);
}

Package::Package(std::string const & path) : m_nLeft(mostUnpackedBytes)
{
  ZipError error;
  OpenArchive(zip_source_file_create(path.c_str(), 0, 0, error.Get()));
}

Package::Package(std::span<std::byte const> bytes) : m_nLeft(mostUnpackedBytes)
{
  ZipError error;
  OpenArchive(zip_source_buffer_create(bytes.data(), bytes.size(), 0, error.Get()));
}

void Package::OpenArchive(zip_source * source)
{
  Source owned(source);
  if (!owned) throw std::bad_alloc();
  m_nPacked = sizeOf(source);
  checkMark(source);
  ZipError error;
  m_pArchive.reset(zip_open_from_source(source, ZIP_RDONLY, error.Get()));
  if (!m_pArchive) throw BookFailure("The file is damaged: " + error.GetText());
  static_cast<void>(owned.release());  // it is the archive's now
  ListParts();
}

void Package::ListParts()
{
  zip_int64_t const entries = zip_get_num_entries(m_pArchive.get(), 0);
  if (static_cast<uint64_t>(entries) > mostParts) throw BookFailure("The file has more parts than a workbook may have");
  for (uint64_t i = 0; i < static_cast<uint64_t>(entries); ++i) {
    char const * const name = zip_get_name(m_pArchive.get(), i, 0);
    if (name == nullptr) throw BookFailure("The file is damaged: " + std::string(zip_strerror(m_pArchive.get())));
    std::string part = NormalizePart(name);
    if (part.empty() || part.back() == '/') continue;  // folders
    if (!m_Parts.try_emplace(std::move(part), i).second) {
      throw BookFailure("The file is damaged: it has two parts named " + NormalizePart(name));
    }
  }
}

PartStream Package::Open(std::string const & part, uint64_t mostBytes)
{
  uint64_t const index = m_Parts.at(part);
  zip_stat_t state = {};
  zip_stat_init(&state);
  if (zip_stat_index(m_pArchive.get(), index, 0, &state) == 0 && state.encryption_method != ZIP_EM_NONE) {
    throw BookFailure("The file is locked by a password");
  }
  zip_file_t * const file = zip_fopen_index(m_pArchive.get(), index, 0);
  if (file == nullptr) {
    throw BookFailure("The part " + part + " can't be read: " + std::string(zip_strerror(m_pArchive.get())));
  }
  return PartStream(*this, part, file, mostBytes);
}

}  // namespace embedded
