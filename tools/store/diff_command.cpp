// zp store diff: two stores against each other, record by record, and components value by value.

#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/component_columns.h"
#include "tools/records/components.h"
#include "tools/records/object_json.h"
#include "tools/records/object_tree.h"
#include "tools/records/payload.h"
#include "tools/store/stored_records.h"

namespace {

using Bytes = std::vector<BYTE>;

struct ValueChange {
  Column const * column;
  std::string before;  // as export writes it; empty for no value
  std::string after;
};

struct RecordFacts {
  std::string className;  // empty for raw bytes
  size_t bytes;
  std::string text;
};

// Without a former one it was added, without a later one removed. Of two the values differ, or where a table can't tell them, the
// bytes from firstByte on.
struct RecordChange {
  int id;
  std::optional<RecordFacts> before;
  std::optional<RecordFacts> after;
  std::vector<ValueChange> values;
  size_t firstByte = 0;
};

RecordFacts factsOf(Bytes const & bytes)
{
  Payload const payload = DecodePayload(bytes);
  return {payload.className, bytes.size(), payload.state == Payload::Object ? FirstText(*payload.object) : ""};
}

// None for records that a table doesn't give back bit for bit.
std::vector<ValueChange> valuesChanged(int id, Bytes const & before, Bytes const & after)
{
  ComponentTable table;
  if (!table.Add(id, before) || !table.Add(id, after)) return {};
  std::vector<Column const *> const columns = table.GetColumns();
  std::vector<ValueChange> changes;
  std::vector<std::string> former;
  table.ForEachRow([&](std::vector<std::string_view> const & fields) {
    if (former.empty()) return former.assign(fields.begin(), fields.end());
    for (size_t i = 0; i < columns.size(); ++i) {
      if (former[i] != fields[i]) changes.push_back({columns[i], former[i], std::string(fields[i])});
    }
  });
  return changes;
}

class Comparison {
 public:
  Comparison(StoreNames const & before, StoreNames const & after) : m_Before(before), m_After(after) {}

  void Run()
  {
    m_bHeader = CompareHeaders();
    std::vector<int> ids;
    std::ranges::set_union(m_Before.GetIDs(), m_After.GetIDs(), std::back_inserter(ids));
    ForEachStep("comparing", ids.size(), [&](size_t i) {
      try {
        Compare(ids[i]);
      } catch (Failure const & failure) {
        Tell(failure.what());
        ++m_nLeft;
      }
    });
  }

  std::vector<RecordChange> const & GetChanges() const { return m_Changes; }
  size_t GetSame() const { return m_nSame; }
  size_t GetLeft() const { return m_nLeft; }  // that can't be read on either side
  bool IsHeaderOther() const { return m_bHeader; }
  bool IsSame() const { return m_Changes.empty() && m_nLeft == 0 && !m_bHeader; }

 private:
  static std::optional<Bytes> Load(StoredRecords const & records, int id)
  {
    if (!std::ranges::binary_search(records.GetIDs(), id)) return std::nullopt;
    return records.Load(id);
  }

  bool CompareHeaders()
  {
    if (!m_Before.HasHeader() || !m_After.HasHeader()) {
      Tell(fmt::format("{}, {}: the header objects can't be compared", m_Before.GetNames().index, m_After.GetNames().index));
      return m_Before.HasHeader() != m_After.HasHeader();
    }
    auto const bytesOf = [](CObject const * header) { return header != nullptr ? EncodeObject(*header) : Bytes(); };
    return bytesOf(m_Before.GetHeader()) != bytesOf(m_After.GetHeader());
  }

  void Compare(int id)
  {
    std::optional<Bytes> const before = Load(m_Before, id);
    std::optional<Bytes> const after = Load(m_After, id);
    if (before == after) {
      ++m_nSame;
      return;
    }
    RecordChange change = {id, std::nullopt, std::nullopt, {}, 0};
    if (before) change.before = factsOf(*before);
    if (after) change.after = factsOf(*after);
    if (before && after) {
      change.values = valuesChanged(id, *before, *after);
      change.firstByte = static_cast<size_t>(std::ranges::mismatch(*before, *after).in1 - before->begin());
    }
    m_Changes.push_back(std::move(change));
  }

