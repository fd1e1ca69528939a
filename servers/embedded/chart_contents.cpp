// From a sheet of a chart to its drawing, and from there to the chart.

#include "servers/embedded/chart_contents.h"

#include "servers/embedded/limits.h"
#include "servers/embedded/relations.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr XmlNamespace chartNamespace = {"http://schemas.openxmlformats.org/drawingml/2006/chart|",
                                         "http://purl.oclc.org/ooxml/drawingml/chart|"};

bool showsSomething(Package & package, std::string const & chart)
{
  return HasElement(package.Open(chart, mostUnpackedBytes), chartNamespace, {"ser", "title"});
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
