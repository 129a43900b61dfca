#include "cxcdata/CSnsCohData00Time.h"

#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using test::FailingMemory;
using test::fill;

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr __int64 most = std::numeric_limits<__int64>::max();

TEST(CSnsCohData00Time, NewMatrixIsSquareAndZero) {
    double** const matrix = CSnsCohData00Time::s_newCohData(3);
    ASSERT_NE(matrix, nullptr);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(matrix[r][c], 0.0);
    }
    matrix[2][2] = 1.0;
    EXPECT_EQ(CSnsCohData00Time::s_freeCohData(3, matrix), 1);
}

TEST(CSnsCohData00Time, MatrixOfNoRowsIsNullWithoutAMessage) {
    test::TestApp app;
    EXPECT_EQ(CSnsCohData00Time::s_newCohData(0), nullptr);
    EXPECT_EQ(CSnsCohData00Time::s_newCohData(-3), nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CSnsCohData00Time, FailedTableIsSilent) {
    test::TestApp app;
    const FailingMemory memory(1);
    EXPECT_EQ(CSnsCohData00Time::s_newCohData(3), nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CSnsCohData00Time, EveryFailedRowShowsAMessage) {
    for (int n = 2; n <= 4; ++n) {
        test::TestApp app;
        const FailingMemory memory(n);
        EXPECT_EQ(CSnsCohData00Time::s_newCohData(3), nullptr);
        EXPECT_EQ(app.messages(), std::vector<std::string>{"Is memory enough?!"});
        EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
    }
}

TEST(CSnsCohData00Time, MatrixBeyondTheMachineIsRefusedLikeAFailedRow) {
    test::TestApp app;
    const FailingMemory memory(0);
    EXPECT_EQ(CSnsCohData00Time::s_newCohData(std::numeric_limits<int>::max()), nullptr);
    EXPECT_EQ(memory.count(), 0);
    EXPECT_EQ(app.messages(), std::vector<std::string>{"Is memory enough?!"});
}

TEST(CSnsCohData00Time, FreeingSkipsMissingRowsAndNull) {
    EXPECT_EQ(CSnsCohData00Time::s_freeCohData(3, nullptr), 0);
    double** const matrix = CSnsCohData00Time::s_newCohData(3);
    delete[] matrix[1];
    matrix[1] = nullptr;
    EXPECT_EQ(CSnsCohData00Time::s_freeCohData(3, matrix), 1);
}

TEST(CSnsCohData00Time, FreeingNoRowsReleasesTheTableOnly) {
    double** const table = new double*[2];
    double row[2] = {1.0, 2.0};
    table[0] = table[1] = row;
    EXPECT_EQ(CSnsCohData00Time::s_freeCohData(0, table), 1);
    EXPECT_EQ(row[1], 2.0);
}

TEST(CSnsCohData00Time, ShowFlagIsKept) {
    CSnsCohDatazq d;
    bool show = true;
    EXPECT_EQ(d.getCohAnaDataTscsInfo(show), 1);
    EXPECT_FALSE(show);
    EXPECT_EQ(d.setCohAnaDataTscsInfo(true), 1);
    EXPECT_EQ(d.getCohAnaDataTscsInfo(show), 1);
    EXPECT_TRUE(show);
    EXPECT_TRUE(d.m_tscsInfo);
}

TEST(CSnsCohData00Time, SensorsAreCountedOnlyWithAGrid) {
    CSnsCohDatazq d;
    d.setChnlRowCol(4, 4);
    d.m_cohTimTotal = 6;
    EXPECT_EQ(d.getSnsCohSnsTotal(), 0);
    EXPECT_EQ(d.getSnsCohTimTotal(), 6);
    EXPECT_EQ(d.getMCC4class(), nullptr);
    fill(d, 2, 3, 5);
    EXPECT_EQ(d.getSnsCohSnsTotal(), 2);
    EXPECT_EQ(d.getSnsCohTimTotal(), 5);
    EXPECT_EQ(d.getMCC4class(), d.m_mCC);
}

TEST(CSnsCohData00Time, SelectionIsClampedIntoTheSlices) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 10);
    __int64 begin = 0;
    __int64 end = 0;
    EXPECT_EQ(d.setSelect(-3, 2), 3);
    EXPECT_EQ(d.getSelect(begin, end), 3);
    EXPECT_EQ(begin, 0);
    EXPECT_EQ(end, 2);
    EXPECT_EQ(d.setSelect(8, 20), 2);
    EXPECT_EQ(d.m_selectBegin, 8);
    EXPECT_EQ(d.m_selectEnd, 9);
    EXPECT_EQ(d.setSelect(20, 30), 1);
    EXPECT_EQ(d.m_selectBegin, 9);
    EXPECT_EQ(d.m_selectEnd, 9);
    EXPECT_EQ(d.setSelect(least, most), 10);
}

TEST(CSnsCohData00Time, ReversedSelectionIsItsBegin) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 10);
    EXPECT_EQ(d.setSelect(5, 1), 1);
    EXPECT_EQ(d.m_selectBegin, 5);
    EXPECT_EQ(d.m_selectEnd, 5);
    EXPECT_EQ(d.setSelect(-5, -1), 1);
    EXPECT_EQ(d.m_selectBegin, 0);
    EXPECT_EQ(d.m_selectEnd, 0);
}

TEST(CSnsCohData00Time, SelectionWithoutSlicesIsMinusOne) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.setSelect(0, 3), 1);
    EXPECT_EQ(d.m_selectBegin, -1);
    EXPECT_EQ(d.m_selectEnd, -1);
    d.m_cohTimTotal = least;
    EXPECT_EQ(d.setSelect(0, 3), 1);
}

TEST(CSnsCohData00Time, LengthOfTheSelectionIsPlainArithmetic) {
    CSnsCohDatazq d;
    __int64 begin = 0;
    __int64 end = 0;
    d.m_selectBegin = 7;
    d.m_selectEnd = 3;
    EXPECT_EQ(d.getSelect(begin, end), -3);
    d.m_selectBegin = least;
    d.m_selectEnd = most;
    EXPECT_EQ(d.getSelect(begin, end), 0);
    EXPECT_EQ(begin, least);
    EXPECT_EQ(end, most);
}

TEST(CSnsCohData00Time, SelectionCheckDoesNotLookAtTheOrder) {
    CSnsCohDatazq d;
    EXPECT_EQ(d.checkSelect(0, 0), 0);
    fill(d, 2, 2, 10);
    EXPECT_EQ(d.checkSelect(2, 1), 1);
    EXPECT_EQ(d.checkSelect(9, 9), 1);
    EXPECT_EQ(d.checkSelect(2, 10), 0);
    EXPECT_EQ(d.checkSelect(10, 2), 0);
    EXPECT_EQ(d.checkSelect(-1, 2), 0);
    EXPECT_EQ(d.checkSelect(2, -1), 0);
    d.m_cohTimTotal = 0;
    EXPECT_EQ(d.checkSelect(0, 0), 0);
}

TEST(CSnsCohData00Time, ResettingTheTimeDoesNothing) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 10);
    d.setSelect(2, 3);
    EXPECT_EQ(d.resetCohTimeInfo(), 0);
    EXPECT_EQ(d.m_selectBegin, 2);
    EXPECT_EQ(d.m_cohTimTotal, 10);
}

}  // namespace
