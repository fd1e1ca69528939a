// Reading a DXF drawing back: its sections and tables, and the names that its entities rest on.

#include "tools/drawing/dxf_reader.h"

#include <cmath>
#include <numeric>

#include <fmt/format.h>

namespace {

constexpr size_t mostNames = 1000;  // of line types, layers or sections
constexpr size_t mostPieces = 32;   // of a line type's pattern
constexpr size_t longestName = 255;
constexpr double lengthError = 0.01;

constexpr std::string_view dialect = "AC1009";

}  // namespace

unsigned long long DxfReader::GetEntities() const
{
  return std::accumulate(m_Counts.begin(), m_Counts.end(), 0ull);
}

std::vector<double> DxfReader::GetPattern(std::string const & lineType) const
{
  auto const found = m_LineTypes.find(lineType);
  if (found == m_LineTypes.end()) return {};
  std::vector<double> pattern = found->second;
  for (double & piece : pattern) piece *= m_dLineTypeScale;
  return pattern;
}

void DxfReader::Read(Visitor const & visit)
{
  for (Advance(); AtStart("SECTION");) ReadSection(visit);
  if (AtStart("EOF")) return ReadEnd();
  if (m_bMore) return Tell(fmt::format("\"{}\" stands where a section or the end was expected", DxfShown(m_Tag.value)));
  if (GetLines() == 0) return m_Problems.Add(0, "the file is empty");
  m_Problems.Add(GetLines(), "the drawing ends without its end mark");
}

void DxfReader::ReadEnd()
{
  for (char const * const section : {"TABLES", "ENTITIES"})
    if (m_Sections.count(section) == 0) Tell(fmt::format("the drawing has no section {}", section));
  Advance();
  if (m_bMore) Tell("something stands behind the end mark");
}

bool DxfReader::AddName(Names & names, std::string_view name, char const * kind)
{
  if (names.size() >= mostNames || name.empty() || name.size() > longestName)
    Tell(fmt::format("\"{}\" is no name for a {}", DxfShown(name), kind));
  else if (!names.emplace(name).second)
    Tell(fmt::format("the {} {} stands twice", kind, DxfShown(name)));
  else
    return true;
  return false;
}

// Goes on to the next start of anything.
void DxfReader::SkipGroups()
{
  while (m_bMore && m_Tag.code != 0) Advance();
}

// The name in group 2 behind the start of a section or table; empty, and told, if there is none.
std::string DxfReader::ReadName(char const * what)
{
  Advance();
  if (!m_bMore) return "";
  if (m_Tag.code == 2 && !m_Tag.value.empty() && m_Tag.value.size() <= longestName) return std::string(m_Tag.value);
  Tell(fmt::format("the {} has no name", what));
  return "";
}

void DxfReader::ReadSection(Visitor const & visit)
{
  std::string const name = ReadName("section");
  if (!name.empty()) {
    AddName(m_Sections, name, "section");
    Advance();
  }
  if (name == "HEADER") ReadHeader();
  if (name == "TABLES") ReadTables();
  if (name == "ENTITIES") ReadEntities(visit);
  if (m_bMore && !AtStart("ENDSEC"))
    Tell(fmt::format("\"{}\" stands where the section's end was expected", DxfShown(m_Tag.value)));
  while (m_bMore && !AtStart("ENDSEC") && !AtStart("SECTION") && !AtStart("EOF")) Advance();
  if (AtStart("ENDSEC")) Advance();
}

void DxfReader::ReadHeader()
{
  std::string variable;
  for (; m_bMore && m_Tag.code != 0; Advance()) {
    bool sound = true;
    if (m_Tag.code == 9) variable = m_Tag.value.substr(0, longestName);
    if (variable == "$ACADVER" && m_Tag.code == 1) sound = m_Tag.value == dialect;
    if (variable == "$LTSCALE" && m_Tag.code == 40) sound = DxfReal(m_Tag.value, m_dLineTypeScale) && m_dLineTypeScale > 0;
    if ((variable == "$EXTMIN" || variable == "$EXTMAX") && (m_Tag.code == 10 || m_Tag.code == 20))
      sound = DxfReal(m_Tag.value, m_Frame[(variable == "$EXTMAX" ? 2 : 0) + (m_Tag.code == 20 ? 1 : 0)]);
    if (!sound) Tell(fmt::format("\"{}\" is none of ours for {}", DxfShown(m_Tag.value), DxfShown(variable)));
  }
}

