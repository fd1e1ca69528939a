// Reading dates and times.

#include "servers/embedded/iso_dates.h"

#include <chrono>

namespace embedded {
namespace {

constexpr double secondsInDay = 86400.0;

bool takeDigits(std::string_view & rest, size_t count, int & value)
{
  if (rest.size() < count) return false;
  value = 0;
  for (size_t i = 0; i < count; ++i) {
    if (rest[i] < '0' || rest[i] > '9') return false;
    value = value * 10 + (rest[i] - '0');
  }
  rest.remove_prefix(count);
  return true;
}

bool take(std::string_view & rest, char c)
{
  if (rest.empty() || rest.front() != c) return false;
  rest.remove_prefix(1);
  return true;
}

double takeFraction(std::string_view & rest)
{
  double value = 0.0;
  double scale = 0.1;
  for (int digit = 0; takeDigits(rest, 1, digit); scale /= 10) value += digit * scale;
  return value;
}

std::optional<int> takeDate(std::string_view & rest, bool from1904)
{
  int year = 0;
  int month = 0;
  int day = 0;
  std::string_view left = rest;
  if (!takeDigits(left, 4, year) || !take(left, '-') || !takeDigits(left, 2, month) || !take(left, '-') ||
      !takeDigits(left, 2, day)) {
    return std::nullopt;
  }
  using namespace std::chrono;
  year_month_day const date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  constexpr sys_days epoch1904 = year_month_day(std::chrono::year(1904), January, std::chrono::day(1));
  constexpr sys_days epoch1900 = year_month_day(std::chrono::year(1899), December, std::chrono::day(31));
  constexpr int lastGoodDay = 59;  // 28 February 1900
  int number = static_cast<int>((sys_days(date) - (from1904 ? epoch1904 : epoch1900)).count());
  if (!from1904 && number > lastGoodDay) ++number;
  rest = left;
  return number < 0 ? std::nullopt : std::optional(number);
}

std::optional<double> takeTime(std::string_view & rest)
{
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (!takeDigits(rest, 2, hour) || !take(rest, ':') || !takeDigits(rest, 2, minute)) return std::nullopt;
  if (take(rest, ':') && !takeDigits(rest, 2, second)) return std::nullopt;
  double const fraction = take(rest, '.') ? takeFraction(rest) : 0.0;
  if (hour > 24 || minute > 59 || second > 60) return std::nullopt;
  return (hour * 3600 + minute * 60 + second + fraction) / secondsInDay;
}

}  // namespace

std::optional<double> ReadIsoDate(std::string_view text, bool from1904)
{
  double value = 0.0;
  bool const isTimeAlone = text.size() > 2 && text[2] == ':';
  if (!isTimeAlone) {
    auto const day = takeDate(text, from1904);
    if (!day) return std::nullopt;
    value = *day;
    if (text.empty()) return value;
    if (!take(text, 'T')) return std::nullopt;
  }
  auto const time = takeTime(text);
  take(text, 'Z');
  if (!time || !text.empty()) return std::nullopt;
  return value + *time;
}

}  // namespace embedded
