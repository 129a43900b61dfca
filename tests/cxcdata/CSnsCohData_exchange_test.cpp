// The exchange of CSnsCohData with matrices.
#include "cxcdata/CSnsCohData.h"

#include "siblings/matrix/CMMatrix2Dzq.h"
#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
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

TEST(CSnsCohData, DatasetBecomesOneMatrixPerSlice) {
    CSnsCohDatazq d;
    fill(d, 4, 4, 3);
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    EXPECT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    ASSERT_EQ(count, 3);
    for (int t = 0; t < 3; ++t) {
        ASSERT_EQ(mats[t].getRow(), 4);
        ASSERT_EQ(mats[t].getCol(), 4);
        for (__int64 r = 0; r < 4; ++r) {
            for (__int64 c = 0; c < 4; ++c)
                EXPECT_EQ(mats[t].getDataPP()[r][c], d.getValue(t, r, c));
        }
    }
}

TEST(CSnsCohData, ExchangeIsExactForEverySizeInBothDirections) {
    for (const __int64 n : {1, 2, 7, 8, 9, 17}) {
        for (const __int64 nTim : {1, 5, 63, 64, 65, 130}) {
            CSnsCohDatazq d;
            ASSERT_EQ(d.checkInitSnsCohData(n, n, nTim, true), 1);
            double next = 0.0;
            for (__int64 r = 0; r < n; ++r) {
                for (__int64 c = 0; c < n; ++c) {
                    for (__int64 t = 0; t < nTim; ++t)
                        cell(d, t, r, c) = ++next;
                }
            }
            CMMatrix2Dzq* made = nullptr;
            __int64 count = 0;
            ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
            const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
            CSnsCohDatazq back;
            ASSERT_EQ(back.setData4MCohTimSnsSns(made, count), 1);
            ASSERT_EQ(back.m_snsRowTotal, n);
            ASSERT_EQ(back.m_cohTimTotal, nTim);
            for (__int64 r = 0; r < n; ++r) {
                for (__int64 c = 0; c < n; ++c) {
                    EXPECT_EQ(test::valuesOf(back, r, c), test::valuesOf(d, r, c));
                    EXPECT_EQ(mats[static_cast<std::size_t>(nTim - 1)].getDataPP()[r][c],
                              cell(d, nTim - 1, r, c));
                }
            }
        }
    }
}

// Another value in every cell, however many there are.
double numberOf(__int64 t, __int64 r, __int64 c) {
    return static_cast<double>((t * 1000 + r) * 1000 + c);
}

void fillNumbers(CSnsCohData& data, __int64 n, __int64 nTim) {
    ASSERT_EQ(data.checkInitSnsCohData(n, n, nTim, true), 1);
    for (__int64 r = 0; r < n; ++r) {
        for (__int64 c = 0; c < n; ++c) {
            for (__int64 t = 0; t < nTim; ++t)
                cell(data, t, r, c) = numberOf(t, r, c);
        }
    }
}

void fillNumbers(CMMatrix2Dzq& matrix, __int64 rows, __int64 cols, __int64 t) {
    ASSERT_NE(matrix.checkInit(rows, cols, false), nullptr);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c)
            matrix.getDataPP()[r][c] = numberOf(t, r, c);
    }
}

struct Square {
    __int64 n;  // rows and columns
    __int64 nTim;
};

// Around the tiles and blocks of the copy, each direction by itself: what both did wrong in the
// same way would be right again after the way back.
const Square aroundTiles[] = {{127, 3}, {128, 4}, {129, 5}, {130, 6},  {257, 1},
                              {2, 127}, {3, 128}, {3, 129}, {129, 131}};

TEST(CSnsCohData, MatricesAreExactAroundTheTilesOfTheCopy) {
    for (const Square& size : aroundTiles) {
        CSnsCohDatazq d;
        fillNumbers(d, size.n, size.nTim);
        CMMatrix2Dzq* made = nullptr;
        __int64 count = 0;
        ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
        const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
        ASSERT_EQ(count, size.nTim);
        for (__int64 t = 0; t < size.nTim; ++t) {
            for (__int64 r = 0; r < size.n; ++r) {
                for (__int64 c = 0; c < size.n; ++c)
                    ASSERT_EQ(made[t].getDataPP()[r][c], numberOf(t, r, c));
            }
        }
    }
}

