// Workbooks: zip archives with a workbook's parts in them.

#include <algorithm>

#include <fmt/format.h>
#include <zpbase/platform/bytes.h>

#include "tools/inspect/inspection.h"
#include "tools/program.h"

namespace {

// A zip archive ends with a record that tells where the list of its entries stands:
//
//   end     PK 05 06; offset 10 count, WORD; 12 bytes of the list, DWORD; 16 its offset, DWORD; 20 length of a comment, WORD
//   entry   PK 01 02; offset 28 lengths of name, extra field and comment, WORDs; 42 offset of the file, DWORD; 46 the name
constexpr std::string_view endMark = "PK\x05\x06";
constexpr std::string_view entryMark = "PK\x01\x02";
constexpr size_t endBytes = 22;
constexpr size_t entryBytes = 46;
constexpr size_t longestComment = 0xFFFF;

struct Entry {
  unsigned long long offset;
  std::string name;
};

struct Listing {
  std::vector<Entry> entries;  // in ascending offset
  unsigned long long start = 0;
  unsigned long long end = 0;  // where the record at the end stands
};

template <class Number>
Number numberAt(std::string_view bytes, size_t offset)
{
  return zp::ReadLittle<Number>(reinterpret_cast<BYTE const *>(bytes.data()) + offset);
}

// What is wrong; empty for nothing.
std::string readListing(InspectedFile const & file, Listing & listing)
{
  size_t const reach = static_cast<size_t>(std::min<unsigned long long>(file.GetSize(), endBytes + longestComment));
  std::string const tail = file.Read(file.GetSize() - reach, reach);
  size_t const at = tail.rfind(endMark);
  if (at == std::string::npos || tail.size() - at < endBytes) return "the list of its parts is missing; it was cut";
  listing.end = file.GetSize() - reach + at;
  listing.start = numberAt<DWORD>(tail, at + 16);
  size_t const listBytes = numberAt<DWORD>(tail, at + 12);
  if (listing.start + listBytes > listing.end) return "the list of its parts isn't where it should be";
  std::string const list = file.Read(listing.start, listBytes);
  for (std::string_view rest = list; !rest.empty();) {
    if (rest.size() < entryBytes || !rest.starts_with(entryMark)) return "the list of its parts is damaged";
    size_t const nameBytes = numberAt<WORD>(rest, 28);
    size_t const length = entryBytes + nameBytes + numberAt<WORD>(rest, 30) + numberAt<WORD>(rest, 32);
    if (length > rest.size()) return "the list of its parts is damaged";
    listing.entries.push_back({numberAt<DWORD>(rest, 42), std::string(rest.substr(entryBytes, nameBytes))});
    rest.remove_prefix(length);
  }
  std::ranges::sort(listing.entries, {}, &Entry::offset);
  return "";
}

void addParts(Listing const & listing, unsigned long long size, Inspection & found)
{
  for (size_t i = 0; i < listing.entries.size(); ++i) {
    bool const isLast = i + 1 == listing.entries.size();
    unsigned long long const next = std::min(isLast ? listing.start : listing.entries[i + 1].offset, listing.start);
    if (listing.entries[i].offset > found.GetEnd())
      found.AddPart(std::min(listing.entries[i].offset, next) - found.GetEnd(), "between parts");
    if (next > found.GetEnd()) found.AddPart(next - found.GetEnd(), listing.entries[i].name);
  }
  if (listing.start > found.GetEnd()) found.AddPart(listing.start - found.GetEnd(), "between parts");
  found.AddPart(listing.end - found.GetEnd(), "list of the parts");
  found.AddPart(size - found.GetEnd(), "end of the list");
}

bool isSheet(Entry const & entry)
{
  return entry.name.starts_with("xl/worksheets/") && entry.name.ends_with(".xml");
}

}  // namespace

bool IsWorkbook(InspectedFile & file, Inspection & found)
{
  if (!file.GetHead().starts_with("PK\x03\x04")) return false;
  Listing listing;
  std::string const wrong = readListing(file, listing);
  bool const isBook = std::ranges::any_of(listing.entries, [](Entry const & entry) { return entry.name == "xl/workbook.xml"; }) ||
                      file.GetHead().find("xl/") != std::string_view::npos;
  if (!isBook) return false;
  auto const sheets = static_cast<size_t>(std::ranges::count_if(listing.entries, isSheet));
  found.kind = "workbook (.xlsx)";
  found.holds.push_back(fmt::format("{}, {}", Counted(listing.entries.size(), "part"), Counted(sheets, "worksheet")));
  if (!wrong.empty()) found.AddFault(wrong);
  if (wrong.empty() && file.WantsParts()) addParts(listing, file.GetSize(), found);
  found.GoOn("zp sheet list %");
  return true;
}
