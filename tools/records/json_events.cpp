// Building values from a parser's events.

#include "tools/records/json_events.h"

#include <vector>

#include <fmt/format.h>
#include <zpbase/platform/archive.h>

#include "tools/program.h"

namespace {

using Take = std::function<void(Json const & rest, Json const & element)>;

class Builder : public Json::json_sax_t {
 public:
  Builder(std::string const & member, Take take) : m_strMember(member), m_pfnTake(std::move(take)) {}

  Json & GetResult() { return m_Root; }
  std::string const & GetProblem() const { return m_strProblem; }

  bool null() override { return End(Put(nullptr)); }
  bool boolean(bool value) override { return End(Put(value)); }
  bool number_integer(number_integer_t value) override { return End(Put(value)); }
  bool number_unsigned(number_unsigned_t value) override { return End(Put(value)); }
  bool number_float(number_float_t value, string_t const &) override { return End(Put(value)); }
  bool string(string_t & value) override { return End(Put(std::move(value))); }
  bool binary(binary_t &) override { return false; }
  bool start_object(std::size_t) override { return Begin(Put(Json::object())); }
  bool start_array(std::size_t) override { return Begin(Put(Json::array())); }
  bool end_object() override { return EndHolder(); }
  bool end_array() override { return EndHolder(); }
  bool key(string_t & name) override
  {
    m_strKey = std::move(name);
    return true;
  }
  bool parse_error(std::size_t, std::string const &, nlohmann::detail::exception const & error) override
  {
    m_strProblem = error.what();
    return false;
  }

 private:
  Json & Put(Json value)
  {
    if (m_Holders.empty()) return m_Root = std::move(value);
    Json & holder = *m_Holders.back();
    if (holder.is_array()) return holder.emplace_back(std::move(value));
    return holder[m_strKey] = std::move(value);
  }

  // An object of a record is an object in JSON, and so is its list of items.
  bool Begin(Json & holder)
  {
    constexpr size_t mostLevels = 2 * static_cast<size_t>(CArchive::maxDepth) + 8;
    if (m_Holders.size() == mostLevels) throw Failure("values are nested too deep");
    if (holder.is_array() && m_Holders.size() == 1 && m_pfnTake && m_strKey == m_strMember) m_pList = &holder;
    m_Holders.push_back(&holder);
    return true;
  }

  bool EndHolder()
  {
    Json & holder = *m_Holders.back();
    m_Holders.pop_back();
    if (&holder == m_pList) m_pList = nullptr;
    return End(holder);
  }

  bool End(Json const & value)
  {
    if (m_pList == nullptr || m_Holders.size() != 2) return true;
    m_pfnTake(m_Root, value);
    m_pList->clear();
    return true;
  }

  std::string const & m_strMember;
  Take m_pfnTake;
  Json m_Root;
  std::vector<Json *> m_Holders;
  Json * m_pList = nullptr;  // while its elements are read
  std::string m_strKey;
  std::string m_strProblem;
};

}  // namespace

Json ReadJson(std::istream & input, std::string const & member, Take take)
{
  Builder builder(member, std::move(take));
  if (!Json::sax_parse(input, &builder)) throw Failure(fmt::format("is no JSON: {}", builder.GetProblem()));
  return std::move(builder.GetResult());
}

Json ReadJson(std::istream & input)
{
  return ReadJson(input, "", nullptr);
}
