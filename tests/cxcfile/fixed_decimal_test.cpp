// The number text of the export, against the C library and against texts written by hand.
#include "cxcfile/fixed_decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

std::string text(double value) {
    TCHAR units[cxc::mostFixedDecimal];
    const TCHAR* const end = cxc::writeFixedDecimal(units, value);
    std::string out;
    for (const TCHAR* unit = units; unit < end; ++unit) {
        EXPECT_LT(static_cast<unsigned>(*unit), 128u);
        out += static_cast<char>(*unit);
    }
    return out;
}

std::string libraryText(double value) {
    char line[400];
    std::snprintf(line, sizeof(line), "%f", value);
    return line;
}

double fromBits(std::uint64_t bits) {
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

TEST(fixed_decimal, OrdinaryValuesHaveSixDecimals) {
    EXPECT_EQ(text(0.0), "0.000000");
    EXPECT_EQ(text(1.0), "1.000000");
    EXPECT_EQ(text(0.5), "0.500000");
    EXPECT_EQ(text(-2.25), "-2.250000");
    EXPECT_EQ(text(0.1), "0.100000");
    EXPECT_EQ(text(123456789.987654), "123456789.987654");
    EXPECT_EQ(text(9.0), "9.000000");
    EXPECT_EQ(text(10.0), "10.000000");
    EXPECT_EQ(text(99.0), "99.000000");
    EXPECT_EQ(text(100.0), "100.000000");
}

TEST(fixed_decimal, NegativeZeroAndWhatRoundsToItKeepTheSign) {
    EXPECT_EQ(text(-0.0), "-0.000000");
    EXPECT_EQ(text(-1e-9), "-0.000000");
    EXPECT_EQ(text(-std::numeric_limits<double>::denorm_min()), "-0.000000");
    EXPECT_EQ(text(std::numeric_limits<double>::denorm_min()), "0.000000");
}

TEST(fixed_decimal, ExactHalvesGoToTheEvenDigit) {
    // n / 2^7 has seven decimals, the last of them a 5: an exact half of the sixth.
    EXPECT_EQ(text(1.0 / 128), "0.007812");    // 0.0078125
    EXPECT_EQ(text(3.0 / 128), "0.023438");    // 0.0234375
    EXPECT_EQ(text(5.0 / 128), "0.039062");    // 0.0390625
    EXPECT_EQ(text(-7.0 / 128), "-0.054688");  // 0.0546875
    EXPECT_EQ(text(12345 + 1.0 / 128), "12345.007812");
}

TEST(fixed_decimal, ValuesBesideAHalfAreNotHalves) {
    const double half = 1.0 / 128;
    EXPECT_EQ(text(std::nextafter(half, 1.0)), "0.007813");
    EXPECT_EQ(text(std::nextafter(half, 0.0)), "0.007812");
    EXPECT_EQ(text(0.0000005), "0.000000");  // just below the half
    EXPECT_EQ(text(std::nextafter(0.0000005, 1.0)), "0.000001");
    EXPECT_EQ(text(0.0000015), "0.000002");
}

TEST(fixed_decimal, RoundingCarriesIntoTheWholePart) {
    EXPECT_EQ(text(0.9999996), "1.000000");
    EXPECT_EQ(text(9.9999999), "10.000000");
    EXPECT_EQ(text(-99.9999999), "-100.000000");
}

TEST(fixed_decimal, HugeValuesPrintEveryDigit) {
    EXPECT_EQ(text(9007199254740993.0), "9007199254740992.000000");
    EXPECT_EQ(text(18446744073709549568.0), "18446744073709549568.000000");
    EXPECT_EQ(text(18446744073709551616.0), "18446744073709551616.000000");
    EXPECT_EQ(text(1e22), "10000000000000000000000.000000");
    const std::string largest = text(-std::numeric_limits<double>::max());
    EXPECT_EQ(largest.size(), static_cast<std::size_t>(cxc::mostFixedDecimal));
    EXPECT_EQ(largest.substr(0, 18), "-17976931348623157");
    EXPECT_EQ(largest.substr(largest.size() - 11), "8368.000000");
}

TEST(fixed_decimal, InfinitiesAndNansAreSpelledAsByTheWindowsRuntime) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(text(infinity), "inf");
    EXPECT_EQ(text(-infinity), "-inf");
    EXPECT_EQ(text(fromBits(0x7FF8000000000000)), "nan");
    EXPECT_EQ(text(fromBits(0x7FF8000000000001)), "nan");
    EXPECT_EQ(text(fromBits(0xFFF8000000000000)), "-nan(ind)");
    EXPECT_EQ(text(fromBits(0xFFF8000000000001)), "-nan");
    EXPECT_EQ(text(fromBits(0x7FF0000000000001)), "nan(snan)");
    EXPECT_EQ(text(fromBits(0xFFF0000000000001)), "-nan(snan)");
}

TEST(fixed_decimal, EveryExponentAgreesWithTheCLibrary) {
    std::mt19937_64 random(20160311);
    for (std::uint64_t exponent = 0; exponent < 0x7FF; ++exponent) {
        for (int i = 0; i < 40; ++i) {
            const double value = fromBits(exponent << 52 | random() >> 12 | (random() & 1) << 63);
            ASSERT_EQ(text(value), libraryText(value)) << exponent;
        }
        const double power = fromBits(exponent << 52);
        ASSERT_EQ(text(power), libraryText(power)) << exponent;
    }
}

TEST(fixed_decimal, CommonMagnitudesAgreeWithTheCLibrary) {
    std::mt19937_64 random(20130402);
    for (int i = 0; i < 100000; ++i) {
        const double unit = static_cast<double>(random() >> 11) / 9007199254740992.0;
        ASSERT_EQ(text(unit), libraryText(unit));
        const double wide = std::ldexp(unit - 0.5, static_cast<int>(random() % 130) - 65);
        ASSERT_EQ(text(wide), libraryText(wide));
        // Few bits: exact halves among them.
        const double coarse =
            std::ldexp(static_cast<double>(random() % 4096), -static_cast<int>(random() % 90));
        ASSERT_EQ(text(coarse), libraryText(coarse));
    }
}

TEST(fixed_decimal, UnsignedNumbersOfEveryLength) {
    unsigned long long value = 0;
    for (int digits = 0; digits < 20; ++digits) {
        TCHAR units[20];
        TCHAR* const end = cxc::writeUnsigned(units, value);
        EXPECT_EQ(std::string(+units, end), std::to_string(value));
        value = value * 10 + static_cast<unsigned long long>(digits % 9 + 1);
    }
    TCHAR units[20];
    EXPECT_EQ(std::string(+units, cxc::writeUnsigned(units, 18446744073709551615ull)),
              "18446744073709551615");
}

}  // namespace
