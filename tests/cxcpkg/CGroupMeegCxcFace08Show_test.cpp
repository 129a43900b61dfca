#include "cxcpkg/CGroupMeegCxcFace08Show.h"

#include "tests/cxcpkg/package_fixture.h"
#include "tests/cxcpkg/viewer_rules.h"

namespace {

using test::CleanGroup;
using test::newSingle;

TEST(CGroupMeegCxcFace08Show, DataToShowAreAtTheCurrentIndexWithoutAMessage) {
    test::TestApp app;
    CleanGroup group;
    EXPECT_EQ(group.hasCohData4show(), 0);
    group.append(newSingle(1));
    group.append(nullptr);
    EXPECT_EQ(group.hasCohData4show(), 0);  // current index -1
    group.m_curntCohDataSetID = 0;
    EXPECT_EQ(group.hasCohData4show(), 1);
    group.m_curntCohDataSetID = 1;
    EXPECT_EQ(group.hasCohData4show(), 0);
    group.m_curntCohDataSetID = 2;
    EXPECT_EQ(group.hasCohData4show(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CGroupMeegCxcFace08Show, MatricesAreNeverGivenOut) {
    CleanGroup group;
    EXPECT_EQ(group.getSnsCohMtx4class(0), nullptr);
    group.append(newSingle(1));
    group.m_curntCohDataSetID = 0;
    EXPECT_EQ(group.getSnsCohMtx4class(0), nullptr);
    EXPECT_EQ(group.getSnsCohMtx4class(-1), nullptr);
}

TEST(CGroupMeegCxcFace08Show, NameOfAPresentDatasetIsNone) {
    CleanGroup group;
    EXPECT_TRUE(group.getCxcDataName4Id(0).IsEmpty());
    group.append(newSingle(1));
    group.append(nullptr);
    EXPECT_TRUE(group.getCxcDataName4Id(0).IsEmpty());  // the argument is not looked at
    group.m_curntCohDataSetID = 0;
    EXPECT_EQ(test::ascii(group.getCxcDataName4Id(0)), "None");
    EXPECT_EQ(test::ascii(group.getCxcDataName4Id(77)), "None");
    for (const int stale : {1, 2, -2}) {
        group.m_curntCohDataSetID = stale;
        EXPECT_TRUE(group.getCxcDataName4Id(0).IsEmpty());
        EXPECT_EQ(group.getSnsCohMtx4class(0), nullptr);
    }
}

TEST(CGroupMeegCxcFace08Show, ShowFlagIsSetInEveryDataset) {
    CleanGroup group;
    EXPECT_EQ(group.setShowAllCxc(1), 0);
    group.append(newSingle(1));
    group.append(nullptr);
    group.append(newSingle(2));
    EXPECT_EQ(group.setShowAllCxc(-5), 3);
    EXPECT_TRUE(group.at(0).m_tscsInfo);
    EXPECT_TRUE(group.at(2).m_tscsInfo);
    EXPECT_EQ(group.setShowAllCxc(0), 3);
    EXPECT_FALSE(group.at(0).m_tscsInfo);
    EXPECT_FALSE(group.at(2).m_tscsInfo);
}

INSTANTIATE_TYPED_TEST_SUITE_P(Group, ViewerRules, CGroupMeegCxcFacezq);

}  // namespace
