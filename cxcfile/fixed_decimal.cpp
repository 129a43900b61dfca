#include "cxcfile/fixed_decimal.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace cxc {
namespace {

static_assert(sizeof(TCHAR) == 2, "the export is 16-bit text");

constexpr int mantissaBits = 52;
constexpr std::uint64_t mantissaMask = (std::uint64_t{1} << mantissaBits) - 1;
constexpr std::uint64_t quietBit = std::uint64_t{1} << (mantissaBits - 1);
constexpr int largestExponent = 0x7FF;
// A finite double is mantissa * 2^(exponent - exponentBias) with a 53-bit integer mantissa.
constexpr int exponentBias = 1023 + mantissaBits;
constexpr std::uint64_t decimalScale = 1000000;
constexpr std::uint64_t low32 = 0xFFFFFFFF;

// The texts "00" to "99", one after the other.
struct DigitPairs {
    TCHAR text[200];
};

constexpr DigitPairs makeDigitPairs() {
    DigitPairs pairs = {};
    for (int n = 0; n < 100; ++n) {
        TCHAR* const pair = &pairs.text[n + n];
        pair[0] = static_cast<TCHAR>('0' + n / 10);
        pair[1] = static_cast<TCHAR>('0' + n % 10);
    }
    return pairs;
}

constexpr DigitPairs digitPairs = makeDigitPairs();

inline void putPair(TCHAR* to, std::uint32_t pair) {
    std::memcpy(to, digitPairs.text + pair + pair, 2 * sizeof(TCHAR));
}

TCHAR* putText(TCHAR* to, const char* text) {
    while (*text != '\0')
        *to++ = static_cast<TCHAR>(*text++);
    return to;
}

// value * 10^6 for 0 <= value < 1, split into the whole part and what is left of it.
struct Millionths {
    std::uint64_t whole;
    std::uint64_t aboveHalf;  // 1 or 0
    std::uint64_t exactHalf;  // 1 or 0

    // Every second value is rounded up, so a branch here would be mispredicted half of the time.
    std::uint64_t rounded() const { return whole + (aboveHalf | (exactHalf & whole)); }
};

// `fraction` counts units of 2^-64; the product is formed in two halves and is exact.
inline Millionths scaleFraction(std::uint64_t fraction) {
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    const std::uint64_t low = (fraction & low32) * decimalScale;
    const std::uint64_t high = (fraction >> 32) * decimalScale + (low >> 32);
    const std::uint64_t rest = (high << 32) | (low & low32);
    return {high >> 32, rest > half, rest == half};
}

// mantissa * 2^-shift for shifts of 65 to 74, where bits lie below 2^-64.
Millionths scaleTiny(std::uint64_t mantissa, int shift) {
    const std::uint64_t low = (mantissa & low32) * decimalScale;
    const std::uint64_t middle = (mantissa >> 32) * decimalScale + (low >> 32);
    const std::uint64_t high = middle >> 32;
    const std::uint64_t rest = (middle << 32) | (low & low32);
    const int beyond = shift - 64;
    const std::uint64_t highRest = high & ((std::uint64_t{1} << beyond) - 1);
    const std::uint64_t half = std::uint64_t{1} << (beyond - 1);
    return {high >> beyond, highRest > half || (highRest == half && rest > 0),
            highRest == half && rest == 0};
}

inline TCHAR* putNumber(TCHAR* to, std::uint64_t whole, std::uint64_t millionths) {
    if (millionths == decimalScale) {
        ++whole;
        millionths = 0;
    }
    if (whole < 10)
        *to++ = static_cast<TCHAR>('0' + whole);
    else
        to = writeUnsigned(to, whole);
    const auto decimals = static_cast<std::uint32_t>(millionths);
    const std::uint32_t hundreds = decimals / 100;
    const std::uint32_t leading = hundreds / 100;
    *to = static_cast<TCHAR>('.');
    putPair(to + 1, leading);
    putPair(to + 3, hundreds - 100 * leading);
    putPair(to + 5, decimals - 100 * hundreds);
    return to + 7;
}

// Magnitudes from 2^64 on, where every digit counts and speed does not.
TCHAR* putHuge(TCHAR* to, double magnitude) {
    char text[mostFixedDecimal + 1];
    const std::to_chars_result result =
        std::to_chars(text, text + sizeof(text) - 1, magnitude, std::chars_format::fixed, 6);
    *result.ptr = '\0';
    return putText(to, text);
}

TCHAR* putNotANumber(TCHAR* to, std::uint64_t mantissa, bool negative) {
    if (mantissa == 0) return putText(to, "inf");
    if (negative && mantissa == quietBit) return putText(to, "nan(ind)");
    return putText(to, (mantissa & quietBit) != 0 ? "nan" : "nan(snan)");
}

}  // namespace

TCHAR* writeUnsigned(TCHAR* to, unsigned long long value) {
    if (value < 10) {
        *to = static_cast<TCHAR>('0' + value);
        return to + 1;
    }
    TCHAR digits[20];
    TCHAR* first = digits + 20;
    while (value >= 100) {
        first -= 2;
        putPair(first, static_cast<std::uint32_t>(value % 100));
        value /= 100;
    }
    if (value >= 10) {
        first -= 2;
        putPair(first, static_cast<std::uint32_t>(value));
    } else {
        *--first = static_cast<TCHAR>('0' + value);
    }
    const std::size_t length = static_cast<std::size_t>(digits + 20 - first);
    std::memcpy(to, first, length * sizeof(TCHAR));
    return to + length;
}

TCHAR* writeFixedDecimal(TCHAR* to, double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    const bool negative = (bits >> 63) != 0;
    const int exponent = static_cast<int>(bits >> mantissaBits) & largestExponent;
    std::uint64_t mantissa = bits & mantissaMask;
    if (negative) *to++ = static_cast<TCHAR>('-');
    if (exponent == largestExponent) return putNotANumber(to, mantissa, negative);
    if (exponent != 0) mantissa |= std::uint64_t{1} << mantissaBits;

    // The value is mantissa * 2^-shift; a denormal one is far below what six decimals show.
    const int shift = exponentBias - exponent;
    if (shift > 0 && shift < 64)
        return putNumber(to, mantissa >> shift, scaleFraction(mantissa << (64 - shift)).rounded());
    if (shift == 64) return putNumber(to, 0, scaleFraction(mantissa).rounded());
    if (shift > 74) return putNumber(to, 0, 0);
    if (shift > 64) return putNumber(to, 0, scaleTiny(mantissa, shift).rounded());
    if (shift <= 0 && shift >= -11) return putNumber(to, mantissa << -shift, 0);
    return putHuge(to, negative ? -value : value);
}

}  // namespace cxc
