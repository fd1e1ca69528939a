// The page's frame, its style and its lines.

#include "tools/view/report_html.h"

#include <fmt/format.h>
#include <zpbase/platform/string.h>

#include "tools/view/report_pages.h"

namespace {

constexpr size_t htmlPieceBytes = size_t{1} << 16;

constexpr char const * style =
    R"(:root { color-scheme: light dark; --paper: #ffffff; --ink: #1c2430; --desk: #eceff3; --faint: #68778a; --edge: #d3dae3 }
@media (prefers-color-scheme: dark) { :root { --paper: #171c23; --ink: #dbe2ea; --desk: #0e1116; --faint: #8b98a8; --edge: #2b333e } }
body { margin: 0; padding: 2rem 1rem; background: var(--desk); color: var(--ink); font: 15px/1.5 system-ui, sans-serif }
main { max-width: max-content; min-width: min(48rem, 100%); margin: 0 auto }
h1 { font-size: 1.2rem; font-weight: 600; margin: 0 0 1rem; overflow-wrap: anywhere }
section { background: var(--paper); border: 1px solid var(--edge); border-radius: 6px; padding: 1.2rem 1.5rem; margin: 0 0 1.2rem; overflow-x: auto }
header { color: var(--faint); border-bottom: 1px solid var(--edge); margin: 0 0 .8rem; padding-bottom: .4rem; white-space: pre-wrap }
pre { margin: 0; font: 13px/1.45 ui-monospace, "DejaVu Sans Mono", monospace; tab-size: 8 }
@media print {
  :root { --paper: #fff; --ink: #000; --desk: #fff; --faint: #444; --edge: #fff }
  body { padding: 0; font-size: 10pt }
  main { max-width: none }
  h1 { display: none }
  section { border: 0; padding: 0; margin: 0; overflow: visible; break-after: page }
  section:last-child { break-after: auto }
  pre { font-size: 9pt; white-space: pre-wrap }
}
)";

void appendEscaped(std::string & out, std::string const & utf8)
{
  for (char const c : utf8) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
}

}  // namespace

void WriteReportHtml(ReportPages const & report, std::string const & title, PageHeader header,
                     std::function<void(std::string const & piece)> const & write)
{
  std::string escapedTitle;
  appendEscaped(escapedTitle, title);
  std::string piece = fmt::format(
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<meta name=\"viewport\" "
      "content=\"width=device-width, "
      "initial-scale=1\">\n<title>{0}</title>\n<style>\n{1}</style>\n</head>\n<body>\n<main>\n<h1>{0}</h1>\n",
      escapedTitle, style);
  for (int page = 0; page < report.GetPageCount(); ++page) {
    piece += fmt::format("<section aria-label=\"Page {}\">\n", page + 1);
    CString headline;
    if (header != nullptr && header(headline, page + 1, report.GetPageCount()) != 0) {
      piece += "<header>";
      appendEscaped(piece, ShownText(headline.View(), ShownIn::utf8));
      piece += "</header>\n";
    }
    piece += "<pre>\n";  // browsers drop the line end behind the tag
    for (int entry = report.GetFirstEntry(page); entry < report.GetEndEntry(page); ++entry) {
      appendEscaped(piece, ShownText(report.GetText(entry), ShownIn::utf8));
      piece += '\n';
      if (piece.size() < htmlPieceBytes) continue;
      write(piece);
      piece.clear();
    }
    piece += "</pre>\n</section>\n";
    if (piece.size() < htmlPieceBytes) continue;
    write(piece);
    piece.clear();
  }
  write(piece + "</main>\n</body>\n</html>\n");
}
