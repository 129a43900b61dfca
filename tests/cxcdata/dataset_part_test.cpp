#include "cxcdata/dataset_part.h"
#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

namespace {

using test::cell;
using test::cellValue;
using test::pairOf;

constexpr __int64 most = 0x7FFFFFFFFFFFFFFFLL;

TEST(DatasetPart, ValuesAndChannelsStandInTheOrderOfTheLists) {
    CSnsCohDatazq from;
    test::fill(from, 3, 4, 5);
    pairOf(from, 2, 3).m_chnlA = 7;
    pairOf(from, 2, 3).m_chnlB = 8;
    pairOf(from, 2, 3).m_pairFlag = 9;
    CSnsCohDatazq made;
    ASSERT_EQ(cxc::makePart(made, from, {4, 0}, {2, 0}, {3, 1, 2}), 1);
    EXPECT_EQ(made.m_snsRowTotal, 2);
    EXPECT_EQ(made.m_snsColTotal, 3);
    EXPECT_EQ(made.m_cohTimTotal, 2);
    EXPECT_EQ(cell(made, 0, 0, 0), cellValue(4, 2, 3));
    EXPECT_EQ(cell(made, 1, 0, 1), cellValue(0, 2, 1));
    EXPECT_EQ(cell(made, 0, 1, 2), cellValue(4, 0, 2));
    EXPECT_EQ(pairOf(made, 0, 0).m_chnlA, 7);
    EXPECT_EQ(pairOf(made, 0, 0).m_chnlB, 8);
    EXPECT_EQ(pairOf(made, 0, 0).m_pairFlag, 9);
}

TEST(DatasetPart, EverythingThatDescribesTheDatasetGoesAlong) {
    CSnsCohDatazq from;
    test::fill(from, 2, 2, 5);
    from.m_cxcName = _T("a name");
    from.m_headerInt7 = 12;
    from.m_basicColor = 0x123456;
    from.m_rowCrt = 1;
    pairOf(from, 0, 0).bkDataIn();
    CSnsCohDatazq made;
    test::fill(made, 6, 6, 6);
    ASSERT_EQ(cxc::makePart(made, from, {1, 2, 3}, {1}, {0}), 1);
    EXPECT_EQ(made.m_cxcName, CString(_T("a name")));
    EXPECT_EQ(made.m_headerInt7, 12);
    EXPECT_EQ(made.m_basicColor, 0x123456u);
    EXPECT_EQ(made.m_rowCrt, 0);
    EXPECT_EQ(made.m_selectBegin, 0);
    EXPECT_EQ(made.m_selectEnd, 2);
    EXPECT_EQ(made.m_headerLong2, 3);
    EXPECT_EQ(made.m_dataMin, cellValue(1, 1, 0));
    EXPECT_EQ(made.m_dataMax, cellValue(3, 1, 0));
    EXPECT_EQ(pairOf(made, 0, 0).m_bkData, nullptr);
    // The grid of the source is its own.
    EXPECT_EQ(cell(from, 4, 1, 1), cellValue(4, 1, 1));
}

TEST(DatasetPart, WhatIsAbsentIsZero) {
    CSnsCohDatazq from;
    test::fill(from, 2, 2, 5);
    pairOf(from, 0, 0).resize(2);
    pairOf(from, 0, 1).cleanData();
    from.m_snsRowTotal = 3;
    CSnsCohDatazq made;
    ASSERT_EQ(cxc::makePart(made, from, {1, 4}, {0, 2}, {0, 1}), 1);
    EXPECT_EQ(cell(made, 0, 0, 0), cellValue(1, 0, 0));
    EXPECT_EQ(cell(made, 1, 0, 0), 0.0);
    EXPECT_EQ(cell(made, 0, 0, 1), 0.0);
    EXPECT_EQ(cell(made, 1, 1, 1), 0.0);
}

TEST(DatasetPart, IndicesOutsideAndEmptyListsGiveNoGrid) {
    CSnsCohDatazq from;
    test::fill(from, 2, 3, 4);
    CSnsCohDatazq made;
    for (const __int64 wrong : {-1LL, 4LL, most}) {
        EXPECT_EQ(cxc::makePart(made, from, {0, wrong}, {0}, {0}), 0);
        EXPECT_EQ(cxc::makePart(made, from, {0}, {wrong}, {0}), 0);
        EXPECT_EQ(cxc::makePart(made, from, {0}, {0}, {wrong}), 0);
    }
    EXPECT_EQ(cxc::makePart(made, from, {}, {0}, {0}), 0);
    EXPECT_EQ(cxc::makePart(made, from, {0}, {}, {0}), 0);
    EXPECT_EQ(cxc::makePart(made, from, {0}, {0}, {}), 0);
    EXPECT_EQ(made.m_mCC, nullptr);
    EXPECT_FALSE(cxc::partIsThere(CSnsCohDatazq(), {0}, {0}, {0}));
    EXPECT_TRUE(cxc::partIsThere(from, {3}, {1}, {2}));
}

TEST(DatasetPart, RefusedMemoryGivesNoGrid) {
    CSnsCohDatazq from;
    test::fill(from, 2, 2, 3);
    for (int n = 1; n <= 5; ++n) {
        CSnsCohDatazq made;
        {
            const test::FailingMemory memory(n);
            EXPECT_EQ(cxc::makePart(made, from, {0, 2}, {0, 1}, {1, 0}), 0) << n;
        }
        EXPECT_EQ(made.m_mCC, nullptr);
        EXPECT_EQ(cxc::makePart(made, from, {0, 2}, {0, 1}, {1, 0}), 1);
    }
}

}  // namespace
