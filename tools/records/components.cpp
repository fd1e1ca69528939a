// Components as rows of a table.

#include "tools/records/components.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <set>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/numeric.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/number_text.h>
#include <zpbase/store.h>

#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/data_ids.h"
#include "tools/records/table_text.h"

namespace {

constexpr size_t mostGroups = GPUnifac::maxEntries;

std::vector<Column> makeColumns()
{
  std::vector<Column> columns = {{"id", nullptr, 0}};
  for (DataMeaning const & meaning : GetDataMeanings()) {
    std::string const base = meaning.column;
    if (meaning.coefficients == 0) columns.push_back({base, &meaning, 0});
    if (meaning.kind == DataKind::Equation) columns.push_back({base + "_eq", &meaning, equationPart});
    for (int i = 0; i < meaning.coefficients; ++i) columns.push_back({base + "_" + CoefficientName(i), &meaning, i});
  }
  return columns;
}

}  // namespace

std::vector<Column> const & AllColumns()
{
  static std::vector<Column> const columns = makeColumns();
  return columns;
}

namespace {

std::vector<size_t> makeFirstColumns()
{
  std::vector<size_t> first;
  for (DataMeaning const & meaning : GetDataMeanings()) {
    auto const & columns = AllColumns();
    auto const found =
        std::find_if(columns.begin(), columns.end(), [&](Column const & column) { return column.meaning == &meaning; });
    first.push_back(static_cast<size_t>(found - columns.begin()));
  }
  return first;
}

}  // namespace

size_t FirstColumnOf(DataMeaning const & meaning)
{
  static std::vector<size_t> const first = makeFirstColumns();
  return first[static_cast<size_t>(&meaning - GetDataMeanings().data())];
}

namespace {

size_t columnsOf(DataMeaning const & meaning)
{
  return static_cast<size_t>(std::max(meaning.coefficients, 1)) + (meaning.kind == DataKind::Equation ? 1 : 0);
}

bool isOfDecimal(char c)
{
  return zp::IsDigit(c) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E' || zp::IsWhite(c);
}

// Raises for text that is no decimal number, or one that a 32-bit float can't hold.
void requireNumber(std::string const & cell)
{
  size_t used = 0;
  double const value = zp::TextToDouble(cell, &used);
  bool const isDecimal = std::all_of(cell.begin(), cell.end(), isOfDecimal);
  if (used != cell.size() || !isDecimal) throw Failure(fmt::format("\"{}\" is no number such as 647.1 or 2.2e7", cell));
  auto const narrow = static_cast<float>(value);
  if (!std::isfinite(narrow) || (narrow == 0.0F && value != 0.0)) {
    throw Failure(fmt::format("{} doesn't fit a 32-bit number", cell));
  }
}

int wholeNumber(std::string_view cell, int high)
{
  int value = -1;
  auto const end = std::from_chars(cell.data(), cell.data() + cell.size(), value);
  if (end.ec == std::errc() && end.ptr == cell.data() + cell.size() && value >= 0 && value <= high) return value;
  throw Failure(fmt::format("\"{}\" is no whole number from 0 to {}", cell, high));
}

struct Groups {
  CStringArray names;
  std::vector<int> counts;
};

// A cell such as "1:2 12R:1": groups, of which R or X marks one, and their counts.
Groups splitGroups(std::string_view cell)
{
  constexpr std::string_view blanks = " \t\n\v\f\r";
  Groups groups;
  for (size_t at = cell.find_first_not_of(blanks); at != std::string_view::npos; at = cell.find_first_not_of(blanks, at)) {
    std::string_view const word = cell.substr(at, cell.find_first_of(blanks, at) - at);
    at += word.size();
    size_t const colon = word.find(':');
    std::string_view group = word.substr(0, colon);
    groups.counts.push_back(wholeNumber(colon == std::string_view::npos ? "" : word.substr(colon + 1), 0x7FFF));
    groups.names.Add(CString(group.data(), static_cast<int>(group.size())));
    if (group.ends_with('R') || group.ends_with('X')) group.remove_suffix(1);
    wholeNumber(group, 0x7FFF);
  }
  return groups;
}

void requireGroups(std::string const & cell)
{
  size_t count = 0;
  try {
    count = splitGroups(cell).counts.size();
  } catch (Failure const &) {
    throw Failure(fmt::format("\"{}\" is no list of groups and counts such as 1:2 12R:1", cell));
  }
  if (count > mostGroups) throw Failure(fmt::format("{} groups are more than the {} of a record", count, mostGroups));
}

}  // namespace

