// Trees of objects, drawn from their JSON form.

#include "tools/records/object_tree.h"

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/encoding.h>

#include "tools/records/data_ids.h"
#include "tools/records/payload.h"

namespace {

constexpr char const * nullText = "null";

std::string textOf(Json const & value)
{
  if (!value.is_string()) return value.dump();
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The value of a simple item with its unit; of a list its count.
std::string summaryOf(Json const & object, DataMeaning const * meaning)
{
  std::string const unit = meaning != nullptr && meaning->unit[0] != '\0' ? std::string(" ") + meaning->unit : "";
  if (object.contains("value")) return textOf(object["value"]) + (object["value"].is_number() ? unit : "");
  if (object.contains("x")) return fmt::format("({}, {})", textOf(object["x"]), textOf(object["y"]));
  if (object.contains("items")) {
    size_t const count = object["items"].size();
    return fmt::format("{} item{}", count, count == 1 ? "" : "s");
  }
  if (!object.contains("area")) return "";
  size_t const bytes = object["area"].get_ref<std::string const &>().size() / 2;
  std::string const second = object.contains("second_id") ? fmt::format("second id {}, ", object["second_id"].dump()) : "";
  if (!object.contains("decoded")) return fmt::format("{}{} bytes", second, bytes);
  std::string const layout = object["decoded"]["layout"];
  return second + layout + (unit.empty() ? "" : " in" + unit);
}

class TreeWriter {
 public:
  std::string Write(Json const & root)
  {
    Line("", root);
    Children("", root);
    return std::move(m_Text);
  }

 private:
  void Line(std::string const & head, Json const & object)
  {
    if (object.is_null()) {
      m_Text += head + nullText + "\n";
      return;
    }
    std::string const name = object["class"];
    if (!object.contains("data_id")) {
      std::string const summary = summaryOf(object, nullptr);
      m_Text += head + name + (summary.empty() ? "" : "  " + summary) + "\n";
      return;
    }
    auto const id = object["data_id"].get<unsigned int>();
    DataMeaning const * const meaning = FindDataMeaning(id);
    std::string line = fmt::format("{}{:>5}  {:<27}  {:<5}  {}", head, id, meaning != nullptr ? meaning->label : "", name,
                                   summaryOf(object, meaning));
    line.erase(line.find_last_not_of(' ') + 1);
    m_Text += line + "\n";
  }

  void Children(std::string const & indent, Json const & object)
  {
    if (!object.is_object()) return;
    if (object.contains("array")) Branch(indent, object["array"], true);
    if (object.contains("items")) {
      for (size_t i = 0; i < object["items"].size(); ++i) Branch(indent, object["items"][i], i + 1 == object["items"].size());
    }
    if (object.contains("decoded"))
      Numbers(indent, object["decoded"]);
    else if (object.contains("area"))
      Area(indent, object);
  }

  void Branch(std::string const & indent, Json const & child, bool last)
  {
    Line(indent + (last ? "└─" : "├─"), child);
    Children(indent + (last ? "  " : "│ "), child);
  }

  void Numbers(std::string const & indent, Json const & decoded)
  {
    for (auto const & [name, value] : decoded.items()) {
      if (name == "layout") continue;
      if (!value.is_array()) {
        m_Text += fmt::format("{}{:>9}{} = {}\n", indent, "", name, textOf(value));
        continue;
      }
      for (size_t i = 0; i < value.size(); ++i) {
        m_Text += fmt::format("{}{:>9}{} = {}\n", indent, "", i + 1, textOf(value[i]));
      }
    }
  }

  void Area(std::string const & indent, Json const & object)
  {
    std::vector<BYTE> bytes;
    FromHex(object["area"].get_ref<std::string const &>(), bytes);
    m_Text += HexDump(bytes, indent + "         ");
  }

  std::string m_Text;
};

}  // namespace

std::string RecordTree(std::span<BYTE const> bytes)
{
  Payload const payload = DecodePayload(bytes);
  switch (payload.state) {
    case Payload::Object:
      return TreeWriter().Write(ObjectToJson(payload.object.get()));
    case Payload::Unknown:
      return fmt::format("{}, a class that isn't known here\n{}", payload.className, HexDump(bytes, "  "));
    case Payload::Damaged:
      return fmt::format("{}, unreadable: {}\n{}", payload.className, payload.problem, HexDump(bytes, "  "));
    default:
      return "raw bytes\n" + HexDump(bytes, "  ");
  }
}

std::string FirstText(CObject const & object)
{
  if (object.IsKindOf(RUNTIME_CLASS(GPs))) return zp::TextToUtf8(static_cast<GPs const &>(object).GetValue().View());
  if (!object.IsKindOf(RUNTIME_CLASS(GPDataArray))) return "";
  auto const & array = static_cast<GPDataArray const &>(object);
  for (int i = 0; i < array.GetSize(); ++i) {
    GPData const * const item = array.GetAt(i);
    if (item != nullptr && item->IsKindOf(RUNTIME_CLASS(GPs))) return FirstText(*item);
  }
  return "";
}
