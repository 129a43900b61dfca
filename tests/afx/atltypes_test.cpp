#ifdef _WIN32

#include "framework.h"

#include <gtest/gtest.h>

namespace {

TEST(AtlTypes, RectanglesExcludeRightAndBottom) {
    const CRect rect(1, 2, 11, 22);
    EXPECT_EQ(rect.Width(), 10);
    EXPECT_EQ(rect.Height(), 20);
    EXPECT_TRUE(rect.PtInRect(CPoint(1, 2)));
    EXPECT_FALSE(rect.PtInRect(CPoint(11, 2)));
    EXPECT_FALSE(rect.PtInRect(CPoint(1, 22)));
    EXPECT_EQ(rect.CenterPoint(), CPoint(6, 12));
    CRect smaller = rect;
    smaller.DeflateRect(2, 3);
    EXPECT_EQ(smaller, CRect(3, 5, 9, 19));
    smaller.OffsetRect(-3, -5);
    EXPECT_EQ(smaller.TopLeft(), CPoint(0, 0));
    EXPECT_TRUE(CRect().IsRectEmpty());
    EXPECT_FALSE(rect.IsRectEmpty());
    EXPECT_EQ(CRect(CPoint(1, 2), CSize(10, 20)), rect);
    CPoint point(3, 4);
    point.Offset(-3, 1);
    EXPECT_EQ(point, CPoint(0, 5));
}

}  // namespace

#endif
