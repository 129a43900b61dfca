#include "cxcdata/element_wise.h"

#include "framework.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using cxc::TwoDoubles;
using Values = std::vector<double>;

constexpr __int64 longest = 41;  // some cache lines and every rest
constexpr double untouched = -77.0;

// Numbers from `first` on, and behind them elements that nobody may touch.
Values numbers(__int64 n, double first) {
    Values values;
    for (__int64 t = 0; t < n; ++t)
        values.push_back(first + static_cast<double>(t));
    values.insert(values.end(), 16, untouched);
    return values;
}

TwoDoubles subtract(TwoDoubles a, TwoDoubles b) {
    return a - b;
}

TEST(ElementWise, EveryLengthIsWorkedOnWholeAndNothingBehindIt) {
    for (__int64 n = 0; n <= longest; ++n) {
        Values result = numbers(n, 1000.0);
        const Values values = numbers(n, 1.0);
        Values expected = result;
        for (std::size_t t = 0; t < static_cast<std::size_t>(n); ++t)
            expected[t] = result[t] - 3.0 * values[t];
        const TwoDoubles three(3.0, 3.0);
        cxc::elementWise(result.data(), values.data(), n,
                         [three](TwoDoubles a, TwoDoubles b) { return a - three * b; });
        EXPECT_EQ(result, expected) << n;
    }
}

// Arrays of exactly that length, where a read or a write beyond the end is found by checks.
TEST(ElementWise, NothingBeyondTheEndIsRead) {
    for (__int64 n = 1; n <= longest; ++n) {
        Values result(static_cast<std::size_t>(n), 5.0);
        const Values values(static_cast<std::size_t>(n), 2.0);
        cxc::elementWise(result.data(), values.data(), n, subtract);
        EXPECT_EQ(result, Values(static_cast<std::size_t>(n), 3.0)) << n;
    }
}

TEST(ElementWise, NegativeLengthsTouchNothing) {
    for (const __int64 n : {-1LL, std::numeric_limits<__int64>::min()}) {
        Values result = numbers(8, 0.0);
        const Values before = result;
        const Values values = numbers(8, 1.0);
        cxc::elementWise(result.data() + 4, values.data() + 4, n, subtract);
        EXPECT_EQ(result, before);
    }
}

TEST(ElementWise, BothArraysMayBeTheSame) {
    for (__int64 n = 0; n <= longest; ++n) {
        Values values = numbers(n, 1.0);
        Values expected = values;
        for (std::size_t t = 0; t < static_cast<std::size_t>(n); ++t)
            expected[t] *= 2.0;
        cxc::elementWise(values.data(), values.data(), n,
                         [](TwoDoubles a, TwoDoubles b) { return a + b; });
        EXPECT_EQ(values, expected) << n;
    }
}

// Each beside each, so that they come to stand in both lanes and in the rest.
TEST(ElementWise, SpecialValuesAreThoseOfSingleOperations) {
    using Limits = std::numeric_limits<double>;
    const Values special = {0.0,
                            -0.0,
                            1.5,
                            Limits::infinity(),
                            -Limits::infinity(),
                            Limits::quiet_NaN(),
                            Limits::denorm_min(),
                            -Limits::max(),
                            Limits::min()};
    Values a;
    Values b;
    for (const double one : special) {
        for (const double other : special) {
            a.push_back(one);
            b.push_back(other);
        }
    }
    Values result = a;
    cxc::elementWise(result.data(), b.data(), static_cast<__int64>(a.size()), subtract);
    for (std::size_t t = 0; t < a.size(); ++t) {
        const double expected = a[t] - b[t];
        if (std::isnan(expected))
            EXPECT_TRUE(std::isnan(result[t])) << t;
        else
            EXPECT_EQ(std::memcmp(&result[t], &expected, sizeof(expected)), 0) << t;
    }
}

}  // namespace
