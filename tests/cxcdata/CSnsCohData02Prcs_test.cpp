#include "cxcdata/CSnsCohData02Prcs.h"

#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using test::cell;
using test::cellValue;
using test::fill;
using test::pairOf;
using test::valuesOf;

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Counts, latency, current column

TEST(CSnsCohData02Prcs, AnnouncedCountsAreStoredAndJudged) {
    CSnsCohDatazq d;
    __int64 rows = 9;
    __int64 cols = 9;
    EXPECT_EQ(d.getChnlRowCol(rows, cols), 0);
    EXPECT_EQ(rows, 0);
    d.m_rowCrt = d.m_columnCrt = 4;
    EXPECT_EQ(d.setChnlRowCol(3, 5), 1);
    EXPECT_EQ(d.m_rowCrt, 0);
    EXPECT_EQ(d.m_columnCrt, 0);
    EXPECT_EQ(d.m_mCC, nullptr);
    EXPECT_EQ(d.getChnlRowCol(rows, cols), 1);
    EXPECT_EQ(rows, 3);
    EXPECT_EQ(cols, 5);
    EXPECT_EQ(d.setChnlRowCol(-3, 5), 0);
    EXPECT_EQ(d.m_snsRowTotal, -3);
    EXPECT_EQ(d.getChnlRowCol(rows, cols), 0);
    EXPECT_EQ(d.setChnlRowCol(3, 0), 0);
    EXPECT_EQ(d.m_snsRowTotal, 3);
}

TEST(CSnsCohData02Prcs, LatencyIsKept) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.setAnaLatency(-0.25, 0.75), 1);
    double begin = 0.0;
    double end = 0.0;
    EXPECT_EQ(d.getAnaLatency(begin, end), 1);
    EXPECT_EQ(begin, -0.25);
    EXPECT_EQ(end, 0.75);
}

TEST(CSnsCohData02Prcs, CurrentColumnIsClampedIntoTheColumns) {
    CSnsCohDatazq d;
    d.setChnlRowCol(2, 30);
    EXPECT_EQ(d.setColumnCrt(-4), 0);
    EXPECT_EQ(d.m_columnCrt, 0);
    EXPECT_EQ(d.setColumnCrt(1000), 29);
    EXPECT_EQ(d.m_columnCrt, 29);
    EXPECT_EQ(d.setColumnCrt(12), 12);
    d.setChnlRowCol(2, 0);
    EXPECT_EQ(d.setColumnCrt(5), -1);
    EXPECT_EQ(d.m_columnCrt, -1);
    d.setChnlRowCol(2, 0x7FFFFFFFFFFFFFFF);
    EXPECT_EQ(d.setColumnCrt(std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
}

TEST(CSnsCohData02Prcs, ResetForgetsRowsButNotColumnsGridOrSelection) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.setSelect(1, 2);
    d.setAnaLatency(1.0, 2.0);
    d.m_rowCrt = d.m_columnCrt = 1;
    EXPECT_EQ(d.resetSnsCoh(), 1);
    EXPECT_EQ(d.m_snsRowTotal, 0);
    EXPECT_EQ(d.m_rowCrt, 0);
    EXPECT_EQ(d.m_columnCrt, 0);
    EXPECT_EQ(d.m_anaLatencyBegin, 0.0);
    EXPECT_EQ(d.m_anaLatencyEnd, 0.0);
    EXPECT_EQ(d.m_snsColTotal, 3);
    EXPECT_NE(d.m_mCC, nullptr);
    EXPECT_EQ(d.m_selectBegin, 1);
    EXPECT_EQ(d.m_selectEnd, 2);
}

// Normalisation

TEST(CSnsCohData02Prcs, ValuesAreDividedByTheirRootMeanSquare) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 4});
    const double rms = std::sqrt(7.5);
    EXPECT_EQ(d.normRMS(), 1);
    EXPECT_EQ(d.m_rmsValue, rms);
    EXPECT_EQ(d.m_rmsNormalized, 1);
    EXPECT_EQ(d.getValue(0, 0, 0), 1.0 / rms);
    EXPECT_EQ(d.getValue(0, 1, 1), 4.0 / rms);
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo), "CxC ComputeInfo");
}

