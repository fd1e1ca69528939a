// Sets of characters, for one look at each character of a text.
#pragma once

#include <array>
#include <string_view>

class CharacterSet {
 public:
  constexpr explicit CharacterSet(std::string_view characters)
  {
    for (char const c : characters) m_Has[static_cast<unsigned char>(c)] = true;
  }

  constexpr bool Has(char c) const { return m_Has[static_cast<unsigned char>(c)]; }

  constexpr bool HasAll(std::string_view text) const
  {
    for (char const c : text) {
      if (!Has(c)) return false;
    }
    return true;
  }

 private:
  std::array<bool, 256> m_Has{};
};
