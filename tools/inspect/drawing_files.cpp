// Metafiles, and drawings in DXF.

#include <array>
#include <memory>

#include <fmt/format.h>
#include <zpbase/platform/bytes.h>

#include "tools/drawing/dxf_report.h"
#include "tools/drawing/metafile_survey.h"
#include "tools/drawing/record_names.h"
#include "tools/inspect/each_line.h"
#include "tools/inspect/inspection.h"
#include "tools/program.h"
#include "tools/text/text_lines.h"

namespace {

constexpr unsigned long long placeableBytes = 22;
constexpr unsigned long long headerBytes = 18;
constexpr size_t recordHead = 6;  // its size in words, DWORD, and its function

BYTE const * at(std::string const & bytes, size_t offset)
{
  return reinterpret_cast<BYTE const *>(bytes.data()) + offset;
}

void addRecords(std::string const & bytes, bool isPlaceable, Inspection & found)
{
  if (isPlaceable) found.AddPart(placeableBytes, "placeable header");
  found.AddPart(headerBytes, "header");
  while (found.GetEnd() + recordHead <= bytes.size()) {
    auto const offset = static_cast<size_t>(found.GetEnd());
    unsigned long long const length = 2ULL * zp::ReadLittle<DWORD>(at(bytes, offset));
    WORD const function = zp::ReadLittle<WORD>(at(bytes, offset + 4));
    if (length < recordHead || length > bytes.size() - offset) return;
    found.AddPart(length, metafile::NameOf(function));
    if (function == META_EOF) break;
  }
  if (found.GetEnd() < bytes.size()) found.AddPart(bytes.size() - found.GetEnd(), "behind the end of the metafile");
}

// Pairs of lines from 0 and SECTION to 0 and ENDSEC.
void addSections(std::string_view text, Inspection & found)
{
  size_t length = 0;
  bool isValue = false;
  bool isName = false;
  std::string code;
  std::string name = "in front of the sections";
  auto const end = [&](std::string next) {
    found.AddPart(length, name);
    length = 0;
    name = std::move(next);
  };
  size_t codeBytes = 0;
  ForEachLine(text, [&](std::string_view line, size_t bytes) {
    std::string_view const word = TrimBlanks(line);
    if (!isValue) {
      code = word.substr(0, recordHead);
      codeBytes = bytes;
    } else if (code == "0" && (word == "SECTION" || word == "EOF")) {
      end(word == "EOF" ? "end mark" : "section");
      isName = word == "SECTION";
      length = codeBytes + bytes;
    } else {
      if (isName && code == "2") name = "section " + DxfShown(word);
      isName = false;
      length += codeBytes + bytes;
    }
    isValue = !isValue;
  });
  if (isValue) length += codeBytes;
  end("");
}

// The value behind the variable's name and its group code; empty if it isn't near the begin.
std::string versionOf(std::string_view head)
{
  constexpr std::string_view variable = "$ACADVER";
  constexpr std::string_view family = "AC";
  constexpr size_t versionBytes = 6;
  size_t const name = head.find(variable);
  size_t const value = name == std::string_view::npos ? name : head.find(family, name + variable.size());
  return value == std::string_view::npos ? "" : std::string(TrimBlanks(head.substr(value, versionBytes)));
}

bool beginsAsDrawing(std::string_view head)
{
  std::array<std::string_view, 2> first;
  size_t lines = 0;
  ForEachLine(head.substr(0, 200), [&](std::string_view line, size_t) {
    if (lines < first.size()) first[lines++] = TrimBlanks(line);
  });
  return first[0] == "999" || (first[0] == "0" && first[1] == "SECTION");
}

}  // namespace

bool IsMetafile(InspectedFile & file, Inspection & found)
{
  if (file.IsText() || !file.CanBeRead()) return false;
  struct Deleter {
    void operator()(HMETAFILE metafile) const { DeleteMetaFile(metafile); }
  };
  std::unique_ptr<HMETAFILE__, Deleter> const metafile(GetMetaFile(InsidePath(file.GetName())));
  if (metafile == nullptr) {
    found.isNot.emplace_back("no metafile: it begins with neither form of header");
    return false;
  }
  zp::MetaFileFacts const facts = zp::GetMetaFileFacts(metafile.get());
  MetafileSurvey const survey(metafile.get());
  RECT const bounds = survey.GetBounds();
  found.kind = facts.placeable ? "Windows metafile with a placeable header" : "Windows metafile";
  found.version = fmt::format("{:x}.{:x}", facts.header.mtVersion >> 8, facts.header.mtVersion & 0xFF);
  found.holds.push_back(fmt::format("{} of {}; {} to {} by {} to {}", Counted(survey.GetRecords(), "record"),
                                    Counted(survey.GetCounts().size(), "kind"), bounds.left, bounds.right, bounds.top,
                                    bounds.bottom));
  if (!survey.IsWhole()) found.AddFault("it ends inside of a record");
  if (file.WantsParts()) addRecords(file.GetBytes(), facts.placeable, found);
  found.GoOn("zp dxf % DRAWING.dxf");
  return true;
}

bool IsDrawing(InspectedFile & file, Inspection & found)
{
  if (!file.IsText() || !beginsAsDrawing(file.GetHead())) return false;
  DxfInspection const inspection(file.GetName());
  found.version = versionOf(file.GetHead());
  bool const isOurs = inspection.IsSound();
  found.kind = isOurs ? "drawing in DXF, as zp dxf writes it" : "drawing in DXF, but none as zp dxf writes it";
  found.holds.push_back(fmt::format("{} of text, {}", Counted(inspection.GetLines(), "line"), inspection.Counts()));
  auto const problems = inspection.ProblemsAsJson();
  for (auto const & problem : problems) {
    found.AddFault(fmt::format("line {}: {}", problem["line"].get<unsigned long long>(), problem["text"].get<std::string>()));
  }
  found.faultCount = inspection.GetProblemCount();
  if (file.WantsParts() && file.CanBeRead()) addSections(file.GetBytes(), found);
  found.GoOn("zp dxf --check % --svg PICTURE.svg");
  return true;
}
