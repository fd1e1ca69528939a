// Ids of records as people write them: 7, 1-5, or 1-5,9.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/commands.h"

class RecordIDs {
 public:
  // A positional argument of one or more words, looked at while the command line is.
  void AddOption(CLI::App & command);

  // Whether they name one id alone, and no range.
  bool IsSingle() const;

  // Those that has says to be there, in ascending order, each once. Raises Failure, which ends with hint, for an id by itself
  // that isn't, and for a range that has none of them.
  std::vector<int> Pick(std::string const & file, std::function<bool(int)> const & has, std::string const & hint) const;

 private:
  struct Range {
    int first;
    int last;
  };

  static std::string Read(std::string const & word, std::vector<Range> & ranges);

  std::vector<std::string> m_Words;
};