TEST(CSnsCohData, DatasetIsExactAroundTheTilesOfTheCopy) {
    for (const Square& size : aroundTiles) {
        std::vector<CMMatrix2Dzq> mats(static_cast<std::size_t>(size.nTim));
        for (__int64 t = 0; t < size.nTim; ++t)
            fillNumbers(mats[static_cast<std::size_t>(t)], size.n, size.n, t);
        CSnsCohDatazq d;
        ASSERT_EQ(d.setData4MCohTimSnsSns(mats.data(), size.nTim), 1);
        for (__int64 r = 0; r < size.n; ++r) {
            for (__int64 c = 0; c < size.n; ++c) {
                for (__int64 t = 0; t < size.nTim; ++t)
                    ASSERT_EQ(cell(d, t, r, c), numberOf(t, r, c));
            }
        }
    }
}

// One in a tile of all columns, one at its end, one in the tile behind it; beside them all is
// there.
TEST(CSnsCohData, AbsentValuesAreZeroInTilesOfManyColumns) {
    CSnsCohDatazq d;
    fillNumbers(d, 130, 5);
    pairOf(d, 0, 5).resize(3);
    pairOf(d, 1, 127).resize(1);
    test::claimValues(d, 2, 129, 5);
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    for (__int64 t = 0; t < 5; ++t) {
        for (__int64 r = 0; r < 4; ++r) {
            for (__int64 c = 0; c < 130; ++c) {
                const bool absent = (r == 0 && c == 5 && t >= 3) ||
                                    (r == 1 && c == 127 && t >= 1) || (r == 2 && c == 129);
                ASSERT_EQ(made[t].getDataPP()[r][c], absent ? 0.0 : numberOf(t, r, c));
            }
        }
    }
}

TEST(CSnsCohData, NarrowMatrixAmongWideOnesGivesOnlyWhatItHas) {
    constexpr __int64 n = 130;
    std::vector<CMMatrix2Dzq> mats(5);
    for (__int64 t = 0; t < 5; ++t)
        fillNumbers(mats[static_cast<std::size_t>(t)], n, t == 2 ? 127 : t == 4 ? 129 : n, t);
    mats[3].getDataPP()[1] = nullptr;
    CSnsCohDatazq d;
    ASSERT_EQ(d.setData4MCohTimSnsSns(mats.data(), 5), 1);
    for (__int64 t = 0; t < 5; ++t) {
        for (__int64 r = 0; r < 4; ++r) {
            for (__int64 c = 0; c < n; ++c) {
                const bool absent =
                    (t == 2 && c >= 127) || (t == 4 && c == 129) || (t == 3 && r == 1);
                ASSERT_EQ(cell(d, t, r, c), absent ? 0.0 : numberOf(t, r, c));
            }
        }
    }
}

TEST(CSnsCohData, OfferedMatricesMustOutnumberTheSlices) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    CMMatrix2Dzq mats[4];
    CMMatrix2Dzq* offered = mats;
    __int64 count = 3;
    EXPECT_EQ(d.getData2MCohTimSnsSns(offered, count), 0);
    EXPECT_EQ(mats[0].getRow(), 0);
    count = 2;
    EXPECT_EQ(d.getData2MCohTimSnsSns(offered, count), 0);
    count = 4;
    EXPECT_EQ(d.getData2MCohTimSnsSns(offered, count), 1);
    EXPECT_EQ(offered, mats);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(mats[2].getDataPP()[1][0], cellValue(2, 1, 0));
    EXPECT_EQ(mats[3].getRow(), 2);  // sized like the others, nothing to fill it from
}

TEST(CSnsCohData, MatricesBeyondTheSlicesKeepTheirValues) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    CMMatrix2Dzq mats[5];
    for (CMMatrix2Dzq& matrix : mats)
        fillMatrix(matrix, 2, 2, 8);
    CMMatrix2Dzq* offered = mats;
    __int64 count = 5;
    EXPECT_EQ(d.getData2MCohTimSnsSns(offered, count), 1);
    EXPECT_EQ(mats[2].getDataPP()[1][0], cellValue(2, 1, 0));
    EXPECT_EQ(mats[3].getDataPP()[1][0], cellValue(8, 1, 0));
    EXPECT_EQ(mats[4].getDataPP()[0][1], cellValue(8, 0, 1));
}

