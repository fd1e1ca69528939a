// From a decimal mantissa and exponent to the nearest double, by one multiplication with the leading 128 bits of a power of
// five. That this is enough for every mantissa of 64 bits is proved in Mushtak and Lemire, "Fast Number Parsing Without
// Fallback" (2023), on the method of Eisel and Lemire.

#include "platform/string/decimal_internal.h"

#include <array>
#include <bit>
#include <cstddef>
#include <limits>

namespace zp {

namespace {

constexpr int leastPower = -342;  // below it 19 digits are less than half of the least double
constexpr int mostPower = 308;
constexpr int leastRoundedUp = -27;
constexpr int fractionBits = 52;
constexpr int exponentBias = 1023;
constexpr int infiniteExponent = 2047;

// A number of 128 bits.
struct Wide {
  uint64_t high;
  uint64_t low;
};

Wide product(uint64_t a, uint64_t b)
{
  constexpr uint64_t half = 0xFFFFFFFF;
  uint64_t const low = (a & half) * (b & half);
  uint64_t const first = (a >> 32) * (b & half) + (low >> 32);
  uint64_t const second = (a & half) * (b >> 32) + (first & half);
  return {(a >> 32) * (b >> 32) + (first >> 32) + (second >> 32), second << 32 | (low & half)};
}

// An integer of up to 1,024 bits, its lowest 64 first.
using Limbs = std::array<uint64_t, 16>;

void multiplyByFive(Limbs & limbs)
{
  uint64_t carry = 0;
  for (uint64_t & limb : limbs) {
    Wide const fivefold = product(limb, 5);
    limb = fivefold.low + carry;
    carry = fivefold.high + (limb < carry);
  }
}

void divideByFive(Limbs & limbs)
{
  uint64_t rest = 0;
  for (size_t i = limbs.size(); i-- > 0;) {
    uint64_t const high = rest << 32 | limbs[i] >> 32;
    uint64_t const low = high % 5 << 32 | (limbs[i] & 0xFFFFFFFF);
    limbs[i] = high / 5 << 32 | low / 5;
    rest = low % 5;
  }
}

Wide leadingBits(Limbs const & limbs)
{
  size_t top = limbs.size() - 1;
  while (limbs[top] == 0) --top;
  int const shift = std::countl_zero(limbs[top]);
  auto const shifted = [&limbs, top, shift](size_t down) {
    uint64_t const limb = down <= top ? limbs[top - down] : 0;
    uint64_t const below = down < top ? limbs[top - down - 1] : 0;
    return shift == 0 ? limb : limb << shift | below >> (64 - shift);
  };
  return {shifted(0), shifted(1)};
}

// The leading 128 bits of 5^n from leastPower to mostPower, cut off, or rounded up where 5^-n fits in 64 bits.
class FivePowers {
 public:
  FivePowers()
  {
    Limbs power{1};
    for (int n = 0; n <= mostPower; ++n, multiplyByFive(power)) at(n) = leadingBits(power);
    Limbs inverse{};
    inverse[15] = 1;  // 2^960, which leaves 166 bits of it over 5^342
    for (int n = -1; n >= leastPower; --n) {
      divideByFive(inverse);
      at(n) = leadingBits(inverse);
      if (n >= leastRoundedUp) ++at(n).low;  // none of them ends in ones alone
    }
  }

  Wide operator[](int n) const { return m_Powers[static_cast<size_t>(n - leastPower)]; }

 private:
  Wide & at(int n) { return m_Powers[static_cast<size_t>(n - leastPower)]; }

  std::array<Wide, mostPower - leastPower + 1> m_Powers;
};

// Of factor * 5^n the leading 128 bits, as exact as 55 bits and the bit behind them need.
Wide scaled(uint64_t factor, int n)
{
  static FivePowers const powers;
  constexpr uint64_t open = (uint64_t{1} << (64 - fractionBits - 3)) - 1;
  Wide result = product(factor, powers[n].high);
  if ((result.high & open) != open) return result;
  uint64_t const below = product(factor, powers[n].low).high;
  result.low += below;
  result.high += result.low < below;
  return result;
}

// bits has one bit below the fraction's last.
uint64_t rounded(uint64_t bits)
{
  return (bits + (bits & 1)) >> 1;
}

// places is how far bits stand below a double of the least exponent.
double subnormal(uint64_t bits, int places)
{
  return places >= 64 ? 0.0 : std::bit_cast<double>(rounded(bits >> places));
}

// A product that is exact and lies halfway goes to the even number. Only small powers of five can make one.
bool isHalfway(Wide const & bits, uint64_t cut, int cutAway, int n)
{
  return bits.low <= 1 && n >= -4 && n <= 23 && (cut & 3) == 1 && cut << cutAway == bits.high;
}

}  // namespace

double NearestDouble(uint64_t mantissa, int64_t exponent)
{
  if (mantissa == 0 || exponent < leastPower) return 0.0;
  if (exponent > mostPower) return std::numeric_limits<double>::infinity();
  int const n = static_cast<int>(exponent);
  int const zeros = std::countl_zero(mantissa);
  Wide const bits = scaled(mantissa << zeros, n);
  int const upper = static_cast<int>(bits.high >> 63);
  int const cutAway = upper + 64 - fractionBits - 3;
  uint64_t cut = bits.high >> cutAway;
  int const log2 = ((217706 * n) >> 16) + 63;  // of 10^n, rounded down, and the 63 bits of the mantissa behind its first
  int const biased = log2 + upper - zeros + exponentBias;
  if (biased <= 0) return subnormal(cut, 1 - biased);
  if (isHalfway(bits, cut, cutAway, n)) cut &= ~uint64_t{1};
  cut = rounded(cut);
  uint64_t const number =
      (uint64_t{static_cast<unsigned int>(biased - 1)} << fractionBits) + cut;  // a carry makes the next exponent
  return number >> fractionBits >= infiniteExponent ? std::numeric_limits<double>::infinity() : std::bit_cast<double>(number);
}

}  // namespace zp
