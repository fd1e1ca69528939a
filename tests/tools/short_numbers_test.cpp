// The short texts of numbers beside those of the standard library.

#include "tools/records/short_numbers.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

void expectSame(float value)
{
  char ours[nineCharacters];
  char plain[2 * nineCharacters];
  std::string const text(ours, PutNineDigits(ours, value));
  ASSERT_EQ(text, std::string(plain, std::to_chars(plain, plain + sizeof plain, value, std::chars_format::general, 9).ptr));
}

}  // namespace

TEST(PutNineDigits, WritesWhatTheStandardLibraryDoes)
{
  std::mt19937 random(20);
  for (int i = 0; i < 200000; ++i) expectSame(std::bit_cast<float>(static_cast<uint32_t>(random())));
  for (int i = 0; i < 100000; ++i) expectSame(static_cast<float>(random()) * std::pow(10.0F, static_cast<float>(i % 24) - 18.0F));
  for (int i = -20000; i < 20000; ++i) {
    for (float const part : {1.0F, 0.125F, 0.01F, 1e-6F}) expectSame(static_cast<float>(i) * part);
  }
  for (int exponent = -45; exponent < 39; ++exponent) {
    auto const bits = std::bit_cast<uint32_t>(static_cast<float>(std::pow(10.0, exponent)));
    for (uint32_t next = bits - 20; next != bits + 20; ++next) expectSame(std::bit_cast<float>(next));
  }
}