TEST(CSnsCohData, AbsentPairsAndSlicesAreZeroInTheMatrices) {
    CSnsCohDatazq d;
    fill(d, 3, 2, 5);
    pairOf(d, 0, 0).resize(2);
    test::claimValues(d, 1, 1, 5);
    CMMatrix2Dzq mats[6];
    for (CMMatrix2Dzq& matrix : mats)
        fillMatrix(matrix, 3, 3, 8);
    CMMatrix2Dzq* offered = mats;
    __int64 count = 6;
    ASSERT_EQ(d.getData2MCohTimSnsSns(offered, count), 1);
    EXPECT_EQ(mats[1].getDataPP()[0][0], 112.0);
    EXPECT_EQ(mats[2].getDataPP()[0][0], 0.0);
    EXPECT_EQ(mats[0].getDataPP()[1][1], 0.0);
    EXPECT_EQ(mats[4].getDataPP()[2][1], 325.0);
    EXPECT_EQ(mats[4].getDataPP()[2][2], 0.0);  // no such column in the grid
}

TEST(CSnsCohData, AbsentValuesAreZeroAmongManyColumnsToo) {
    CSnsCohDatazq d;
    fill(d, 20, 20, 5);
    pairOf(d, 1, 3).resize(2);
    test::claimValues(d, 2, 12, 5);
    pairOf(d, 3, 19).resize(0);
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    EXPECT_EQ(mats[1].getDataPP()[1][3], cellValue(1, 1, 3));
    EXPECT_EQ(mats[2].getDataPP()[1][3], 0.0);
    EXPECT_EQ(mats[4].getDataPP()[1][4], cellValue(4, 1, 4));
    EXPECT_EQ(mats[0].getDataPP()[2][12], 0.0);
    EXPECT_EQ(mats[0].getDataPP()[2][11], cellValue(0, 2, 11));
    EXPECT_EQ(mats[4].getDataPP()[3][19], 0.0);
    EXPECT_EQ(mats[4].getDataPP()[3][18], cellValue(4, 3, 18));
}

TEST(CSnsCohData, DatasetWithoutGridGivesNoMatrices) {
    CSnsCohDatazq d;
    d.setChnlRowCol(3, 3);
    d.m_cohTimTotal = 2;
    CMMatrix2Dzq* mats = nullptr;
    __int64 count = 5;
    EXPECT_EQ(d.getData2MCohTimSnsSns(mats, count), 0);
    EXPECT_EQ(mats, nullptr);
    EXPECT_EQ(count, 5);
}

TEST(CSnsCohData, SliceCountsThatNoMatricesCanMeetGiveNone) {
    for (const __int64 nTim : {-1LL, least, 1000000000000000LL, most}) {
        CSnsCohDatazq d;
        fill(d, 2, 2, 3);
        d.m_cohTimTotal = nTim;
        CMMatrix2Dzq* mats = nullptr;
        __int64 count = 5;
        EXPECT_EQ(d.getData2MCohTimSnsSns(mats, count), 0);
        EXPECT_EQ(mats, nullptr);
        EXPECT_EQ(count, 5);
    }
}

// Two such counters come from a record of a few bytes.
TEST(CSnsCohData, RowsThatTheGridDoesNotHaveTakeNoMemory) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.setChnlRowCol(20000, 20000);
    CMMatrix2Dzq mats[4];
    CMMatrix2Dzq* offered = mats;
    __int64 count = 4;
    EXPECT_EQ(d.getData2MCohTimSnsSns(offered, count), 0);
    EXPECT_EQ(mats[0].getRow(), 0);
    CMMatrix2Dzq* made = nullptr;
    EXPECT_EQ(d.getData2MCohTimSnsSns(made, count), 0);
    EXPECT_EQ(made, nullptr);
}

TEST(CSnsCohData, SlicesThatNoPairHasTakeNoMemory) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.m_cohTimTotal = 2000000;
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    EXPECT_EQ(d.getData2MCohTimSnsSns(made, count), 0);
    EXPECT_EQ(made, nullptr);
}

TEST(CSnsCohData, ManySlicesOfOnePairSuffice) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.m_cohTimTotal = 1000000;
    pairOf(d, 1, 0).resize(1000000);
    pairOf(d, 1, 0).m_data[999999] = 4.5;
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    EXPECT_EQ(count, 1000000);
    EXPECT_EQ(mats[999999].getDataPP()[1][0], 4.5);
    EXPECT_EQ(mats[999999].getDataPP()[1][1], 0.0);
}

TEST(CSnsCohData, DatasetWithoutSlicesGivesAnEmptyArray) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.m_cohTimTotal = 0;
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 5;
    EXPECT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(count, 0);
}

TEST(CSnsCohData, MatricesMadeBeforeAFailureStayWithTheCaller) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.setChnlRowCol(0, 2);  // matrices of 0 rows have no storage
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    EXPECT_EQ(d.getData2MCohTimSnsSns(made, count), 0);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(count, 3);
}

