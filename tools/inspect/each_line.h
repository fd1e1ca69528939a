// The lines of a text as its bytes have them, whatever they end with.
#pragma once

#include <algorithm>
#include <string_view>

// Gives take each line, without its end, and how many bytes it has with it.
template <class Take>
void ForEachLine(std::string_view bytes, Take const & take)
{
  while (!bytes.empty()) {
    size_t const length = std::min(bytes.find_first_of("\r\n"), bytes.size());
    size_t const end = bytes.substr(length, 2) == "\r\n" ? 2 : length < bytes.size() ? 1 : 0;
    take(bytes.substr(0, length), length + end);
    bytes.remove_prefix(length + end);
  }
}
