// The two files of a record store.

#include <algorithm>
#include <optional>

#include <fmt/format.h>
#include <zpbase/store.h>

#include "tools/host_file.h"
#include "tools/inspect/inspection.h"
#include "tools/program.h"
#include "tools/records/payload.h"
#include "tools/store/block_survey.h"
#include "tools/store/index_reader.h"
#include "tools/store/layout_svg.h"
#include "tools/store/open_store.h"
#include "tools/store/store_check.h"
#include "tools/store/store_names.h"

namespace {

constexpr char const * indexKind = "index file of a record store";
constexpr char const * recordKind = "record file of a record store";

// The store of which the name is a file by its extension.
std::optional<StoreNames> storeByName(std::string const & name)
{
  try {
    return ResolveStore(name, "");
  } catch (Failure const &) {
    return std::nullopt;
  }
}

std::span<BYTE const> bytesOf(std::string_view text)
{
  return {reinterpret_cast<BYTE const *>(text.data()), text.size()};
}

// The faults of this file as a check of the whole store finds them, and a word on the other one, which must be there. Tells
// whether the store is sound.
bool checkStore(StoreNames const & names, Inspection & found)
{
  bool const isIndex = found.file == names.index;
  std::string const & other = isIndex ? names.record : names.index;
  if (!IsRegularFile(other)) {
    found.AddFault(fmt::format("there is no {} beside it", other));
    return false;
  }
  found.holds.push_back("its other file is " + other);
  try {
    OpenStore store(names, StoreAccess::Look);
    CheckReport const report = CheckStore(store);
    for (StoreFault const & fault : report.faults) {
      if (fault.file == found.file) found.AddFault((fault.offset < 0 ? "" : fmt::format("at {}: ", fault.offset)) + fault.text);
    }
    if (report.faultCount > 0 && found.faultCount == 0) found.holds.back() += ", which is broken";
    if (report.faultCount > report.faults.size()) found.faultCount += report.faultCount - report.faults.size();
    for (std::string const & note : report.notes) found.holds.push_back("note: " + note);
    return report.faultCount == 0;
  } catch (Failure const & failure) {
    found.AddFault(failure.what());
    return false;
  }
}

void goOnWithStore(Inspection & found, bool isSound)
{
  if (isSound && found.faultCount == 0) return found.GoOn("zp store list %");
  found.GoOn("zp store check %");
  found.GoOn("zp store recover % --list");
}

bool beginsAsIndex(std::string_view head)
{
  constexpr std::string_view nullHeader("\0\0", 2);
  if (head.starts_with(nullHeader)) return NamedClass(bytesOf(head.substr(nullHeader.size()))) == "GPObArray";
  return !NamedClass(bytesOf(head)).empty();
}

std::string classOf(CObject const * object)
{
  return object != nullptr ? object->GetRuntimeClass()->m_lpszClassName : "null";
}

void tellIndex(StoreIndex const & index, InspectedFile const & file, Inspection & found)
{
  found.kind = indexKind;
  found.version = "archive of schema 1";
  unsigned long long bytes = 0;
  for (LiveEntry const & entry : index.live) bytes += entry.length;
  if (index.isHeaderRead) found.holds.push_back("header object: " + classOf(index.header.get()));
  found.holds.push_back(fmt::format("{} of {}, {}", Counted(index.live.size(), "record"), Counted(bytes, "byte"),
                                    Counted(index.free.size(), "free block")));
  if (!file.WantsParts()) return;
  std::string const what[] = {"header object, " + classOf(index.header.get()), "table of " + Counted(index.live.size(), "record"),
                              "list of " + Counted(index.free.size(), "free block")};
  for (size_t i = 0; i < index.partEnds.size(); ++i) found.AddPart(index.partEnds[i] - found.GetEnd(), what[i]);
}

void tellRecords(Survey const & survey, InspectedFile const & file, Inspection & found)
{
  StoreLayout const layout = LayoutOf(survey);
  found.kind = recordKind;
  found.holds.push_back(fmt::format("{}, {}; {} of them live", Counted(layout.records, "record"),
                                    Counted(layout.freeBlocks, "free block"),
                                    Counted(layout.totals[static_cast<size_t>(AreaKind::Live)], "byte")));
  if (!file.WantsParts()) return;
  auto block = survey.blocks.begin();
  for (LayoutArea const & area : layout.areas) {
    while (block != survey.blocks.end() && std::next(block) != survey.blocks.end() &&
           std::next(block)->block.position <= area.start)
      ++block;
    constexpr char const * what[] = {"header of record", "record", "slack behind record", "free block, once record", ""};
    found.AddPart(area.bytes, area.kind == AreaKind::Unreadable || block == survey.blocks.end()
                                  ? "unreadable"
                                  : fmt::format("{} {}", what[static_cast<size_t>(area.kind)], block->block.id));
  }
}

bool isIndexAsRead(StoreIndex const & index)
{
  return index.state == StoreIndex::Sound || (index.isHeaderRead && !index.live.empty());
}

}  // namespace

bool IsStoreByName(InspectedFile & file, Inspection & found)
{
  std::optional<StoreNames> const names = storeByName(file.GetName());
  if (!names || (names->index != file.GetName() && names->record != file.GetName())) return false;
  bool const isIndex = names->index == file.GetName();
  std::string problem;  // of an index that is damaged
  if (file.GetSize() == 0) {
    found.kind = isIndex ? indexKind : recordKind;
    found.holds.emplace_back("nothing: the file is empty");
  } else if (isIndex) {
    if (!beginsAsIndex(file.GetHead()) || !file.CanBeRead()) return false;
    StoreIndex const index = ReadIndex(file.GetName());
    tellIndex(index, file, found);
    if (index.state == StoreIndex::Damaged) problem = index.problem;
  } else {
    if (file.IsText()) return false;
    tellRecords(SurveyRecordFile(file.GetFile(), IsRegularFile(names->index) ? ReadIndex(names->index) : StoreIndex()), file,
                found);
  }
  bool const isSound = checkStore(*names, found);
  if (!problem.empty() && found.faultCount == 0) found.AddFault(problem);
  goOnWithStore(found, isSound);
  return true;
}

bool IsIndexFile(InspectedFile & file, Inspection & found)
{
  if (!beginsAsIndex(file.GetHead()) || !file.CanBeRead()) return false;
  StoreIndex const index = ReadIndex(file.GetName());
  if (!isIndexAsRead(index)) {
    found.isNot.push_back("no index file: " + index.problem);
    return false;
  }
  tellIndex(index, file, found);
  if (index.state != StoreIndex::Sound) found.AddFault(index.problem);
  found.GoOn("zp store list % --record ITS-RECORD-FILE");
  return true;
}

// A chain of blocks that ends with the file is no chance.
bool IsRecordFile(InspectedFile & file, Inspection & found)
{
  zp::BlockChain chain(file.GetFile());
  size_t blocks = 0;
  bool hasHole = false;
  for (zp::RecordBlock block; !hasHole && chain.Next(block); ++blocks)
    hasHole = block.length == 0 || block.length > block.capacity;
  if (hasHole || blocks == 0 || chain.GetState() != zp::BlockChain::State::AtEnd) {
    found.isNot.emplace_back("no record file: its chain of blocks doesn't lead to its end");
    return false;
  }
  tellRecords(SurveyRecordFile(file.GetFile(), StoreIndex()), file, found);
  found.GoOn("zp store recover ITS-INDEX-FILE --record % --list");
  return true;
}
