// Curves as a chart: what its axes show, and its drawing as a picture or in characters.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/curves/component_curves.h"

class Picture;

struct ChartAxis {
  double from = 0;
  double to = 1;
  bool isLogarithmic = false;
  std::vector<double> ticks;  // inside the bounds, ascending

  double ShareOf(double value) const;  // 0 at from, 1 at to
};

struct ChartPoint {
  double temperature;
  double value;
  bool isOutside;  // of the curve's known range
};

// The pieces of a curve, broken where it has no value or leaves the chart.
using ChartLine = std::vector<std::vector<ChartPoint>>;

// The curves of one property over a common range of temperature.
struct Chart {
  DataMeaning const * property = nullptr;
  ChartAxis temperature;
  ChartAxis value;
  std::vector<std::string> names;  // of the components, in the order of the lines
  std::vector<ChartLine> lines;

  // "vapour pressure [Pa]"
  std::string GetTitle() const;

  // Whether values outside of a curve's known range are shown.
  bool LeavesRange() const;
};

// The range that shows the curves: where their phases exist, as far as the components tell.
TemperatureRange RangeToShow(std::vector<Curve> const & curves);

// All curves are of one property, and there is one at least. samples is how many values of each are looked at.
Chart MakeChart(std::vector<Curve> const & curves, TemperatureRange const & shown, int samples);

// "300", "0.001", "2e+06"
std::string TickText(double tick);

// The text where it fits; else as much of its begin as fits together with the "..." behind it.
std::string ShortenedText(std::string const & text, std::function<bool(std::string const &)> const & fits);

// How high a chart is drawn, so that its legend has room for every name.
double ChartHeight(Chart const & chart);

// From this place of the picture on, with the axes' texts and a legend.
struct ChartPlace {
  double left, top, width;
};
void DrawChart(Picture & picture, Chart const & chart, ChartPlace const & place);

// Lines of at most so many characters, each with its end; values outside of a curve's known range are dots.
std::string ChartInCharacters(Chart const & chart, int columns, int rows);
