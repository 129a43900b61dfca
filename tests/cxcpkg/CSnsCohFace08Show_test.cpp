#include "cxcpkg/CSnsCohFace08Show.h"

#include "siblings/matrix/CMMatrix2Dzq.h"
#include "tests/cxcpkg/package_fixture.h"
#include "tests/cxcpkg/viewer_rules.h"

#include <memory>

namespace {

using test::actCtl;
using test::active;
using test::cellValue;
using test::control;
using test::FullPackage;
using test::newFilled;
using test::Texts;

class CSnsCohFace08ShowTest : public ::testing::Test {
protected:
    test::TestApp app;
};

TEST_F(CSnsCohFace08ShowTest, DataToShowAreThoseOfTheCurrentClass) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.hasCohData4show(), 0);
    EXPECT_TRUE(app.messages().empty());  // nothing is said of an empty package
    package.setCohData(newFilled(2, 2, 1), control);
    EXPECT_EQ(package.hasCohData4show(), 0);
    EXPECT_EQ(app.messages(), Texts{"This is no data!"});
    EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
    app.clearMessages();
    package.m_curntCohDataSetID = control;
    EXPECT_EQ(package.hasCohData4show(), 1);
    package.m_curntCohDataSetID = actCtl;
    EXPECT_EQ(package.hasCohData4show(), 0);
    package.m_curntCohDataSetID = 5;
    EXPECT_EQ(package.hasCohData4show(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace08ShowTest, MatricesAreOneForEachSlice) {
    FullPackage package;
    const std::unique_ptr<CMMatrix2Dzq[]> matrices(package.getSnsCohMtx4class(actCtl));
    ASSERT_NE(matrices, nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, actCtl);
    for (int t = 0; t < 7; ++t) {
        EXPECT_EQ(matrices[t].getRow(), 3);
        EXPECT_EQ(matrices[t].getCol(), 3);
        EXPECT_EQ(matrices[t].getDataPP()[1][2], cellValue(t, 1, 2));
    }
    package.m_curntCohDataSetID = control;
    const std::unique_ptr<CMMatrix2Dzq[]> current(package.getSnsCohMtx4class(-1));
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(current[1].getDataPP()[2][0], cellValue(1, 2, 0));
}

TEST_F(CSnsCohFace08ShowTest, MissingDatasetHasNoMatricesButBecomesCurrent) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.getSnsCohMtx4class(1), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    EXPECT_EQ(package.getSnsCohMtx4class(7), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    package.setCohData(new CSnsCohDatazq, 0);
    EXPECT_EQ(package.getSnsCohMtx4class(0), nullptr);  // no grid
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace08ShowTest, NoMatricesAreLeftWhenMemoryLacks) {
    FullPackage package;
    int total = 0;
    {
        const test::FailingMemory memory(0);
        delete[] package.getSnsCohMtx4class(active);
        total = memory.count();
    }
    ASSERT_GE(total, 1);
    for (int n = 1; n <= total; ++n) {
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(package.getSnsCohMtx4class(active), nullptr) << n;
    }
    package.m_cohActive->m_cohTimTotal = 1000000000000;
    EXPECT_EQ(package.getSnsCohMtx4class(active), nullptr);
}

TEST_F(CSnsCohFace08ShowTest, MatricesThatCannotBePreparedAreNotGivenOut) {
    FullPackage package;
    // The array of matrices is had, but none of them without rows; a leak check sees it go.
    for (const int rows : {0, -1}) {
        package.m_cohActive->m_snsRowTotal = rows;
        EXPECT_EQ(package.getSnsCohMtx4class(active), nullptr) << rows;
    }
}

TEST_F(CSnsCohFace08ShowTest, MatricesOfHostileDatasetsAreNullOrComplete) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohFacezq package;
        package.setCohData(new CSnsCohDatazq, active);
        hostile.make(*package.m_cohActive);
        const std::unique_ptr<CMMatrix2Dzq[]> matrices(package.getSnsCohMtx4class(active));
        for (__int64 t = 0; matrices != nullptr && t < package.m_cohActive->m_cohTimTotal; ++t)
            EXPECT_NE(matrices[static_cast<std::size_t>(t)].getDataPP(), nullptr);
    }
}

TEST_F(CSnsCohFace08ShowTest, NamedClassBecomesCurrent) {
    CSnsCohFacezq package;
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(-1)), "Unknown");
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(0)), "Active");
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(1)), "Control");
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(2)), "Mix Act-Ctl");
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(-1)), "Mix Act-Ctl");
    EXPECT_EQ(test::ascii(package.getCxcDataName4Class(7)), "Unknown");
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

INSTANTIATE_TYPED_TEST_SUITE_P(Package, ViewerRules, CSnsCohFacezq);

}  // namespace
