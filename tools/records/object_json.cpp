// The JSON form of each class, and of records.

#include "tools/records/object_json.h"

#include <algorithm>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/store.h>

#include "tools/program.h"
#include "tools/records/data_ids.h"
#include "tools/records/json_again.h"
#include "tools/records/json_values.h"
#include "tools/records/number_forms.h"
#include "tools/records/payload.h"

namespace {

using Object = std::unique_ptr<CObject>;

void writeObject(JsonText & json, CObject const * object);

unsigned int readDataID(Json const & json)
{
  return static_cast<unsigned int>(IntegerMember(json, "data_id", 0, 0xFFFF));
}

void writeDataID(JsonText & json, CObject const & object)
{
  json.Key("data_id").Whole(As<GPData>(object).GetDataID());
}

CString readText(Json const & json)
{
  return ToText(TextMember(json, "value"), "\"value\"");
}

void writeDouble(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("value").Real(As<GPd>(object).GetValue());
}

void writeFloat(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("value").Real(As<GPf>(object).GetValue());
}

void writeLong(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("value").Whole(As<GPdw>(object).GetValue());
}

void writeWord(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("value").Whole(As<GPw>(object).GetValue());
}

void writeText(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("value").Text(zp::TextToUtf8(As<GPs>(object).GetValue().View()));
}

void writePoint(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("x").Real(As<GPxy>(object).GetX());
  json.Key("y").Real(As<GPxy>(object).GetY());
}

void writeArrayItem(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  writeObject(json.Key("array"), As<GPa>(object).GetArray());
}

Object readArrayItem(Json const & json)
{
  unsigned int const id = readDataID(json);
  Object array = ObjectFromJson(Member(json, "array"));
  if (array != nullptr && !array->IsKindOf(RUNTIME_CLASS(GPObArray))) throw Failure("\"array\" must be a GPObArray or null");
  return std::make_unique<GPa>(id, static_cast<GPObArray *>(array.release()));
}

void writeNumber(JsonText & json, AreaNumber const & number)
{
  json.Key(number.name);
  if (number.isReal)
    json.Real(number.real);
  else
    json.Whole(number.whole);
}

// What is for people and isn't read back.
void writeDecoded(JsonText & json, GPv const & item)
{
  if (!json.HasNotes()) return;
  DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
  std::vector<AreaNumber> const numbers = meaning != nullptr ? DecodeArea(item, *meaning) : DecodeInteractions(item);
  if (numbers.empty()) return;
  json.Key("decoded").BeginObject();
  json.Key("layout").Text(meaning != nullptr ? meaning->layout : "GPUnifacBip");
  for (AreaNumber const & number : numbers) writeNumber(json, number);
  json.EndObject();
}

std::string_view areaOf(GPv const & item)
{
  return {reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize())};
}

void writeArea(JsonText & json, CObject const & object)
{
  writeDataID(json, object);
  json.Key("area").Hex(areaOf(As<GPv>(object)));
  writeDecoded(json, As<GPv>(object));
}

void writePair(JsonText & json, CObject const & object)
{
  auto const & pair = As<GPbip>(object);
  writeDataID(json, object);
  json.Key("second_id").Whole(pair.GetSecondID());
  json.Key("area").Hex(areaOf(pair));
  if (!json.HasNotes() || pair.GetSize() == 0 || pair.GetSize() % 4 != 0) return;
  std::vector<float> values(static_cast<size_t>(pair.GetSize()) / sizeof(float));
  pair.GetFloatData(values.data(), static_cast<int>(values.size()));
  json.Key("decoded").BeginObject();
  json.Key("layout").Text("GPbip");
  json.Key("values").BeginArray();
  for (float const value : values) json.Real(value);
  json.EndArray();
  json.EndObject();
}

template <class Item>
Object readAreaInto(std::unique_ptr<Item> item, Json const & json)
{
  std::vector<BYTE> const bytes = HexMember(json, "area");
  if (bytes.size() > GPv::maxSize) throw Failure(fmt::format("\"area\" must have at most {} bytes", GPv::maxSize));
  item->ExpandVArea(static_cast<int>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), item->GetArea());
  return item;
}

Object readPair(Json const & json)
{
  auto const second = static_cast<unsigned int>(IntegerMember(json, "second_id", 0, 0xFFFF));
  return readAreaInto(std::make_unique<GPbip>(readDataID(json), second), json);
}

template <class Array>
void writeArray(JsonText & json, CObject const & object)
{
  json.Key("items").BeginArray();
  CObArray const & array = As<Array>(object);
  for (int i = 0; i < array.GetSize(); ++i) writeObject(json, array.GetAt(i));
  json.EndArray();
}

template <class List>
void writeList(JsonText & json, CObject const & object)
{
  json.Key("items").BeginArray();
  CObList const & list = As<List>(object);
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) writeObject(json, list.GetNext(at));
  json.EndArray();
}

Object readItem(Json const & items, size_t index)
{
  try {
    return ObjectFromJson(items[index]);
  } catch (Failure const & failure) {
    throw Failure(fmt::format("items[{}]: {}", index, failure.what()));
  }
}

