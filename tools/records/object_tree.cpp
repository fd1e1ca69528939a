// Trees of objects, drawn from their JSON form.

#include "tools/records/object_tree.h"

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/records/data_ids.h"
#include "tools/records/payload.h"
#include "tools/shown_text.h"

namespace {

constexpr char const * nullText = "null";

std::string textOf(Json const & value)
{
  if (!value.is_string()) return value.dump();
  return VisibleJson(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// The value of a simple item with its unit.
std::string summaryOf(Json const & object, DataMeaning const * meaning)
{
  std::string const unit = meaning != nullptr && meaning->unit[0] != '\0' ? std::string(" ") + meaning->unit : "";
  if (object.contains("value")) return textOf(object["value"]) + (object["value"].is_number() ? unit : "");
  if (object.contains("x")) return fmt::format("({}, {})", textOf(object["x"]), textOf(object["y"]));
  if (!object.contains("area")) return "";
  size_t const bytes = object["area"].get_ref<std::string const &>().size() / 2;
  std::string const second = object.contains("second_id") ? fmt::format("second id {}, ", object["second_id"].dump()) : "";
  if (!object.contains("decoded")) return fmt::format("{}{} bytes", second, bytes);
  std::string const layout = object["decoded"]["layout"];
  return second + layout + (unit.empty() ? "" : " in" + unit);
}

std::vector<CObject const *> elementsOf(CObject const & object)
{
  std::vector<CObject const *> elements;
  if (object.IsKindOf(RUNTIME_CLASS(GPa))) elements.push_back(static_cast<GPa const &>(object).GetArray());
  if (object.IsKindOf(RUNTIME_CLASS(CObArray))) {
    auto const & array = static_cast<CObArray const &>(object);
    for (int i = 0; i < array.GetSize(); ++i) elements.push_back(array.GetAt(i));
  }
  if (object.IsKindOf(RUNTIME_CLASS(CObList))) {
    auto const & list = static_cast<CObList const &>(object);
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) elements.push_back(list.GetNext(at));
  }
  return elements;
}

bool isContainer(CObject const & object)
{
  return object.IsKindOf(RUNTIME_CLASS(CObArray)) || object.IsKindOf(RUNTIME_CLASS(CObList));
}

class TreeWriter {
 public:
  explicit TreeWriter(std::function<void(std::string_view)> const & pass) : m_pfnPass(pass) {}

  // mark stands in front of the object's own line, below in front of those under it, both behind what those above have.
  void Write(std::string_view mark, std::string_view below, CObject const * object)
  {
    if (object == nullptr) return m_pfnPass(fmt::format("{}{}{}\n", m_strIndent, mark, nullText));
    size_t const former = m_strIndent.size();
    if (isContainer(*object) || object->IsKindOf(RUNTIME_CLASS(GPa)))
      Branches(mark, below, *object);
    else
      Leaf(mark, below, Json::parse(ObjectToJson(object)));
    m_strIndent.resize(former);
  }

 private:
  void Branches(std::string_view mark, std::string_view below, CObject const & object)
  {
    std::vector<CObject const *> const elements = elementsOf(object);
    BranchLine(mark, object, elements.size());
    m_strIndent += below;
    for (CObject const * const & element : elements) {
      bool const isLast = &element == &elements.back();
      Write(isLast ? "└─" : "├─", isLast ? "  " : "│ ", element);
    }
  }

  void BranchLine(std::string_view mark, CObject const & object, size_t count)
  {
    Json json = {{"class", object.GetRuntimeClass()->m_lpszClassName}};
    if (!isContainer(object)) json["data_id"] = static_cast<GPa const &>(object).GetDataID();
    Line(mark, json, isContainer(object) ? Counted(count, "item") : "");
  }

  void Leaf(std::string_view mark, std::string_view below, Json const & object)
  {
    Line(mark, object, summaryOf(object, meaningOf(object)));
    m_strIndent += below;
    if (object.contains("decoded"))
      Numbers(object["decoded"]);
    else if (object.contains("area"))
      Area(object);
  }

  static DataMeaning const * meaningOf(Json const & object)
  {
    return object.contains("data_id") ? FindDataMeaning(object["data_id"].get<unsigned int>()) : nullptr;
  }

  void Line(std::string_view mark, Json const & object, std::string const & summary)
  {
    std::string const head = m_strIndent + std::string(mark);
    std::string const name = object["class"];
    if (!object.contains("data_id")) return m_pfnPass(head + name + (summary.empty() ? "" : "  " + summary) + "\n");
    DataMeaning const * const meaning = meaningOf(object);
    std::string line = fmt::format("{}{:>5}  {:<27}  {:<5}  {}", head, object["data_id"].get<unsigned int>(),
                                   meaning != nullptr ? meaning->label : "", name, summary);
    line.erase(line.find_last_not_of(' ') + 1);
    m_pfnPass(line + "\n");
  }

  void Numbers(Json const & decoded)
  {
    for (auto const & [name, value] : decoded.items()) {
      if (name == "layout") continue;
      if (!value.is_array()) {
        m_pfnPass(fmt::format("{}{:>9}{} = {}\n", m_strIndent, "", name, textOf(value)));
        continue;
      }
      for (size_t i = 0; i < value.size(); ++i) {
        m_pfnPass(fmt::format("{}{:>9}{} = {}\n", m_strIndent, "", i + 1, textOf(value[i])));
      }
    }
  }

  void Area(Json const & object)
  {
    std::vector<BYTE> bytes;
    FromHex(object["area"].get_ref<std::string const &>(), bytes);
    m_pfnPass(HexDump(bytes, m_strIndent + "         "));
  }

  std::function<void(std::string_view)> const & m_pfnPass;
  std::string m_strIndent;  // in front of every line below the object that is being written
};

}  // namespace

void WriteRecordTree(std::span<BYTE const> bytes, std::function<void(std::string_view)> const & pass)
{
  Payload const payload = DecodePayload(bytes);
  switch (payload.state) {
    case Payload::Object:
      return TreeWriter(pass).Write("", "", payload.object.get());
    case Payload::Unknown:
      pass(fmt::format("{}, a class that isn't known here\n", payload.className));
      break;
    case Payload::Damaged:
      pass(fmt::format("{}, unreadable: {}\n", payload.className, payload.problem));
      break;
    default:
      pass("raw bytes\n");
  }
  pass(HexDump(bytes, "  "));
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
