// Archives: objects with their class, reports, and objects in files of their own, which have their fields alone.

#include <array>
#include <memory>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/foundation.h>
#include <zpbase/numeric.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/archive_parts.h>
#include <zpbase/platform/collections.h>

#include "tools/inspect/inspection.h"
#include "tools/program.h"
#include "tools/records/data_ids.h"
#include "tools/records/message_catcher.h"
#include "tools/records/object_tree.h"
#include "tools/records/payload.h"

namespace {

std::span<BYTE const> bytesOf(std::string const & text)
{
  return {reinterpret_cast<BYTE const *>(text.data()), text.size()};
}

// An archive over bytes, and how many of them were read.
class BytesReader {
 public:
  explicit BytesReader(std::string const & bytes)
      : m_File(const_cast<BYTE *>(bytesOf(bytes).data()), static_cast<UINT>(bytes.size())), m_Archive(&m_File, CArchive::load)
  {
  }

  CArchive & GetArchive() { return m_Archive; }

  unsigned long long GetOffset()
  {
    m_Archive.Flush();
    return m_File.GetPosition();
  }

 private:
  CMemFile m_File;
  CArchive m_Archive;
};

// Whether read takes all bytes and raises nothing.
template <class Read>
bool takesAll(std::string const & bytes, Read const & read)
{
  MessageCatcher const catcher;
  BytesReader reader(bytes);
  try {
    read(reader);
    return reader.GetOffset() == bytes.size() && catcher.GetMessage().empty();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return false;
  }
}

std::string told(CObject const * object)
{
  if (object == nullptr) return "null";
  std::string name = object->GetRuntimeClass()->m_lpszClassName;
  if (!object->IsKindOf(RUNTIME_CLASS(GPData))) return name;
  unsigned int const id = static_cast<GPData const *>(object)->GetDataID();
  DataMeaning const * const meaning = FindDataMeaning(id);
  return fmt::format("{} {}{}{}", name, id, meaning != nullptr ? ", " : "", meaning != nullptr ? meaning->label : "");
}

// The fields of a container of objects, part by part; the result is the count of elements. References to an element that was
// read before are allowed.
size_t readElements(BytesReader & reader, Inspection & found, bool wantsParts)
{
  DWORD const count = reader.GetArchive().ReadCount();
  constexpr ULONGLONG tagBytes = 2;
  reader.GetArchive().RequireBytes(count * tagBytes);
  auto const add = [&](std::string what) {
    if (wantsParts) found.AddPart(reader.GetOffset() - found.GetEnd(), std::move(what));
  };
  add("count of elements");
  std::vector<std::unique_ptr<CObject>> elements;
  for (DWORD i = 0; i < count; ++i) {
    bool isReference = false;
    CObject * const element = reader.GetArchive().ReadOwnedElement(nullptr, isReference);
    if (!isReference) elements.emplace_back(element);
    add(fmt::format("element {}: {}", i, isReference ? "a reference" : told(element)));
  }
  return count;
}

bool isContainer(std::string_view name)
{
  constexpr std::array<std::string_view, 4> containers = {"GPObArray", "GPDataArray", "GPObList", "GPDataList"};
  return std::ranges::find(containers, name) != containers.end();
}

void addArchiveParts(std::string const & bytes, std::string const & className, Inspection & found)
{
  constexpr unsigned long long tagBytes = 6;
  found.AddPart(tagBytes + className.size(), "class " + className + ", schema and tag");
  if (isContainer(className)) {
    takesAll(bytes, [&](BytesReader & reader) {
      zp::ArchiveParts parts(reader.GetArchive());
      parts.ReadClass(nullptr);
      parts.MapObjects(1);
      readElements(reader, found, true);
    });
  }
  if (found.GetEnd() < bytes.size()) found.AddPart(bytes.size() - found.GetEnd(), "fields of the object");
}

struct NumberClass {
  char const * name;
  std::unique_ptr<CObject> (*make)();
};

template <class Class>
std::unique_ptr<CObject> make()
{
  return std::make_unique<Class>();
}

constexpr NumberClass numberClasses[] = {{"GPVector", make<GPVector>},
                                         {"GPMatrix", make<GPMatrix>},
                                         {"GPIntVector", make<GPIntVector>},
                                         {"GPBOOLVector", make<GPBOOLVector>},
                                         {"GPUIntArray", make<GPUIntArray>}};

}  // namespace

bool IsArchive(InspectedFile & file, Inspection & found)
{
  std::string const head(file.GetHead());
  std::string const name(NamedClass(bytesOf(head)));
  if (name.empty()) {
    found.isNot.emplace_back("no archive: it doesn't begin with an object and its class");
    return false;
  }
  if (!file.CanBeRead()) return false;
  std::string const & bytes = file.GetBytes();
  Payload const payload = DecodePayload(bytesOf(bytes));
  found.kind = "archive of one object";
  found.version = fmt::format("schema {}", static_cast<unsigned char>(bytes[2]) + 256 * static_cast<unsigned char>(bytes[3]));
  found.holds.push_back(name + (payload.state == Payload::Unknown ? ", a class that isn't known here" : ""));
  if (payload.state == Payload::Object) {
    std::string const text = FirstText(*payload.object);
    if (!text.empty()) found.holds.push_back("first text: " + text);
    found.GoOn("zp store put STORE ID %");
  } else if (payload.state == Payload::Damaged) {
    found.AddFault(payload.problem);
  }
  if (file.WantsParts()) addArchiveParts(bytes, name, found);
  return true;
}

// Lines as a report document streams them, and the items of its base.
bool IsReport(InspectedFile & file, Inspection & found)
{
  if (!file.CanBeRead()) return false;
  std::string const & bytes = file.GetBytes();
  CStringArray lines;
  unsigned long long linesEnd = 0;
  bool const isReport = takesAll(bytes, [&](BytesReader & reader) {
    lines.Serialize(reader.GetArchive());
    linesEnd = reader.GetOffset();
    DWORD const items = reader.GetArchive().ReadCount();
    if (items > 0) AfxThrowArchiveException(CArchiveException::badClass);
  });
  if (!isReport || lines.GetSize() == 0) {
    found.isNot.emplace_back("no report: it isn't counted lines with their lengths");
    return false;
  }
  found.kind = "saved report document";
  found.holds.push_back(Counted(static_cast<size_t>(lines.GetSize()), "line"));
  if (!file.WantsParts()) return true;
  found.AddPart(linesEnd, "count of lines, and each with its length");
  found.AddPart(bytes.size() - linesEnd, "count of items");
  return true;
}

// Nothing in such a file says what it is: it is what takes it all to the last byte.
bool IsObjectFile(InspectedFile & file, Inspection & found)
{
  if (!file.CanBeRead()) return false;
  std::string const & bytes = file.GetBytes();
  size_t count = 0;
  if (takesAll(bytes, [&](BytesReader & reader) { count = readElements(reader, found, file.WantsParts()); }) && count > 0) {
    found.kind = "object file: the fields of an array or list of objects";
    found.holds.push_back(Counted(count, "element"));
    return true;
  }
  found.parts.clear();
  for (NumberClass const & each : numberClasses) {
    std::unique_ptr<CObject> const object = each.make();
    if (!takesAll(bytes, [&](BytesReader & reader) { object->Serialize(reader.GetArchive()); })) continue;
    found.kind = fmt::format("object file: by its length the fields of a {}", each.name);
    if (file.WantsParts()) found.AddPart(bytes.size(), fmt::format("fields of a {}", each.name));
    return true;
  }
  found.isNot.emplace_back("no object file: no container's fields take it to its last byte");
  return false;
}
