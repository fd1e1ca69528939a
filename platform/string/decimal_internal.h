// The double that a decimal number means.
#pragma once

#include <cstdint>

namespace zp {

// The double next to mantissa * 10^exponent, of two equally near ones the even one; infinite beyond the largest.
double NearestDouble(uint64_t mantissa, int64_t exponent);

}  // namespace zp
