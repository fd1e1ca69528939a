// Why a workbook can't be read, changed or written: one sentence for a person, without its point.
#pragma once

#include <stdexcept>
#include <string>

namespace embedded {

class BookFailure : public std::runtime_error {
 public:
  explicit BookFailure(std::string const & sentence) : std::runtime_error(sentence) {}
};

}  // namespace embedded
