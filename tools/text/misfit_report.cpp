// Sentences about lines that aren't numeric.

#include "tools/text/misfit_report.h"

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/shown_text.h"
#include "tools/text/cell_text.h"

namespace {

constexpr size_t shownCharacters = 40;

bool continuesCharacter(char c)
{
  return (c & 0xC0) == 0x80;
}

// The text's begin, with no control character that a terminal would obey.
std::string shown(std::string_view bytes)
{
  std::string const text = InUtf8(bytes);
  std::string result;
  size_t characters = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    auto const code = static_cast<unsigned char>(text[i]);
    bool const isHighControl = code == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0;  // U+0080 to U+009F
    if (!continuesCharacter(text[i]) && characters++ == shownCharacters) return result + "...";
    if (code < ' ' || code == 127) {
      result += fmt::format("\\x{:02x}", code);
    } else if (isHighControl) {
      result += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[++i]));
    } else {
      result += text[i];
    }
  }
  return result;
}

// Lines that all stand in front of the table are a header, unless one looks like a line of numbers.
int headerLines(TextSurvey const & found)
{
  for (size_t i = 1; i < found.hints.size(); ++i) {
    if (found.hints[i] && static_cast<Hint>(i) != Hint::Date) return 0;
  }
  return found.other > 0 && found.lastOther < found.firstOfTable ? found.firstOfTable - 1 : 0;
}

std::vector<std::string> hintsOf(TextSurvey const & found)
{
  std::vector<std::string> hints;
  if (int const lines = headerLines(found); lines > 0)
    hints.push_back(fmt::format("--skip {} passes over what stands in front of {}", lines,
                                found.heads > 0 ? "the head" : "the first numeric line"));
  for (size_t i = 1; i < found.hints.size(); ++i) {
    if (found.hints[i]) hints.emplace_back(TextOf(static_cast<Hint>(i)));
  }
  return hints;
}

}  // namespace

void ReportMisfits(std::FILE * to, TextOptions const & options, TextSurvey const & found)
{
  std::string const name = Visible(options.Name());
  for (Misfit const & misfit : found.misfits) {
    fmt::print(to, "{}: line {}, column {}: \"{}\" is no number\n", name, misfit.line, misfit.column,
               shown(WithoutQuotes(misfit.text)));
  }
  if (static_cast<size_t>(found.other) > found.misfits.size())
    fmt::print(to, "{}: {} in all; --report N shows more\n", name, Counted(static_cast<unsigned>(found.other), "such line"));
  for (std::string const & hint : hintsOf(found)) fmt::print(to, "{}: hint: {}\n", name, hint);
}

nlohmann::json JsonOfMisfits(TextSurvey const & found)
{
  nlohmann::json list = nlohmann::json::array();
  for (Misfit const & misfit : found.misfits)
    list.push_back({{"line", misfit.line}, {"column", misfit.column}, {"text", InUtf8(misfit.text)}});
  return list;
}

nlohmann::json JsonOfHints(TextSurvey const & found)
{
  return hintsOf(found);
}

std::string WhyNone(TextLines const & text, TextOptions const & options, TextSurvey const & found)
{
  std::string const name = options.Name();
  if (text.IsEmpty()) return name + ": is empty";
  if (options.skip >= text.GetCount()) return fmt::format("{}: --skip {} passes over all its lines", name, options.skip);
  if (found.other == 0) return name + (found.comments > 0 ? ": has comments and blank lines alone" : ": has blank lines alone");
  return name + ": no line is numeric";
}

std::string ValueCounts(TextSurvey const & found)
{
  if (found.fewestValues == found.mostValues) return std::to_string(found.mostValues);
  return fmt::format("{} to {}", found.fewestValues, found.mostValues);
}
