#include "cxcdata/CSnsCohDatazq.h"

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using test::cell;
using test::cellValue;
using test::fill;
using test::pairOf;
using test::valuesOf;

TEST(CSnsCohDatazq, SumAddsValueByValue) {
    CSnsCohDatazq a;
    CSnsCohDatazq b;
    fill(a, 3, 3, 5);
    fill(b, 3, 3, 5);
    cell(b, 4, 2, 1) = 0.5;
    a.setSelect(1, 2);
    a.m_dataMax = 3.0;
    EXPECT_EQ(a.sumDatSetSns(b), 1);
    EXPECT_EQ(cell(a, 0, 0, 0), 222.0);
    EXPECT_EQ(cell(a, 3, 1, 2), 468.0);
    EXPECT_EQ(cell(a, 4, 2, 1), 325.5);
    EXPECT_EQ(cell(b, 0, 0, 0), 111.0);
    EXPECT_EQ(a.m_selectBegin, 1);
    EXPECT_EQ(a.m_dataMax, 3.0);
    EXPECT_EQ(test::ascii(a.m_cxcCmptInfo), "CxC ComputeInfo");
}

TEST(CSnsCohDatazq, SumOfAnotherShapeChangesNothing) {
    CSnsCohDatazq a;
    CSnsCohDatazq none;
    EXPECT_EQ(a.sumDatSetSns(none), 0);
    fill(a, 3, 3, 5);
    EXPECT_EQ(a.sumDatSetSns(none), 0);
    EXPECT_EQ(none.sumDatSetSns(a), 0);
    CSnsCohDatazq slices;
    fill(slices, 3, 3, 4);
    EXPECT_EQ(a.sumDatSetSns(slices), 0);
    CSnsCohDatazq rows;
    fill(rows, 2, 3, 5);
    EXPECT_EQ(a.sumDatSetSns(rows), 0);
    CSnsCohDatazq counted;
    fill(counted, 3, 3, 5);
    counted.m_snsRowTotal = 0;
    EXPECT_EQ(a.sumDatSetSns(counted), 0);
    EXPECT_EQ(counted.sumDatSetSns(a), 0);
    EXPECT_EQ(cell(a, 4, 2, 2), cellValue(4, 2, 2));
}

TEST(CSnsCohDatazq, SumSkipsAnEmptyPairOnly) {
    CSnsCohDatazq a;
    CSnsCohDatazq b;
    fill(a, 2, 2, 3);
    fill(b, 2, 2, 3);
    pairOf(b, 0, 1).cleanData();
    test::claimValues(b, 1, 0, 3);
    test::claimValues(a, 1, 1, 3);
    EXPECT_EQ(a.sumDatSetSns(b), 1);
    EXPECT_EQ(valuesOf(a, 0, 0), (std::vector<double>{222, 224, 226}));
    EXPECT_EQ(valuesOf(a, 0, 1), (std::vector<double>{121, 122, 123}));
    EXPECT_EQ(valuesOf(a, 1, 0), (std::vector<double>{211, 212, 213}));
    EXPECT_EQ(pairOf(a, 1, 1).m_data, nullptr);
}

TEST(CSnsCohDatazq, SumEndsWithTheShorterVector) {
    CSnsCohDatazq a;
    CSnsCohDatazq b;
    fill(a, 1, 1, 3);
    fill(b, 1, 1, 3);
    test::setPair(b, 0, 0, {1, 1, 1, 1, 1, 1, 1});
    EXPECT_EQ(a.sumDatSetSns(b), 1);
    EXPECT_EQ(valuesOf(a, 0, 0), (std::vector<double>{112, 113, 114}));
    test::setPair(b, 0, 0, {10});
    EXPECT_EQ(a.sumDatSetSns(b), 1);
    EXPECT_EQ(valuesOf(a, 0, 0), (std::vector<double>{122, 113, 114}));
}

TEST(CSnsCohDatazq, SumRunsOverAsManyColumnsAsRows) {
    CSnsCohDatazq wide;
    CSnsCohDatazq other;
    fill(wide, 2, 5, 3);
    fill(other, 2, 5, 3);
    EXPECT_EQ(wide.sumDatSetSns(other), 1);
    EXPECT_EQ(cell(wide, 0, 1, 1), 2 * cellValue(0, 1, 1));
    EXPECT_EQ(cell(wide, 0, 1, 2), cellValue(0, 1, 2));  // beyond the row count
    CSnsCohDatazq tall;
    CSnsCohDatazq square;
    fill(tall, 5, 2, 3);
    fill(square, 5, 5, 3);
    EXPECT_EQ(tall.sumDatSetSns(square), 1);
    EXPECT_EQ(cell(tall, 2, 4, 1), 2 * cellValue(2, 4, 1));
    EXPECT_EQ(square.sumDatSetSns(tall), 1);
    EXPECT_EQ(cell(square, 2, 4, 1), 3 * cellValue(2, 4, 1));
    EXPECT_EQ(cell(square, 2, 4, 2), cellValue(2, 4, 2));
}

TEST(CSnsCohDatazq, DatasetAddedToItselfDoubles) {
    CSnsCohDatazq a;
    fill(a, 2, 2, 3);
    EXPECT_EQ(a.sumDatSetSns(a), 1);
    EXPECT_EQ(cell(a, 2, 1, 0), 2 * cellValue(2, 1, 0));
}

