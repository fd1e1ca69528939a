// zp view: a text file as a report, on the terminal, as a page for browsers, or plainly into a pipe.

#include "tools/commands.h"

#include <memory>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/terminal.h>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/view/report_application.h"
#include "tools/view/report_html.h"
#include "tools/view/report_pages.h"
#include "tools/view/report_screen.h"

namespace {

constexpr int terminalInput = 0;
constexpr int terminalOutput = 1;
constexpr char const * pageEnd = "\f";

struct ViewCommand {
  void AddOptions(CLI::App & command)
  {
    command.add_option("FILE", file, "A text file, such as a report or a job's WARNINGS")->required();
    RequireNamed(
        command.add_option("--html", html, "Write the report as a page for browsers into this file, - for standard output"));
    command.add_flag("--plain", plain, "Print the lines on a terminal too, as into a pipe: pages end with a form feed");
    AddExample(command, "zp view result.txt --html result.html");
  }

  ExitStatus Run() const
  {
    if (!html.empty() && html != "-" && LeadToOneFile(file, html))
      throw Failure(fmt::format("{}: is the report itself; name another file for the page", html), exitUsage);
    OpenReport(file, [this](OpenedReport const & report) { Show(report); });
    return exitDone;
  }

  void Show(OpenedReport const & report) const
  {
    ReportPages const pages(report.entries);
    if (!html.empty()) return WriteHtml(pages, report);
    bool const isOnTerminal = IsTerminal(terminalInput) && IsTerminal(terminalOutput);
    if (plain || !isOnTerminal || !ShowReport(pages, Title())) PrintPlain(pages);
  }

  void WriteHtml(ReportPages const & pages, OpenedReport const & report) const
  {
    if (html == "-") return WriteReportHtml(pages, Title(), report.header, [](std::string const & piece) { Print(piece); });
    std::string page;
    WriteReportHtml(pages, Title(), report.header, [&page](std::string const & piece) { page += piece; });
    WriteWholeFile(html, page);
  }

  // The name as it can be shown anywhere.
  std::string Title() const
  {
    CString name;
    return ShownText(zp::Utf8ToText(file, name) ? name.View() : std::string_view(file), ShownIn::utf8);
  }

  static void PrintPlain(ReportPages const & pages)
  {
    for (int page = 0; page < pages.GetPageCount(); ++page) {
      if (page > 0) Print(pageEnd);
      for (int entry = pages.GetFirstEntry(page); entry < pages.GetEndEntry(page); ++entry)
        Print(ShownText(pages.GetText(entry), ShownIn::utf8) + "\n");
    }
  }

  std::string file;
  std::string html;
  bool plain = false;
};

}  // namespace

void AddViewCommands(CLI::App & app, int & status)
{
  CLI::App * const command = app.add_subcommand("view", "Show a text file as a report");
  auto const view = std::make_shared<ViewCommand>();
  view->AddOptions(*command);
  command->callback([view, &status] { status = view->Run(); });
}
