// The number text of the text export: what "%f" gives, straight into 16-bit code units. Exported
// for tests and benchmarks only.
#pragma once

#include "cxcdata/cxc_api.h"
#include "framework.h"

namespace cxc {

/// Room that one number needs at most: a sign, the 309 digits of the largest double, the point
/// and six decimals.
constexpr int mostFixedDecimal = 1 + 309 + 1 + 6;

/// Writes `value` with six decimals at `to`, without a terminating zero, and returns the place
/// behind the last character. The decimals are those of the exact value, rounded to nearest, an
/// exact half to even. A zero, and what rounds to it, keeps its sign. Values that are no numbers
/// read "inf", "nan", "nan(ind)" (the quiet one that arithmetic makes, always with the sign) and
/// "nan(snan)" (a signalling one), with a minus where the sign bit is set, on every platform.
/// Requires room for mostFixedDecimal characters.
CXC_API TCHAR* writeFixedDecimal(TCHAR* to, double value);

/// Writes `value` in decimal digits at `to` and returns the place behind the last one.
/// Requires room for 20 characters.
CXC_API TCHAR* writeUnsigned(TCHAR* to, unsigned long long value);

}  // namespace cxc
