#include "cxcdata/CSnsCohData.h"

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

namespace {

using test::cell;
using test::cellValue;
using test::FailingMemory;
using test::fill;
using test::fillMatrix;
using test::pairOf;

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr __int64 most = std::numeric_limits<__int64>::max();

// A dataset that a former sizing has used and cleaned.
void clean(CSnsCohData& data) {
    fill(data, 2, 2, 2);
    data.cleanSnsCohData();
}

// Construction and copies

TEST(CSnsCohData, ConstructionSetsEveryField) {
    const CSnsCohDatazq d;
    for (const int value :
         {d.m_headerInt0, d.m_headerInt1, d.m_headerInt2, d.m_headerInt3, d.m_chnlTypeID,
          d.m_headerInt5, d.m_headerInt6, d.m_headerInt7, d.m_headerInt8, d.m_headerInt9,
          d.m_headerInt10, d.m_headerInt11, d.m_rmsNormalized, d.m_headerInt13})
        EXPECT_EQ(value, 0);
    EXPECT_EQ(d.m_headerInt12, 1);
    for (const double value :
         {d.m_samplingRate, d.m_anaLatencyBegin, d.m_anaLatencyEnd, d.m_headerReal2, d.m_dataMin,
          d.m_dataMax, d.m_dataMean, d.m_rmsValue, d.m_showRangeMin, d.m_showRangeMid})
        EXPECT_EQ(value, 0.0);
    EXPECT_EQ(d.m_headerReal0, 0.1);
    EXPECT_EQ(d.m_headerReal1, 1.0);
    EXPECT_EQ(d.m_showRangeMax, 1.0);
    for (const __int64 value : {d.m_headerLong0, d.m_headerLong1, d.m_headerLong2, d.m_headerLong3,
                                d.m_headerLong4, d.m_headerLong5, d.m_cohTimTotal, d.m_selectBegin,
                                d.m_rowCrt, d.m_columnCrt, d.m_snsRowTotal, d.m_snsColTotal})
        EXPECT_EQ(value, 0);
    EXPECT_EQ(d.m_selectEnd, 1);
    EXPECT_EQ(test::ascii(d.m_cxcName), "CxcTrial");
    EXPECT_EQ(test::ascii(d.m_cxcCmptInfo), "CxC ComputeInfo");
    EXPECT_FALSE(d.m_tscsInfo);
    EXPECT_EQ(d.m_mCC, nullptr);
    EXPECT_EQ(d.m_basicColor, 0x7D7DFFu);
    EXPECT_EQ(d.m_activeColor, 0x0000FFu);
    EXPECT_EQ(d.m_suppressiveColor, 0xFF0000u);
}

TEST(CSnsCohData, FieldsHaveTheirFixedTypes) {
    EXPECT_TRUE((std::is_same_v<decltype(CSnsCohData::m_headerInt0), int>));
    EXPECT_TRUE((std::is_same_v<decltype(CSnsCohData::m_cohTimTotal), __int64>));
    EXPECT_TRUE((std::is_same_v<decltype(CSnsCohData::m_tscsInfo), bool>));
    EXPECT_TRUE((std::is_same_v<decltype(CSnsCohData::m_mCC), CWavChnlChnlDatazq**>));
    EXPECT_TRUE((std::is_same_v<decltype(CSnsCohData::m_basicColor), COLORREF>));
    EXPECT_FALSE(std::is_polymorphic_v<CSnsCohDatazq>);
    EXPECT_EQ(sizeof(CSnsCohDatazq), sizeof(CSnsCohData));
}

TEST(CSnsCohData, CopySharesTheGridAndCopiesTheRest) {
    CSnsCohDatazq source;
    fill(source, 2, 3, 5);
    source.m_cxcName = _T("source");
    source.m_cxcCmptInfo = _T("note");
    source.m_selectEnd = 3;
    source.m_showRangeMid = 0.25;
    source.m_suppressiveColor = 0x123456;
    CSnsCohDatazq copy(source);
    EXPECT_EQ(copy.m_mCC, source.m_mCC);
    EXPECT_EQ(copy.m_snsColTotal, 3);
    EXPECT_EQ(copy.m_selectEnd, 3);
    EXPECT_EQ(copy.m_showRangeMid, 0.25);
    EXPECT_EQ(copy.m_suppressiveColor, 0x123456u);
    source.m_cxcName = _T("changed");
    EXPECT_EQ(test::ascii(copy.m_cxcName), "source");
    EXPECT_EQ(test::ascii(copy.m_cxcCmptInfo), "note");
    copy.m_mCC = nullptr;  // source keeps the grid
}

TEST(CSnsCohData, AssignmentSharesTheGridAndCopiesTheRest) {
    CSnsCohDatazq source;
    fill(source, 2, 3, 5);
    source.m_headerInt7 = 77;
    CSnsCohDatazq target;
    target = source;
    EXPECT_EQ(target.m_mCC, source.m_mCC);
    EXPECT_EQ(target.m_headerInt7, 77);
    EXPECT_EQ(target.m_cohTimTotal, 5);
    source.m_mCC = nullptr;  // target keeps the grid
}

// Sizing

TEST(CSnsCohData, FirstSizingKeepsTheEndOfTheSelectionAtOne) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.checkInitSnsCohData(3, 3, 5, true), 1);
    EXPECT_EQ(d.m_snsRowTotal, 3);
    EXPECT_EQ(d.m_snsColTotal, 3);
    EXPECT_EQ(d.m_cohTimTotal, 5);
    EXPECT_EQ(d.m_selectBegin, 0);
    EXPECT_EQ(d.m_selectEnd, 1);
    for (__int64 r = 0; r < 3; ++r) {
        for (__int64 c = 0; c < 3; ++c)
            EXPECT_EQ(test::valuesOf(d, r, c), std::vector<double>(5, 0.0));
    }
}

