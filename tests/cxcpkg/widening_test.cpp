// Not exported by the library, so the test compiles it.
#include "cxcpkg/widening.cpp"  // NOLINT(bugprone-suspicious-include)

#include <gtest/gtest.h>

namespace {

using cxc::Selection;
using cxc::widen;
using cxc::Width;

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr __int64 most = std::numeric_limits<__int64>::max();

// One slice at a time, as the rule is worded.
bool widenStepByStep(Selection& s, __int64 wanted, __int64 total) {
    for (;;) {
        bool atBound = false;
        if (--s.first < 0) {
            s.first = 0;
            atBound = true;
        }
        if (s.last - s.first >= wanted) return true;
        if (++s.last >= total) {
            s.last = total - 1;
            if (atBound) return false;
        }
        if (s.last - s.first >= wanted) return true;
    }
}

Width widthOf(__int64 width) {
    return Width({0, width});
}

TEST(Widening, EqualsTheStepsOneByOne) {
    int compared = 0;
    for (__int64 total = -2; total <= 9; ++total) {
        for (__int64 first = -4; first <= 11; ++first) {
            for (__int64 last = -4; last <= 11; ++last) {
                for (__int64 wanted = 1; wanted <= 12; ++wanted) {
                    if (last - first >= wanted) continue;
                    Selection closed = {first, last};
                    Selection stepped = {first, last};
                    const bool reached = widen(closed, widthOf(wanted), total);
                    ASSERT_EQ(reached, widenStepByStep(stepped, wanted, total));
                    ASSERT_EQ(closed.first, stepped.first) << first << ' ' << last << ' ' << total;
                    ASSERT_EQ(closed.last, stepped.last) << first << ' ' << last << ' ' << total;
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 20000);
}

TEST(Widening, LongWaysTakeNoLonger) {
    Selection s = {most / 2, most / 2};
    EXPECT_TRUE(widen(s, widthOf(most - 2), most));
    EXPECT_EQ(s.last - s.first, most - 2);
    s = {5, 8};
    EXPECT_FALSE(widen(s, widthOf(most), 1000000000000000000));
    EXPECT_EQ(s.first, 0);
    EXPECT_EQ(s.last, 999999999999999999);
    s = {1000000000000, 1000000000000};
    EXPECT_TRUE(widen(s, widthOf(1999999999999), 3000000000000));
    EXPECT_EQ(s.first, 0);
    EXPECT_EQ(s.last, 1999999999999);
}

TEST(Widening, WildIndicesAreBroughtInside) {
    Selection s = {least, least};
    EXPECT_FALSE(widen(s, widthOf(10), 5));
    EXPECT_EQ(s.first, 0);
    EXPECT_EQ(s.last, 4);
    s = {most, least};
    EXPECT_TRUE(widen(s, widthOf(10), most));
    EXPECT_EQ(s.last - s.first, 10);
    s = {most, most};
    EXPECT_FALSE(widen(s, widthOf(most), least));
    EXPECT_EQ(s.first, 0);
}

TEST(Widening, WidthsAreExactWhereTheirDifferenceOverflows) {
    EXPECT_TRUE(Width({least, most}) == Width({least, most}));
    EXPECT_TRUE(Width({least + 1, most}) < Width({least, most}));
    EXPECT_TRUE(Width({most, least}) < Width({most, least + 1}));
    EXPECT_TRUE(Width({most, least}) < Width({0, 0}));
    EXPECT_FALSE(Width({0, 0}) < Width({3, 3}));
    EXPECT_FALSE(Width({1, 0}) == Width({0, 1}));
}

}  // namespace