TEST(CSnsCohData, FailingAllocationOfTheMatricesGivesNone) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    CMMatrix2Dzq* mats = nullptr;
    __int64 count = 5;
    const FailingMemory memory(1);
    EXPECT_EQ(d.getData2MCohTimSnsSns(mats, count), 0);
    EXPECT_EQ(mats, nullptr);
    EXPECT_EQ(count, 5);
}

TEST(CSnsCohData, MatricesBecomeASquareDataset) {
    CMMatrix2Dzq mats[5];
    for (int t = 0; t < 5; ++t)
        fillMatrix(mats[t], 6, 6, t);
    CSnsCohDatazq d;
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 5), 1);
    EXPECT_EQ(d.m_snsRowTotal, 6);
    EXPECT_EQ(d.m_snsColTotal, 6);
    EXPECT_EQ(d.m_cohTimTotal, 5);
    EXPECT_EQ(d.getValue(4, 5, 2), cellValue(4, 5, 2));
    EXPECT_EQ(d.getValue(0, 0, 5), cellValue(0, 0, 5));
}

TEST(CSnsCohData, NothingIsTakenFromNoMatrices) {
    CMMatrix2Dzq mats[1];
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    EXPECT_EQ(d.setData4MCohTimSnsSns(nullptr, 5), 0);
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 0), 0);
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, -1), 0);
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 1), 0);  // an empty first matrix
    EXPECT_EQ(d.getValue(2, 1, 1), cellValue(2, 1, 1));
}

TEST(CSnsCohData, MoreMatricesThanTheMachineHoldsAreRefusedBeforeAnythingIsTaken) {
    CMMatrix2Dzq mats[1];
    fillMatrix(mats[0], 2, 2, 0);
    for (const __int64 count : {1LL << 45, most}) {
        CSnsCohDatazq d;
        const FailingMemory memory(0);
        EXPECT_EQ(d.setData4MCohTimSnsSns(mats, count), 0);
        EXPECT_EQ(memory.count(), 0);
        EXPECT_EQ(d.m_mCC, nullptr);
    }
}

TEST(CSnsCohData, LaterMatricesMayHaveOtherSizes) {
    CMMatrix2Dzq mats[3];
    fillMatrix(mats[0], 2, 2, 0);
    fillMatrix(mats[1], 3, 5, 1);
    fillMatrix(mats[2], 1, 1, 2);
    CSnsCohDatazq d;
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 3), 1);
    EXPECT_EQ(test::valuesOf(d, 0, 0), (std::vector<double>{111, 112, 113}));
    EXPECT_EQ(test::valuesOf(d, 0, 1), (std::vector<double>{121, 122, 0}));
    EXPECT_EQ(test::valuesOf(d, 1, 0), (std::vector<double>{211, 212, 0}));
    EXPECT_EQ(test::valuesOf(d, 1, 1), (std::vector<double>{221, 222, 0}));
}

TEST(CSnsCohData, FirstMatrixMayBeNarrowOrWide) {
    CMMatrix2Dzq wide[1];
    fillMatrix(wide[0], 2, 5, 0);
    CSnsCohDatazq d;
    EXPECT_EQ(d.setData4MCohTimSnsSns(wide, 1), 1);
    EXPECT_EQ(d.m_snsColTotal, 2);
    EXPECT_EQ(d.getValue(0, 1, 1), cellValue(0, 1, 1));
    CMMatrix2Dzq narrow[1];
    fillMatrix(narrow[0], 3, 1, 0);
    EXPECT_EQ(d.setData4MCohTimSnsSns(narrow, 1), 1);
    EXPECT_EQ(d.m_snsColTotal, 3);
    EXPECT_EQ(d.getValue(0, 2, 0), cellValue(0, 2, 0));
    EXPECT_EQ(d.getValue(0, 0, 1), 0.0);
    EXPECT_EQ(d.getValue(0, 2, 2), 0.0);
}

TEST(CSnsCohData, SlicesBeforeAMatrixWithoutValuesAreKept) {
    CMMatrix2Dzq mats[3];
    fillMatrix(mats[0], 2, 2, 0);
    fillMatrix(mats[2], 2, 2, 2);
    CSnsCohDatazq d;
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 3), 0);
    EXPECT_EQ(test::valuesOf(d, 1, 0), (std::vector<double>{211, 0, 0}));
}