TEST(CSnsCohData, SizingACleanedDatasetHasTheEndOfTheSelectionAtZero) {
    CSnsCohDatazq d;
    clean(d);
    EXPECT_EQ(d.checkInitSnsCohData(3, 3, 5, true), 1);
    EXPECT_EQ(d.m_selectEnd, 0);
}

TEST(CSnsCohData, SizingToAnotherShapeResetsTheSelection) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_selectBegin = 2;
    d.m_selectEnd = 4;
    d.m_rowCrt = 1;
    d.m_columnCrt = 2;
    EXPECT_EQ(d.checkInitSnsCohData(3, 2, 5, true), 1);
    EXPECT_EQ(d.m_selectBegin, 0);
    EXPECT_EQ(d.m_selectEnd, 0);
    EXPECT_EQ(d.m_rowCrt, 0);
    EXPECT_EQ(d.m_columnCrt, 0);
    EXPECT_EQ(test::valuesOf(d, 2, 1), std::vector<double>(5, 0.0));
}

TEST(CSnsCohData, FreshOneSliceDatasetHasNoRangeUntilTheSelectionIsSet) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 1);
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getSnsCohRange(min, max, true, -1, -1, 0), 0);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    d.setSelect(0, 0);
    EXPECT_EQ(d.getSnsCohRange(min, max, true, -1, -1, 0), 1);
    EXPECT_EQ(min, 111.0);
    EXPECT_EQ(max, 221.0);
}

TEST(CSnsCohData, UnchangedShapeKeepsArraysSelectionAndPair) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_selectBegin = 2;
    d.m_selectEnd = 3;
    d.m_rowCrt = 1;
    d.m_columnCrt = 2;
    CWavChnlChnlDatazq** const grid = d.m_mCC;
    double* const array = pairOf(d, 1, 2).m_data;
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, false), 1);
    EXPECT_EQ(d.m_mCC, grid);
    EXPECT_EQ(pairOf(d, 1, 2).m_data, array);
    EXPECT_EQ(cell(d, 4, 1, 2), cellValue(4, 1, 2));
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 1);
    EXPECT_EQ(pairOf(d, 1, 2).m_data, array);
    EXPECT_EQ(cell(d, 4, 1, 2), 0.0);
    EXPECT_EQ(d.m_selectBegin, 2);
    EXPECT_EQ(d.m_selectEnd, 3);
    EXPECT_EQ(d.m_rowCrt, 1);
    EXPECT_EQ(d.m_columnCrt, 2);
}

