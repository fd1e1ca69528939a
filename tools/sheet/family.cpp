// zp sheet: what a workbook holds, its cells as CSV or JSON, and tables and charts into it.

#include "tools/commands.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/input_file.h"
#include "tools/json_output.h"
#include "tools/program.h"
#include "tools/records/csv_table.h"
#include "tools/records/json_text.h"
#include "tools/records/table_text.h"
#include "tools/sheet/cell_block.h"
#include "tools/sheet/cell_text.h"
#include "tools/sheet/sheet_arguments.h"
#include "tools/sheet/sheet_print.h"
#include "tools/sheet/sheet_writer.h"
#include "tools/sheet/workbook_link.h"
#include "tools/shown_text.h"

namespace {

using Source = WorkbookLink::Source;

constexpr size_t sheetPieceBytes = 0x20000;
constexpr int64_t mostPrintedCells = 1 << 28;  // that are printed unasked: all rows of 256 columns

// The name of the block with all filled cells; empty for an empty sheet.
std::string usedName(GPWorkSheet & sheet)
{
  CellBlock const used = UsedBlock(sheet);
  std::string const name = NameOfBlock(used);
  bool isEmpty = used.firstRow == used.lastRow && used.firstColumn == used.lastColumn;
  if (isEmpty) ForEachRow(sheet, used, [&](RowValues const & row) { isEmpty = row[0].vt == VT_EMPTY; });
  return isEmpty ? "" : name;
}

struct ListSheetsCommand : SheetArguments {
  static constexpr char const * name = "list";
  static constexpr char const * help = "List the worksheets of a workbook, each with the block that is filled, and its charts";
  static constexpr char const * example = "zp sheet list flowsheet.xlsx";

  void AddOptions(CLI::App & command)
  {
    AddBook(command);
    AddJson(command);
  }

  ExitStatus Run() const
  {
    return Told(book, [this] { List(); });
  }

  void List() const
  {
    SpreadsheetLink link(server);
    WorkbookLink workbook(link, book, Source::File);
    nlohmann::ordered_json all = {{"worksheets", nlohmann::json::array()}, {"charts", workbook.ListCharts()}};
    workbook.ForEachWorksheet([&](std::string const & each, GPWorkSheet & cells) {
      std::string const used = usedName(cells);
      all["worksheets"].push_back({{"name", each}, {"used", used.empty() ? nlohmann::json() : nlohmann::json(used)}});
    });
    if (json) return Print(DumpJson(all, 2) + "\n");
    for (auto const & sheet : all["worksheets"]) {
      std::string const used = sheet["used"].is_null() ? "empty" : sheet["used"].get<std::string>();
      Print(fmt::format("worksheet  {:<31}  {}\n", Visible(sheet["name"].get<std::string>()), used));
    }
    for (auto const & chart : all["charts"]) Print(fmt::format("chart      {}\n", Visible(chart.get<std::string>())));
  }
};

struct ReadCommand : SheetArguments {
  static constexpr char const * name = "read";
  static constexpr char const * help = "Print a block of cells as CSV or JSON, by default all that is filled";
  static constexpr char const * example = "zp sheet read flowsheet.xlsx Results A1:C20";

  void AddOptions(CLI::App & command)
  {
    AddBook(command);
    command.add_option("SHEET", sheet, "Name of a worksheet")->required();
    command.add_option("BLOCK", block, "A cell, or two such as A1:CV50");
    AddJson(command);
  }

  ExitStatus Run() const
  {
    CellBlock const asked = block.empty() ? CellBlock{} : ParseBlock(block);
    return Told(book, [&] { Read(asked); });
  }

  void Read(CellBlock asked) const
  {
    SpreadsheetLink link(server);
    WorkbookLink workbook(link, book, Source::File);
    GPWorkSheet cells = workbook.FindWorksheet(sheet);
    if (block.empty()) asked = WholeBlock(cells);
    if (json)
      PrintJson(cells, asked);
    else
      PrintCsv(cells, asked);
  }

  // Two cells in far corners make a block that nobody wants to read whole.
  CellBlock WholeBlock(GPWorkSheet & cells) const
  {
    CellBlock const used = UsedBlock(cells);
    if (used.CountCells() <= mostPrintedCells) return used;
    throw Failure(fmt::format("{}: the filled cells of \"{}\" lie in {}, which are more than {} fields; name a block of them",
                              book, sheet, NameOfBlock(used), mostPrintedCells));
  }

  static void PrintCsv(GPWorkSheet & cells, CellBlock const & asked)
  {
    std::string lines;
    ForEachRow(cells, asked, [&](RowValues const & row) {
      size_t const begin = lines.size();
      for (size_t i = 0; i < row.Count(); ++i) {
        if (i > 0) lines += ',';
        AppendCsvCell(lines, row[i]);
      }
      lines += lines.size() == begin ? "\"\"\n" : "\n";  // a blank line is none
      if (lines.size() < sheetPieceBytes) return;
      Print(lines);
      FlushOutput();
      lines.clear();
    });
    Print(lines);
  }

