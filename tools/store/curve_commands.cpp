// zp store eval and plot: correlations over temperature, as a table and as pictures.

#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/runtime.h>

#include "tools/curves/chart.h"
#include "tools/number_option.h"
#include "tools/output_file.h"
#include "tools/output_names.h"
#include "tools/pictures/picture.h"
#include "tools/records/object_json.h"
#include "tools/records/payload.h"
#include "tools/store/record_ids.h"
#include "tools/store/stored_records.h"

namespace {

constexpr double highestTemperature = 1e5;  // K

std::unique_ptr<CObject> loadComponent(StoredRecords const & records, int id, std::string const & name)
{
  Payload payload = DecodePayload(records.Load(id));
  if (payload.state == Payload::Object && payload.object->GetRuntimeClass() == RUNTIME_CLASS(GPDataArray))
    return std::move(payload.object);
  throw Failure(fmt::format("{}: is no component; see zp store list", name));
}

std::string recordName(StoreNames const & names, int id)
{
  return fmt::format("{}: record {}", names.index, id);
}

std::string numberText(double value)
{
  return fmt::format("{:.6g}", value);
}

// The properties of which the component has a curve.
std::string knownCurves(GPDataArray const & component)
{
  std::string known;
  for (DataMeaning const * const meaning : GetCurveProperties()) {
    bool isThere = false;
    for (int i = 0; i < component.GetSize(); ++i)
      isThere |= component.GetAt(i) != nullptr && component.GetAt(i)->GetDataID() == meaning->dataID;
    if (isThere) known += (known.empty() ? "" : ", ") + std::string(meaning->column);
  }
  return known.empty() ? "no curves" : known;
}

std::optional<double> readTemperature(std::string_view text)
{
  double value = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  bool const isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && value > 0 && value <= highestTemperature ? std::optional(value) : std::nullopt;
}

std::string noTemperature(std::string const & text)
{
  return fmt::format("{}: is no temperature in K above 0 and up to {:.0f}", text, highestTemperature);
}

CLI::Validator const isTemperature([](std::string & text) { return readTemperature(text) ? "" : noTemperature(text); }, "");

struct EvalCommand : StoreArguments {
  static constexpr char const * name = "eval";
  static constexpr char const * help = "Evaluate a component's correlation at temperatures";
  static constexpr char const * example = "zp store eval job 12 rho_liq 300 350:400:10";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    command.add_option("ID", id, "Record id of the component")->required()->transform(WholeNumber(0, zp::maxRecordID));
    command.add_option("PROPERTY", property, "What is evaluated, as its columns begin, such as rho_liq")->required();
    command.add_option("T", temperatures, "Temperatures in K, or FROM:TO:STEP")->required();
  }

  ExitStatus Run() const
  {
    std::vector<double> const all = ReadTemperatures();
    DataMeaning const & meaning = FindCurveProperty(property);
    StoredRecords const records(GetNames());
    std::string const subject = recordName(records.GetNames(), id);
    auto const object = loadComponent(records, id, subject);
    auto const & component = static_cast<GPDataArray const &>(*object);
    auto const curve = FindCurve(component, id, meaning, subject);
    if (!curve) throw Failure(fmt::format("{}: has no {}; it has {}", subject, property, knownCurves(component)));
    bool const isWhole = json ? PrintJson(*curve, all) : PrintTable(*curve, all);
    return isWhole ? exitDone : exitWanting;
  }

  static double ReadNumber(std::string_view text, std::string const & whole)
  {
    if (auto const value = readTemperature(text)) return *value;
    throw Failure(noTemperature(whole) + ", nor FROM:TO:STEP of such", exitUsage);
  }

  std::vector<double> ReadTemperatures() const
  {
    constexpr size_t most = 100'000;
    std::vector<double> all;
    for (std::string const & text : temperatures) {
      size_t const first = text.find(':');
      size_t const second = first == std::string::npos ? first : text.find(':', first + 1);
      std::string_view const view = text;
      double const from = ReadNumber(view.substr(0, first), text);
      double const to = first == std::string::npos ? from : ReadNumber(view.substr(first + 1, second - first - 1), text);
      double const step = second == std::string::npos ? 1.0 : ReadNumber(view.substr(second + 1), text);
      if (first != std::string::npos && second == std::string::npos) ReadNumber("", text);
      if (to < from) throw Failure(fmt::format("{}: is a range that ends before it begins", text), exitUsage);
      constexpr double slack = 1e-9;
      for (size_t i = 0; from + static_cast<double>(i) * step <= to + step * slack && all.size() <= most; ++i)
        all.push_back(from + static_cast<double>(i) * step);
    }
    if (all.size() <= most) return all;
    throw Failure(fmt::format("more than {} temperatures", most), exitUsage);
  }