TEST(CSnsCohData, FreshValuesAreZeroAlsoWhenNotAskedFor) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, false), 1);
    EXPECT_EQ(test::valuesOf(d, 1, 2), std::vector<double>(5, 0.0));
    pairOf(d, 0, 1).resize(2);
    test::claimValues(d, 1, 1, 5);
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, false), 1);
    EXPECT_EQ(test::valuesOf(d, 0, 1), std::vector<double>(5, 0.0));
    EXPECT_EQ(test::valuesOf(d, 1, 1), std::vector<double>(5, 0.0));
}

TEST(CSnsCohData, CountBelowOneCleansFirstAndIsRefused) {
    for (const auto& counts : std::vector<std::vector<__int64>>{
             {3, 3, 0}, {3, 0, 3}, {0, 3, 3}, {-1, 3, 3}, {3, least, 3}, {3, 3, -1}}) {
        CSnsCohDatazq d;
        fill(d, 3, 3, 5);
        EXPECT_EQ(d.checkInitSnsCohData(counts[0], counts[1], counts[2], true), 0);
        EXPECT_EQ(d.m_mCC, nullptr);
        EXPECT_EQ(d.m_cohTimTotal, 0);
        EXPECT_EQ(d.m_snsColTotal, 0);
        EXPECT_EQ(d.m_selectEnd, 0);
    }
}

TEST(CSnsCohData, AnnouncedCountsEqualToTheRequestAreBuiltWithoutACleaning) {
    CSnsCohDatazq d;
    d.setChnlRowCol(2, 3);
    d.m_cohTimTotal = 5;
    d.m_selectEnd = 4;
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 1);
    EXPECT_EQ(d.m_selectEnd, 4);
    EXPECT_EQ(test::valuesOf(d, 1, 2).size(), 5u);
}

TEST(CSnsCohData, CountersThatHideAnotherGridGetARealOne) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 5);
    d.setChnlRowCol(4, 3);
    EXPECT_EQ(d.checkInitSnsCohData(4, 3, 5, true), 1);
    EXPECT_EQ(test::valuesOf(d, 3, 2), std::vector<double>(5, 0.0));
}

TEST(CSnsCohData, MissingRowIsRebuilt) {
    CSnsCohDatazq d;
    fill(d, 3, 2, 5);
    delete[] d.m_mCC[1];
    d.m_mCC[1] = nullptr;
    EXPECT_EQ(d.checkInitSnsCohData(3, 2, 5, true), 1);
    EXPECT_EQ(test::valuesOf(d, 1, 1), std::vector<double>(5, 0.0));
}

TEST(CSnsCohData, FailedSizingKeepsColumnCountAndEndOfSelection) {
    // The row table is the first allocation: its failure leaves the counters alone.
    CSnsCohDatazq table;
    table.setChnlRowCol(2, 3);
    table.m_cohTimTotal = 5;
    table.m_selectBegin = 2;
    {
        const FailingMemory memory(1);
        EXPECT_EQ(table.checkInitSnsCohData(2, 3, 5, true), 0);
    }
    EXPECT_EQ(table.m_snsRowTotal, 2);
    EXPECT_EQ(table.m_cohTimTotal, 5);
    EXPECT_EQ(table.m_selectBegin, 2);

    CSnsCohDatazq d;
    d.setChnlRowCol(2, 3);
    d.m_cohTimTotal = 5;
    d.m_selectBegin = 2;
    d.m_selectEnd = 4;
    d.m_rowCrt = 1;
    d.m_columnCrt = 1;
    const FailingMemory memory(2);
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 0);
    EXPECT_EQ(d.m_mCC, nullptr);
    EXPECT_EQ(d.m_snsRowTotal, 0);
    EXPECT_EQ(d.m_rowCrt, 0);
    EXPECT_EQ(d.m_columnCrt, 0);
    EXPECT_EQ(d.m_cohTimTotal, 0);
    EXPECT_EQ(d.m_selectBegin, 0);
    EXPECT_EQ(d.m_snsColTotal, 3);
    EXPECT_EQ(d.m_selectEnd, 4);
}