TEST(CSnsCohDatazq, TimeCollapsesToTheMeanOfEveryPair) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 4);
    test::setPair(d, 0, 1, {1, 2, 3, 6});
    pairOf(d, 0, 1).m_chnlA = 17;
    pairOf(d, 0, 1).m_chnlB = 23;
    pairOf(d, 0, 1).m_pairFlag = 5;
    pairOf(d, 0, 1).m_curIdx = 3;
    ASSERT_EQ(pairOf(d, 0, 1).bkDataIn(), 1);
    d.setSelect(2, 3);
    d.m_rowCrt = 1;
    d.m_columnCrt = 1;
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(d.m_cohTimTotal, 1);
    EXPECT_EQ(d.m_selectBegin, 0);
    EXPECT_EQ(d.m_selectEnd, 0);
    EXPECT_EQ(d.m_rowCrt, 1);
    EXPECT_EQ(d.m_columnCrt, 1);
    EXPECT_EQ(d.m_snsColTotal, 2);
    EXPECT_EQ(valuesOf(d, 0, 1), std::vector<double>{3.0});
    const CWavChnlChnlDatazq& pair = pairOf(d, 0, 1);
    ASSERT_EQ(pair.m_bkSize, 1);
    EXPECT_EQ(pair.m_bkData[0], 3.0);
    EXPECT_EQ(pair.m_chnlA, 17);
    EXPECT_EQ(pair.m_chnlB, 23);
    EXPECT_EQ(pair.m_pairFlag, 5);
    EXPECT_EQ(pair.m_curIdx, 0);
    EXPECT_EQ(valuesOf(d, 1, 0), std::vector<double>{212.5});
}

TEST(CSnsCohDatazq, CollapsingOneSliceKeepsItsValues) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 1);
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(valuesOf(d, 1, 2), std::vector<double>{231.0});
}

TEST(CSnsCohDatazq, NothingToCollapseIsRefused) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.accumulateTime1(), 0);
    d.setChnlRowCol(2, 2);
    d.m_cohTimTotal = 3;
    EXPECT_EQ(d.accumulateTime1(), 0);
    fill(d, 2, 2, 3);
    d.m_snsRowTotal = 0;
    EXPECT_EQ(d.accumulateTime1(), 0);
    d.setChnlRowCol(2, -1);
    EXPECT_EQ(d.accumulateTime1(), 0);
    d.setChnlRowCol(2, 2);
    d.m_cohTimTotal = 0;
    EXPECT_EQ(d.accumulateTime1(), 0);
    EXPECT_EQ(cell(d, 2, 1, 1), cellValue(2, 1, 1));
}

TEST(CSnsCohDatazq, NoColumnsAreAllowed) {
    CSnsCohDatazq d;
    test::fill(d, 2, 2, 3);
    d.setChnlRowCol(2, 0);
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(d.m_cohTimTotal, 1);
    EXPECT_EQ(d.m_snsColTotal, 0);
}

TEST(CSnsCohDatazq, AbsentSlicesCountAsZeroInTheMean) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 4);
    pairOf(d, 0, 0).resize(2);
    test::claimValues(d, 0, 1, 4);
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(valuesOf(d, 0, 0), std::vector<double>{(111.0 + 112.0) / 4});
    EXPECT_EQ(valuesOf(d, 0, 1), std::vector<double>{0.0});
    EXPECT_EQ(valuesOf(d, 1, 1), std::vector<double>{222.5});
}

TEST(CSnsCohDatazq, CollapsingKeepsTheRealShape) {
    CSnsCohDatazq d;
    fill(d, 2, 3, 5);
    d.setChnlRowCol(1000000000000, 1000000000000);
    EXPECT_EQ(d.accumulateTime1(), 1);
    EXPECT_EQ(valuesOf(d, 1, 2), std::vector<double>{233.0});
    EXPECT_EQ(d.m_snsRowTotal, 1000000000000);
    EXPECT_EQ(d.getValue(0, 2, 0), 0.0);
}

TEST(CSnsCohDatazq, EveryFailingAllocationLeavesTheSlicesUntouched) {
    int total = 0;
    {
        CSnsCohDatazq d;
        fill(d, 2, 3, 5);
        const test::FailingMemory memory(0);
        ASSERT_EQ(d.accumulateTime1(), 1);
        total = memory.count();
    }
    ASSERT_EQ(total, 1 + 2 + 6 * 2);  // table, rows, one value and one backup per pair
    for (int n = 1; n <= total; ++n) {
        CSnsCohDatazq d;
        fill(d, 2, 3, 5);
        d.setSelect(1, 3);
        CWavChnlChnlDatazq** const grid = d.m_mCC;
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(d.accumulateTime1(), 0) << n;
        EXPECT_EQ(d.m_mCC, grid);
        EXPECT_EQ(d.m_cohTimTotal, 5);
        EXPECT_EQ(d.m_selectEnd, 3);
        EXPECT_EQ(cell(d, 4, 1, 2), cellValue(4, 1, 2));
    }
}

TEST(CSnsCohDatazq, NeitherSumNorCollapseLeavesTheRealGrid) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq d;
        hostile.make(d);
        CSnsCohDatazq other;
        fill(other, 3, 3, 2);
        other.m_snsRowTotal = d.m_snsRowTotal;
        other.m_cohTimTotal = d.m_cohTimTotal;
        const bool summable = d.m_mCC != nullptr && d.m_snsRowTotal >= 1;
        EXPECT_EQ(d.sumDatSetSns(other), summable);
        EXPECT_EQ(other.sumDatSetSns(d), summable);
        const bool collapsible = summable && d.m_snsColTotal >= 0 && d.m_cohTimTotal >= 1;
        EXPECT_EQ(d.accumulateTime1(), collapsible);
        EXPECT_TRUE(!collapsible || d.m_cohTimTotal == 1);
    }
}

}  // namespace