  bool PrintTable(Curve const & curve, std::vector<double> const & all) const
  {
    std::string const head = fmt::format("{} [{}]", property, curve.property->unit);
    PrintLine(fmt::format("{}: {} = {}", curve.facts.name, property, curve.form->formula));
    PrintLine(fmt::format("{:>10}  {:>16}", "T [K]", head));
    bool isWhole = true;
    for (double const temperature : all) {
      auto const value = curve.At(temperature);
      isWhole &= value.has_value();
      PrintLine(fmt::format("{:>10}  {:>{}}{}", numberText(temperature), value ? numberText(*value) : "-",
                            std::max<size_t>(head.size(), 16), curve.IsOutside(temperature) ? "  outside" : ""));
    }
    if (curve.range) PrintLine(fmt::format("inside is {} to {} K", numberText(curve.range->from), numberText(curve.range->to)));
    return isWhole;
  }

  bool PrintJson(Curve const & curve, std::vector<double> const & all) const
  {
    Json values = Json::array();
    bool isWhole = true;
    for (double const temperature : all) {
      auto const value = curve.At(temperature);
      isWhole &= value.has_value();
      values.push_back({{"T", temperature}, {"value", value ? Json(*value) : Json()}, {"inside", !curve.IsOutside(temperature)}});
    }
    Json result = {{"id", id},
                   {"name", curve.facts.name},
                   {"property", property},
                   {"unit", curve.property->unit},
                   {"equation", curve.form->number},
                   {"formula", curve.form->formula}};
    if (curve.range) result["range"] = {curve.range->from, curve.range->to};
    result["values"] = std::move(values);
    Print(DumpJson(result, 2) + "\n");
    return isWhole;
  }

  int id = 0;
  std::string property;
  std::vector<std::string> temperatures;
};

struct PlotCommand : StoreArguments {
  static constexpr char const * name = "plot";
  static constexpr char const * help = "Draw components' correlations over temperature";
  static constexpr char const * example = "zp store plot job 12-14,23 --property p_vap --png p_vap.png";

  void AddOptions(CLI::App & command)
  {
    command.add_option("STORE", store, "Index file, record file, or the stem of both")->required();
    command.add_option("--record", record, "Record file, when its name doesn't follow from the index file's");
    ids.AddOption(command);
    command
        .add_option("--property", properties, "What is drawn, as its columns begin, such as p_vap; all that they have without it")
        ->allow_extra_args(false);
    command.add_option("--from", from, "Lowest temperature in K")->check(isTemperature);
    command.add_option("--to", to, "Highest temperature in K")->check(isTemperature);
    RequireNamed(command.add_option("--svg", svg, "Draw into this SVG file, - for standard output"));
    RequireNamed(command.add_option("--png", png, "Draw into this PNG file, - for standard output"));
    command.add_flag("--term", terminal, "Draw in characters, as is done without --svg and --png");
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    RefuseOverwriting({}, {svg, png, terminal ? "-" : ""});
    for (std::string const & file : {svg, png}) {
      if (!file.empty()) RequireOtherFile(names, file);
    }
    std::vector<Chart> const charts = ReadCharts(names);
    if (!svg.empty()) Draw(charts, PictureFormat::Svg, svg);
    if (!png.empty()) Draw(charts, PictureFormat::Png, png);
    if (terminal || (svg.empty() && png.empty())) PrintCharts(charts);
    return exitDone;
  }

  std::vector<DataMeaning const *> Wanted() const
  {
    if (properties.empty()) return GetCurveProperties();
    std::vector<DataMeaning const *> each;
    for (std::string const & property : properties) each.push_back(&FindCurveProperty(property));
    return each;
  }

