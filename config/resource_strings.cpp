// A table of strings by number, in memory, for programs without the application's resources.

#include <zpbase/config.h>

#include <algorithm>
#include <vector>

namespace {

enum State { stateEmpty = 0, stateReady = 2 };

struct Table {
  State state = stateEmpty;
  std::vector<ResString> entries;  // in ascending order of ids, each once
};

Table & table()
{
  static Table strings;
  return strings;
}

}  // namespace

void LoadResStrings(ResString const * entries, unsigned int count)
{
  std::vector<ResString> sorted(entries, entries + count);
  std::stable_sort(sorted.begin(), sorted.end(), [](auto const & a, auto const & b) { return a.m_nID < b.m_nID; });
  auto const same = [](auto const & a, auto const & b) { return a.m_nID == b.m_nID; };
  sorted.erase(std::unique(sorted.begin(), sorted.end(), same), sorted.end());
  State const state = sorted.empty() ? stateEmpty : stateReady;
  table() = {state, std::move(sorted)};
}

int ResStringsAreLoaded()
{
  return !table().entries.empty();
}

void UnloadResStrings()
{
  table() = {};
}

char const * GetStringFromResourceID(unsigned int id)
{
  std::vector<ResString> const & entries = table().entries;
  char const * const otherwise = entries.empty() ? "" : "NOT FOUND";
  if (table().state != stateReady) return otherwise;
  auto const found = std::lower_bound(entries.begin(), entries.end(), id,
                                      [](ResString const & entry, unsigned int wanted) { return entry.m_nID < wanted; });
  return found != entries.end() && found->m_nID == id ? found->m_strText.GetString() : otherwise;
}
