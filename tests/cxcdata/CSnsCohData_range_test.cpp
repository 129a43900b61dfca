// The value range of CSnsCohData.
#include "cxcdata/CSnsCohData.h"

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using test::fill;

constexpr __int64 least = std::numeric_limits<__int64>::min();

TEST(CSnsCohData, RangeWithoutTheDiagonalStillDividesByAllColumns) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {5, -1, 2, 5});
    d.setSelect(0, 0);
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, false, -1, -1, 1), 1);
    EXPECT_EQ(min, -1.0);
    EXPECT_EQ(max, 2.0);
    EXPECT_EQ(d.m_dataMin, -1.0);
    EXPECT_EQ(d.m_dataMax, 2.0);
    EXPECT_EQ(d.m_dataMean, 0.25);
    EXPECT_EQ(d.getSnsCohRange(min, max, false, -1, -1, 0), 1);
    EXPECT_EQ(min, -1.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(d.m_dataMean, 2.75);
}

TEST(CSnsCohData, WholeRangeIgnoresTheSlicesItChecks) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, false, 2, 3, 0), 1);
    EXPECT_EQ(min, 111.0);
    EXPECT_EQ(max, 235.0);
    // Pair means 113, 123, 133 and 213, 223, 233.
    EXPECT_EQ(d.m_dataMean, 173.0);
}

TEST(CSnsCohData, SliceRangeCachesNothing) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_dataMin = d.m_dataMax = d.m_dataMean = 77.0;
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 1, 3, 0), 1);
    EXPECT_EQ(min, 112.0);
    EXPECT_EQ(max, 234.0);
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 1, 3, 1), 1);
    EXPECT_EQ(min, 122.0);
    EXPECT_EQ(max, 234.0);
    EXPECT_EQ(d.m_dataMin, 77.0);
    EXPECT_EQ(d.m_dataMax, 77.0);
    EXPECT_EQ(d.m_dataMean, 77.0);
}

TEST(CSnsCohData, ReversedSlicesVisitNothing) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 3, 1, 0), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
}

TEST(CSnsCohData, RangeChecksItsSlicesInBothModes) {
    CSnsCohDatazq d;
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, false, 0, 0, 0), 0);  // no grid
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    fill(d, 2, 3, 5);
    for (const bool useTime : {false, true}) {
        EXPECT_EQ(d.getSnsCohRange(min, max, useTime, 5, 0, 0), 0);
        EXPECT_EQ(d.getSnsCohRange(min, max, useTime, 0, 5, 0), 0);
        EXPECT_EQ(d.getSnsCohRange(min, max, useTime, -2, 0, 0), 0);
        EXPECT_EQ(d.getSnsCohRange(min, max, useTime, 0, least, 0), 0);
        EXPECT_EQ(min, 0.0);
        EXPECT_EQ(max, 0.0);
        EXPECT_EQ(d.getSnsCohRange(min, max, useTime, 4, 4, 0), 1);
    }
}

TEST(CSnsCohData, PairWithoutValuesCountsAsZeroInTheWholeRange) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {5, 4, 2, 5});
    test::claimValues(d, 0, 1, 1);
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, false, 0, 0, 0), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(d.m_dataMean, 3.0);
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 0, 0, 0), 1);  // absent values are not visited
    EXPECT_EQ(min, 2.0);
    EXPECT_EQ(max, 5.0);
}

TEST(CSnsCohData, SlicesAbsentFromAllVectorsGiveAnEmptyRange) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_cohTimTotal = 1000;
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 5, 999, 0), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    EXPECT_EQ(d.getSnsCohRange(min, max, true, 4, 999, 0), 1);
    EXPECT_EQ(min, 115.0);
    EXPECT_EQ(max, 235.0);
}

TEST(CSnsCohData, RangeOfADatasetWithoutRowsHasNoMean) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.setChnlRowCol(0, 3);
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, false, 0, 0, 0), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    EXPECT_TRUE(std::isnan(d.m_dataMean));
}

TEST(CSnsCohData, RangeMayGoIntoTheCachedFields) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {5, -1, 2, 5});
    EXPECT_EQ(d.getSnsCohRange(d.m_dataMax, d.m_dataMin, true, 0, 0, 0), 1);
    EXPECT_EQ(d.m_dataMax, -1.0);
    EXPECT_EQ(d.m_dataMin, 5.0);
}

// The operations walk several vectors side by side; the results are those of one straight loop.
// The shape takes part in every grouping of the rows, the lengths in every way of ending early.
class CSnsCohData_StraightLoop : public ::testing::Test {
protected:
    static constexpr __int64 rows = 13;
    static constexpr __int64 cols = 11;
    static constexpr __int64 nTim = 12;

    void SetUp() override {
        d.checkInitSnsCohData(rows, cols, nTim, true);
        for (__int64 r = 0; r < rows; ++r) {
            for (__int64 c = 0; c < cols; ++c) {
                std::vector<double> values(static_cast<std::size_t>((5 * r + 3 * c + 7) % 19));
                for (double& value : values)
                    value = random() * std::pow(10.0, static_cast<double>((r + c) % 7));
                test::setPair(d, r, c, values);
            }
        }
    }

    double random() {
        m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(static_cast<long long>(m_state)) / 9.3e18;
    }