  void PrintJson(GPWorkSheet & cells, CellBlock const & asked) const
  {
    std::string text = "{\"sheet\":";
    JsonText(text).Text(sheet);
    text += ",\"block\":\"" + NameOfBlock(asked) + "\",\"rows\":[\n";
    bool isFirst = true;
    ForEachRow(cells, asked, [&](RowValues const & row) {
      text += isFirst ? " [" : ",\n [";
      isFirst = false;
      for (size_t i = 0; i < row.Count(); ++i) {
        if (i > 0) text += ',';
        AppendJsonCell(text, row[i]);
      }
      text += ']';
      if (text.size() < sheetPieceBytes) return;
      Print(text);
      FlushOutput();
      text.clear();
    });
    Print(text + "\n]}\n");
  }

  std::string sheet;
  std::string block;
};

struct WriteCommand : SheetArguments {
  static constexpr char const * name = "write";
  static constexpr char const * help = "Put a CSV table into a new sheet of a workbook, or of a new one";
  static constexpr char const * example = "zp sheet write flowsheet.xlsx Components table.csv";

  void AddOptions(CLI::App & command)
  {
    AddBook(command);
    command.add_option("SHEET", sheet, "Name of the new worksheet")->required();
    command.add_option("TABLE", table, "CSV file, between commas, semicolons or tabs; - for standard input")->required();
    AddDrop(command);
  }

  ExitStatus Run() const
  {
    return Told(book, [this] { Write(); });
  }

  void Write() const
  {
    InputFile input(table);
    SpreadsheetLink link(server);
    if (drop) link.AllowLoss();
    SheetPrints former;
    auto const writer = [&] {
      WorkbookLink workbook(link, book, Source::FileOrNew);
      former = PrintSheets(workbook);
      SheetWriter filled(workbook.AddWorksheet(sheet));
      Fill(filled, input);
      workbook.Save();
      return filled;
    }();
    WorkbookLink saved(link, book, Source::File);
    RequireSaved(saved, {{sheet, writer.GetPrint()}}, former);
    PrintShown(fmt::format("{} of up to {} in the new sheet \"{}\" of {}\n",
                           Counted(static_cast<unsigned>(writer.CountRows()), "row"),
                           Counted(static_cast<unsigned>(writer.CountColumns()), "column"), sheet, book));
  }

  void Fill(SheetWriter & filled, InputFile & input) const
  {
    ReadCsv(input.GetStream(), ShownName(table), [&](CsvRow const & row) {
      std::vector<COleVariant> values;
      values.reserve(row.fields.size());
      try {
        for (std::string const & field : row.fields)
          values.push_back(ReadCsvCell(row.hasDecimalCommas ? WithDecimalPoint(field) : field));
        filled.Add(std::move(values));
      } catch (Failure const & failure) {
        throw Failure(fmt::format("{}: line {}: {}", ShownName(table), row.line, failure.what()));
      }
    });
    input.RequireRead();
    filled.Finish();
  }

  std::string sheet;
  std::string table;
};

struct ChartCommand : SheetArguments {
  static constexpr char const * name = "chart";
  static constexpr char const * help = "Make a chart under a new name in a workbook";
  static constexpr char const * example = "zp sheet chart flowsheet.xlsx Profile";

  void AddOptions(CLI::App & command)
  {
    AddBook(command);
    command.add_option("NAME", chart, "Name of the new chart")->required();
    AddDrop(command);
  }

  ExitStatus Run() const
  {
    return Told(book, [this] { Make(); });
  }

  void Make() const
  {
    SpreadsheetLink link(server);
    if (drop) link.AllowLoss();
    SheetPrints former;
    size_t before = 0;
    {
      WorkbookLink workbook(link, book, Source::File);
      former = PrintSheets(workbook);
      before = workbook.ListCharts().size();
      workbook.AddChart(chart);
      workbook.Save();
    }
    WorkbookLink saved(link, book, Source::File);
    RequireSaved(saved, {}, former);
    std::vector<std::string> const charts = saved.ListCharts();
    bool const hasName = std::find(charts.begin(), charts.end(), chart) != charts.end();
    if (!hasName && (!drop || charts.size() == before))
      throw Failure(fmt::format("{}: was written, but has no chart \"{}\"", book, chart));
    PrintShown(hasName ? fmt::format("the new chart \"{}\" of {}\n", chart, book)
                       : fmt::format("a new chart of {}, without its name\n", book));
  }

  std::string chart;
};

}  // namespace

void AddSheetCommands(CLI::App & app, int & status)
{
  CLI::App * const family = app.add_subcommand("sheet", "Read and fill the workbooks of a spreadsheet");
  family->require_subcommand(1);
  AddCommand<ListSheetsCommand>(*family, status);
  AddCommand<ReadCommand>(*family, status);
  AddCommand<WriteCommand>(*family, status);
  AddCommand<ChartCommand>(*family, status);
}