void RequireCell(Column const & column, std::string const & cell)
{
  if (cell.empty()) return;
  if (column.meaning == nullptr)
    wholeNumber(cell, zp::maxRecordID);
  else if (column.part == equationPart)
    wholeNumber(cell, 0xFFFF);
  else if (column.meaning->kind == DataKind::Groups)
    requireGroups(cell);
  else if (column.meaning->kind != DataKind::Text)
    requireNumber(cell);
}

namespace {

void loadFloats(GPDataArray & data, DataMeaning const & meaning, std::string const * cells)
{
  int count = meaning.coefficients;  // as many as blanks at the end leave
  while (count > 0 && cells[count - 1].empty()) --count;
  CStringArray texts;
  for (int i = 0; i < count; ++i) texts.Add(CString(cells[i].c_str()));
  auto item = std::make_unique<GPv>(meaning.dataID);
  if (item->PutFloatData(texts) > 0) data.AddData(item.release());
}

void loadEquation(GPDataArray & data, DataMeaning const & meaning, std::string const * cells)
{
  CString c[10];
  bool any = false;
  for (int i = 0; i < 10; ++i) {
    c[i] = cells[i].c_str();
    any |= i > 0 && !cells[i].empty();
  }
  if (c[0].IsEmpty()) {
    if (any) throw Failure(fmt::format("column {}_eq: the equation number is missing", meaning.column));
    return;
  }
  auto item = std::make_unique<GPDippr>(meaning.dataID);
  item->Load(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8], c[9]);
  data.AddData(item.release());
}

void loadGroups(GPDataArray & data, std::string const & cell)
{
  Groups const groups = splitGroups(cell);
  GPIntVector const counts(static_cast<int>(groups.counts.size()), groups.counts.data());
  auto item = std::make_unique<GPUnifac>();
  if (item->Load(groups.names, counts) > 0) data.AddData(item.release());
}

}  // namespace

// A blank cell gives no item; a zero is a number.
void LoadComponent(GPDataArray & data, Cells const & cells)
{
  for (DataMeaning const & meaning : GetDataMeanings()) {
    std::string const * const first = &cells[FirstColumnOf(meaning)];
    if (std::all_of(first, first + columnsOf(meaning), [](std::string const & cell) { return cell.empty(); })) continue;
    switch (meaning.kind) {
      case DataKind::Text:
        data.LoadStringData(meaning.dataID, ToText(*first, std::string("column ") + meaning.column));
        break;
      case DataKind::Number:
        data.LoadFloatData(meaning.dataID, CString(first->c_str()));
        break;
      case DataKind::Floats:
        loadFloats(data, meaning, first);
        break;
      case DataKind::Equation:
        loadEquation(data, meaning, first);
        break;
      case DataKind::Groups:
        loadGroups(data, *first);
        break;
    }
  }
}

