// zp store import and export: whole stores from and to tables and JSON.

#include "tools/interrupt_guard.h"
#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <bitset>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/input_file.h"
#include "tools/output_file.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/component_columns.h"
#include "tools/records/components.h"
#include "tools/records/json_events.h"
#include "tools/records/json_text.h"
#include "tools/records/json_values.h"
#include "tools/records/payload.h"
#include "tools/sheet/component_sheets.h"
#include "tools/store/store_check.h"
#include "tools/store/store_copy.h"
#include "tools/store/store_writer.h"
#include "tools/store/stored_records.h"

namespace {

constexpr char const * formatName = "zp-store-records";
constexpr int formatVersion = 1;
constexpr size_t writtenPieceBytes = 0x10000;  // of what is written

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

// Of each id whether it stood already.
using SeenIDs = std::bitset<zp::maxRecordID + 1>;

void readJsonRecord(Incoming & incoming, SeenIDs & seen, Json const & json)
{
  auto const id = static_cast<int>(IntegerMember(json, "id", 0, zp::maxRecordID));
  try {
    if (seen.test(static_cast<size_t>(id))) throw Failure("stands twice");
    seen.set(static_cast<size_t>(id));
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

void requireFormat(Json const & json)
{
  if (TextMember(json, "format") != formatName) throw Failure(fmt::format("\"format\" must be \"{}\"", formatName));
  IntegerMember(json, "version", formatVersion, formatVersion);
}

Incoming readJson(std::istream & input, TextPlace begin)
{
  Incoming incoming;
  SeenIDs seen;
  Json const json = ReadJson(
      input, "records",
      [&](Json const & rest, Json const & record) {
        if (incoming.records.empty() && rest.contains("format")) requireFormat(rest);
        readJsonRecord(incoming, seen, record);
      },
      begin);
  requireFormat(json);
  ArrayMember(json, "records");
  if (json.contains("header")) {
    incoming.header = readHeader(json["header"]);
    incoming.hasHeader = true;
  }
  std::sort(incoming.records.begin(), incoming.records.end());
  return incoming;
}

Incoming readTable(std::istream & input, std::string const & name)
{
  Incoming incoming;
  ReadComponents(input, name, [&](Component const & component) {
    std::vector<BYTE> bytes = EncodeObject(component.data);
    requireLength(bytes);
    incoming.records.emplace_back(component.id, std::move(bytes));
  });
  if (incoming.records.empty()) Tell(fmt::format("{}: has the names of columns alone; there is nothing to store", name));
  return incoming;
}

TextPlace skipBlanks(std::istream & stream, std::string const & file)
{
  TextPlace place;
  constexpr size_t mostBlanks = 0x100000;
  size_t blanks = 0;
  for (int c = stream.peek(); c == ' ' || c == '\t' || c == '\r' || c == '\n'; c = stream.peek()) {
    if (++blanks > mostBlanks) throw Failure(fmt::format("{}: begins with more than {} blanks", ShownName(file), mostBlanks));
    place.Pass(std::string(1, static_cast<char>(stream.get())));
  }
  return place;
}

// An object's bracket begins JSON, and nothing else does.
Incoming readIncoming(std::string const & file)
{
  InputFile input(file);
  std::istream & stream = input.GetStream();
  TextPlace const begin = skipBlanks(stream, file);
  bool const isJson = stream.peek() == '{';
  if (stream.eof()) stream.clear();
  Incoming incoming;
  try {
    incoming = isJson ? readJson(stream, begin) : readTable(stream, ShownName(file));
  } catch (Failure const & failure) {
    input.RequireRead();
    if (!isJson) throw;
    throw Failure(fmt::format("{}: {}; nothing was stored", ShownName(file), failure.what()));
  }
  input.RequireRead();
  return incoming;
}

struct Stored {
  size_t count = 0;
  size_t replaced = 0;
  bool isWhole = true;
};

Stored storeAnew(StoreNames const & names, Incoming & incoming)
{
  Stored stored;
  StoreWriter writer(names, StoreAccess::Create);
  if (writer.IsNew() && incoming.hasHeader) writer.SetHeader(std::move(incoming.header));
  stored.isWhole = ForEachStep("storing", incoming.records.size(), [&](size_t i) {
    auto const & [id, bytes] = incoming.records[i];
    stored.replaced += writer.Has(id) ? 1U : 0U;
    writer.Store(id, bytes);
    ++stored.count;
  });
  writer.Close();
  return stored;
}

// All of them or none: in a copy, which takes the store's place.
Stored storeBeside(StoreNames const & names, Incoming const & incoming)
{
  OpenStore store(names, StoreAccess::Replace);
  if (!store.GetEndedExchange().empty()) Tell(fmt::format("{}: {}", names.record, store.GetEndedExchange()));
  store.RequireUsableIndex();
  CheckReport const report = CheckStore(store, CheckDepth::Blocks);
  RequireSound(report);
  Stored stored;
  StoreCopy copy(store, report);
  std::unordered_map<int, std::vector<BYTE> const *> given;
  std::unordered_set<int> placed;
  for (SurveyBlock const & at : report.survey.blocks) {
    if (!at.block.isFree) placed.insert(at.block.id);
  }
  copy.Change([&](GPDataFile & tables) {
    ForEachStep("storing", incoming.records.size(), [&](size_t i) {
      auto const & [id, bytes] = incoming.records[i];
      stored.replaced += placed.contains(id) ? 1U : 0U;
      given[id] = &bytes;
      tables.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
      ++stored.count;
    });
    if (InterruptGuard::IsInterrupted()) throw Interrupted();
  });
  copy.Check(report.records + stored.count - stored.replaced, [&](int id) {
    auto const found = given.find(id);
    return found != given.end() ? found->second : nullptr;
  });
  copy.PutInPlace();
  return stored;
}

void printStored(bool json, StoreNames const & names, size_t stored, size_t replaced)
{
  if (json) return Print(DumpJson(Json{{"stored", stored}, {"new", stored - replaced}, {"replaced", replaced}}, 2) + "\n");
  PrintLine(fmt::format("{} record{} stored in {}: {} new, {} replaced", stored, stored == 1 ? "" : "s", names.record,
                        stored - replaced, replaced));
}

// What a table's head may name: a column of each datum, or the first and the last of a correlation's.
std::string toldColumns()
{
  std::string told =
      "Columns of a table, in any order; a cell without text stores nothing:\n  id                                      0 to "
      "32767, needed";
  std::vector<Column> const & columns = AllColumns();
  for (DataMeaning const & meaning : GetDataMeanings()) {
    size_t const first = FirstColumnOf(meaning);
    size_t last = first;
    while (last + 1 < columns.size() && columns[last + 1].meaning == &meaning) ++last;
    std::string const names = first == last ? columns[first].name : columns[first].name + " ... " + columns[last].name;
    told += fmt::format("\n  {:<40}{}{}{}", names, meaning.label, *meaning.unit != 0 ? ", " : "", meaning.unit);
  }
  return told;
}

struct ImportCommand : StoreArguments {
  static constexpr char const * name = "import";
  static constexpr char const * help = "Store the records of a table of components or of a JSON export";
  static constexpr char const * example = "zp store import job components.csv";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    command.add_option("FILE", file, "CSV file, between commas, semicolons or tabs, or JSON file; - for standard input")
        ->required();
    command.footer(toldColumns());
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
    try {
      Stored const stored =
          SizeOf(names.record) > 0 && !incoming.records.empty() ? storeBeside(names, incoming) : storeAnew(names, incoming);
      printStored(json, names, stored.count, stored.replaced);
      return stored.isWhole ? exitDone : exitInterrupted;
    } catch (Interrupted const &) {
      return exitInterrupted;
    }
  }

  std::string file;
};

using Pass = JsonText::Pass;

// The result is how many records were left out.
size_t exportJson(StoredRecords & source, Pass const & pass)
{
  constexpr int step = 1;
  std::string text;
  JsonText json(text, step, pass);
  json.BeginObject();
  json.Key("format").Text(formatName);
  json.Key("version").Whole(formatVersion);
  if (source.HasHeader()) {
    CObject const * const header = source.GetHeader();
    json.Key("header");
    if (header != nullptr)
      WriteRecord(json, EncodeObject(*header));
    else
      json.Null();
  }
  json.Key("records").BeginArray();
  size_t const left = source.ForEach("exporting", [&](int id, std::span<BYTE const> bytes) { WriteRecord(json, bytes, id); });
  json.EndArray();
  json.EndObject();
  text += '\n';
  pass(text);
  return left;
}

// The result is how many records were left out.
size_t fillTable(ComponentTable & table, StoredRecords const & source, StoreNames const & names)
{
  return source.ForEach("exporting", [&](int id, std::span<BYTE const> bytes) {
    if (table.Add(id, bytes)) return;
    throw Failure(fmt::format("{}: record {} is no component that a table can tell; export with --json", names.record, id));
  });
}

size_t exportTable(StoredRecords const & source, StoreNames const & names, Pass const & pass)
{
  ComponentTable table;
  size_t const left = fillTable(table, source, names);
  std::string text;
  AppendCsvLine(text, table.GetHead());
  table.ForEachRow([&](std::vector<std::string_view> const & fields) {
    AppendCsvLine(text, fields);
    if (text.size() < writtenPieceBytes) return;
    pass(text);
    text.clear();
  });
  pass(text);
  return left;
}

struct ExportCommand : StoreArguments {
  static constexpr char const * name = "export";
  static constexpr char const * help =
      "Write components as a CSV table or into a workbook, or with --json all records without loss";
  static constexpr char const * example = "zp store export job components.csv";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    auto * const output = command.add_option("FILE", file, "File to write, - for standard output");
    command.add_flag("--skip", skip, "End with 0 although records were left out");
    auto * const sheet = RequireNamed(
        command.add_option("--sheet", workbook.book, "Put two new sheets, constants and correlations, into this workbook")
            ->excludes(output)
            ->excludes(command.get_option("--json")));
    AddServerOption(command, workbook.server)->needs(sheet);
    AddDropOption(command, workbook.drop)->needs(sheet);
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    if (!workbook.book.empty()) return ExportToWorkbook(names);
    RequireOtherFile(names, file);
    StoredRecords records(names);
    OutputFile output(file);
    auto const pass = [&](std::string_view piece) { output.Write(piece); };
    size_t const left = json ? exportJson(records, pass) : exportTable(records, names, pass);
    output.Commit();
    return EndOfReading(records, left, skip);
  }

  ExitStatus ExportToWorkbook(StoreNames const & names) const
  {
    RequireOtherFile(names, workbook.book);
    StoredRecords records(names);
    ComponentTable table;
    size_t const left = fillTable(table, records, names);
    Told(workbook.book, [&] { WriteComponentSheets(table, workbook); });
    return EndOfReading(records, left, skip);
  }

  std::string file = "-";
  bool skip = false;
  SheetArguments workbook;
};

}  // namespace

void AddTransferCommands(CLI::App & family, int & status)
{
  AddCommand<ImportCommand>(family, status);
  AddCommand<ExportCommand>(family, status);
}