TEST(CSnsCohData, EveryFailingAllocationOfANewGridLeavesNoGrid) {
    int total = 0;
    {
        const FailingMemory memory(0);
        CSnsCohDatazq d;
        ASSERT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 1);
        total = memory.count();
    }
    ASSERT_EQ(total, 1 + 2 + 6);
    for (int n = 1; n <= total; ++n) {
        CSnsCohDatazq d;
        const FailingMemory memory(n, true);
        EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 0) << n;
        EXPECT_EQ(d.m_mCC, nullptr);
        EXPECT_EQ(d.m_snsRowTotal, 0);
    }
}

TEST(CSnsCohData, FailingAllocationInAKeptGridReleasesIt) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_selectEnd = 4;
    pairOf(d, 1, 1).resize(0);
    const FailingMemory memory(1);
    EXPECT_EQ(d.checkInitSnsCohData(2, 3, 5, true), 0);
    EXPECT_EQ(d.m_mCC, nullptr);
    EXPECT_EQ(d.m_snsRowTotal, 0);
    EXPECT_EQ(d.m_cohTimTotal, 0);
    EXPECT_EQ(d.m_snsColTotal, 3);
    EXPECT_EQ(d.m_selectEnd, 4);
}

TEST(CSnsCohData, GridBeyondTheMachineIsRefusedBeforeAnythingIsTaken) {
    for (const auto& counts : std::vector<std::vector<__int64>>{{1000000, 1000000, 10},
                                                                {most, 1, 1},
                                                                {1, most, 1},
                                                                {1, 1, most},
                                                                {most, most, most}}) {
        CSnsCohDatazq d;
        const FailingMemory memory(0);
        EXPECT_EQ(d.checkInitSnsCohData(counts[0], counts[1], counts[2], false), 0);
        EXPECT_EQ(memory.count(), 0);
        EXPECT_EQ(d.m_mCC, nullptr);
    }
}

TEST(CSnsCohData, CleaningKeepsTheDescription) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_cxcName = _T("kept");
    d.m_samplingRate = 250.0;
    d.m_dataMax = 9.0;
    d.m_headerInt11 = 11;
    d.m_activeColor = 0x010203;
    d.m_selectBegin = d.m_selectEnd = 3;
    d.m_rowCrt = d.m_columnCrt = 1;
    EXPECT_EQ(d.cleanSnsCohData(), 1);
    EXPECT_EQ(d.m_mCC, nullptr);
    for (const __int64 value : {d.m_cohTimTotal, d.m_selectBegin, d.m_selectEnd, d.m_rowCrt,
                                d.m_columnCrt, d.m_snsRowTotal, d.m_snsColTotal})
        EXPECT_EQ(value, 0);
    EXPECT_EQ(test::ascii(d.m_cxcName), "kept");
    EXPECT_EQ(d.m_samplingRate, 250.0);
    EXPECT_EQ(d.m_dataMax, 9.0);
    EXPECT_EQ(d.m_headerInt11, 11);
    EXPECT_EQ(d.m_activeColor, 0x010203u);
    EXPECT_EQ(d.cleanSnsCohData(), 1);
}

TEST(CSnsCohData, CleaningReleasesTheRealGridWhateverTheCountersSay) {
    for (const __int64 rows : {0LL, 1LL, 1000LL, most, least}) {
        CSnsCohDatazq d;
        fill(d, 3, 2, 5);
        d.setChnlRowCol(rows, rows);
        EXPECT_EQ(d.cleanSnsCohData(), 1);
        EXPECT_EQ(d.m_mCC, nullptr);
    }
}

// Single values