  TemperatureRange Shown(std::vector<Curve> const & curves) const
  {
    TemperatureRange range = RangeToShow(curves);
    if (from > 0) range.from = from;
    if (to > 0) range.to = to;
    constexpr double narrowest = 1e-9;  // of the temperatures
    if (range.to - range.from > narrowest * range.to) return range;
    throw Failure(fmt::format("no temperatures lie between {} and {} K; give both --from and --to", numberText(range.from),
                              numberText(range.to)),
                  exitUsage);
  }

  struct Member {
    int id;
    std::string subject;  // what messages call it
    std::unique_ptr<CObject> object;
  };

  std::vector<Member> ReadMembers(StoreNames const & names) const
  {
    StoredRecords const records(names);
    auto const & all = records.GetIDs();
    auto const has = [&](int id) { return std::ranges::binary_search(all, id); };
    std::vector<Member> members;
    for (int const id : ids.Pick(records.GetRecordsName(), has, "see zp store list")) {
      std::string const subject = recordName(names, id);
      members.push_back({id, subject, loadComponent(records, id, subject)});
    }
    return members;
  }

  std::vector<Chart> ReadCharts(StoreNames const & names) const
  {
    constexpr int samples = 400;
    std::vector<Member> const members = ReadMembers(names);
    std::vector<Chart> charts;
    for (DataMeaning const * const property : Wanted()) {
      std::vector<Curve> const curves = ReadCurves(members, *property);
      if (!curves.empty()) charts.push_back(MakeChart(curves, Shown(curves), samples));
    }
    if (!charts.empty()) return charts;
    throw Failure(fmt::format("{}: has no curves for the plot", names.index));
  }

  // A curve that was asked for by name and that a component doesn't have is told; of all curves those are drawn that can be.
  std::vector<Curve> ReadCurves(std::vector<Member> const & members, DataMeaning const & property) const
  {
    std::vector<Curve> curves;
    for (Member const & member : members) {
      auto const & component = static_cast<GPDataArray const &>(*member.object);
      try {
        if (auto curve = FindCurve(component, member.id, property, member.subject))
          curves.push_back(std::move(*curve));
        else if (!properties.empty())
          throw Failure(fmt::format("{}: has no {}; it has {}", member.subject, property.column, knownCurves(component)));
      } catch (Failure const & failure) {
        if (!properties.empty()) throw;
        Tell(fmt::format("{}; left out", failure.what()));
      }
    }
    return curves;
  }

  // Raises Failure where the charts are too many for one picture.
  static double PictureHeight(std::vector<Chart> const & charts)
  {
    double height = 0;
    for (Chart const & chart : charts) height += ChartHeight(chart);
    if (height <= Picture::largestSide) return height;
    throw Failure(
        fmt::format("the picture would be {:.0f} points high, more than {:.0f}; name fewer components, or one --property", height,
                    Picture::largestSide),
        exitUsage);
  }

  static void Draw(std::vector<Chart> const & charts, PictureFormat format, std::string const & file)
  {
    constexpr double width = 860;
    double const height = PictureHeight(charts);
    OutputFile output(file);
    Picture picture(format, width, height, [&](std::string_view piece) { output.Write(piece); });
    double top = 0;
    for (Chart const & chart : charts) {
      DrawChart(picture, chart, {0, top, width});
      top += ChartHeight(chart);
    }
    picture.Finish();
    output.Commit();
  }

  static void PrintCharts(std::vector<Chart> const & charts)
  {
    constexpr int usualColumns = 80;
    constexpr int fewestColumns = 40;
    constexpr int rows = 20;
    int const terminal = zp::GetHostCalls().Columns(1);  // not above 0: no terminal
    int const columns = terminal > 0 ? std::clamp(terminal, fewestColumns, usualColumns) : usualColumns;
    for (size_t i = 0; i < charts.size(); ++i) PrintShown((i > 0 ? "\n" : "") + ChartInCharacters(charts[i], columns, rows));
  }

  RecordIDs ids;
  std::vector<std::string> properties;
  double from = 0;
  double to = 0;
  std::string svg;
  std::string png;
  bool terminal = false;
};

}  // namespace

void AddCurveCommands(CLI::App & family, int & status)
{
  AddCommand<EvalCommand>(family, status);
  AddCommand<PlotCommand>(family, status);
}
