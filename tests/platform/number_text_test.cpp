// Numbers from text, bit by bit against the host's strtod in the C locale, from buffers that end where the text ends.
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <tuple>

#include <zpbase/platform/number_text.h>

#include "tests/support/OwnProcess.h"

namespace {

// The text is given without a terminating zero, in a block of its own, so that a sanitizer sees a read beyond it.
void expectLikeHost(std::string const & text)
{
  auto const exact = std::make_unique<char[]>(text.size());
  std::memcpy(exact.get(), text.data(), text.size());
  size_t used = 12345;
  double const value = zp::TextToDouble({exact.get(), text.size()}, &used);
  PlainLocale const plain;
  char * end = nullptr;
  double const expected = std::strtod(text.c_str(), &end);
  ASSERT_EQ(std::bit_cast<uint64_t>(value), std::bit_cast<uint64_t>(expected)) << "'" << text << "' gives " << value;
  ASSERT_EQ(used, static_cast<size_t>(end - text.c_str())) << "'" << text << "'";
}

TEST(TextToDouble, AgreesWithTheHostOnOddTexts)
{
  // clang-format off
  for (char const * text : {
      "", " ", "-", "+", ".", "-.", "+-1", "--1", "e5", ".e5", "1", "-0", "-0.0", "1.", ".5", "-.5", "5.e3", "1e", "1e+", "1e-",
      "1e5", "1E+05x", "1.5.2", "12a", " \t\n\v\f\r 7", "\b7", "1,5", "1 2", "0x", "0.x1", ".0x", "00.x", "0e1x", "0xg", "0x1", "0X1.8p3", "-0x.8", "0x1p",
      "0x.", "0x1p-1080", "00x1", "inf", "INFINITY", "infinite", "-inf", "in", "nan", "-nan", "NAN(12ab)", "nan(", "nan(a b)",
      "nano", "1e308", "1.8e308", "-1e400", "1e-400", "4.9e-324", "2.4e-324", "2.5e-324", "2.2250738585072011e-308",
      "1e99999999999999999999", "0e99999999999999999999", "-1e-99999999999999999999", "9007199254740992", "9007199254740993",
      "9007199254740992.5", "9007199254740993.0000000000000000000000000000000000001", "18446744073709551615",
      "18446744073709551616", "99999999999999999999", "0.000000000000000000000000000000001", "123456789012345678e22", "1e22",
      "1e23", "1e-22", "1e-23", "3e22", "8.5e-22", "0.1", "1.7976931348623157e308", "1.7976931348623159e308", "12345678",
      "1234567.", "12345678.12345678", "123456789.123456789e-10", "1_000", "1d5", "1#INF"}) {
    // clang-format on
    expectLikeHost(text);
  }
  expectLikeHost(
      std::string("12\0"
                  "34",
                  5));
  expectLikeHost(std::string(900, '9') + "e-899");
  expectLikeHost("0." + std::string(5000, '0') + "1e5001");
  expectLikeHost("0x" + std::string(400, 'f'));
}

std::string printed(char const * format, double value)
{
  PlainLocale const plain;
  char text[400];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

TEST(TextToDouble, AgreesWithTheHostOnPrintedNumbersAndOnJunk)
{
  std::mt19937_64 random(7);
  char const * const formats[] = {"%g", "%.17g", "%.15e", "%f", "%.3f", "%.20g", "%.16e", "%a"};
  for (int i = 0; i < 40000; ++i) {
    double const wide = std::bit_cast<double>(random());
    double const narrow = static_cast<double>(random() % 100000000) / 1000.0;
    expectLikeHost(printed(formats[random() % 8], random() % 2 != 0 ? wide : narrow));
  }
  std::string const letters = "0123456789..eE+-xXpPiInNfFaA( )_0123456789";
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (size_t length = random() % 30; text.size() < length;) text += letters[random() % letters.size()];
    expectLikeHost(text);
  }
}

// Texts around the middle between a random double and the next one, where a single digit far behind decides: the middle itself,
// cut at 17 to 25 digits, and a last digit more. Subnormal ones and such near the ends of the range are among them.
TEST(TextToDouble, RoundsLikeTheStandardLibraryNearTheMiddleBetweenTwoDoubles)
{
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    uint64_t const exponent = i % 4 == 0 ? random() % 3 : i % 4 == 1 ? 2043 + random() % 4 : 960 + random() % 130;
    auto const value = std::bit_cast<double>(exponent << 52 | random() >> 12);
    auto const next = std::bit_cast<double>(std::bit_cast<uint64_t>(value) + 1);
    long double const middle = (static_cast<long double>(value) + static_cast<long double>(next)) / 2;
    char exact[1200];
    PlainLocale const plain;
    std::string const whole(exact, static_cast<size_t>(std::snprintf(exact, sizeof exact, "%.800Le", middle)));
    size_t const letter = whole.find('e');
    for (std::string const & digits :
         {whole.substr(0, letter), whole.substr(0, 18 + random() % 9), whole.substr(0, letter) + "1"}) {
      std::string const text = digits + whole.substr(letter);
      double expected = 0.0;
      std::from_chars(text.data(), text.data() + text.size(), expected);
      ASSERT_EQ(std::bit_cast<uint64_t>(zp::TextToDouble(text)), std::bit_cast<uint64_t>(expected)) << text;
    }
  }
  for (int i = 0; i < 100000; ++i)
    expectLikeHost(std::to_string(random() >> random() % 64) + "e" + std::to_string(static_cast<int>(random() % 700) - 350));
}

TEST(TextToInt, ReadsLikeAtoiAndWrapsAt32Bits)
{
  using Row = std::tuple<char const *, int>;
  // clang-format off
  Row const rows[] = {
      {"", 0}, {"12", 12}, {" \t\r\n-7x", -7}, {"+5", 5}, {"+-5", 0}, {"- 5", 0}, {"x", 0}, {"0x10", 0}, {"1.9", 1},
      {"2147483648", INT32_MIN}, {"4294967295", -1}, {"4294967297", 1}, {"-2147483649", INT32_MAX},
      {"100000000000000000000", 1661992960}};
  // clang-format on
  for (auto const & [written, wanted] : rows) EXPECT_EQ(zp::TextToInt(written), wanted) << written;
  EXPECT_EQ(zp::TextToInt(std::string_view("1234", 2)), 12);
}

}  // namespace
