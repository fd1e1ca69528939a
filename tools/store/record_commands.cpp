// zp store list, show, get, put and delete: single records.

#include "tools/interrupt_guard.h"
#include "tools/json_output.h"
#include "tools/store/many_stores.h"
#include "tools/store/record_ids.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include <fmt/compile.h>
#include <fmt/format.h>

#include "tools/input_file.h"
#include "tools/number_option.h"
#include "tools/output_file.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/json_events.h"
#include "tools/records/json_text.h"
#include "tools/records/object_json.h"
#include "tools/records/object_tree.h"
#include "tools/records/payload.h"
#include "tools/shown_text.h"
#include "tools/store/store_writer.h"
#include "tools/store/stored_records.h"

namespace {

constexpr size_t shownText = 40;               // bytes of a text in the list
constexpr size_t printedPieceBytes = 0x10000;  // of what is printed

struct ListRow {
  int id;
  size_t bytes;
  std::string className;
  std::string text;
};

ListRow rowOf(int id, std::span<BYTE const> bytes)
{
  Payload const payload = DecodePayload(bytes);
  ListRow row = {id, bytes.size(), payload.className, ""};
  if (payload.state == Payload::Object) row.text = FirstText(*payload.object);
  if (payload.state == Payload::Unknown) row.text = "(class not known here)";
  if (payload.state == Payload::Damaged) row.text = "(unreadable)";
  return row;
}

// The text up to the row's end.
void appendShortened(std::string & lines, std::string const & text)
{
  std::string const shown = Visible(text);
  size_t end = std::min(shown.size(), shownText);
  while (end > 0 && end < shown.size() && (static_cast<unsigned char>(shown[end]) & 0xC0) == 0x80) --end;
  lines.append(shown, 0, end);
  if (end < shown.size()) lines += " ...";
}

void appendRow(std::string & lines, ListRow const & row, size_t classWidth)
{
  std::string_view const name = row.className.empty() ? std::string_view("-") : row.className;
  fmt::format_to(std::back_inserter(lines), FMT_COMPILE("{:>5}  {:>6}  "), row.id, row.bytes);
  lines += name;
  lines.append(classWidth - name.size() + 2, ' ');
  appendShortened(lines, row.text);
  lines.erase(lines.find_last_not_of(' ') + 1);
  lines += '\n';
}

void printRows(std::vector<ListRow> const & rows, StoreOutput & output)
{
  size_t width = 5;
  for (ListRow const & row : rows) width = std::max(width, row.className.size());
  std::string lines;
  if (!rows.empty()) lines = fmt::format("{:>5}  {:>6}  {:<{}}  {}\n", "ID", "BYTES", "CLASS", width, "TEXT");
  size_t total = 0;
  for (ListRow const & row : rows) {
    appendRow(lines, row, width);
    total += row.bytes;
    if (lines.size() < printedPieceBytes) continue;
    output.PrintLines(lines);
    lines.clear();
  }
  output.PrintLines(lines + fmt::format("{}, {}\n", Counted(rows.size(), "record"), Counted(total, "byte")));
}

void printRowsAsJson(std::vector<ListRow> const & rows, StoreOutput & output)
{
  Json json = Json::array();
  for (ListRow const & row : rows) {
    Json & entry = json.emplace_back(Json{{"id", row.id}, {"bytes", row.bytes}});
    if (!row.className.empty()) entry["class"] = row.className;
    if (!row.text.empty()) entry["text"] = row.text;
  }
  output.PrintJson(DumpJson(json, 2) + "\n");
}

std::vector<BYTE> readJsonRecord(InputFile & input, std::string const & file)
{
  std::istringstream text(input.ReadAll(mostJsonBytes, "a record told in JSON"));
  try {
    return RecordFromJson(ReadJson(text));
  } catch (Failure const & failure) {
    throw Failure(fmt::format("{}: {}; zp store show --json prints the form", ShownName(file), failure.what()));
  }
}

std::vector<BYTE> readRecord(std::string const & file, bool json)
{
  InputFile input(file);
  std::vector<BYTE> bytes;
  if (json) {
    bytes = readJsonRecord(input, file);
  } else {
    std::string const raw = input.ReadAll(zp::maxRecordLength, "a record");
    bytes.assign(raw.begin(), raw.end());
  }
  if (!bytes.empty() && bytes.size() <= zp::maxRecordLength) return bytes;
  throw Failure(
      fmt::format("{}: has {}, and a record has 1 to {}", ShownName(file), Counted(bytes.size(), "byte"), zp::maxRecordLength));
}

void writeJson(int id, std::vector<BYTE> const & bytes, JsonText::Pass const & pass)
{
  constexpr int step = 2;
  std::string text;
  JsonText json(text, step, pass);
  WriteRecord(json, bytes, id);
  text += '\n';
  pass(text);
}

struct RecordArguments : StoreArguments {
  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    command.add_option("ID", id, "Record id, 0 to 32767")->required()->transform(WholeNumber(0, zp::maxRecordID));
  }

  int id = 0;
};

struct ListCommand : ManyStoresArguments {
  static constexpr char const * name = "list";
  static constexpr char const * help = "List the records: id, bytes, class, first text";
  static constexpr char const * example = "zp store list job";

