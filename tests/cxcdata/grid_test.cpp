// Not exported by the library, so the test compiles it.
#include "cxcdata/grid.cpp"  // NOLINT(bugprone-suspicious-include)

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using cxc::grid::Owner;

TEST(Grid, NewTableHasItsShapeAndNoRows) {
    const Owner grid(cxc::grid::newTable(3, 5));
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(cxc::grid::rows(grid.get()), 3);
    EXPECT_EQ(cxc::grid::cols(grid.get()), 5);
    for (__int64 r = 0; r < 3; ++r)
        EXPECT_EQ(cxc::grid::row(grid.get(), r), nullptr);
    EXPECT_FALSE(cxc::grid::hasShape(grid.get(), 3, 5));
}

TEST(Grid, RowsAreMadeOneByOne) {
    const Owner grid(cxc::grid::newTable(2, 3));
    EXPECT_TRUE(cxc::grid::newRow(grid.get(), 1));
    EXPECT_EQ(cxc::grid::row(grid.get(), 0), nullptr);
    ASSERT_NE(cxc::grid::row(grid.get(), 1), nullptr);
    EXPECT_EQ(cxc::grid::row(grid.get(), 1)[2].m_size, 0);
    EXPECT_TRUE(cxc::grid::newRow(grid.get(), 0));
    EXPECT_TRUE(cxc::grid::hasShape(grid.get(), 2, 3));
    EXPECT_FALSE(cxc::grid::hasShape(grid.get(), 3, 2));
}

TEST(Grid, RowThatIsThereStays) {
    const Owner grid(cxc::grid::newTable(1, 1));
    ASSERT_TRUE(cxc::grid::newRow(grid.get(), 0));
    CWavChnlChnlDatazq* const row = cxc::grid::row(grid.get(), 0);
    EXPECT_TRUE(cxc::grid::newRow(grid.get(), 0));
    EXPECT_EQ(cxc::grid::row(grid.get(), 0), row);
}

TEST(Grid, CellsOutsideTheGridAreNull) {
    const Owner grid(cxc::grid::newTable(2, 3));
    ASSERT_TRUE(cxc::grid::newRow(grid.get(), 0));
    EXPECT_EQ(cxc::grid::cell(grid.get(), 0, 2), cxc::grid::row(grid.get(), 0) + 2);
    EXPECT_EQ(cxc::grid::cell(grid.get(), 0, 3), nullptr);
    EXPECT_EQ(cxc::grid::cell(grid.get(), 0, -1), nullptr);
    EXPECT_EQ(cxc::grid::cell(grid.get(), 2, 0), nullptr);
    EXPECT_EQ(cxc::grid::cell(grid.get(), -1, 0), nullptr);
    EXPECT_EQ(cxc::grid::cell(grid.get(), 1, 0), nullptr);  // never made
    EXPECT_FALSE(cxc::grid::newRow(grid.get(), 2));
    EXPECT_FALSE(cxc::grid::newRow(grid.get(), -1));
}

TEST(Grid, NullTableHasNothing) {
    EXPECT_EQ(cxc::grid::rows(nullptr), 0);
    EXPECT_EQ(cxc::grid::cols(nullptr), 0);
    EXPECT_EQ(cxc::grid::cell(nullptr, 0, 0), nullptr);
    EXPECT_EQ(cxc::grid::values(nullptr, 0, 0).size, 0);
    EXPECT_FALSE(cxc::grid::newRow(nullptr, 0));
    cxc::grid::release(nullptr);
}

TEST(Grid, AbsurdCountsGiveNoTable) {
    constexpr __int64 most = std::numeric_limits<__int64>::max();
    EXPECT_EQ(cxc::grid::newTable(-1, 3), nullptr);
    EXPECT_EQ(cxc::grid::newTable(3, -1), nullptr);
    EXPECT_EQ(cxc::grid::newTable(most, 1), nullptr);
    EXPECT_EQ(cxc::grid::newTable(most / 8, 1), nullptr);
    EXPECT_EQ(cxc::grid::newTable(std::numeric_limits<__int64>::min(), 1), nullptr);
}

TEST(Grid, AbsurdColumnsGiveNoRow) {
    const Owner grid(cxc::grid::newTable(1, std::numeric_limits<__int64>::max()));
    ASSERT_NE(grid, nullptr);
    EXPECT_FALSE(cxc::grid::newRow(grid.get(), 0));
    EXPECT_EQ(cxc::grid::row(grid.get(), 0), nullptr);
}

TEST(Grid, FailedAllocationsGiveNull) {
    {
        const test::FailingMemory memory(1);
        EXPECT_EQ(cxc::grid::newTable(2, 2), nullptr);
    }
    const Owner grid(cxc::grid::newTable(2, 2));
    const test::FailingMemory memory(1);
    EXPECT_FALSE(cxc::grid::newRow(grid.get(), 0));
}

TEST(Grid, ValuesAreWhatAVectorReallyHolds) {
    const Owner grid(cxc::grid::newTable(1, 3));
    ASSERT_TRUE(cxc::grid::newRow(grid.get(), 0));
    CWavChnlChnlDatazq* const row = cxc::grid::row(grid.get(), 0);
    ASSERT_NE(row[0].checkInitData(4, true), nullptr);
    row[1].m_size = 5;  // without values
    ASSERT_NE(row[2].checkInitData(4, true), nullptr);
    row[2].m_size = -4;
    EXPECT_EQ(cxc::grid::values(grid.get(), 0, 0).data, row[0].m_data);
    EXPECT_EQ(cxc::grid::values(grid.get(), 0, 0).size, 4);
    EXPECT_EQ(cxc::grid::values(grid.get(), 0, 1).size, 0);
    EXPECT_EQ(cxc::grid::values(grid.get(), 0, 2).size, 0);
    EXPECT_EQ(cxc::grid::values(grid.get(), 0, 3).size, 0);
}

}  // namespace
