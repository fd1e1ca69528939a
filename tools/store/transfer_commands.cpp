// zp store import and export: whole stores from and to tables and JSON.

#include <algorithm>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/components.h"
#include "tools/records/json_values.h"
#include "tools/records/payload.h"
#include "tools/store/session.h"
#include "tools/store/source.h"
#include "tools/store/store_commands.h"

namespace {

constexpr char const * formatName = "zp-store-records";
constexpr int formatVersion = 1;

struct TransferArguments : StoreArguments {
  std::string m_strFile = "-";
};

struct Incoming {
  std::vector<std::pair<int, std::vector<BYTE>>> m_Records;  // in ascending id
  std::unique_ptr<CObject> m_pHeader;
  bool m_bHasHeader = false;
};

std::string shownName(std::string const & file)
{
  return file == "-" ? "standard input" : file;
}

void requireLength(std::vector<BYTE> const & bytes)
{
  if (bytes.empty() || bytes.size() > maxRecordBytes) {
    throw Failure(fmt::format("has {} bytes, and a record has 1 to {}", bytes.size(), maxRecordBytes));
  }
}

void readJsonRecord(Incoming & incoming, Json const & json)
{
  auto const id = static_cast<int>(IntegerMember(json, "id", 0, maxRecordID));
  try {
    std::vector<BYTE> bytes = RecordFromJson(json);
    requireLength(bytes);
    incoming.m_Records.emplace_back(id, std::move(bytes));
  } catch (Failure const & failure) {
    throw Failure(fmt::format("record {}: {}", id, failure.what()));
  }
}

std::unique_ptr<CObject> readHeader(Json const & json)
{
  if (json.is_null()) return nullptr;
  Payload payload = DecodePayload(RecordFromJson(json));
  if (payload.m_State != Payload::Object) throw Failure("\"header\": is no object of a class known here");
  return std::move(payload.m_pObject);
}

void readJson(Incoming & incoming, Json const & json)
{
  if (TextMember(json, "format") != formatName) throw Failure(fmt::format("\"format\" must be \"{}\"", formatName));
  IntegerMember(json, "version", formatVersion, formatVersion);
  if (json.contains("header")) {
    incoming.m_pHeader = readHeader(json["header"]);
    incoming.m_bHasHeader = true;
  }
  Json const & records = ArrayMember(json, "records");
  for (Json const & record : records) readJsonRecord(incoming, record);
  auto & all = incoming.m_Records;
  std::sort(all.begin(), all.end());
  auto const twice =
      std::adjacent_find(all.begin(), all.end(), [](auto const & a, auto const & b) { return a.first == b.first; });
  if (twice != all.end()) throw Failure(fmt::format("record {}: stands twice", twice->first));
}

Incoming parseJson(std::string const & text, std::string const & name)
{
  Incoming incoming;
  try {
    readJson(incoming, Json::parse(text));
  } catch (Json::exception const & error) {
    throw Failure(fmt::format("{}: is no JSON: {}", name, error.what()));
  } catch (Failure const & failure) {
    throw Failure(fmt::format("{}: {}; nothing was stored", name, failure.what()));
  }
  return incoming;
}

Incoming parseTable(std::string const & text, std::string const & name)
{
  Incoming incoming;
  for (Component const & component : ReadComponents(ReadCsv(text, name), name)) {
    std::vector<BYTE> bytes = EncodeObject(component.m_Data);
    try {
      requireLength(bytes);
    } catch (Failure const & failure) {
      throw Failure(fmt::format("{}: record {}: {}; nothing was stored", name, component.m_nID, failure.what()));
    }
    incoming.m_Records.emplace_back(component.m_nID, std::move(bytes));
  }
  return incoming;
}

Incoming readIncoming(std::string const & file)
{
  std::string const text = ReadWholeFile(file);
  size_t const first = text.find_first_not_of(" \t\r\n");
  bool const isJson = first != std::string::npos && text[first] == '{';
  return isJson ? parseJson(text, shownName(file)) : parseTable(text, shownName(file));
}

void printStored(TransferArguments const & arguments, StoreNames const & names, size_t stored, size_t replaced)
{
  if (arguments.m_bJson)
    return Print(Json{{"stored", stored}, {"new", stored - replaced}, {"replaced", replaced}}.dump(2) + "\n");
  Print(fmt::format("{} record{} stored in {}: {} new, {} replaced\n", stored, stored == 1 ? "" : "s", names.m_strRecord,
                    stored - replaced, replaced));
}

void importRecords(TransferArguments const & arguments, int & status)
{
  StoreNames const names = arguments.GetNames();
  Incoming incoming = readIncoming(arguments.m_strFile);
  InterruptGuard const guard;
  bool const isNew = !FileExists(names.m_strRecord);
  StoreSession session(names, StoreAccess::Create);
  if (isNew && incoming.m_bHasHeader) session.SetHeader(std::move(incoming.m_pHeader));
  size_t stored = 0;
  size_t replaced = 0;
  bool const whole = ForEachStep("storing", incoming.m_Records.size(), [&](size_t i) {
    auto const & [id, bytes] = incoming.m_Records[i];
    bool const exists = session.Get().GetRecLength(id) > 0;
    session.Store(id, bytes);
    replaced += exists ? 1 : 0;
    ++stored;
  });
  session.Close();
  printStored(arguments, names, stored, replaced);
  if (!whole) status = exitInterrupted;
}

Json headerToJson(CObject const * header)
{
  if (header == nullptr) return nullptr;
  Json json = RecordToJson(0, EncodeObject(*header));
  json.erase("id");
  return json;
}

std::string exportJson(RecordSource & source)
{
  Json json = {{"format", formatName}, {"version", formatVersion}};
  if (source.HasHeader()) json["header"] = headerToJson(source.GetHeader());
  Json & records = json["records"] = Json::array();
  Progress progress("exporting", source.GetIDs().size());
  for (int const id : source.GetIDs()) {
    records.push_back(RecordToJson(id, source.Load(id)));
    progress.Reach(records.size());
  }
  return json.dump(1) + "\n";
}

std::string exportTable(RecordSource & source, StoreNames const & names)
{
  ComponentTable table;
  Progress progress("exporting", source.GetIDs().size());
  size_t done = 0;
  for (int const id : source.GetIDs()) {
    if (!table.Add(id, source.Load(id))) {
      throw Failure(
          fmt::format("{}: record {} is no component that a table can tell; export with --json", names.m_strRecord, id));
    }
    progress.Reach(++done);
  }
  return table.GetText();
}

void exportRecords(TransferArguments const & arguments)
{
  StoreNames const names = arguments.GetNames();
  RecordSource source(names);
  WriteWholeFile(arguments.m_strFile, arguments.m_bJson ? exportJson(source) : exportTable(source, names));
}

}  // namespace

void AddTransferCommands(CLI::App & store, int & status)
{
  auto const arguments = std::make_shared<TransferArguments>();
  CLI::App * command =
      AddStoreCommand(store, *arguments, "import", "Store the records of a table of components or of a JSON export");
  command->add_option("file", arguments->m_strFile, "CSV or JSON file, - for standard input")->required();
  command->callback([arguments, &status] { importRecords(*arguments, status); });

  command =
      AddStoreCommand(store, *arguments, "export", "Write components as a CSV table, or with --json all records without loss");
  command->add_option("file", arguments->m_strFile, "File to write, - for standard output");
  command->callback([arguments] { exportRecords(*arguments); });
}
