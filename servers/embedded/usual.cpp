// The table of usual attributes.

#include "servers/embedded/usual.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "servers/embedded/number_text.h"

namespace embedded {
namespace {

// Of each attribute its values, with bars between; switches are 1 and 0. An asterisk stands for any: the value is kept, is looked
// at elsewhere, or follows from what is in the file.
struct Usual {
  std::string_view element;
  std::string_view attributes;
};

constexpr std::array usualElements = {
    Usual{"workbookPr",
          " date1904=* codeName=* defaultThemeVersion=* dateCompatibility=* backupFile=0 showObjects=all"
          " filterPrivacy=0 hidePivotFieldList=0 autoCompressPictures=* checkCompatibility=0 "},
    Usual{"workbookView",
          " visibility=visible minimized=0 showHorizontalScroll=1 showVerticalScroll=1 showSheetTabs=1 xWindow=*"
          " yWindow=* windowWidth=* windowHeight=* tabRatio=* firstSheet=* activeTab=* autoFilterDateGrouping=1 "},
    Usual{"calcPr",
          " calcId=* calcMode=auto fullCalcOnLoad=* forceFullCalc=* calcCompleted=* calcOnSave=*"
          " concurrentCalc=* concurrentManualCount=* refMode=A1 fullPrecision=1 iterate=0 iterateCount=*"
          " iterateDelta=* "},
    Usual{"sheetPr", " codeName=* filterMode=0 published=1 enableFormatConditionsCalculation=1 "},
    Usual{"outlinePr", " applyStyles=0 summaryBelow=1 summaryRight=1 showOutlineSymbols=1 "},
    Usual{"pageSetUpPr", " autoPageBreaks=1 fitToPage=0 "},
    Usual{"sheetView",
          " rightToLeft=* showFormulas=0 showGridLines=1 showRowColHeaders=1 showZeros=1 showRuler=1"
          " showWhiteSpace=1 showOutlineSymbols=1 defaultGridColor=1 colorId=64 view=normal windowProtection=0"
          " zoomScale=100 zoomScaleNormal=* zoomScaleSheetLayoutView=* zoomScalePageLayoutView=* tabSelected=*"
          " topLeftCell=* workbookViewId=* "},
    Usual{"sheetFormatPr",
          " baseColWidth=8|10 defaultColWidth=* defaultRowHeight=* customHeight=0 zeroHeight=0 thickTop=0"
          " thickBottom=0 outlineLevelRow=* outlineLevelCol=* "},
    Usual{"col", " min=* max=* width=* bestFit=* customWidth=0 hidden=0 outlineLevel=0 collapsed=0 phonetic=0 style=0 "},
    Usual{"pageMargins",
          " left=0.7|0.75|0.7875 right=0.7|0.75|0.7875 top=0.75|1|1.025|1.0527777 bottom=0.75|1|1.025|1.0527777"
          " header=0.3|0.5|0.7875 footer=0.3|0.5|0.7875 "},
    Usual{"printOptions", " headings=0 gridLines=0 gridLinesSet=1 horizontalCentered=0 verticalCentered=0 "},
    Usual{"pageSetup",
          " paperSize=0|1|9 scale=100 fitToWidth=1 fitToHeight=1 pageOrder=downThenOver"
          " orientation=portrait|default blackAndWhite=0 draft=0 cellComments=none errors=displayed"
          " firstPageNumber=1 useFirstPageNumber=* usePrinterDefaults=* horizontalDpi=* verticalDpi=* copies=1 "},
    Usual{"headerFooter", " differentFirst=0 differentOddEven=0 scaleWithDoc=1 alignWithMargins=1 "},
    Usual{"xf",
          " numFmtId=* fontId=0 fillId=0 borderId=0 xfId=* quotePrefix=0 pivotButton=0 applyNumberFormat=*"
          " applyFont=* applyFill=* applyBorder=* applyAlignment=* applyProtection=* "},
    Usual{"alignment",
          " horizontal=general vertical=bottom textRotation=0 wrapText=0 indent=0 relativeIndent=0"
          " justifyLastLine=0 shrinkToFit=0 readingOrder=0 "},
    Usual{"protection", " locked=1 hidden=0 "},
    Usual{"color", " theme=1 indexed=8|64 auto=1 rgb=FF000000 "},
};

// Writers give numbers with all digits or with few.
bool isAlike(std::string_view value, std::string_view wanted)
{
  if (value == wanted || (wanted == "1" && value == "true") || (wanted == "0" && value == "false")) return true;
  auto const number = ReadNumber(value);
  auto const usual = ReadNumber(wanted);
  constexpr double tolerance = 1e-6;
  return number && usual && std::fabs(*number - *usual) < tolerance;
}

// Nothing for an attribute that isn't in the list.
std::string_view valuesOf(std::string_view attributes, std::string_view name)
{
  std::string const mark = " " + std::string(name) + "=";
  size_t const found = attributes.find(mark);
  if (found == std::string_view::npos) return {};
  attributes.remove_prefix(found + mark.size());
  return attributes.substr(0, attributes.find(' '));
}

bool isOneOf(std::string_view value, std::string_view values)
{
  if (values == "*") return true;
  while (!values.empty()) {
    size_t const end = std::min(values.find('|'), values.size());
    if (isAlike(value, values.substr(0, end))) return true;
    values.remove_prefix(std::min(end + 1, values.size()));
  }
  return false;
}

// Without the codes for fonts: &"Liberation Sans,Bold"
std::string withoutFonts(std::string_view text)
{
  std::string plain;
  for (;;) {
    size_t const begin = std::min(text.find("&\""), text.size());
    plain += text.substr(0, begin);
    size_t const end = text.find('"', begin + 2);
    if (begin == text.size() || end == std::string_view::npos) return plain;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

bool IsUsual(std::string_view element, XmlAttributes attributes)
{
  auto const * const usual = std::ranges::find(usualElements, element, &Usual::element);
  for (char const ** at = attributes.GetList(); *at != nullptr; at += 2) {
    if (std::strchr(*at, '|') != nullptr) continue;
    if (usual == usualElements.end() || !isOneOf(at[1], valuesOf(usual->attributes, *at))) return false;
  }
  return true;
}

bool IsUsualHeader(std::string_view text)
{
  std::string const plain = withoutFonts(text);
  return plain.empty() || plain == "&C&12&A";
}

// The word in front of the number is in the language of the user.
bool IsUsualFooter(std::string_view text)
{
  std::string const plain = withoutFonts(text);
  return plain.empty() || (plain.starts_with("&C&12") && plain.ends_with(" &P") && plain.find('&', 5) == plain.size() - 2);
}

}  // namespace embedded
