// zp store list, show, get, put and delete: single records.

#include <algorithm>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/object_json.h"
#include "tools/records/object_tree.h"
#include "tools/records/payload.h"
#include "tools/store/session.h"
#include "tools/store/source.h"
#include "tools/store/store_commands.h"

namespace {

struct RecordArguments : StoreArguments {
  int m_nID = 0;
  std::vector<int> m_IDs;
  std::string m_strFile = "-";
};

constexpr size_t shownText = 40;  // bytes of a text in the list

struct ListRow {
  int m_nID;
  size_t m_nBytes;
  std::string m_strClass;
  std::string m_strText;
};

ListRow rowOf(int id, std::vector<BYTE> const & bytes)
{
  Payload const payload = DecodePayload(bytes);
  ListRow row = {id, bytes.size(), payload.m_strClass, ""};
  if (payload.m_State == Payload::Object) row.m_strText = FirstText(*payload.m_pObject);
  if (payload.m_State == Payload::Unknown) row.m_strText = "(class not known here)";
  if (payload.m_State == Payload::Damaged) row.m_strText = "(unreadable)";
  return row;
}

std::string shortened(std::string text)
{
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  if (text.size() <= shownText) return text;
  size_t end = shownText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + " ...";
}

void printRows(std::vector<ListRow> const & rows)
{
  size_t width = 5;
  for (ListRow const & row : rows) width = std::max(width, row.m_strClass.size());
  if (!rows.empty()) Print(fmt::format("{:>5}  {:>6}  {:<{}}  {}\n", "ID", "BYTES", "CLASS", width, "TEXT"));
  size_t total = 0;
  for (ListRow const & row : rows) {
    std::string const name = row.m_strClass.empty() ? "-" : row.m_strClass;
    std::string line = fmt::format("{:>5}  {:>6}  {:<{}}  {}", row.m_nID, row.m_nBytes, name, width, shortened(row.m_strText));
    line.erase(line.find_last_not_of(' ') + 1);
    Print(line + "\n");
    total += row.m_nBytes;
  }
  Print(fmt::format("{}, {}\n", Counted(rows.size(), "record"), Counted(total, "byte")));
}

void printRowsAsJson(std::vector<ListRow> const & rows)
{
  Json json = Json::array();
  for (ListRow const & row : rows) {
    Json & entry = json.emplace_back(Json{{"id", row.m_nID}, {"bytes", row.m_nBytes}});
    if (!row.m_strClass.empty()) entry["class"] = row.m_strClass;
    if (!row.m_strText.empty()) entry["text"] = row.m_strText;
  }
  Print(json.dump(2) + "\n");
}

void list(RecordArguments const & arguments)
{
  RecordSource source(arguments.GetNames());
  std::vector<ListRow> rows;
  Progress progress("reading", source.GetIDs().size());
  for (int const id : source.GetIDs()) {
    rows.push_back(rowOf(id, source.Load(id)));
    progress.Reach(rows.size());
  }
  arguments.m_bJson ? printRowsAsJson(rows) : printRows(rows);
}

void show(RecordArguments const & arguments)
{
  std::vector<BYTE> const bytes = RecordSource(arguments.GetNames()).Load(arguments.m_nID);
  if (arguments.m_bJson) return Print(RecordToJson(arguments.m_nID, bytes).dump(2) + "\n");
  Print(fmt::format("record {}, {}\n", arguments.m_nID, Counted(bytes.size(), "byte")));
  Print(RecordTree(bytes));
}

void get(RecordArguments const & arguments)
{
  std::vector<BYTE> const bytes = RecordSource(arguments.GetNames()).Load(arguments.m_nID);
  if (arguments.m_bJson) return WriteWholeFile(arguments.m_strFile, RecordToJson(arguments.m_nID, bytes).dump(2) + "\n");
  WriteWholeFile(arguments.m_strFile, {reinterpret_cast<char const *>(bytes.data()), bytes.size()});
}

std::vector<BYTE> readRecord(RecordArguments const & arguments)
{
  std::string const input = ReadWholeFile(arguments.m_strFile);
  std::string const name = arguments.m_strFile == "-" ? "standard input" : arguments.m_strFile;
  std::vector<BYTE> bytes(input.begin(), input.end());
  try {
    if (arguments.m_bJson) bytes = RecordFromJson(Json::parse(input));
  } catch (Json::exception const & error) {
    throw Failure(fmt::format("{}: is no JSON: {}", name, error.what()));
  } catch (Failure const & failure) {
    throw Failure(fmt::format("{}: {}; zp store show --json prints the form", name, failure.what()));
  }
  if (!bytes.empty() && bytes.size() <= maxRecordBytes) return bytes;
  throw Failure(fmt::format("{}: has {}, and a record has 1 to {}", name, Counted(bytes.size(), "byte"), maxRecordBytes));
}

void put(RecordArguments const & arguments, int & status)
{
  StoreNames const names = arguments.GetNames();
  std::vector<BYTE> const bytes = readRecord(arguments);
  InterruptGuard const guard;
  StoreSession session(names, StoreAccess::Create);
  session.Store(arguments.m_nID, bytes);
  session.Close();
  if (InterruptGuard::IsInterrupted()) status = exitInterrupted;
}

// Everything named must be there before anything is deleted.
void remove(RecordArguments const & arguments, int & status)
{
  std::vector<int> ids = arguments.m_IDs;
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  StoreNames const names = arguments.GetNames();
  InterruptGuard const guard;
  StoreSession session(names, StoreAccess::Write);
  for (int const id : ids) {
    if (session.Get().GetRecLength(id) > 0) continue;
    throw Failure(fmt::format("{}: there is no record {}; nothing was deleted, see zp store list", names.m_strIndex, id));
  }
  if (!ForEachStep("deleting", ids.size(), [&](size_t i) { session.Delete(ids[i]); })) status = exitInterrupted;
  session.Close();
}

void addID(CLI::App & command, RecordArguments & arguments)
{
  command.add_option("id", arguments.m_nID, "Record id, 0 to 32767")->required()->check(CLI::Range(0, maxRecordID));
}

}  // namespace

void AddRecordCommands(CLI::App & store, int & status)
{
  auto const arguments = std::make_shared<RecordArguments>();
  CLI::App * command = AddStoreCommand(store, *arguments, "list", "List the records: id, bytes, class, first text");
  command->callback([arguments] { list(*arguments); });

  command = AddStoreCommand(store, *arguments, "show", "Show a record as a tree of its values");
  addID(*command, *arguments);
  command->callback([arguments] { show(*arguments); });

  command = AddStoreCommand(store, *arguments, "get", "Write a record's bytes, or with --json its JSON, to a file");
  addID(*command, *arguments);
  command->add_option("file", arguments->m_strFile, "File to write, - for standard output");
  command->callback([arguments] { get(*arguments); });

  command = AddStoreCommand(store, *arguments, "put", "Store a file's bytes, or with --json the object it tells, as a record");
  addID(*command, *arguments);
  command->add_option("file", arguments->m_strFile, "File to read, - for standard input");
  command->callback([arguments, &status] { put(*arguments, status); });

  command = AddStoreCommand(store, *arguments, "delete", "Delete records");
  command->add_option("ids", arguments->m_IDs, "Record ids")->required()->check(CLI::Range(0, maxRecordID));
  command->callback([arguments, &status] { remove(*arguments, status); });
}