TEST(CSnsCohData02Prcs, NormalisingTwiceDividesTwice) {
    CSnsCohDatazq d;
    test::fillSlice(d, 1, 2, {3, 3});
    EXPECT_EQ(d.normRMS(), 1);
    EXPECT_EQ(d.m_rmsValue, 3.0);
    EXPECT_EQ(d.normRMS(), 1);
    EXPECT_EQ(d.m_rmsValue, 1.0);
    EXPECT_EQ(d.getValue(0, 0, 1), 1.0);
}

TEST(CSnsCohData02Prcs, AllZeroDatasetIsNotNormalised) {
    test::TestApp app;
    CSnsCohDatazq d;
    d.checkInitSnsCohData(2, 3, 5, true);
    EXPECT_EQ(d.normRMS(), 0);
    EXPECT_EQ(app.messages(),
              std::vector<std::string>{"RMS value in leadfields is smaller than zero!?"});
    EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
    EXPECT_EQ(d.m_rmsNormalized, 0);
    EXPECT_EQ(d.m_rmsValue, 0.0);
}

TEST(CSnsCohData02Prcs, DatasetWithANaNIsNotNormalised) {
    test::TestApp app;
    CSnsCohDatazq d;
    test::fillSlice(d, 1, 2, {3, nan});
    EXPECT_EQ(d.normRMS(), 0);
    EXPECT_EQ(app.messages().size(), 1u);
    EXPECT_EQ(d.getValue(0, 0, 0), 3.0);
}

TEST(CSnsCohData02Prcs, AbsentValuesAddNothingToTheRootMeanSquare) {
    CSnsCohDatazq d;
    fill(d, 2, 1, 2);
    test::setPair(d, 0, 0, {4, 4});
    test::claimValues(d, 1, 0, 2);
    d.m_cohTimTotal = 4;  // divisor, as announced
    EXPECT_EQ(d.normRMS(), 1);
    EXPECT_EQ(d.m_rmsValue, 2.0);  // ((16 + 16) / 4 + 0) / 2 = 4
    EXPECT_EQ(valuesOf(d, 0, 0), (std::vector<double>{2, 2}));
}

TEST(CSnsCohData02Prcs, ProcessingNeedsAGridAndCounts) {
    test::TestApp app;
    CSnsCohDatazq d;
    d.setChnlRowCol(2, 2);
    d.m_cohTimTotal = 1;
    EXPECT_EQ(d.normRMS() + d.checkDataRange() + d.zeroDiagonal(), 0);
    for (int which = 0; which < 3; ++which) {
        fill(d, 2, 2, 1);
        if (which == 0) d.m_cohTimTotal = 0;
        if (which == 1) d.m_snsRowTotal = 0;
        if (which == 2) d.m_snsColTotal = least;
        EXPECT_EQ(d.normRMS() + d.checkDataRange() + d.zeroDiagonal(), 0) << which;
        EXPECT_EQ(cell(d, 0, 1, 1), cellValue(0, 1, 1));
    }
    EXPECT_TRUE(app.messages().empty());
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo), "CxC ComputeInfo");
}

// Range

TEST(CSnsCohData02Prcs, RangeAndMeanOfAllValues) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 4});
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_EQ(d.m_dataMin, 1.0);
    EXPECT_EQ(d.m_dataMax, 4.0);
    EXPECT_EQ(d.m_dataMean, 2.5);
}

TEST(CSnsCohData02Prcs, RangeStartsAtZeroWhereTheFirstPairIsEmpty) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 6});
    test::claimValues(d, 0, 0, 1);
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_EQ(d.m_dataMin, 0.0);
    EXPECT_EQ(d.m_dataMax, 6.0);
    EXPECT_EQ(d.m_dataMean, (2.0 / 2 + 9.0 / 2) / 2);
}

TEST(CSnsCohData02Prcs, FirstNaNStaysAndLaterOnesArePassedOver) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {nan, 2, 3, 4});
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_TRUE(std::isnan(d.m_dataMin));
    EXPECT_TRUE(std::isnan(d.m_dataMax));
    test::fillSlice(d, 2, 2, {2, nan, 3, 4});
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_EQ(d.m_dataMin, 2.0);
    EXPECT_EQ(d.m_dataMax, 4.0);
    EXPECT_TRUE(std::isnan(d.m_dataMean));
}