  StoredRecords m_Before;
  StoredRecords m_After;
  std::vector<RecordChange> m_Changes;
  size_t m_nSame = 0;
  size_t m_nLeft = 0;
  bool m_bHeader = false;
};

std::string told(RecordFacts const & facts)
{
  return fmt::format("{}, {}{}", facts.className.empty() ? "raw bytes" : facts.className, Counted(facts.bytes, "byte"),
                     facts.text.empty() ? "" : ", " + facts.text);
}

void printChange(RecordChange const & change)
{
  if (!change.before) return PrintLine(fmt::format("record {}: added: {}", change.id, told(*change.after)));
  if (!change.after) return PrintLine(fmt::format("record {}: removed: {}", change.id, told(*change.before)));
  std::string const changed = fmt::format("record {}: changed: {}", change.id, told(*change.before));
  if (change.values.empty())
    return PrintLine(fmt::format("{} -> {}; differs from byte {} on", changed, told(*change.after), change.firstByte));
  PrintLine(changed);
  auto const shown = [](std::string const & value) { return value.empty() ? "-" : value; };
  for (ValueChange const & value : change.values) {
    char const * const unit = value.column->meaning->coefficients == 0 ? value.column->meaning->unit : "";
    PrintLine(fmt::format("  {:<20}  {} -> {}{}{}", value.column->name, shown(value.before), shown(value.after),
                          *unit != '\0' ? " " : "", unit));
  }
}

void printComparison(Comparison const & comparison)
{
  size_t added = 0;
  size_t removed = 0;
  for (RecordChange const & change : comparison.GetChanges()) {
    printChange(change);
    added += change.before ? 0 : 1;
    removed += change.after ? 0 : 1;
  }
  if (comparison.IsHeaderOther()) Print("the header object: changed\n");
  PrintLine(fmt::format("{} added, {} removed, {} changed, {} the same", added, removed,
                        comparison.GetChanges().size() - added - removed, comparison.GetSame()));
}

Json jsonOf(RecordFacts const & facts)
{
  Json json = {{"bytes", facts.bytes}};
  if (!facts.className.empty()) json["class"] = facts.className;
  if (!facts.text.empty()) json["text"] = facts.text;
  return json;
}

// A number as a number, a text as a text, null for no value.
Json jsonOf(Column const & column, std::string const & value)
{
  if (value.empty()) return nullptr;
  bool const isText = column.meaning->kind == DataKind::Text || column.meaning->kind == DataKind::Groups;
  Json const number = isText ? Json() : Json::parse(value, nullptr, false);
  return number.is_number() ? number : Json(value);
}

Json jsonOf(RecordChange const & change)
{
  Json json = {{"id", change.id}};
  json["old"] = change.before ? jsonOf(*change.before) : Json();
  json["new"] = change.after ? jsonOf(*change.after) : Json();
  if (!change.before || !change.after) return json;
  json["first_byte"] = change.firstByte;
  json["values"] = Json::array();
  for (ValueChange const & value : change.values) {
    Column const & column = *value.column;
    json["values"].push_back(
        {{"column", column.name}, {"old", jsonOf(column, value.before)}, {"new", jsonOf(column, value.after)}});
  }
  return json;
}

void printComparisonAsJson(Comparison const & comparison)
{
  Json json = {{"same", comparison.IsSame()},
               {"same_records", comparison.GetSame()},
               {"unread_records", comparison.GetLeft()},
               {"header_differs", comparison.IsHeaderOther()},
               {"added", Json::array()},
               {"removed", Json::array()},
               {"changed", Json::array()}};
  for (RecordChange const & change : comparison.GetChanges()) {
    json[!change.before ? "added" : !change.after ? "removed" : "changed"].push_back(jsonOf(change));
  }
  Print(DumpJson(json, 2) + "\n");
}

struct DiffCommand {
  static constexpr char const * name = "diff";
  static constexpr char const * help = "Compare two stores, components value by value; ends with 0 if they hold the same";
  static constexpr char const * example = "zp store diff job yesterday/job";

  void AddOptions(CLI::App & command)
  {
    command.add_option("A", before, "Index file, record file, or the stem of both, of the former store")->required();
    command.add_option("B", after, "The same of the later store")->required();
    command.add_option("--record", beforeRecord, "Record file of A, when its name doesn't follow from the index file's");
    command.add_option("--record-b", afterRecord, "Record file of B");
    command.add_flag("--json", json, "Print the result as JSON");
  }

  ExitStatus Run() const
  {
    Comparison comparison(ResolveStore(before, beforeRecord), ResolveStore(after, afterRecord));
    comparison.Run();
    if (comparison.GetLeft() > 0) Tell(fmt::format("{} can't be compared", Counted(comparison.GetLeft(), "record")));
    if (json)
      printComparisonAsJson(comparison);
    else
      printComparison(comparison);
    return comparison.IsSame() ? exitDone : exitWanting;
  }

  std::string before;
  std::string after;
  std::string beforeRecord;
  std::string afterRecord;
  bool json = false;
};

}  // namespace

void AddDiffCommand(CLI::App & family, int & status)
{
  AddCommand<DiffCommand>(family, status);
}
