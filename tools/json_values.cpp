// JSON members and numbers.

#include "tools/json_values.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "tools/payload.h"
#include "tools/program.h"

namespace {

constexpr std::string_view nanMark = "nan:";

template <class Real>
Json notFinite(Real value)
{
  if (std::isnan(value)) {
    if constexpr (sizeof value == sizeof(uint32_t)) return fmt::format("nan:{:08x}", std::bit_cast<uint32_t>(value));
    if constexpr (sizeof value == sizeof(uint64_t)) return fmt::format("nan:{:016x}", std::bit_cast<uint64_t>(value));
  }
  return value > 0 ? "inf" : "-inf";
}

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
Real realMember(Json const & json, char const * name)
{
  Json const & member = Member(json, name);
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

long long IntegerMember(Json const & json, char const * name, long long low, long long high)
{
  Json const & member = Member(json, name);
  if (member.is_number_integer() && !(member.is_number_unsigned() && member.get<unsigned long long>() > 0x7FFFFFFF)) {
    auto const value = member.get<long long>();
    if (value >= low && value <= high) return value;
  }
  throw Failure(fmt::format("\"{}\" must be a whole number from {} to {}", name, low, high));
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
  return realMember<float, uint32_t>(json, name);
}

double DoubleMember(Json const & json, char const * name)
{
  return realMember<double, uint64_t>(json, name);
}

std::string FloatToText(float value)
{
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

Json FloatToJson(float value)
{
  if (!std::isfinite(value)) return notFinite(value);
  std::string const text = FloatToText(value);
  double wide = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), wide);
  return wide;
}

Json DoubleToJson(double value)
{
  return std::isfinite(value) ? Json(value) : notFinite(value);
}