TEST(CSnsCohData02Prcs, DivisorsAreTheAnnouncedCounts) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 4});
    d.m_snsRowTotal = 4;
    d.m_snsColTotal = 5;
    d.m_cohTimTotal = 2;
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_EQ(d.m_dataMean, (3.0 / 10 + 7.0 / 10) / 4);
    d.m_snsColTotal = d.m_cohTimTotal = 1000000000000000;  // their product exceeds 64 bits
    EXPECT_EQ(d.checkDataRange(), 1);
    EXPECT_GT(d.m_dataMean, 0.0);
}

// Statistics

TEST(CSnsCohData02Prcs, StatisticsAreOneLine) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 4});
    d.m_cxcName = _T("D%s");
    // RmsSum: sqrt((sqrt(2.5) + sqrt(12.5)) / 2) = 1.599480
    EXPECT_EQ(test::ascii(d.getStatistics()),
              "D%s Min: 1.000000\tMean: 2.500000 Max: 4.000000 AbsSum: 2.500000 "
              "RmsSum: 1.599480 \n");
    EXPECT_EQ(d.m_dataMin, 1.0);
    EXPECT_EQ(d.m_dataMax, 4.0);
    EXPECT_EQ(d.m_dataMean, 2.5);
}

TEST(CSnsCohData02Prcs, StatisticsAverageOverSlicesThenColumnsThenRows) {
    CSnsCohDatazq d;
    d.checkInitSnsCohData(1, 2, 2, true);
    test::setPair(d, 0, 0, {-3, 1});        // mean -1, absolute 2, squared RMS 5
    test::setPair(d, 0, 1, {2, 2, 2, -2});  // mean 1, absolute 2, squared RMS 4
    // RmsSum: sqrt(sqrt((5 + 4) / 2)) = 1.456475
    EXPECT_EQ(test::ascii(d.getStatistics()),
              "CxcTrial Min: -3.000000\tMean: 0.000000 Max: 2.000000 AbsSum: 2.000000 "
              "RmsSum: 1.456475 \n");
}

TEST(CSnsCohData02Prcs, PairWithoutValuesTakesZeroIntoMinAndMax) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {1, 2, 3, 4});
    pairOf(d, 1, 0).cleanData();
    d.getStatistics();
    EXPECT_EQ(d.m_dataMin, 0.0);
    EXPECT_EQ(d.m_dataMax, 4.0);
    EXPECT_EQ(d.m_dataMean, (3.0 / 2 + 4.0 / 2) / 2);
    test::fillSlice(d, 2, 2, {-1, -2, -3, -4});
    test::claimValues(d, 1, 1, 1);
    d.getStatistics();
    EXPECT_EQ(d.m_dataMin, -3.0);
    EXPECT_EQ(d.m_dataMax, 0.0);
}

TEST(CSnsCohData02Prcs, StatisticsWithoutAGridAreZero) {
    CSnsCohDatazq d;
    d.setChnlRowCol(2, 3);
    d.m_cohTimTotal = 5;
    EXPECT_EQ(test::ascii(d.getStatistics()),
              "CxcTrial Min: 0.000000\tMean: 0.000000 Max: 0.000000 AbsSum: 0.000000 "
              "RmsSum: 0.000000 \n");
    EXPECT_EQ(d.m_dataMean, 0.0);
}

TEST(CSnsCohData02Prcs, StatisticsOfNoPairsHaveNoMean) {
    CSnsCohDatazq d;
    d.getStatistics();
    EXPECT_TRUE(std::isnan(d.m_dataMean));
    d.setChnlRowCol(3, 0);
    d.getStatistics();
    EXPECT_TRUE(std::isnan(d.m_dataMean));
    EXPECT_EQ(d.m_dataMin, 0.0);
}

