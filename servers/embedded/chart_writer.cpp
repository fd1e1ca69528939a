// A chart without a series: the least that other programs take for one.

#include <fmt/format.h>

#include "servers/embedded/sheet_writer.h"

namespace embedded {
namespace {

constexpr std::string_view chartSheet =
    R"(<chartsheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><sheetPr/>)"
    R"(<sheetViews><sheetView workbookViewId="0"/></sheetViews>)"
    R"(<pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/>)"
    R"(<drawing r:id="rId1"/></chartsheet>)";

constexpr std::string_view drawing =
    R"(<xdr:wsDr xmlns:xdr="http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing" )"
    R"(xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main"><xdr:absoluteAnchor><xdr:pos x="0" y="0"/>)"
    R"(<xdr:ext cx="9308969" cy="6078325"/><xdr:graphicFrame macro=""><xdr:nvGraphicFramePr><xdr:cNvPr id="2" name="Chart 1"/>)"
    R"(<xdr:cNvGraphicFramePr/></xdr:nvGraphicFramePr><xdr:xfrm><a:off x="0" y="0"/><a:ext cx="0" cy="0"/></xdr:xfrm>)"
    R"(<a:graphic><a:graphicData uri="http://schemas.openxmlformats.org/drawingml/2006/chart">)"
    R"(<c:chart xmlns:c="http://schemas.openxmlformats.org/drawingml/2006/chart" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships" r:id="rId1"/></a:graphicData></a:graphic>)"
    R"(</xdr:graphicFrame><xdr:clientData/></xdr:absoluteAnchor></xdr:wsDr>)";

constexpr std::string_view chart =
    R"(<c:chartSpace xmlns:c="http://schemas.openxmlformats.org/drawingml/2006/chart"><c:chart><c:plotArea><c:layout/>)"
    R"(<c:barChart><c:barDir val="col"/><c:grouping val="clustered"/><c:axId val="1"/><c:axId val="2"/></c:barChart>)"
    R"(<c:catAx><c:axId val="1"/><c:scaling><c:orientation val="minMax"/></c:scaling><c:delete val="0"/><c:axPos val="b"/>)"
    R"(<c:crossAx val="2"/></c:catAx><c:valAx><c:axId val="2"/><c:scaling><c:orientation val="minMax"/></c:scaling>)"
    R"(<c:delete val="0"/><c:axPos val="l"/><c:crossAx val="1"/></c:valAx></c:plotArea><c:plotVisOnly val="1"/></c:chart>)"
    R"(</c:chartSpace>)";

std::string withHead(std::string_view content)
{
  return std::string(xmlHead).append(content);
}

std::string relationTo(std::string_view kind, std::string const & target)
{
  return withHead(fmt::format(
      R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" )"
      R"(Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/{}" Target="{}"/></Relationships>)",
      kind, target));
}

}  // namespace

void AddChartParts(PackageWriter & package, size_t number)
{
  package.Add(fmt::format("xl/chartsheets/sheet{}.xml", number), withHead(chartSheet));
  package.Add(fmt::format("xl/chartsheets/_rels/sheet{}.xml.rels", number),
              relationTo("drawing", fmt::format("/xl/drawings/drawing{}.xml", number)));
  package.Add(fmt::format("xl/drawings/drawing{}.xml", number), withHead(drawing));
  package.Add(fmt::format("xl/drawings/_rels/drawing{}.xml.rels", number),
              relationTo("chart", fmt::format("/xl/charts/chart{}.xml", number)));
  package.Add(fmt::format("xl/charts/chart{}.xml", number), withHead(chart));
}

}  // namespace embedded
