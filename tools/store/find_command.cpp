// zp store find: components by name, formula or CAS number in any number of stores.

#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>

#include "tools/program.h"
#include "tools/records/data_ids.h"
#include "tools/records/object_json.h"
#include "tools/records/payload.h"
#include "tools/store/stored_records.h"

namespace {

enum Field { NameField, FormulaField, CasField, fieldCount };

constexpr std::array<unsigned int, fieldCount> fieldIDs = {1, 2, 3};
constexpr std::array<char const *, fieldCount> fieldKeys = {"name", "formula", "cas"};

using Fields = std::array<std::string, fieldCount>;  // in Windows-1252

struct Finding {
  std::string store;
  int id;
  Fields fields;
};

// Small letters, with the accented ones of Windows-1252.
std::string withoutCase(std::string_view text)
{
  constexpr std::string_view capitals = "\x8A\x8C\x8E\x9F";
  constexpr std::string_view small = "\x9A\x9C\x9E\xFF";
  std::string folded = zp::ToLower(text);
  for (char & c : folded) {
    auto const byte = static_cast<unsigned char>(c);
    if (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7) c = static_cast<char>(byte + 0x20);
    if (size_t const at = capitals.find(c); at != std::string_view::npos) c = small[at];
  }
  return folded;
}

// False for a record that is no component.
bool readFields(std::span<BYTE const> bytes, Fields & fields)
{
  Payload const payload = DecodePayload(bytes);
  if (payload.state != Payload::Object || !payload.object->IsKindOf(RUNTIME_CLASS(GPDataArray))) return false;
  auto const & data = static_cast<GPDataArray const &>(*payload.object);
  for (int i = 0; i < data.GetSize(); ++i) {
    GPData const * const item = data.GetAt(i);
    if (item == nullptr || !item->IsKindOf(RUNTIME_CLASS(GPs))) continue;
    auto const field = std::ranges::find(fieldIDs, item->GetDataID());
    if (field == fieldIDs.end()) continue;
    std::string & text = fields[static_cast<size_t>(field - fieldIDs.begin())];
    if (text.empty()) text = static_cast<GPs const *>(item)->GetValue().View();
  }
  return true;
}

void printTable(std::vector<Finding> const & found)
{
  size_t storeWidth = 5;
  std::array<size_t, fieldCount> widths = {4, 7, 0};
  for (Finding const & each : found) {
    storeWidth = std::max(storeWidth, each.store.size());
    for (size_t i = 0; i + 1 < fieldCount; ++i) widths[i] = std::max(widths[i], each.fields[i].size());
  }
  auto const line = [&](std::string const & store, std::string const & id, Fields const & fields) {
    std::string text = fmt::format("{:<{}}  {:>5}", store, storeWidth, id);
    for (size_t i = 0; i < fieldCount; ++i) {
      size_t const blanks = widths[i] > fields[i].size() ? widths[i] - fields[i].size() : 0;
      text += "  " + zp::TextToUtf8(fields[i]) + std::string(blanks, ' ');
    }
    text.erase(text.find_last_not_of(' ') + 1);
    PrintLine(text);
  };
  if (!found.empty()) line("STORE", "ID", {"NAME", "FORMULA", "CAS"});
  for (Finding const & each : found) line(each.store, std::to_string(each.id), each.fields);
  PrintLine(Counted(found.size(), "component"));
}

void printJson(std::vector<Finding> const & found)
{
  Json json = Json::array();
  for (Finding const & each : found) {
    Json & entry = json.emplace_back(Json{{"store", each.store}, {"id", each.id}});
    for (size_t i = 0; i < fieldCount; ++i) {
      if (!each.fields[i].empty()) entry[fieldKeys[i]] = zp::TextToUtf8(each.fields[i]);
    }
  }
  Print(DumpJson(json, 2) + "\n");
}

struct FindCommand {
  static constexpr char const * name = "find";
  static constexpr char const * help = "Find components by a part of the name, the formula or the CAS number";
  static constexpr char const * example = "zp store find water job others/*.SI";

  void AddOptions(CLI::App & command)
  {
    command.add_option("TEXT", text, "Part of a name, or a whole formula or CAS number; capitals and small letters are the same")
        ->required();
    command.add_option("STORE", stores, "Index file, record file, or the stem of both; any number of them")->required();
    auto * const by = command.add_option("--by", field, "Look at this alone");
    by->check(CLI::IsMember(std::vector<std::string>(fieldKeys.begin(), fieldKeys.end())));
    command.add_flag("--skip", skip, "End with 0 although stores or records can't be read");
    command.add_flag("--json", json, "Print the result as JSON");
  }

  // A store that can't be read is told, and the others are looked through.
  ExitStatus Run() const
  {
    CString const converted = ToText(text, "TEXT");
    std::string const wanted = withoutCase(converted.View());
    if (wanted.empty()) throw Failure("TEXT: is empty; name what is to be found", exitUsage);
    std::vector<Finding> found;
    bool isWhole = true;
    for (std::string const & store : stores) {
      try {
        isWhole &= Search(store, wanted, found) == exitDone;
      } catch (Failure const & failure) {
        Tell(failure.what());
        isWhole = false;
      }
    }
    if (json)
      printJson(found);
    else
      printTable(found);
    return !found.empty() && (isWhole || skip) ? exitDone : exitWanting;
  }

  ExitStatus Search(std::string const & store, std::string const & wanted, std::vector<Finding> & found) const
  {
    StoredRecords const records(ResolveStore(store, ""));
    size_t const left = records.ForEach("looking", [&](int id, std::span<BYTE const> bytes) {
      Fields fields;
      if (readFields(bytes, fields) && Matches(fields, wanted)) found.push_back({store, id, fields});
    });
    return EndOfReading(records, left, false);
  }

  bool Matches(Fields const & fields, std::string const & wanted) const
  {
    for (size_t i = 0; i < fieldCount; ++i) {
      if (!field.empty() && field != fieldKeys[i]) continue;
      std::string const value = withoutCase(fields[i]);
      if (value == wanted || (i == NameField && value.find(wanted) != std::string::npos)) return true;
    }
    return false;
  }

  std::string text;
  std::vector<std::string> stores;
  std::string field;
  bool skip = false;
  bool json = false;
};

}  // namespace

void AddFindCommand(CLI::App & family, int & status)
{
  AddCommand<FindCommand>(family, status);
}
