// Packing parts through libzip.

#include "servers/embedded/package_writer.h"

#include <array>
#include <memory>
#include <new>
#include <span>

#include <zip.h>

#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/package.h"
#include "servers/embedded/package_names.h"

namespace embedded {
namespace {

constexpr unsigned int packingLevel = 4;
constexpr unsigned int firstDay = 0x21;  // 1 January 1980, as an archive counts: no file tells when it was made

struct SourceCloser {
  void operator()(zip_source_t * source) const { zip_source_free(source); }
};
using Source = std::unique_ptr<zip_source_t, SourceCloser>;

struct ArchiveCloser {
  void operator()(zip_t * archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

[[noreturn]] void fail(char const * why)
{
  throw BookFailure("The workbook can't be packed: " + std::string(why));
}

Source makeSource(void const * bytes, size_t length)
{
  Source source(zip_source_buffer_create(bytes, length, 0, nullptr));
  if (!source) throw std::bad_alloc();
  return source;
}

// The content is borrowed until the archive is closed.
void addPart(zip_t * archive, std::string const & name, std::string const & content)
{
  Source source = makeSource(content.data(), content.size());
  zip_int64_t const index = zip_file_add(archive, name.c_str(), source.get(), ZIP_FL_ENC_UTF_8);
  if (index < 0) fail(zip_strerror(archive));
  static_cast<void>(source.release());
  auto const part = static_cast<zip_uint64_t>(index);
  if (zip_set_file_compression(archive, part, ZIP_CM_DEFLATE, packingLevel) != 0 ||
      zip_file_set_dostime(archive, part, 0, firstDay, 0) != 0) {
    fail(zip_strerror(archive));
  }
}

std::string readAll(zip_source_t * source)
{
  zip_stat_t state = {};
  zip_stat_init(&state);
  if (zip_source_stat(source, &state) != 0 || (state.valid & ZIP_STAT_SIZE) == 0 || zip_source_open(source) != 0) {
    fail("the archive can't be read back");
  }
  std::string bytes(state.size, '\0');
  zip_int64_t const got = zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  if (got < 0 || static_cast<zip_uint64_t>(got) != state.size) fail("the archive is shorter than it was told to be");
  return bytes;
}

}  // namespace

std::string PackageWriter::Pack() const
{
  Source const target = makeSource(nullptr, 0);
  zip_error_t error = {};
  zip_error_init(&error);
  Archive archive(zip_open_from_source(target.get(), ZIP_CREATE | ZIP_TRUNCATE, &error));
  zip_error_fini(&error);
  if (!archive) throw std::bad_alloc();
  zip_source_keep(target.get());  // one reference is the archive's
  for (auto const & [name, content] : m_Parts) addPart(archive.get(), name, content);
  if (zip_close(archive.get()) != 0) fail(zip_strerror(archive.get()));
  static_cast<void>(archive.release());
  return readAll(target.get());
}

void PackageWriter::Check(std::string const & packed) const
{
  Package package(std::as_bytes(std::span(packed)));
  std::string buffer(128 << 10, '\0');
  for (auto const & [name, content] : m_Parts) {
    std::string const part = NormalizePart(name);
    if (!package.Has(part)) fail("a part is missing in the archive");
    PartStream stream = package.Open(part, mostUnpackedBytes);
    size_t bytes = 0;
    while (size_t const got = stream.Read(buffer)) bytes += got;
    if (bytes != content.size()) fail("a part isn't whole in the archive");
  }
}

std::string PackageWriter::Finish()
{
  std::string packed = Pack();
  Check(packed);
  m_Parts.clear();
  return packed;
}

}  // namespace embedded
