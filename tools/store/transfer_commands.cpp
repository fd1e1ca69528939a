// zp store import and export: whole stores from and to tables and JSON.

#include "tools/store/store_arguments.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

#include "tools/output_file.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/components.h"
#include "tools/records/json_text.h"
#include "tools/records/json_values.h"
#include "tools/records/payload.h"
#include "tools/store/store_writer.h"
#include "tools/store/stored_records.h"

namespace {

constexpr char const * formatName = "zp-store-records";
constexpr int formatVersion = 1;

struct Incoming {
  std::vector<std::pair<int, std::vector<BYTE>>> records;  // in ascending id
  std::unique_ptr<CObject> header;
  bool hasHeader = false;
};

void requireLength(std::vector<BYTE> const & bytes)
{
  if (bytes.empty() || bytes.size() > zp::maxRecordLength) {
    throw Failure(fmt::format("has {} bytes, and a record has 1 to {}", bytes.size(), zp::maxRecordLength));
  }
}

void readJsonRecord(Incoming & incoming, Json const & json)
{
  auto const id = static_cast<int>(IntegerMember(json, "id", 0, zp::maxRecordID));
  try {
    std::vector<BYTE> bytes = RecordFromJson(json);
    requireLength(bytes);
    incoming.records.emplace_back(id, std::move(bytes));
  } catch (Failure const & failure) {
    throw Failure(fmt::format("record {}: {}", id, failure.what()));
  }
}

std::unique_ptr<CObject> readHeader(Json const & json)
{
  if (json.is_null()) return nullptr;
  Payload payload = DecodePayload(RecordFromJson(json));
  if (payload.state != Payload::Object) throw Failure("\"header\": is no object of a class known here");
  return std::move(payload.object);
}

void readJson(Incoming & incoming, Json const & json)
{
  if (TextMember(json, "format") != formatName) throw Failure(fmt::format("\"format\" must be \"{}\"", formatName));
  IntegerMember(json, "version", formatVersion, formatVersion);
  if (json.contains("header")) {
    incoming.header = readHeader(json["header"]);
    incoming.hasHeader = true;
  }
  Json const & records = ArrayMember(json, "records");
  for (Json const & record : records) readJsonRecord(incoming, record);
  auto & all = incoming.records;
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
    std::vector<BYTE> bytes = EncodeObject(component.data);
    try {
      requireLength(bytes);
    } catch (Failure const & failure) {
      throw Failure(fmt::format("{}: record {}: {}; nothing was stored", name, component.id, failure.what()));
    }
    incoming.records.emplace_back(component.id, std::move(bytes));
  }
  return incoming;
}

Incoming readIncoming(std::string const & file)
{
  std::string const text = ReadWholeFile(file);
  size_t const first = text.find_first_not_of(" \t\r\n");
  bool const isJson = first != std::string::npos && text[first] == '{';
  return isJson ? parseJson(text, ShownName(file)) : parseTable(text, ShownName(file));
}

void printStored(bool json, StoreNames const & names, size_t stored, size_t replaced)
{
  if (json) return Print(Json{{"stored", stored}, {"new", stored - replaced}, {"replaced", replaced}}.dump(2) + "\n");
  Print(fmt::format("{} record{} stored in {}: {} new, {} replaced\n", stored, stored == 1 ? "" : "s", names.record,
                    stored - replaced, replaced));
}

struct ImportCommand : StoreArguments {
  static constexpr char const * name = "import";
  static constexpr char const * help = "Store the records of a table of components or of a JSON export";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    command.add_option("file", file, "CSV or JSON file, - for standard input")->required();
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    Incoming incoming = readIncoming(file);
    if (incoming.hasHeader && incoming.records.empty()) {
      throw Failure(fmt::format("{}: holds a header object but no records; a store keeps its header with its first record",
                                ShownName(file)));
    }
    InterruptGuard const guard;
    StoreWriter writer(names, StoreAccess::Create);
    if (writer.IsNew() && incoming.hasHeader) writer.SetHeader(std::move(incoming.header));
    size_t stored = 0;
    size_t replaced = 0;
    bool const isWhole = ForEachStep("storing", incoming.records.size(), [&](size_t i) {
      auto const & [id, bytes] = incoming.records[i];
      bool const exists = writer.Has(id);
      writer.Store(id, bytes);
      replaced += exists ? 1 : 0;
      ++stored;
    });
    writer.Close();
    printStored(json, names, stored, replaced);
    return isWhole ? exitDone : exitInterrupted;
  }

  std::string file;
};

using Pass = std::function<void(std::string_view)>;

void exportJson(StoredRecords & source, Pass const & pass)
{
  constexpr size_t step = 1;
  JsonIndenter indenter(step, pass);
  indenter.Write(fmt::format(R"({{"format":"{}","version":{})", formatName, formatVersion));
  if (source.HasHeader()) {
    CObject const * const header = source.GetHeader();
    indenter.Write(",\"header\":" + (header != nullptr ? RecordToJson(EncodeObject(*header)) : "null"));
  }
  indenter.Write(",\"records\":[");
  Progress progress("exporting", source.GetIDs().size());
  size_t done = 0;
  for (int const id : source.GetIDs()) {
    if (done > 0) indenter.Write(",");
    indenter.Write(RecordToJson(source.Load(id), id));
    progress.Reach(++done);
  }
  indenter.Write("]}");
  indenter.Finish();
}

void exportTable(StoredRecords & source, StoreNames const & names, Pass const & pass)
{
  ComponentTable table;
  Progress progress("exporting", source.GetIDs().size());
  size_t done = 0;
  for (int const id : source.GetIDs()) {
    if (!table.Add(id, source.Load(id))) {
      throw Failure(fmt::format("{}: record {} is no component that a table can tell; export with --json", names.record, id));
    }
    progress.Reach(++done);
  }
  pass(CsvLine(table.GetHead()));
  table.ForEachRow([&](std::vector<std::string_view> const & fields) { pass(CsvLine(fields)); });
}

struct ExportCommand : StoreArguments {
  static constexpr char const * name = "export";
  static constexpr char const * help = "Write components as a CSV table, or with --json all records without loss";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    command.add_option("file", file, "File to write, - for standard output");
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    RequireOtherFile(names, file);
    StoredRecords records(names);
    OutputFile output(file);
    auto const pass = [&](std::string_view piece) { output.Write(piece); };
    if (json)
      exportJson(records, pass);
    else
      exportTable(records, names, pass);
    output.Commit();
    return exitDone;
  }

  std::string file = "-";
};

}  // namespace

void AddTransferCommands(CLI::App & family, int & status)
{
  AddCommand<ImportCommand>(family, status);
  AddCommand<ExportCommand>(family, status);
}
