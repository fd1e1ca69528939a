// From a sheet of a chart to its drawing, and from there to the chart.

#include "servers/embedded/chart_contents.h"

#include "servers/embedded/limits.h"
#include "servers/embedded/relations.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

class ChartHandler {
 public:
  static constexpr XmlNamespace space = {"http://schemas.openxmlformats.org/drawingml/2006/chart|",
                                         "http://purl.oclc.org/ooxml/drawingml/chart|"};

  bool Start(std::string_view name, XmlAttributes)
  {
    m_bSeries = m_bSeries || name == "ser" || name == "title";
    return true;
  }
  void End() {}
  void Characters(std::string_view) {}

  bool ShowsSomething() const { return m_bSeries; }

 private:
  bool m_bSeries = false;
};

bool showsSomething(Package & package, std::string const & chart)
{
  ChartHandler handler;
  ReadXml(package.Open(chart, mostBookPartBytes), handler);
  return handler.ShowsSomething();
}

}  // namespace

void LookIntoChart(Package & package, std::string const & part, std::set<std::string> & parts, UnkeptList & unkept)
{
  Relations const drawings(package, part);
  for (Relation const & drawing : drawings.GetAll()) {
    if (drawing.kind != "drawing" || !package.Has(drawing.target)) {
      unkept.Add(Unkept::ChartContents);
      continue;
    }
    parts.insert(drawing.target);
    Relations const charts(package, drawing.target);
    for (Relation const & chart : charts.GetAll()) {
      bool const isChart = chart.kind == "chart" && package.Has(chart.target);
      if (isChart) parts.insert(chart.target);
      if (!isChart || showsSomething(package, chart.target)) unkept.Add(Unkept::ChartContents);
    }
  }
}

}  // namespace embedded
