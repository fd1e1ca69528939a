// The format engine against the host's printf in the C locale, and its own rules for formats that aren't trusted.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <random>
#include <vector>

#include <zpbase/platform/format.h>

#include "tests/support/OwnProcess.h"

namespace {

std::string formatted(char const * format, ...)
{
  va_list args;
  va_start(args, format);
  std::string out;
  zp::FormatInto(out, format, args);
  va_end(args);
  return out;
}

std::string formattedFrom(char const * format, std::initializer_list<zp::FormatArg> args)
{
  std::string out;
  zp::FormatInto(out, format, std::span(args.begin(), args.size()));
  return out;
}

template <class... Args>
std::string hostFormatted(char const * format, Args... args)
{
  PlainLocale const plain;
  std::string out(7000, '\0');
  out.resize(static_cast<size_t>(snprintf(out.data(), out.size(), format, args...)));
  return out;
}

// Every set of flags with some widths and precisions, in front of what ends a conversion.
std::vector<std::string> specsEndingIn(std::string const & end)
{
  std::vector<std::string> fields;
  for (unsigned int bits = 0; bits < 32; ++bits) {
    std::string flags = "%";
    for (unsigned int i = 0; i < 5; ++i) {
      if (bits >> i & 1) flags += "-+ #0"[i];
    }
    for (char const * size : {"", "1", "12", ".", ".0", ".3", "9.1", "30.17", "2.40"}) fields.push_back(flags + size + end);
  }
  return fields;
}

// Some versions of the host's library drop the zeros that "%#g" keeps where rounding carries into a new digit.
bool isRoundedUpUnderSharpG(std::string const & field, double value)
{
  return field.find('#') != std::string::npos && (field.back() | 0x20) == 'g' &&
         (value == 9.5 || value == 99999.95 || value == 999999.5);
}

TEST(Format, RealsAreThoseOfTheHost)
{
  std::mt19937_64 random(1);
  std::vector<double> values = {0.0,
                                -0.0,
                                1.0,
                                9.5,
                                0.5,
                                2.5,
                                99999.95,
                                999999.5,
                                1e-5,
                                0.0001,
                                123456.0,
                                1e6,
                                1e22,
                                5e-324,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::min(),
                                INFINITY,
                                -INFINITY,
                                NAN,
                                -NAN};
  for (int i = 0; i < 40; ++i) values.push_back(std::bit_cast<double>(random()));
  for (int i = 0; i < 40; ++i)
    values.push_back(std::ldexp(static_cast<double>(random() % 100000), -static_cast<int>(random() % 30)));
  for (char const * end : {"e", "E", "f", "F", "g", "G", "lf"}) {
    for (std::string const & field : specsEndingIn(end)) {
      for (double const value : values) {
        if (isRoundedUpUnderSharpG(field, value)) continue;
        ASSERT_EQ(formatted(field.c_str(), value), hostFormatted(field.c_str(), value)) << field << " of " << value;
      }
    }
  }
  for (char const * field : {"%.1500e", "%.1200f", "%#.1300g", "%.1300g", "%.1100g", "%05000.3f"}) {
    for (double const value : values) ASSERT_EQ(formatted(field, value), hostFormatted(field, value)) << field << " of " << value;
  }
}

TEST(Format, SharpKeepsTheZerosOfARoundedUpNumber)
{
  EXPECT_EQ(formatted("%#g|%#.4g|%#.1g", 999999.5, 99999.95, 9.5), "1.00000e+06|1.000e+05|1.e+01");
}

TEST(Format, IntegersAreThoseOfTheHost)
{
  for (char const * end : {"d", "i", "u", "x", "X", "o", "hd", "hu", "hhd", "hhX"}) {
    for (std::string const & field : specsEndingIn(end)) {
      for (int const value : {0, 1, -1, 255, 256, 40000, INT_MAX, INT_MIN, -129}) {
        ASSERT_EQ(formatted(field.c_str(), value), hostFormatted(field.c_str(), value)) << field << " of " << value;
      }
    }
  }
  for (std::string const & field : specsEndingIn("lld")) {
    ASSERT_EQ(formatted(field.c_str(), INT64_MIN), hostFormatted(field.c_str(), INT64_MIN)) << field;
  }
  EXPECT_EQ(formatted("%I64d %I64X %llu", -5LL, -1LL, 1ULL << 63), "-5 FFFFFFFFFFFFFFFF 9223372036854775808");
}

TEST(Format, LongsAre32BitsWide)
{
  EXPECT_EQ(formatted("%ld|%lu|%lX|%lx|%lo|%li", -1L, -1L, -2L, 0x1FFFFFFFFL, -1L, 0x80000000L),
            "-1|4294967295|FFFFFFFE|ffffffff|37777777777|-2147483648");
  EXPECT_EQ(formattedFrom("%ld|%lu|%lX|%d|%u|%llu|%lld", {-1L, -1L, -2L, 0x100000005L, 0xFFFFFFFFU, -1, -1}),
            "-1|4294967295|FFFFFFFE|5|4294967295|4294967295|-1");
}

TEST(Format, TextsAndCharactersAreThoseOfTheHost)
{
  for (std::string const & field : specsEndingIn("s")) {
    ASSERT_EQ(formatted(field.c_str(), "abcdef"), hostFormatted(field.c_str(), "abcdef")) << field;
  }
  for (std::string const & field : specsEndingIn("c"))
    ASSERT_EQ(formatted(field.c_str(), 'q'), hostFormatted(field.c_str(), 'q')) << field;
  EXPECT_EQ(formatted("a%cb", 0), std::string("a\0b", 3));
  char const unterminated[3] = {'a', 'b', 'c'};
  EXPECT_EQ(formatted("%.3s|%.*s", unterminated, 2, unterminated), "abc|ab");
  EXPECT_EQ(formatted("%s", static_cast<char const *>(nullptr)), "(null)");
  EXPECT_EQ(formatted("%*d|%-*d|%*d|%.*f|%.*f", 5, 1, 5, 2, -5, 3, 1, 0.25, -1, 0.5), "    1|2    |3    |0.2|0.500000");
}

TEST(Format, UnknownConversionsAppearAsText)
{
  EXPECT_EQ(formatted("100%% %n %y %5p %-8.3q %ls %Lf %d %", 7), "100% %n %y %5p %-8.3q %ls %Lf 7 %");
  EXPECT_EQ(formatted("%5"), "%5");
  EXPECT_EQ(formatted("%99999999999999999999d", 1).size(), 5000U);
  EXPECT_EQ(formatted("%.99999999999999999999f|%.99999d", 1.0, 1).size(), 5002U + 1U + 5000U);
}

TEST(Format, UntrustedFormatsTakeExactlyTheirArguments)
{
  struct Row {
    char const * format;
    std::initializer_list<zp::FormatArg> args;
    char const * expected;
  };
  // clang-format off
  Row const rows[] = {
      {"%d %s %g", {1, "two", 3.5}, "1 two 3.5"}, {"%s %d", {5, 7}, "%s 7"}, {"%d and %5.1f", {"text", "more"}, "%d and %5.1f"},
      {"%g %g", {1.0}, "1 %g"}, {"%d", {1.0}, "%d"}, {"%g", {1}, "%g"}, {"none %n", {1}, "none %n"}, {"%n%d", {9}, "%n9"},
      {"%c%c", {65, 66, 67}, "AB"}, {"%*d|%d", {4, 1, 2}, "   1|2"}, {"%*d|%d", {"x", 1, 2}, "%*d|2"}, {"%.*f", {2}, "%.*f"},
      {"%-*.*f|", {8, 2, 1.5}, "1.50    |"}, {"%s", {static_cast<char const *>(nullptr)}, "(null)"},
      {"%2000000000d", {}, "%2000000000d"},
  };
  // clang-format on
  for (Row const & row : rows) EXPECT_EQ(formattedFrom(row.format, row.args), row.expected) << row.format;
  EXPECT_EQ(formattedFrom("%*d", {2000000000, 1}).size(), 5000U);
}

}  // namespace