TEST(CSnsCohData, ValueOfACellIsFoundByRowThenColumnThenSlice) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.getValue(4, 1, 2), 235.0);
    EXPECT_EQ(d.getValue(0, 0, 1), 121.0);
}

TEST(CSnsCohData, MinusOneStandsForSelectionAndCurrentPair) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_selectBegin = 2;
    d.m_selectEnd = 3;
    d.m_rowCrt = 1;
    d.m_columnCrt = 2;
    EXPECT_EQ(d.getValue(-1, -1, -1), 233.0);
    EXPECT_EQ(d.getValueSelect(-1, -1, -1, -1), 233.5);
}

TEST(CSnsCohData, SliceOfAValueIsClamped) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.getValue(99, 0, 0), 115.0);
    EXPECT_EQ(d.getValue(-7, 0, 0), 111.0);
    EXPECT_EQ(d.getValue(most, 0, 0), 115.0);
    EXPECT_EQ(d.getValue(least, 0, 0), 111.0);
}

TEST(CSnsCohData, SelectedMeanClampsBothEndsIndependently) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.getValueSelect(3, 1, 0, 0), 0.0);
    EXPECT_EQ(d.getValueSelect(0, 100, 0, 0), 113.0);
    EXPECT_EQ(d.getValueSelect(-9, 1, 0, 0), 111.5);
    EXPECT_EQ(d.getValueSelect(7, 9, 0, 0), 115.0);
}

TEST(CSnsCohData, ValuesThatAreAbsentReadAsZero) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.getValue(0, 0, 0), 0.0);
    EXPECT_EQ(d.getValueSelect(0, 0, 0, 0), 0.0);
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.getValue(0, 2, 0), 0.0);
    EXPECT_EQ(d.getValue(0, 0, 3), 0.0);
    EXPECT_EQ(d.getValue(0, -2, 0), 0.0);
    EXPECT_EQ(d.getValue(0, least, most), 0.0);
    d.m_rowCrt = 9;
    EXPECT_EQ(d.getValue(0, -1, 0), 0.0);
    EXPECT_EQ(d.getValueSelect(0, 4, -1, 0), 0.0);
    test::claimValues(d, 0, 0, 5);
    EXPECT_EQ(d.getValue(1, 0, 0), 0.0);
    EXPECT_EQ(d.getValueSelect(0, 4, 0, 0), 0.0);
    pairOf(d, 0, 1).resize(2);
    EXPECT_EQ(d.getValue(4, 0, 1), 0.0);
    d.m_cohTimTotal = 0;
    EXPECT_EQ(d.getValue(0, 1, 1), 0.0);
    d.m_cohTimTotal = least;
    EXPECT_EQ(d.getValue(0, 1, 1), 0.0);
    EXPECT_EQ(d.getValueSelect(0, 0, 1, 1), 0.0);
}

TEST(CSnsCohData, SelectedMeanIsThatOfTheSlicesThatExist) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.m_cohTimTotal = 1000000000000000;
    EXPECT_EQ(d.getValueSelect(3, 1000000000000, 0, 0), 114.5);
    EXPECT_EQ(d.getValueSelect(5, 1000000000000, 0, 0), 0.0);
}

TEST(CSnsCohData, SizeCheckComparesRowsNeverColumns) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.verifyWavCohDataSize(2, 5), 1);
    EXPECT_EQ(d.verifyWavCohDataSize(3, 5), 0);
    EXPECT_EQ(d.verifyWavCohDataSize(2, 4), 0);
}

// Slices

TEST(CSnsCohData, SliceCountIsOnePlusTheSteps) {
    EXPECT_EQ(CSnsCohData::getCohTim(1000, 100, 200), 9);
    EXPECT_EQ(CSnsCohData::getCohTim(1000, 100, 250), 9);
    EXPECT_EQ(CSnsCohData::getCohTim(100, 10, 100), 1);
    EXPECT_EQ(CSnsCohData::getCohTim(50, 10, 100), 1);
    EXPECT_EQ(CSnsCohData::getCohTim(101, 10, 100), 2);
}