void DxfReader::ReadTables()
{
  while (AtStart("TABLE")) ReadTable();
}

void DxfReader::ReadTable()
{
  std::string const name = ReadName("table");
  SkipGroups();
  while (m_bMore && !AtStart("ENDTAB") && !AtStart("TABLE") && !AtStart("ENDSEC") && !AtStart("SECTION") && !AtStart("EOF")) {
    if (m_Tag.value != name) Tell(fmt::format("\"{}\" is no entry of the table {}", DxfShown(m_Tag.value), DxfShown(name)));
    ReadTableEntry();
  }
  if (AtStart("ENDTAB")) return Advance();
  if (m_bMore) Tell(fmt::format("the table {} has no end", DxfShown(name)));
}

void DxfReader::ReadTableEntry()
{
  if (AtStart("LTYPE")) return ReadLineType();
  bool const layer = AtStart("LAYER");
  for (Advance(); m_bMore && m_Tag.code != 0; Advance())
    if (layer && m_Tag.code == 2) AddName(m_Layers, m_Tag.value, "layer");
}

// A type with a fault is known all the same, so that not every line with it is told as well.
void DxfReader::ReadLineType()
{
  std::string name;
  std::vector<double> pattern;
  int pieces = 0;
  double length = 0;
  double number = 0;
  for (Advance(); m_bMore && m_Tag.code != 0; Advance()) {
    if (m_Tag.code == 2) name = m_Tag.value.substr(0, longestName);
    bool sound = true;
    if (m_Tag.code == 73) sound = DxfInteger(m_Tag.value, pieces);
    if (m_Tag.code == 40) sound = DxfReal(m_Tag.value, length);
    if (m_Tag.code == 49) sound = DxfReal(m_Tag.value, number) && pattern.size() < mostPieces;
    if (!sound)
      Tell(fmt::format("\"{}\" is no number for group {} of a line type", DxfShown(m_Tag.value), m_Tag.code));
    else if (m_Tag.code == 49)
      pattern.push_back(number);
  }
  double sum = 0;
  for (double const piece : pattern) sum += std::abs(piece);
  if (static_cast<size_t>(pieces) != pattern.size() || std::abs(sum - length) > lengthError)
    Tell(fmt::format("the pattern of the line type {} doesn't agree with its length", DxfShown(name)));
  if (m_LineTypes.size() >= mostNames || !m_LineTypes.emplace(name, std::move(pattern)).second)
    Tell(fmt::format("the line type {} stands twice, or there are too many", DxfShown(name)));
}

void DxfReader::ReadEntities(Visitor const & visit)
{
  while (m_bMore && m_Tag.code == 0 && !AtStart("ENDSEC") && !AtStart("SECTION") && !AtStart("EOF")) ReadEntity(visit);
}

void DxfReader::ReadEntity(Visitor const & visit)
{
  if (!m_Builder.Begin(m_Tag.value)) {
    Tell(fmt::format("\"{}\" is no entity of ours", DxfShown(m_Tag.value)));
    Advance();
    return SkipGroups();
  }
  unsigned long long const line = m_Tag.line;
  bool whole = true;
  for (Advance(); m_bMore && m_Tag.code != 0; Advance()) {
    std::string const wrong = m_Builder.Take(m_Tag);
    if (wrong.empty()) continue;
    Tell(wrong);
    whole = false;
  }
  if (!whole) return;
  DxfEntity const & entity = m_Builder.Get();
  std::string wrong = m_Builder.Judge();
  if (wrong.empty() && m_Layers.count(entity.layer) == 0)
    wrong = fmt::format("the layer {} isn't defined", DxfShown(entity.layer));
  if (wrong.empty() && entity.kind == DxfKind::Line && m_LineTypes.count(entity.lineType) == 0)
    wrong = fmt::format("the line type {} isn't defined", DxfShown(entity.lineType));
  if (!wrong.empty()) return m_Problems.Add(line, std::move(wrong));
  ++m_Counts[static_cast<size_t>(entity.kind)];
  visit(entity);
}