TEST(CSnsCohData, EveryFailingAllocationWhileTakingMatricesLeavesNoGrid) {
    CMMatrix2Dzq mats[3];
    for (int t = 0; t < 3; ++t)
        fillMatrix(mats[t], 2, 2, t);
    for (int n = 1; n <= 1 + 2 + 4; ++n) {
        CSnsCohDatazq d;
        const FailingMemory memory(n, true);
        EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 3), 0) << n;
        EXPECT_EQ(d.m_mCC, nullptr);
    }
    CSnsCohDatazq d;
    const FailingMemory memory(1 + 2 + 4 + 1);
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 3), 1);
}

TEST(CSnsCohData, OneMatrixIsAssignedToItsSlice) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    CMMatrix2Dzq matrix;
    fillMatrix(matrix, 2, 2, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 1), 1);
    EXPECT_EQ(test::valuesOf(d, 0, 1), (std::vector<double>{121, 127, 123}));
    EXPECT_EQ(test::valuesOf(d, 1, 0), (std::vector<double>{211, 217, 213}));
}

TEST(CSnsCohData, MatrixThatDoesNotFitChangesNothing) {
    CSnsCohDatazq d;
    CMMatrix2Dzq matrix;
    fillMatrix(matrix, 2, 2, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 0), 0);  // no grid
    fill(d, 2, 2, 3);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 3), 0);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, -1), 0);
    EXPECT_EQ(d.addMSnsSnsTimID(nullptr, 0), 0);
    CMMatrix2Dzq empty;
    EXPECT_EQ(d.addMSnsSnsTimID(&empty, 0), 0);
    CMMatrix2Dzq other;
    fillMatrix(other, 3, 2, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&other, 0), 0);
    for (__int64 t = 0; t < 3; ++t)
        EXPECT_EQ(d.getValue(t, 1, 1), cellValue(t, 1, 1));
}

TEST(CSnsCohData, ColumnsOfAMatrixBeyondTheGridAreLeftOut) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    CMMatrix2Dzq wide;
    fillMatrix(wide, 2, 7, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&wide, 2), 1);
    EXPECT_EQ(test::valuesOf(d, 1, 1), (std::vector<double>{221, 222, 227}));
    CMMatrix2Dzq narrow;
    fillMatrix(narrow, 2, 1, 7);
    EXPECT_EQ(d.addMSnsSnsTimID(&narrow, 2), 1);
    EXPECT_EQ(d.getValue(2, 1, 0), 218.0);
    EXPECT_EQ(d.getValue(2, 1, 1), 227.0);
}

TEST(CSnsCohData, RowThatAMatrixLacksIsLeftOut) {
    CMMatrix2Dzq mats[2];
    fillMatrix(mats[0], 2, 2, 0);
    fillMatrix(mats[1], 2, 2, 1);
    mats[1].getDataPP()[0] = nullptr;
    CSnsCohDatazq d;
    EXPECT_EQ(d.setData4MCohTimSnsSns(mats, 2), 1);
    EXPECT_EQ(test::valuesOf(d, 0, 1), (std::vector<double>{121, 0}));
    EXPECT_EQ(test::valuesOf(d, 1, 1), (std::vector<double>{221, 222}));
    EXPECT_EQ(d.addMSnsSnsTimID(mats + 1, 0), 1);
    EXPECT_EQ(test::valuesOf(d, 0, 1), (std::vector<double>{121, 0}));
    EXPECT_EQ(test::valuesOf(d, 1, 1), (std::vector<double>{222, 222}));
}

TEST(CSnsCohData, SliceThatVectorsDoNotHaveIsNotWritten) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.m_cohTimTotal = 100;
    test::claimValues(d, 0, 0, 3);
    CMMatrix2Dzq matrix;
    fillMatrix(matrix, 2, 2, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 50), 1);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 2), 1);
    EXPECT_EQ(d.getValue(2, 1, 1), 227.0);
    EXPECT_EQ(d.getValue(2, 0, 0), 0.0);
}

TEST(CSnsCohData, MatricesWithMoreRowsThanTheGridStayInside) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 3);
    d.setChnlRowCol(5, 5);
    CMMatrix2Dzq matrix;
    fillMatrix(matrix, 5, 5, 6);
    EXPECT_EQ(d.addMSnsSnsTimID(&matrix, 1), 1);
    EXPECT_EQ(d.getValue(1, 1, 1), 227.0);
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    ASSERT_EQ(d.getData2MCohTimSnsSns(made, count), 1);
    const std::unique_ptr<CMMatrix2Dzq[]> mats(made);
    EXPECT_EQ(mats[1].getDataPP()[1][1], 227.0);
    EXPECT_EQ(mats[1].getDataPP()[4][4], 0.0);
}

}  // namespace