TEST(CSnsCohData, SliceCountEqualsSteppingThrough) {
    for (__int64 span = -3; span < 60; ++span) {
        for (__int64 step = 1; step < 20; ++step) {
            __int64 count = 1;
            for (__int64 position = 0; position < span; position += step)
                ++count;
            EXPECT_EQ(CSnsCohData::getCohTim(span + 40, step, 40), count) << span << " " << step;
        }
    }
}

TEST(CSnsCohData, SliceCountEndsForEveryArgument) {
    EXPECT_EQ(CSnsCohData::getCohTim(1000, 0, 100), 1);
    EXPECT_EQ(CSnsCohData::getCohTim(1000, -5, 100), 1);
    EXPECT_EQ(CSnsCohData::getCohTim(1000000000000000000, 1, 0), 1000000000000000001);
    EXPECT_EQ(CSnsCohData::getCohTim(most, 1, least), most);
    EXPECT_EQ(CSnsCohData::getCohTim(most, most, least), 4);
    EXPECT_EQ(CSnsCohData::getCohTim(least, 1, most), 1);
}

TEST(CSnsCohData, LatencyOfASliceCountsFromTheBeginOfTheAnalysis) {
    CSnsCohDatazq d;
    d.m_samplingRate = 4.0;
    d.m_anaLatencyBegin = -0.5;
    EXPECT_EQ(d.getLatency4PtSecond(0), -0.5);
    EXPECT_EQ(d.getLatency4PtSecond(3), 0.25);
    d.m_samplingRate = 0.0;
    EXPECT_TRUE(std::isinf(d.getLatency4PtSecond(3)));
}

// Datasets that lie about themselves

TEST(CSnsCohData, NoOperationLeavesTheRealGrid) {
    const std::vector<__int64> indices = {0, 1, 2, 6, -1, -2, 1000000, most, least};
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq d;
        hostile.make(d);
        for (const __int64 a : indices) {
            for (const __int64 b : indices) {
                d.getValue(a, b, a);
                d.getValue(b, a, a);
                d.getValueSelect(a, b, 1, 1);
                d.getValueSelect(0, b, a, b);
                double min = 7.0;
                double max = 7.0;
                for (const bool useTime : {false, true}) {
                    const int status = d.getSnsCohRange(min, max, useTime, a, b, 1);
                    EXPECT_TRUE(status == 1 || (min == 0.0 && max == 0.0));
                }
            }
            CMMatrix2Dzq matrix;
            fillMatrix(matrix, 3, 3, 0);
            EXPECT_EQ(d.addMSnsSnsTimID(&matrix, a),
                      d.m_mCC != nullptr && a >= 0 && a < d.m_cohTimTotal && d.m_snsRowTotal == 3);
        }
        CMMatrix2Dzq* mats = nullptr;
        __int64 count = 0;
        d.getData2MCohTimSnsSns(mats, count);
        delete[] mats;
        CMMatrix2Dzq fresh[2];
        fillMatrix(fresh[0], 3, 3, 0);
        fillMatrix(fresh[1], 3, 3, 1);
        EXPECT_EQ(d.setData4MCohTimSnsSns(fresh, 2), 1);
        EXPECT_EQ(d.getValue(1, 2, 2), cellValue(1, 2, 2));
    }
}

TEST(CSnsCohData, HostileDatasetsAreSizedAndReleasedByTheirRealShape) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq d;
        hostile.make(d);
        const __int64 rows = d.m_snsRowTotal;
        const __int64 cols = d.m_snsColTotal;
        const __int64 nTim = d.m_cohTimTotal;
        if (d.checkInitSnsCohData(rows, cols, nTim, true) != 0) {
            EXPECT_TRUE(d.getValue(nTim - 1, rows - 1, cols - 1) == 0.0);
            EXPECT_EQ(test::valuesOf(d, rows - 1, cols - 1).size(), static_cast<size_t>(nTim));
        }
        CSnsCohDatazq released;
        hostile.make(released);
    }
}

}  // namespace
