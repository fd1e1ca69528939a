// JSON members and numbers.

#include "tools/records/json_values.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/records/payload.h"

namespace {

constexpr std::string_view nanMark = "nan:";

template <class Real, class Bits>
bool fromMark(std::string_view text, Real & value)
{
  if (text == "inf" || text == "-inf") {
    value = text == "inf" ? std::numeric_limits<Real>::infinity() : -std::numeric_limits<Real>::infinity();
    return true;
  }
  Bits bits = 0;
  if (!text.starts_with(nanMark)) return false;
  auto const end = std::from_chars(text.data() + nanMark.size(), text.data() + text.size(), bits, 16);
  value = std::bit_cast<Real>(bits);
  return end.ec == std::errc() && end.ptr == text.data() + text.size() && std::isnan(value);
}

template <class Real, class Bits>
Real realOf(Json const & member, char const * name)
{
  Real value = 0;
  if (member.is_number()) {
    double const wide = member.get<double>();
    value = static_cast<Real>(wide);
    if (std::isfinite(value)) return value;
  } else if (member.is_string() && fromMark<Real, Bits>(member.get_ref<std::string const &>(), value)) {
    return value;
  }
  throw Failure(fmt::format("\"{}\" must be a number that fits {} bytes, or \"inf\", \"-inf\", \"nan:\" and its bits in hex",
                            name, sizeof(Real)));
}

}  // namespace

Json const & Member(Json const & json, char const * name)
{
  if (!json.is_object()) throw Failure(fmt::format("an object with \"{}\" is expected", name));
  auto const found = json.find(name);
  if (found == json.end()) throw Failure(fmt::format("\"{}\" is missing", name));
  return *found;
}

long long IntegerOf(Json const & value, char const * name, long long low, long long high)
{
  if (value.is_number_integer() && !(value.is_number_unsigned() && value.get<unsigned long long>() > 0xFFFFFFFF)) {
    auto const number = value.get<long long>();
    if (number >= low && number <= high) return number;
  }
  throw Failure(fmt::format("\"{}\" must be a whole number from {} to {}", name, low, high));
}

long long IntegerMember(Json const & json, char const * name, long long low, long long high)
{
  return IntegerOf(Member(json, name), name, low, high);
}

std::string TextMember(Json const & json, char const * name)
{
  Json const & member = Member(json, name);
  if (!member.is_string()) throw Failure(fmt::format("\"{}\" must be a text", name));
  return member.get<std::string>();
}

Json const & ArrayMember(Json const & json, char const * name)
{
  Json const & member = Member(json, name);
  if (!member.is_array()) throw Failure(fmt::format("\"{}\" must be an array", name));
  return member;
}

std::vector<BYTE> HexMember(Json const & json, char const * name)
{
  std::vector<BYTE> bytes;
  if (!FromHex(TextMember(json, name), bytes)) throw Failure(fmt::format("\"{}\" must be pairs of hex digits", name));
  return bytes;
}

float FloatMember(Json const & json, char const * name)
{
  return realOf<float, uint32_t>(Member(json, name), name);
}

double DoubleMember(Json const & json, char const * name)
{
  return realOf<double, uint64_t>(Member(json, name), name);
}

double DoubleOf(Json const & value, char const * name)
{
  return realOf<double, uint64_t>(value, name);
}