// An array or a list with the items of the text.
template <class Holder>
Object readHolder(Json const & json)
{
  constexpr bool takesDataAlone = std::is_same_v<Holder, GPDataArray> || std::is_same_v<Holder, GPDataList>;
  auto holder = std::make_unique<Holder>();
  Json const & items = ArrayMember(json, "items");
  for (size_t i = 0; i < items.size(); ++i) {
    Object item = readItem(items, i);
    bool const fits = !takesDataAlone || item == nullptr || item->IsKindOf(RUNTIME_CLASS(GPData));
    if (!fits) throw Failure("\"items\" must hold data items here");
    if constexpr (std::is_base_of_v<CObList, Holder>)
      holder->AddTail(item.release());
    else
      holder->Add(item.release());
  }
  return holder;
}

constexpr ObjectForm classForms[] = {
    {GPObject::GetThisClass, [](JsonText &, CObject const &) {}, [](Json const &) { return Object(new GPObject); }},
    {GPData::GetThisClass, writeDataID, [](Json const & json) { return Object(new GPData(readDataID(json))); }},
    {GPd::GetThisClass, writeDouble,
     [](Json const & json) { return Object(new GPd(readDataID(json), DoubleMember(json, "value"))); }},
    {GPf::GetThisClass, writeFloat,
     [](Json const & json) { return Object(new GPf(readDataID(json), FloatMember(json, "value"))); }},
    {GPdw::GetThisClass, writeLong,
     [](Json const & json) {
       return Object(new GPdw(readDataID(json), static_cast<long>(IntegerMember(json, "value", INT32_MIN, INT32_MAX))));
     }},
    {GPw::GetThisClass, writeWord,
     [](Json const & json) {
       return Object(new GPw(readDataID(json), static_cast<int>(IntegerMember(json, "value", INT16_MIN, INT16_MAX))));
     }},
    {GPs::GetThisClass, writeText, [](Json const & json) { return Object(new GPs(readDataID(json), readText(json))); }},
    {GPxy::GetThisClass, writePoint,
     [](Json const & json) { return Object(new GPxy(readDataID(json), DoubleMember(json, "x"), DoubleMember(json, "y"))); }},
    {GPa::GetThisClass, writeArrayItem, readArrayItem},
    {GPv::GetThisClass, writeArea, [](Json const & json) { return readAreaInto(std::make_unique<GPv>(readDataID(json)), json); }},
    {GPbip::GetThisClass, writePair, readPair},
    {GPObArray::GetThisClass, writeArray<GPObArray>, readHolder<GPObArray>},
    {GPDataArray::GetThisClass, writeArray<GPDataArray>, readHolder<GPDataArray>},
    {GPObList::GetThisClass, writeList<GPObList>, readHolder<GPObList>},
    {GPDataList::GetThisClass, writeList<GPDataList>, readHolder<GPDataList>},
};

using KnownForms = std::vector<std::pair<CRuntimeClass const *, ObjectForm const *>>;

KnownForms makeKnownForms()
{
  KnownForms known;
  for (std::span<ObjectForm const> const forms : {std::span<ObjectForm const>(classForms), GetNumberForms()}) {
    for (ObjectForm const & form : forms) known.emplace_back(form.getClass(), &form);
  }
  return known;
}

template <class Fits>
ObjectForm const * findForm(Fits const & fits)
{
  static KnownForms const known = makeKnownForms();
  auto const found = std::find_if(known.begin(), known.end(), [&](auto const & each) { return fits(each.first); });
  return found != known.end() ? found->second : nullptr;
}

int g_nReadDepth = 0;

struct ReadLevel {
  ReadLevel()
  {
    if (g_nReadDepth == CArchive::maxDepth) throw Failure("objects are nested too deep");
    ++g_nReadDepth;
  }
  ~ReadLevel() { --g_nReadDepth; }
};

void writeObject(JsonText & json, CObject const * object)
{
  if (object == nullptr) return json.Null();
  CRuntimeClass const * const its = object->GetRuntimeClass();
  json.BeginObject();
  json.Key("class").Text(its->m_lpszClassName);
  ObjectForm const * const form = findForm([its](CRuntimeClass const * known) { return known == its; });
  if (form != nullptr) form->write(json, *object);
  json.EndObject();
}

}  // namespace

std::string ObjectToJson(CObject const * object, bool withNotes)
{
  std::string text;
  JsonText json(text, withNotes);
  writeObject(json, object);
  return text;
}

std::unique_ptr<CObject> ObjectFromJson(Json const & json)
{
  ReadLevel const level;
  if (json.is_null()) return nullptr;
  std::string const name = TextMember(json, "class");
  ObjectForm const * const form = findForm([&](CRuntimeClass const * known) { return name == known->m_lpszClassName; });
  if (form == nullptr) throw Failure(fmt::format("\"class\" is {}, which has no JSON form; give the record as \"hex\"", name));
  return form->read(json);
}

void WriteRecord(JsonText & json, std::span<BYTE const> bytes, int id)
{
  json.BeginObject();
  if (id >= 0) json.Key("id").Whole(id);
  Payload const payload = DecodePayload(bytes);
  if (payload.state == Payload::Object && GivesBack(*payload.object, bytes))
    writeObject(json.Key("object"), payload.object.get());
  else
    json.Key("hex").Hex({reinterpret_cast<char const *>(bytes.data()), bytes.size()});
  json.EndObject();
}

std::vector<BYTE> RecordFromJson(Json const & json)
{
  if (!json.is_object() || json.contains("object") == json.contains("hex")) {
    throw Failure("a record has either \"object\" or \"hex\"");
  }
  if (json.contains("hex")) return HexMember(json, "hex");
  std::unique_ptr<CObject> const object = ObjectFromJson(json["object"]);
  if (object == nullptr) throw Failure("\"object\" must not be null");
  return EncodeObject(*object);
}
