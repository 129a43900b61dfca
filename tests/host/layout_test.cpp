#ifdef _WIN32

#include "host/layout.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(MatrixLayout, CellsOfSquareMatricesAreSquareAndInTheMiddle) {
    const CRect area(100, 50, 900, 450);
    const MatrixLayout layout = matrixLayout(area, 8, 8);
    EXPECT_EQ(layout.cells.Width(), layout.cells.Height());
    EXPECT_EQ(layout.cells.Height(), 400 - 2 * 36);
    EXPECT_GT(layout.cells.left, area.left + 200);
    EXPECT_EQ(layout.bar.top, layout.cells.top);
    EXPECT_EQ(layout.bar.bottom, layout.cells.bottom);
}

TEST(MatrixLayout, StaysInsideForEveryShape) {
    for (const int rows : {1, 2, 7, 306}) {
        for (const int cols : {1, 2, 33, 306}) {
            for (const CSize size : {CSize(600, 500), CSize(300, 900), CSize(900, 200)}) {
                const MatrixLayout layout = matrixLayout(CRect(CPoint(0, 0), size), rows, cols);
                EXPECT_GE(layout.cells.left, 36);
                EXPECT_GE(layout.cells.top, 36);
                EXPECT_GT(layout.bar.left, layout.cells.right);
                EXPECT_LE(layout.bar.right + 50, size.cx);
                EXPECT_LE(layout.cells.bottom, size.cy - 36);
            }
        }
    }
}

TEST(MatrixLayout, UnequalSidesBecomeASquareWhereThereIsRoom) {
    const MatrixLayout layout = matrixLayout(CRect(0, 0, 600, 600), 5, 40);
    EXPECT_EQ(layout.cells.Width(), layout.cells.Height());
}

TEST(MatrixLayout, IsEmptyWithoutRoom) {
    EXPECT_TRUE(matrixLayout(CRect(0, 0, 60, 500), 4, 4).cells.IsRectEmpty());
    EXPECT_TRUE(matrixLayout(CRect(0, 0, 500, 60), 4, 4).cells.IsRectEmpty());
    EXPECT_TRUE(matrixLayout(CRect(0, 0, 500, 500), 0, 4).cells.IsRectEmpty());
}

TEST(PaneLayout, PanesCoverTheWindowWithoutOverlap) {
    const PaneLayout wide = paneLayout(1000, 500);
    EXPECT_EQ(wide.matrix, CRect(0, 0, 550, 500));
    EXPECT_EQ(wide.pairs, CRect(550, 0, 1000, 500));
    const PaneLayout high = paneLayout(500, 1000);
    EXPECT_EQ(high.matrix, CRect(0, 0, 500, 550));
    EXPECT_EQ(high.pairs, CRect(0, 550, 500, 1000));
}

TEST(OnCircle, BeginsAtTheTopAndGoesClockwise) {
    const CPoint middle(100, 200);
    EXPECT_EQ(onCircle(middle, 50, 0, 4), CPoint(100, 150));
    EXPECT_EQ(onCircle(middle, 50, 1, 4), CPoint(150, 200));
    EXPECT_EQ(onCircle(middle, 50, 2, 4), CPoint(100, 250));
    EXPECT_EQ(onCircle(middle, 50, 3, 4), CPoint(50, 200));
}

TEST(BendOf, OppositeSensorsAreJoinedStraightAndNeighboursNearTheCircle) {
    EXPECT_EQ(bendOf(0, 8, 16), 0.0);
    EXPECT_EQ(bendOf(1, 5, 16), bendOf(5, 1, 16));
    EXPECT_EQ(bendOf(0, 1, 16), bendOf(0, 15, 16));  // neighbours over the top
    EXPECT_GT(bendOf(0, 1, 306), 0.9);
    EXPECT_EQ(bendOf(0, 1, 2), 0.0);
}

TEST(Stepped, StaysInsideTheSlices) {
    EXPECT_EQ(stepped(3, 1, 10), 4);
    EXPECT_EQ(stepped(3, -10, 10), 0);
    EXPECT_EQ(stepped(3, 10, 10), 9);
    EXPECT_EQ(stepped(30, 1, 10), 9);
    EXPECT_EQ(stepped(-5, 1, 10), 1);
    EXPECT_EQ(stepped(0, 1, 0), 0);
    constexpr __int64 most = std::numeric_limits<__int64>::max();
    EXPECT_EQ(stepped(5, most, most), most - 1);
    EXPECT_EQ(stepped(5, -most, most), 0);
}

}  // namespace

#endif