namespace {

constexpr size_t nameless = SIZE_MAX;
constexpr size_t mostBlankRows = 0x100000;  // as many as a sheet has rows

bool isBlank(std::string const & field)
{
  return std::all_of(field.begin(), field.end(), zp::IsWhite);
}

// For each of a table's columns its place among all of them; spreadsheets may write some without a name behind the others.
std::vector<size_t> placesOf(CsvRow const & head, std::string const & name)
{
  std::vector<size_t> places;
  auto const & columns = AllColumns();
  for (std::string const & field : head.fields) {
    if (isBlank(field)) {
      places.push_back(nameless);
      continue;
    }
    auto const found = std::find_if(columns.begin(), columns.end(), [&](Column const & column) { return column.name == field; });
    if (found == columns.end()) {
      throw Failure(
          fmt::format("{}: line {}: there is no column \"{}\"; the manual of zp store lists them", name, head.line, field));
    }
    auto const place = static_cast<size_t>(found - columns.begin());
    if (std::find(places.begin(), places.end(), place) != places.end()) {
      throw Failure(fmt::format("{}: line {}: column {} stands twice", name, head.line, field));
    }
    places.push_back(place);
  }
  if (std::find(places.begin(), places.end(), 0U) == places.end()) {
    throw Failure(fmt::format("{}: line {}: the column id is missing", name, head.line));
  }
  return places;
}

void requireCount(CsvRow const & row, size_t columns)
{
  size_t const fields = row.fields.size();
  if (fields == columns) return;
  bool const mayBeDecimal = fields > columns && !row.hasDecimalCommas;
  throw Failure(
      fmt::format("{} under {}{}", Counted(fields, "field"), Counted(columns, "column"),
                  mayBeDecimal ? "; with decimal commas in it, a table needs semicolons or tabs between its columns" : ""));
}

// What the column takes of a field: no blanks alone but in a text, and numbers with a point.
std::string cellOf(Column const & column, CsvRow const & row, size_t i)
{
  std::string const & field = row.fields[i];
  if (column.meaning != nullptr && column.meaning->kind == DataKind::Text) return field;
  if (isBlank(field)) return "";
  return row.hasDecimalCommas ? WithDecimalPoint(field) : field;
}

Cells cellsOf(CsvRow const & row, std::vector<size_t> const & places)
{
  requireCount(row, places.size());
  Cells cells(AllColumns().size());
  for (size_t i = 0; i < places.size(); ++i) {
    if (places[i] == nameless) {
      if (!isBlank(row.fields[i])) throw Failure(fmt::format("column {}: \"{}\" has no name above it", i + 1, row.fields[i]));
      continue;
    }
    Column const & column = AllColumns()[places[i]];
    std::string & cell = cells[places[i]];
    cell = cellOf(column, row, i);
    try {
      RequireCell(column, cell);
    } catch (Failure const & failure) {
      throw Failure(fmt::format("column {}: {}", column.name, failure.what()));
    }
  }
  return cells;
}

Component readComponent(CsvRow const & row, std::vector<size_t> const & places)
{
  Cells const cells = cellsOf(row, places);
  if (cells[0].empty()) throw Failure("column id: is empty");
  Component component = {wholeNumber(cells[0], zp::maxRecordID), {}};
  LoadComponent(component.data, cells);
  return component;
}

}  // namespace

void ReadComponents(std::istream & input, std::string const & name, std::function<void(Component const & component)> const & take)
{
  std::vector<size_t> places;
  std::set<int> ids;
  size_t blankRows = 0;
  ReadCsv(input, name, [&](CsvRow const & row) {
    if (places.empty()) {
      places = placesOf(row, name);
      return;
    }
    if (std::all_of(row.fields.begin(), row.fields.end(), isBlank)) {
      if (++blankRows <= mostBlankRows) return;
      throw Failure(fmt::format("{}: line {}: {} rows have no content", name, row.line, blankRows));
    }
    try {
      Component const component = readComponent(row, places);
      if (!ids.insert(component.id).second) throw Failure(fmt::format("column id: {} stands twice", component.id));
      take(component);
    } catch (Failure const & failure) {
      throw Failure(fmt::format("{}: line {}: {}; nothing was stored", name, row.line, failure.what()));
    }
  });
  if (places.empty()) throw Failure(fmt::format("{}: is empty; a line with the names of the columns is expected", name));
}
