// Objects read again from their JSON. It goes piece by piece: all values of a large one at once take many times its bytes. The
// items that records have most are read from the text of their value; of everything else the whole text is parsed.

#include "tools/records/json_again.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <zpbase/data.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/records/json_text.h"
#include "tools/records/object_json.h"
#include "tools/records/payload.h"

namespace {

using Object = std::unique_ptr<CObject>;

Object parsed(CObject const & object)
{
  return ObjectFromJson(Json::parse(ObjectToJson(&object, false)));
}

// What stands between the quotes, where nothing in it is escaped; empty for any other text.
std::string_view plainText(std::string_view json)
{
  if (json.find('\\') != std::string_view::npos) return {};
  return json.substr(1, json.size() - 2);
}

class Reader {
 public:
  Object Read(CObject const * object)
  {
    if (object == nullptr) return nullptr;
    CRuntimeClass const * const its = object->GetRuntimeClass();
    if (its == RUNTIME_CLASS(GPf)) return ReadFloat(As<GPf>(*object));
    if (its == RUNTIME_CLASS(GPv)) return ReadArea(As<GPv>(*object));
    if (its == RUNTIME_CLASS(GPs)) return ReadText(As<GPs>(*object));
    if (its == RUNTIME_CLASS(GPDataArray)) return ReadArray<GPDataArray>(*object);
    if (its == RUNTIME_CLASS(GPObArray)) return ReadArray<GPObArray>(*object);
    if (its == RUNTIME_CLASS(GPDataList)) return ReadList<GPDataList>(*object);
    if (its == RUNTIME_CLASS(GPObList)) return ReadList<GPObList>(*object);
    if (its == RUNTIME_CLASS(GPa)) return ReadArrayItem(As<GPa>(*object));
    return parsed(*object);
  }

 private:
  Object ReadFloat(GPf const & item)
  {
    m_strText.clear();
    JsonText(m_strText).Real(item.GetValue());
    double wide = 0.0;
    auto const end = std::from_chars(m_strText.data(), m_strText.data() + m_strText.size(), wide);
    bool const isNumber = end.ec == std::errc() && end.ptr == m_strText.data() + m_strText.size();
    auto const value = static_cast<float>(wide);
    if (!isNumber || !std::isfinite(value)) return parsed(item);
    return std::make_unique<GPf>(item.GetDataID(), value);
  }

  Object ReadText(GPs const & item)
  {
    m_strText.clear();
    JsonText(m_strText).Text(zp::TextToUtf8(item.GetValue().View()));
    std::string_view const plain = plainText(m_strText);
    CString value;
    if (plain.empty() || !zp::Utf8ToText(plain, value)) return parsed(item);
    return std::make_unique<GPs>(item.GetDataID(), value);
  }

  Object ReadArea(GPv const & item)
  {
    m_strText.clear();
    JsonText(m_strText).Hex({reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize())});
    m_strArea.clear();
    if (!zp::AppendFromHex(m_strArea, plainText(m_strText))) return parsed(item);
    auto again = std::make_unique<GPv>(item.GetDataID(), static_cast<int>(m_strArea.size()));
    std::copy(m_strArea.begin(), m_strArea.end(), again->GetArea());
    return again;
  }

  Object ReadArrayItem(GPa const & item)
  {
    Object array = Read(item.GetArray());
    if (array != nullptr && !array->IsKindOf(RUNTIME_CLASS(GPObArray))) throw Failure("no such array");
    return std::make_unique<GPa>(item.GetDataID(), static_cast<GPObArray *>(array.release()));
  }

  template <class Array>
  Object ReadArray(CObject const & object)
  {
    auto again = std::make_unique<Array>();
    CObArray const & array = As<Array>(object);
    for (int i = 0; i < array.GetSize(); ++i) again->Add(Read(array.GetAt(i)).release());
    return again;
  }

  template <class List>
  Object ReadList(CObject const & object)
  {
    auto again = std::make_unique<List>();
    CObList const & list = As<List>(object);
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) again->AddTail(Read(list.GetNext(at)).release());
    return again;
  }

  std::string m_strText;
  std::string m_strArea;
};

}  // namespace

bool GivesBack(CObject const & object, std::span<BYTE const> bytes)
{
  try {
    std::vector<BYTE> const again = EncodeObject(*Reader().Read(&object));
    return std::equal(again.begin(), again.end(), bytes.begin(), bytes.end());
  } catch (Failure const &) {
    return false;
  }
}