    // Calls take(r, value) for the first `longest` elements of every pair, in order.
    template <class Take>
    void eachValue(std::size_t longest, Take take) {
        for (__int64 r = 0; r < rows; ++r) {
            for (__int64 c = 0; c < cols; ++c) {
                const std::vector<double> values = test::valuesOf(d, r, c);
                for (std::size_t t = 0; t < std::min(values.size(), longest); ++t)
                    take(r, values[t]);
            }
        }
    }

    CSnsCohDatazq d;

private:
    unsigned long long m_state = 42;
};

TEST_F(CSnsCohData_StraightLoop, SumsOverRowsAreTheSameBits) {
    std::vector<double> sums(rows, 0.0);
    std::vector<double> squares(rows, 0.0);
    double min = d.getValue(0, 0, 0);
    double max = min;
    eachValue(nTim, [&](__int64 r, double value) {
        sums[static_cast<std::size_t>(r)] += value;
        squares[static_cast<std::size_t>(r)] += value * value;
        min = std::min(min, value);
        max = std::max(max, value);
    });
    double mean = 0.0;
    double meanSquare = 0.0;
    for (std::size_t r = 0; r < sums.size(); ++r) {
        mean += sums[r] / (11.0 * 12.0);
        meanSquare += squares[r] / (11.0 * 12.0);
    }
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_EQ(d.m_dataMin, min);
    EXPECT_EQ(d.m_dataMax, max);
    EXPECT_EQ(d.m_dataMean, mean / 13.0);
    const double value = test::valuesOf(d, 4, 2)[1];
    EXPECT_EQ(d.normRMS(), 1);
    EXPECT_EQ(d.m_rmsValue, std::sqrt(meanSquare / 13.0));
    EXPECT_EQ(test::valuesOf(d, 4, 2)[1], value / d.m_rmsValue);
}

TEST_F(CSnsCohData_StraightLoop, SumsOverPairsAreTheSameBits) {
    double mean = 0.0;
    double min = 0.0;  // some pairs are empty
    double max = 0.0;
    for (__int64 r = 0; r < rows; ++r) {
        double means = 0.0;
        for (__int64 c = 0; c < cols; ++c) {
            const std::vector<double> values = test::valuesOf(d, r, c);
            double sum = 0.0;
            for (const double value : values) {
                sum += value;
                min = std::min(min, value);
                max = std::max(max, value);
            }
            means += values.empty() ? 0.0 : sum / static_cast<double>(values.size());
        }
        mean += means / 11.0;
    }
    double least = 7.0;
    double greatest = 7.0;
    EXPECT_EQ(d.getSnsCohRange(least, greatest, false, 0, 0, 0), 1);
    EXPECT_EQ(least, min);
    EXPECT_EQ(greatest, max);
    EXPECT_EQ(d.m_dataMean, mean / 13.0);
    d.m_dataMin = d.m_dataMax = d.m_dataMean = 7.0;
    d.getStatistics();
    EXPECT_EQ(d.m_dataMin, min);
    EXPECT_EQ(d.m_dataMax, max);
    EXPECT_EQ(d.m_dataMean, mean / 13.0);
}

TEST_F(CSnsCohData_StraightLoop, RangesOfMagnitudesAndSlicesAreTheSameBits) {
    double min = std::fabs(d.getValue(0, 0, 0));
    double max = min;
    eachValue(100, [&](__int64, double value) {
        min = std::min(min, std::fabs(value));
        max = std::max(max, std::fabs(value));
    });
    double least = 7.0;
    double greatest = 7.0;
    EXPECT_EQ(d.getCxcAbsRange(least, greatest, false, false, 0, 0), 1);
    EXPECT_EQ(least, min);
    EXPECT_EQ(greatest, max);
    min = max = d.getValue(0, 0, 0);
    eachValue(5, [&](__int64, double value) {
        min = std::min(min, value);
        max = std::max(max, value);
    });
    EXPECT_EQ(d.getSnsCohRange(least, greatest, true, 0, 4, 0), 1);
    EXPECT_EQ(least, min);
    EXPECT_EQ(greatest, max);
}

TEST_F(CSnsCohData_StraightLoop, NaNStaysInItsPairOnly) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    d.checkDataRange();
    const double min = d.m_dataMin;
    for (__int64 r = 1; r < rows; ++r)
        test::setPair(d, r, 3, {nan, 1e9 * static_cast<double>(r), nan});
    d.checkDataRange();
    EXPECT_EQ(d.m_dataMin, min);
    EXPECT_EQ(d.m_dataMax, 12e9);  // inside a row a NaN is passed over
    double least = 7.0;
    double greatest = 7.0;
    d.getSnsCohRange(least, greatest, false, 0, 0, 0);
    EXPECT_LT(greatest, 1e9);  // a pair that begins with a NaN has no range
}

TEST(CSnsCohData, FirstZeroOfTheRangeKeepsItsSign) {
    CSnsCohDatazq d;
    test::fillSlice(d, 5, 1, {1.0, 0.0, -0.0, 0.0, -0.0});
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_FALSE(std::signbit(d.m_dataMin));
    test::fillSlice(d, 5, 1, {1.0, -0.0, 0.0, 0.0, -0.0});
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_TRUE(std::signbit(d.m_dataMin));
}

}  // namespace
