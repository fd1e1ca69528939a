// Numbers in arguments: decimal digits alone, and nothing beside them.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

// The number that the whole word is, if it lies between the two.
template <class Whole>
std::optional<Whole> WholeNumberOf(std::string_view word, Whole least, Whole most)
{
  Whole number = 0;
  auto const end = std::from_chars(word.data(), word.data() + word.size(), number);
  bool const isWhole = end.ec == std::errc() && end.ptr == word.data() + word.size();
  return isWhole && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

// For CLI::Option::transform: what CLI11 reads afterwards is the number without zeros in front of it, which it would take for the
// mark of octal digits.
inline CLI::Validator WholeNumber(int least, int most)
{
  auto const read = [least, most](std::string & word) {
    auto const number = WholeNumberOf(word, least, most);
    if (!number) return fmt::format("\"{}\" is no whole number from {} to {}", word, least, most);
    word = std::to_string(*number);
    return std::string();
  };
  return {read, ""};
}
