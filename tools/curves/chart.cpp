// What a chart shows.

#include "tools/curves/chart.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace {

constexpr double logarithmicFrom = 50;  // largest over least value
constexpr TemperatureRange unknownRange = {200, 1000};
constexpr double lowestOfCritical = 0.4;  // where the melting point isn't known

double nextNiceStep(double step)
{
  double const power = std::pow(10, std::floor(std::log10(step)));
  for (double const factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= step * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

std::vector<double> linearTicks(double from, double to, int atMost)
{
  std::vector<double> ticks;
  double const step = nextNiceStep((to - from) / atMost);
  for (double number = std::ceil(from / step - 1e-9); number * step <= to + step * 1e-9; ++number)
    ticks.push_back(number * step + 0.0);  // no -0
  return ticks;
}

std::vector<double> decadeTicks(double from, double to, int atMost)
{
  std::vector<double> ticks;
  int const first = static_cast<int>(std::ceil(std::log10(from) - 1e-9));
  int const last = static_cast<int>(std::floor(std::log10(to) + 1e-9));
  int const step = std::max(1, (last - first + atMost) / atMost);
  for (int power = first; power <= last; power += step) ticks.push_back(std::pow(10, power));
  return ticks;
}

ChartAxis linearAxis(double from, double to, int ticks)
{
  return {from, to, false, linearTicks(from, to, ticks)};
}

struct Bounds {
  double least = INFINITY;
  double largest = -INFINITY;

  void Take(double value)
  {
    least = std::min(least, value);
    largest = std::max(largest, value);
  }
  bool Holds() const { return least <= largest; }
};

// Beside the values inside of the curves' ranges those outside, as far as they leave those two thirds of the axis.
Bounds widened(Bounds const & inside, Bounds const & all, bool isLogarithmic)
{
  constexpr double part = 0.25;  // of the inside, on each side
  double const factor = isLogarithmic ? std::pow(inside.largest / inside.least, part) : 1;
  double const room = isLogarithmic ? 0 : part * (inside.largest - inside.least);
  return {std::max(all.least, inside.least / factor - room), std::min(all.largest, inside.largest * factor + room)};
}

// The values' bounds, with a little room.
ChartAxis axisOf(std::vector<std::vector<ChartPoint>> const & curves)
{
  Bounds inside, all;
  for (auto const & curve : curves) {
    for (ChartPoint const & point : curve) {
      all.Take(point.value);
      if (!point.isOutside) inside.Take(point.value);
    }
  }
  constexpr int ticks = 6;
  if (!all.Holds()) return linearAxis(0, 1, ticks);
  if (!inside.Holds()) inside = all;
  bool const isLogarithmic = inside.least > 0 && inside.largest / inside.least > logarithmicFrom;
  Bounds const wide = widened(inside, all, isLogarithmic);
  bool const isEndless = isLogarithmic && !(wide.least > 0 && std::isfinite(wide.largest));
  auto const [least, largest] = isEndless ? inside : wide;
  if (isLogarithmic) return {least, largest, true, decadeTicks(least, largest, ticks)};
  double room = 0.05 * (largest - least);
  constexpr double flat = 1e-10;  // of the values: less is the rounding of one value
  if (!(room > flat * std::max(std::abs(least), std::abs(largest)))) room = least == 0 ? 1 : 0.05 * std::abs(least);
  if (!std::isfinite(room)) return linearAxis(0, 1, ticks);
  return linearAxis(least - room, largest + room, ticks);
}

double lowestOf(TemperatureRange const & range)
{
  return range.from > 0 ? range.from : lowestOfCritical * range.to;
}

// Liquids freeze: where the melting point isn't known, a curve isn't trusted down to 0 K.
bool isOutside(Curve const & curve, double temperature)
{
  bool const isFrozen = curve.range && curve.facts.melting <= 0 && temperature < lowestOf(*curve.range);
  return isFrozen || curve.IsOutside(temperature);
}

std::vector<ChartPoint> sample(Curve const & curve, TemperatureRange const & shown, int samples)
{
  std::vector<ChartPoint> points;
  for (int i = 0; i < samples; ++i) {
    double const temperature = shown.from + (shown.to - shown.from) * i / (samples - 1);
    double const value = curve.At(temperature).value_or(NAN);
    points.push_back({temperature, value, isOutside(curve, temperature)});
  }
  return points;
}

ChartLine lineOf(std::vector<ChartPoint> const & points, ChartAxis const & axis)
{
  ChartLine line;
  bool isOpen = false;
  for (ChartPoint const & point : points) {
    bool const isShown = axis.from <= point.value && point.value <= axis.to;
    if (isShown && !isOpen) line.emplace_back();
    if (isShown) line.back().push_back(point);
    isOpen = isShown;
  }
  return line;
}

}  // namespace

double ChartAxis::ShareOf(double number) const
{
  if (isLogarithmic) return (std::log(number) - std::log(from)) / (std::log(to) - std::log(from));  // a ratio may overflow
  return (number - from) / (to - from);
}

std::string Chart::GetTitle() const
{
  bool const hasUnit = *property->unit != '\0';
  return hasUnit ? fmt::format("{} [{}]", property->label, property->unit) : property->label;
}

bool Chart::LeavesRange() const
{
  auto const isOutside = [](auto const & piece) { return std::ranges::any_of(piece, &ChartPoint::isOutside); };
  return std::ranges::any_of(lines, [&](ChartLine const & line) { return std::ranges::any_of(line, isOutside); });
}

TemperatureRange RangeToShow(std::vector<Curve> const & curves)
{
  TemperatureRange shown = {INFINITY, 0};
  for (Curve const & curve : curves) {
    if (!curve.range) continue;
    shown = {std::min(shown.from, lowestOf(*curve.range)), std::max(shown.to, curve.range->to)};
  }
  return shown.from < shown.to ? shown : unknownRange;
}

Chart MakeChart(std::vector<Curve> const & curves, TemperatureRange const & shown, int samples)
{
  constexpr int temperatureTicks = 8;
  Chart chart;
  chart.property = curves.front().property;
  chart.temperature = linearAxis(shown.from, shown.to, temperatureTicks);
  std::vector<std::vector<ChartPoint>> points;
  points.reserve(curves.size());
  for (Curve const & curve : curves) points.push_back(sample(curve, shown, samples));
  chart.value = axisOf(points);
  for (size_t i = 0; i < curves.size(); ++i) {
    chart.names.push_back(curves[i].facts.name);
    chart.lines.push_back(lineOf(points[i], chart.value));
  }
  return chart;
}

std::string TickText(double tick)
{
  return fmt::format("{:.6g}", tick);
}

std::string ShortenedText(std::string const & text, std::function<bool(std::string const &)> const & fits)
{
  if (fits(text)) return text;
  auto const shortened = [&](size_t end) { return text.substr(0, end) + "..."; };
  std::vector<size_t> ends;  // of whole characters
  for (size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) ends.push_back(i);
  }
  auto const tooLong = std::partition_point(ends.begin(), ends.end(), [&](size_t end) { return fits(shortened(end)); });
  return shortened(tooLong == ends.begin() ? 0 : *(tooLong - 1));
}
