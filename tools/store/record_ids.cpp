// Reading ids and ranges of them.

#include "tools/store/record_ids.h"

#include <set>
#include <string_view>

#include <fmt/format.h>
#include <zpbase/store.h>

#include "tools/number_option.h"
#include "tools/program.h"

namespace {

constexpr int noID = -1;

int readID(std::string_view text)
{
  return WholeNumberOf(text, 0, zp::maxRecordID).value_or(noID);
}

}  // namespace

// Gives what is wrong with a word, empty for nothing.
std::string RecordIDs::Read(std::string const & word, std::vector<Range> & ranges)
{
  std::string_view const all = word;
  for (size_t start = 0; start <= all.size();) {
    std::string_view const part = all.substr(start, all.find(',', start) - start);
    size_t const dash = part.find('-');
    int const first = readID(part.substr(0, dash));
    int const last = dash == std::string_view::npos ? first : readID(part.substr(dash + 1));
    if (first == noID || last == noID) {
      return fmt::format("\"{}\" is no id from 0 to {}, nor a range of them such as 1-5", part, zp::maxRecordID);
    }
    if (last < first) return fmt::format("\"{}\" is a range that ends before it begins", part);
    ranges.push_back({first, last});
    start += part.size() + 1;
  }
  return "";
}

void RecordIDs::AddOption(CLI::App & command)
{
  auto const look = [](std::string const & word) {
    std::vector<Range> ranges;
    return Read(word, ranges);
  };
  command.add_option("IDS", m_Words, "Record ids, 0 to 32767; ranges as 1-5,9 for those of them that there are")
      ->required()
      ->check(CLI::Validator(look, ""));
}

bool RecordIDs::IsSingle() const
{
  return m_Words.size() == 1 && readID(m_Words.front()) != noID;
}

std::vector<int> RecordIDs::Pick(std::string const & file, std::function<bool(int)> const & has, std::string const & hint) const
{
  std::vector<Range> ranges;
  for (std::string const & word : m_Words) Read(word, ranges);
  std::set<int> picked;
  for (Range const & range : ranges) {
    bool isAny = false;
    for (int id = range.first; id <= range.last; ++id) {
      if (!has(id)) continue;
      picked.insert(id);
      isAny = true;
    }
    if (isAny) continue;
    std::string const what =
        range.first == range.last ? std::to_string(range.first) : fmt::format("from {} to {}", range.first, range.last);
    throw Failure(fmt::format("{}: there is no record {}; {}", file, what, hint));
  }
  return {picked.begin(), picked.end()};
}
