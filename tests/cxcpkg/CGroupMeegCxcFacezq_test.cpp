#include "cxcpkg/CGroupMeegCxcFacezq.h"

#include "tests/cxcpkg/package_fixture.h"

namespace {

using test::cell;
using test::cellValue;
using test::CleanGroup;
using test::newFilled;

TEST(CGroupMeegCxcFacezq, SumGoesIntoTheEntry) {
    CleanGroup group;
    group.append(newFilled(3, 3, 2));
    group.append(newFilled(3, 3, 5));
    group.append(nullptr);
    CSnsCohDatazq data;
    test::fill(data, 3, 3, 5);
    EXPECT_EQ(group.sumPkg(data, 1), 1);
    EXPECT_EQ(cell(group.at(1), 4, 2, 1), 2 * cellValue(4, 2, 1));
    EXPECT_EQ(group.sumPkg(data, 0), 0);  // two slices
    EXPECT_EQ(group.sumPkg(data, 2), 0);
    EXPECT_EQ(group.sumPkg(data, 3), 0);
    EXPECT_EQ(group.sumPkg(data, -1), 0);
    group.m_curntCohDataSetID = 1;
    EXPECT_EQ(group.sumPkg(data, -1), 1);
    EXPECT_EQ(cell(group.at(1), 4, 2, 1), 3 * cellValue(4, 2, 1));
    EXPECT_EQ(group.sumPkg(group.at(1), 1), 1);
    EXPECT_EQ(cell(group.at(1), 4, 2, 1), 6 * cellValue(4, 2, 1));
    EXPECT_EQ(group.getCurntCohDataSetID(), 1);
}

}  // namespace
