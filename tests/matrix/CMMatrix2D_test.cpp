#include "siblings/matrix/CMMatrix2D.h"

#include "siblings/matrix/CMMatrix2Dzq.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <type_traits>

static_assert(!std::is_copy_constructible_v<CMMatrix2Dzq>, "a matrix owns its storage alone");

TEST(CMMatrix2D, StartsWithoutStorage) {
    CMMatrix2Dzq matrix;
    EXPECT_EQ(matrix.getDataPP(), nullptr);
    EXPECT_EQ(matrix.getRow(), 0);
    EXPECT_EQ(matrix.getCol(), 0);
}

TEST(CMMatrix2D, NewStorageHasTheShapeAndIsZero) {
    CMMatrix2Dzq matrix;
    double** const table = matrix.checkInit(2, 3, false);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table, matrix.getDataPP());
    EXPECT_EQ(matrix.getRow(), 2);
    EXPECT_EQ(matrix.getCol(), 3);
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(table[r][c], 0.0);
    }
}

TEST(CMMatrix2D, ElementsOfARowLieSideBySideAndRowsDoNotOverlap) {
    CMMatrix2Dzq matrix;
    double** const table = matrix.checkInit(2, 3, false);
    ASSERT_NE(table, nullptr);
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 3; ++c)
            *(table[r] + c) = 10 * r + c;
    }
    EXPECT_EQ(table[0][2], 2.0);
    EXPECT_EQ(table[1][0], 10.0);
    EXPECT_EQ(table[1][2], 12.0);
}

TEST(CMMatrix2D, StorageOfTheSameShapeIsKeptWithItsValues) {
    CMMatrix2Dzq matrix;
    double** const table = matrix.checkInit(2, 3, false);
    table[1][2] = 7.0;
    EXPECT_EQ(matrix.checkInit(2, 3, false), table);
    EXPECT_EQ(table[1][2], 7.0);
}

TEST(CMMatrix2D, TheFlagClearsKeptValues) {
    CMMatrix2Dzq matrix;
    matrix.checkInit(2, 3, false)[1][2] = 7.0;
    EXPECT_EQ(matrix.checkInit(2, 3, true)[1][2], 0.0);
}

TEST(CMMatrix2D, AnotherShapeReplacesTheStorage) {
    CMMatrix2Dzq matrix;
    matrix.checkInit(2, 3, false)[1][2] = 7.0;
    double** const table = matrix.checkInit(3, 2, false);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(matrix.getRow(), 3);
    EXPECT_EQ(matrix.getCol(), 2);
    EXPECT_EQ(table[2][1], 0.0);
}

TEST(CMMatrix2D, CountsBelowOneLeaveItWithoutStorage) {
    for (const __int64 bad : {0LL, -1LL, std::numeric_limits<long long>::min()}) {
        CMMatrix2Dzq matrix;
        matrix.checkInit(2, 3, false);
        EXPECT_EQ(matrix.checkInit(bad, 3, false), nullptr);
        EXPECT_EQ(matrix.getDataPP(), nullptr);
        EXPECT_EQ(matrix.getRow(), 0);
        EXPECT_EQ(matrix.checkInit(2, bad, false), nullptr);
        EXPECT_EQ(matrix.getCol(), 0);
    }
}

TEST(CMMatrix2D, AByteCountBeyondTheAddressRangeIsRefused) {
    constexpr __int64 most = std::numeric_limits<long long>::max();
    CMMatrix2Dzq matrix;
    EXPECT_EQ(matrix.checkInit(most, most, false), nullptr);
    EXPECT_EQ(matrix.checkInit(1LL << 61, 8, false), nullptr);
    EXPECT_EQ(matrix.checkInit(1, most / 8 + 1, false), nullptr);
    EXPECT_NE(matrix.checkInit(1, 1, false), nullptr);
}

TEST(CMMatrix2D, ArraysOfTheFinalTypeAreMadeAndReleased) {
    std::unique_ptr<CMMatrix2Dzq[]> matrices(new CMMatrix2Dzq[3]);
    for (int i = 0; i < 3; ++i)
        ASSERT_NE(matrices[i].checkInit(i + 1, i + 2, false), nullptr);
    EXPECT_EQ(matrices[2].getCol(), 4);
}
