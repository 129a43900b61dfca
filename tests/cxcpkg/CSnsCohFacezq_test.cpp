#include "cxcpkg/CSnsCohFacezq.h"

#include "tests/cxcpkg/package_fixture.h"
#include "tests/support/Viewer.h"

namespace {

using test::actCtl;
using test::active;
using test::cell;
using test::cellValue;
using test::control;
using test::FullPackage;
using test::newFilled;

TEST(CSnsCohFacezq, SumGoesIntoTheDatasetOfTheClass) {
    FullPackage package;
    CSnsCohDatazq data;
    test::fill(data, 3, 3, 2);
    EXPECT_EQ(package.sumPkg(data, control), 1);
    EXPECT_EQ(cell(*package.m_cohControl, 1, 2, 0), 2 * cellValue(1, 2, 0));
    EXPECT_EQ(cell(*package.m_cohActive, 1, 2, 0), cellValue(1, 2, 0));
    package.m_curntCohDataSetID = control;
    EXPECT_EQ(package.sumPkg(data, -1), 1);
    EXPECT_EQ(cell(*package.m_cohControl, 1, 2, 0), 3 * cellValue(1, 2, 0));
    EXPECT_EQ(package.sumPkg(data, active), 0);  // five slices
    package.deleteCohDataset(active);
    EXPECT_EQ(package.sumPkg(data, active), 0);
    EXPECT_EQ(package.sumPkg(data, 3), 0);
    EXPECT_EQ(package.m_curntCohDataSetID, control);
}

TEST(CSnsCohFacezq, SumOfPackagesIsThatOfTheFirstCommonClass) {
    FullPackage a;
    FullPackage b;
    EXPECT_EQ(a.sumFace(b), 1);
    EXPECT_EQ(cell(*a.m_cohActive, 4, 1, 1), 2 * cellValue(4, 1, 1));
    EXPECT_EQ(cell(*a.m_cohControl, 1, 1, 1), cellValue(1, 1, 1));
    EXPECT_EQ(cell(*a.m_cohActCtl, 1, 1, 1), cellValue(1, 1, 1));
    EXPECT_EQ(cell(*b.m_cohActive, 4, 1, 1), cellValue(4, 1, 1));
    b.deleteCohDataset(active);
    EXPECT_EQ(a.sumFace(b), 1);
    EXPECT_EQ(cell(*a.m_cohControl, 1, 1, 1), 2 * cellValue(1, 1, 1));
    a.deleteCohDataset(control);
    EXPECT_EQ(a.sumFace(b), 1);
    EXPECT_EQ(cell(*a.m_cohActCtl, 6, 1, 1), 2 * cellValue(6, 1, 1));
    b.deleteCohDataset(actCtl);
    EXPECT_EQ(a.sumFace(b), 0);
}

TEST(CSnsCohFacezq, FirstCommonClassDecidesAlsoWhenItFails) {
    FullPackage a;
    FullPackage b;
    b.setCohData(newFilled(3, 3, 4), active);  // other slices: cannot be added
    EXPECT_EQ(a.sumFace(b), 0);
    EXPECT_EQ(cell(*a.m_cohControl, 1, 1, 1), cellValue(1, 1, 1));
}

TEST(CSnsCohFacezq, PackageAddedToItselfDoubles) {
    FullPackage package;
    EXPECT_EQ(package.sumFace(package), 1);
    EXPECT_EQ(cell(*package.m_cohActive, 4, 1, 1), 2 * cellValue(4, 1, 1));
    EXPECT_EQ(package.sumPkg(*package.m_cohActive, active), 1);
    EXPECT_EQ(cell(*package.m_cohActive, 4, 1, 1), 4 * cellValue(4, 1, 1));
}

TEST(CSnsCohFacezq, DestructionReleasesTheDatasetsAndLeavesTheViewers) {
    test::Viewer viewer;
    {
        FullPackage package;
        package.viewerAdd(&viewer);
    }
    EXPECT_FALSE(viewer.takeRepaint().requested);
    EXPECT_TRUE(::IsWindow(viewer.m_hWnd));
}

}  // namespace