  void AddOptions(CLI::App & command)
  {
    ManyStoresArguments::AddOptions(command);
    command.add_flag("--skip", skip, "End with 0 although records can't be read");
  }

  ExitStatus Run() const
  {
    return ForEachStore([this](StoreNames const & names, StoreOutput & output) { return List(names, output); });
  }

  ExitStatus List(StoreNames const & names, StoreOutput & output) const
  {
    StoredRecords const records(names);
    std::vector<ListRow> rows;
    rows.reserve(records.GetIDs().size());
    size_t const left =
        records.ForEach("reading", [&](int id, std::span<BYTE const> bytes) { rows.push_back(rowOf(id, bytes)); });
    if (json) {
      printRowsAsJson(rows, output);
    } else {
      printRows(rows, output);
    }
    return EndOfReading(records, left, skip);
  }

  bool skip = false;
};

struct ShowCommand : StoreArguments {
  static constexpr char const * name = "show";
  static constexpr char const * help = "Show records as trees of their values";
  static constexpr char const * example = "zp store show job 7";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    ids.AddOption(command);
  }

  // With --json one id gives one object, as put takes it; more give an array. Of several one that can't be read is told and left
  // out.
  ExitStatus Run() const
  {
    StoredRecords const records(GetNames());
    auto const & all = records.GetIDs();
    auto const has = [&](int id) { return std::ranges::binary_search(all, id); };
    std::vector<int> const picked = ids.Pick(records.GetRecordsName(), has, "see zp store list");
    if (ids.IsSingle()) {
      Show(picked.front(), records.Load(picked.front()));
      return exitDone;
    }
    bool const isWhole = ShowSeveral(records, picked);
    return isWhole ? exitDone : exitWanting;
  }

  bool ShowSeveral(StoredRecords const & records, std::vector<int> const & picked) const
  {
    size_t shown = 0;
    if (json) Print("[\n");
    for (int const id : picked) {
      try {
        std::vector<BYTE> const bytes = records.Load(id);
        if (json && shown > 0) Print(",\n");
        Show(id, bytes);
        ++shown;
      } catch (Failure const & failure) {
        Tell(failure.what());
      }
    }
    if (json) Print("]\n");
    return shown == picked.size();
  }

  void Show(int id, std::vector<BYTE> const & bytes) const
  {
    if (json) return writeJson(id, bytes, Print);
    PrintLine(fmt::format("record {}, {}", id, Counted(bytes.size(), "byte")));
    WriteRecordTree(bytes, Print);
  }

  RecordIDs ids;
};

struct GetCommand : RecordArguments {
  static constexpr char const * name = "get";
  static constexpr char const * help = "Write a record's bytes, or with --json its JSON, to a file";
  static constexpr char const * example = "zp store get job 7 record.bin";

  void AddOptions(CLI::App & command)
  {
    RecordArguments::AddOptions(command);
    command.add_option("FILE", file, "File to write, - for standard output");
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    RequireOtherFile(names, file);
    std::vector<BYTE> const bytes = StoredRecords(names).Load(id);
    OutputFile output(file);
    auto const pass = [&](std::string_view piece) { output.Write(piece); };
    if (json)
      writeJson(id, bytes, pass);
    else
      pass({reinterpret_cast<char const *>(bytes.data()), bytes.size()});
    output.Commit();
    return exitDone;
  }

  std::string file = "-";
};

struct PutCommand : RecordArguments {
  static constexpr char const * name = "put";
  static constexpr char const * help = "Store a file's bytes, or with --json the object it tells, as a record";
  static constexpr char const * example = "zp store put job 7 record.bin";

  void AddOptions(CLI::App & command)
  {
    RecordArguments::AddOptions(command);
    command.add_option("FILE", file, "File to read, - for standard input");
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    std::vector<BYTE> const bytes = readRecord(file, json);
    InterruptGuard const guard;
    StoreWriter writer(names, StoreAccess::Create);
    writer.Store(id, bytes);
    writer.Close();
    return exitDone;
  }

  std::string file = "-";
};

struct DeleteCommand : StoreArguments {
  static constexpr char const * name = "delete";
  static constexpr char const * help = "Delete records";
  static constexpr char const * example = "zp store delete job 1-5,9";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    ids.AddOption(command);
  }

  // Everything named must be there before anything is deleted.
  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    InterruptGuard const guard;
    StoreWriter writer(names, StoreAccess::Change);
    auto const has = [&](int id) { return writer.Has(id); };
    std::vector<int> const picked = ids.Pick(names.index, has, "nothing was deleted, see zp store list");
    bool const isWhole = ForEachStep("deleting", picked.size(), [&](size_t i) { writer.Delete(picked[i]); });
    writer.Close();
    return isWhole ? exitDone : exitInterrupted;
  }

  RecordIDs ids;
};

}  // namespace

void AddRecordCommands(CLI::App & family, int & status)
{
  AddCommand<ListCommand>(family, status);
  AddCommand<ShowCommand>(family, status);
  AddCommand<GetCommand>(family, status);
  AddCommand<PutCommand>(family, status);
  AddCommand<DeleteCommand>(family, status);
}