TEST(CSnsCohData02Prcs, StatisticsShowEveryDigitOfAHugeValue) {
    CSnsCohDatazq d;
    test::fillSlice(d, 1, 1, {std::numeric_limits<double>::max()});
    const std::string text = test::ascii(d.getStatistics());
    const std::size_t at = text.find("Min: ");
    EXPECT_EQ(text.find('.', at) - (at + 5), 309u);
}

TEST(CSnsCohData02Prcs, StatisticsTakeALongNameWhole) {
    CSnsCohDatazq d;
    const std::string name(1000000, 'n');
    d.m_cxcName = CString(name.c_str());
    const std::string text = test::ascii(d.getStatistics());
    EXPECT_EQ(text.compare(0, name.size() + 6, name + " Min: "), 0);
    EXPECT_EQ(d.m_cxcName.GetLength(), 1000000);
}

// Diagonal

TEST(CSnsCohData02Prcs, DiagonalIsClearedInEverySlice) {
    CSnsCohDatazq d;
    fill(d, 3, 3, 2);
    EXPECT_EQ(d.zeroDiagonal(), 1);
    for (__int64 r = 0; r < 3; ++r) {
        for (__int64 c = 0; c < 3; ++c) {
            for (__int64 t = 0; t < 2; ++t)
                EXPECT_EQ(cell(d, t, r, c), r == c ? 0.0 : cellValue(t, r, c));
        }
    }
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo), "CxC ComputeInfo\nSet Diagonal value to 0");
    EXPECT_EQ(d.zeroDiagonal(), 1);
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo),
              "CxC ComputeInfo\nSet Diagonal value to 0\nSet Diagonal value to 0");
}

TEST(CSnsCohData02Prcs, DiagonalEndsWithTheShorterSideOfTheGrid) {
    CSnsCohDatazq tall;
    fill(tall, 7, 2, 3);
    EXPECT_EQ(tall.zeroDiagonal(), 1);
    EXPECT_EQ(valuesOf(tall, 1, 1), std::vector<double>(3, 0.0));
    EXPECT_EQ(cell(tall, 0, 2, 1), cellValue(0, 2, 1));
    CSnsCohDatazq wide;
    fill(wide, 2, 7, 3);
    EXPECT_EQ(wide.zeroDiagonal(), 1);
    EXPECT_EQ(valuesOf(wide, 1, 1), std::vector<double>(3, 0.0));
    EXPECT_EQ(cell(wide, 0, 1, 2), cellValue(0, 1, 2));
}

TEST(CSnsCohData02Prcs, DiagonalIsClearedOnlyAsFarAsAnnouncedAndThere) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 5);
    d.m_cohTimTotal = 3;
    pairOf(d, 1, 1).resize(2);
    EXPECT_EQ(d.zeroDiagonal(), 1);
    EXPECT_EQ(valuesOf(d, 0, 0), (std::vector<double>{0, 0, 0, 114, 115}));
    EXPECT_EQ(valuesOf(d, 1, 1), (std::vector<double>{0, 0}));
}

TEST(CSnsCohData02Prcs, DiagonalStaysWhereTheNoteCannotBeWritten) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 1);
    const test::FailingMemory memory(1);
    EXPECT_EQ(d.zeroDiagonal(), 0);
    EXPECT_EQ(cell(d, 0, 1, 1), cellValue(0, 1, 1));
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo), "CxC ComputeInfo");
}

TEST(CSnsCohData02Prcs, NoProcessingLeavesTheRealGrid) {
    test::TestApp app;
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq d;
        hostile.make(d);
        const bool ready = d.m_mCC != nullptr && d.m_cohTimTotal >= 1 && d.m_snsRowTotal >= 1 &&
                           d.m_snsColTotal >= 1;
        EXPECT_EQ(d.checkDataRange(), ready);
        EXPECT_FALSE(d.getStatistics().IsEmpty());
        EXPECT_EQ(d.zeroDiagonal(), ready);
        EXPECT_EQ(d.normRMS(), ready);
        const int column = d.setColumnCrt(5);
        EXPECT_EQ(column, static_cast<int>(d.m_columnCrt));
        EXPECT_EQ(d.resetSnsCoh(), 1);
        EXPECT_EQ(d.checkDataRange(), 0);
    }
}

}  // namespace
