#include "cxcpkg/CGroupMeegCxcFace.h"

#include "tests/cxcpkg/package_fixture.h"

#include <algorithm>
#include <type_traits>
#include <vector>

namespace {

using test::CleanGroup;
using test::newFilled;
using test::newSingle;

// Three datasets whose only values are 1, 2 and 3.
struct ThreeDatasets : CleanGroup {
    ThreeDatasets() {
        for (const double value : {1.0, 2.0, 3.0})
            append(newSingle(value));
    }
    std::vector<double> values() {
        std::vector<double> all;
        for (int i = 0; i < size(); ++i) {
            CSnsCohDatazq* const data = getCoherenceData(i);
            all.push_back(data == nullptr ? 0.0 : data->getValue(0, 0, 0));
        }
        return all;
    }
};

using Values = std::vector<double>;

TEST(CGroupMeegCxcFace, NewGroupIsEmpty) {
    CGroupMeegCxcFacezq group;
    EXPECT_EQ(group.m_pkgID, 0);
    EXPECT_EQ(test::ascii(group.getCohDataPkgName()), "SnsCohFace");
    EXPECT_EQ(test::ascii(group.m_pkgInfo), "Unknown");
    EXPECT_FALSE(group.getCohDataPkgShow());
    EXPECT_EQ(group.m_actCtlOperation, 0);
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
    EXPECT_EQ(group.m_viewers.GetSize(), 0);
    EXPECT_EQ(group.m_dlgGroupCxcManager, nullptr);
    EXPECT_EQ(group.getTotalCohDataset(), 0);
    EXPECT_EQ(group.hasCohTimeData4Show(), 0);
    EXPECT_EQ(group.getCohDatasetListID(5), -1);
    EXPECT_EQ(group.getCoherenceData(0), nullptr);
    EXPECT_EQ(group.getCoherenceData(-1), nullptr);
    EXPECT_EQ(group.getTrlCohDataAny(), nullptr);
    EXPECT_EQ(group.deleteCohDataset(0), 0);
    EXPECT_EQ(group.getTimeSliceMax(), 0);
    EXPECT_EQ(group.getTimeSliceMin(), 0);
    __int64 rows = 5;
    __int64 cols = 5;
    EXPECT_EQ(group.getCxcSizeMax(rows, cols), 0);
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(cols, 0);
    group.m_pkgName = _T("Study");
    group.m_pkgShow = true;
    EXPECT_EQ(test::ascii(group.getCohDataPkgName()), "Study");
    EXPECT_TRUE(group.getCohDataPkgShow());
}

TEST(CGroupMeegCxcFace, FieldsStandInTheGivenOrder) {
    const CGroupMeegCxcFacezq g;
    test::expectAscending({&g.m_pkgID, &g.m_pkgName, &g.m_pkgInfo, &g.m_pkgShow,
                           &g.m_actCtlOperation, &g.m_curntCohDataSetID, &g.m_cohDatasets,
                           &g.m_viewers, &g.m_dlgGroupCxcManager});
    EXPECT_FALSE(std::is_copy_constructible_v<CGroupMeegCxcFacezq>);
    EXPECT_FALSE(std::is_copy_assignable_v<CGroupMeegCxcFacezq>);
}

TEST(CGroupMeegCxcFace, DatasetsAreNamedByTheNumberBeforeThem) {
    CleanGroup group;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(group.checkInitSnsCohPkg(32, 50, true), 1);
    EXPECT_EQ(group.name(0), "CxcData0");
    EXPECT_EQ(group.name(1), "CxcData1");
    EXPECT_EQ(group.name(2), "CxcData2");
    EXPECT_EQ(group.at(1).m_snsRowTotal, 32);
    EXPECT_EQ(group.at(1).m_snsColTotal, 32);
    EXPECT_EQ(group.at(1).m_cohTimTotal, 50);
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
    EXPECT_EQ(group.deleteCohDataset(0), 1);
    EXPECT_EQ(group.checkInitSnsCohPkg(32, 50, true), 1);
    EXPECT_EQ(group.name(1), "CxcData2");
    EXPECT_EQ(group.name(2), "CxcData2");
    EXPECT_EQ(group.checkInitSnsCohPkg(1, 50, true), 0);
    EXPECT_EQ(group.checkInitSnsCohPkg(2, 0, true), 0);
    EXPECT_EQ(group.size(), 3);
}

TEST(CGroupMeegCxcFace, GridBeyondTheMachineAddsNothing) {
    CleanGroup group;
    EXPECT_EQ(group.checkInitSnsCohPkg(0x7FFFFFFF, 1, true), 0);
    EXPECT_EQ(group.checkInitSnsCohPkg(2, test::mostIndex, true), 0);
    EXPECT_EQ(group.size(), 0);
}

TEST(CGroupMeegCxcFace, EveryFailingAllocationAddsNothing) {
    int total = 0;
    {
        CleanGroup group;
        const test::FailingMemory memory(0);
        ASSERT_EQ(group.checkInitSnsCohPkg(2, 3, true), 1);
        total = memory.count();
    }
    ASSERT_EQ(total, 2 + 1 + 2 + 4 + 1);  // dataset, name, table, rows, vectors, list
    for (int n = 1; n <= total; ++n) {
        CleanGroup group;
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(group.checkInitSnsCohPkg(2, 3, true), 0) << n;
        EXPECT_EQ(group.size(), 0);
    }
}

TEST(CGroupMeegCxcFace, IndicesAreClampedIntoTheList) {
    ThreeDatasets group;
    EXPECT_EQ(group.getCohDatasetListID(-1), 0);
    EXPECT_EQ(group.getCohDatasetListID(1), 1);
    EXPECT_EQ(group.getCohDatasetListID(3), 2);
    EXPECT_EQ(group.setCurrentCohDataset(99), 1);
    EXPECT_EQ(group.getCurntCohDataSetID(), 2);
    EXPECT_EQ(group.setCurntCohDataSetID(-4), 0);
    EXPECT_EQ(group.setCurntCohDataSetID(1), 1);
    EXPECT_EQ(group.getCurntCohDataSetID(), 1);
}

TEST(CGroupMeegCxcFace, CurrentIndexOfAnEmptyGroupDependsOnTheSetter) {
    CleanGroup group;
    EXPECT_EQ(group.setCurntCohDataSetID(5), 0);
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
    EXPECT_EQ(group.setCurrentCohDataset(5), 0);
    EXPECT_EQ(group.getCurntCohDataSetID(), 0);
}

TEST(CGroupMeegCxcFace, DatasetsAreInsertedAndNothingIsReplaced) {
    CleanGroup group;
    EXPECT_EQ(group.setCohData(newSingle(1), -1), 1);  // current index -1 becomes 0
    EXPECT_EQ(group.setCohData(newSingle(2), -1), 1);
    EXPECT_EQ(group.setCohData(newSingle(3), 99), 1);
    EXPECT_EQ(group.setCohData(newSingle(4), -7), 1);
    group.m_curntCohDataSetID = 2;
    EXPECT_EQ(group.setCohData(newSingle(5), -1), 1);
    EXPECT_EQ(group.setCohData(newSingle(6), 5), 1);
    Values values;
    for (int i = 0; i < group.size(); ++i)
        values.push_back(group.at(i).getValue(0, 0, 0));
    EXPECT_EQ(values, (Values{4, 2, 5, 1, 3, 6}));
    EXPECT_EQ(group.getCurntCohDataSetID(), 2);
}

TEST(CGroupMeegCxcFace, NullIsAnEntryLikeAnyOther) {
    ThreeDatasets group;
    EXPECT_EQ(group.setCohData(nullptr, 1), 1);
    EXPECT_EQ(group.getTotalCohDataset(), 4);
    EXPECT_EQ(group.hasCohTimeData4Show(), 1);
    EXPECT_EQ(group.values(), (Values{1, 0, 2, 3}));
    EXPECT_EQ(group.deleteCohDataset(1), 1);
    EXPECT_EQ(group.values(), (Values{1, 2, 3}));
}

TEST(CGroupMeegCxcFace, DatasetThatFindsNoRoomStaysTheCallers) {
    ThreeDatasets group;
    CSnsCohDatazq data;
    const test::FailingMemory memory(1);
    EXPECT_EQ(group.setCohData(&data, 0), 0);
    EXPECT_EQ(group.values(), (Values{1, 2, 3}));
}

TEST(CGroupMeegCxcFace, EntryIsFoundByItsIndexOnly) {
    ThreeDatasets group;
    EXPECT_EQ(group.getCoherenceData(2)->getValue(0, 0, 0), 3.0);
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
    EXPECT_EQ(group.getCoherenceData(3), nullptr);
    EXPECT_EQ(group.getCoherenceData(-2), nullptr);
    EXPECT_EQ(group.getCoherenceData(-1), nullptr);
    group.m_curntCohDataSetID = 1;
    EXPECT_EQ(group.getCoherenceData(-1)->getValue(0, 0, 0), 2.0);
}

TEST(CGroupMeegCxcFace, AnyDatasetIsTheCurrentOneClamped) {
    ThreeDatasets group;
    EXPECT_EQ(group.getTrlCohDataAny()->getValue(0, 0, 0), 1.0);
    group.m_curntCohDataSetID = 99;
    EXPECT_EQ(group.getTrlCohDataAny()->getValue(0, 0, 0), 3.0);
    EXPECT_EQ(group.getCurntCohDataSetID(), 99);
    group.setCohData(nullptr, 99);
    EXPECT_EQ(group.getTrlCohDataAny(), nullptr);  // a null entry is what is there
}

TEST(CGroupMeegCxcFace, DeletingClampsAndKeepsTheCurrentIndex) {
    ThreeDatasets group;
    group.m_curntCohDataSetID = 1;
    EXPECT_EQ(group.deleteCohDataset(-1), 1);
    EXPECT_EQ(group.values(), (Values{1, 3}));
    EXPECT_EQ(group.getCurntCohDataSetID(), 1);
    EXPECT_EQ(group.deleteCohDataset(99), 1);
    EXPECT_EQ(group.values(), Values{1});
    EXPECT_EQ(group.getCurntCohDataSetID(), 1);  // now beyond the list
    EXPECT_EQ(group.getCoherenceData(-1), nullptr);
    EXPECT_EQ(group.deleteCohDataset(-9), 1);
    EXPECT_EQ(group.deleteCohDataset(0), 0);
}

TEST(CGroupMeegCxcFace, StaleCurrentIndexIsBornByEveryOperation) {
    for (const int stale : {3, 0x7FFFFFFF, -2, -0x7FFFFFFF - 1}) {
        ThreeDatasets group;
        group.m_curntCohDataSetID = stale;
        double lo = 0.0;
        double hi = 0.0;
        CSnsCohDatazq data;
        EXPECT_EQ(group.getCoherenceData(-1), nullptr);
        EXPECT_EQ(group.getSnsCohRange(-1, lo, hi, false, 0), 0);
        EXPECT_EQ(group.checkSelect4Class(0, 0, -1), 0);
        EXPECT_EQ(group.hasCohData4show(), 0);
        EXPECT_EQ(group.sumPkg(data, -1), 0);
        EXPECT_NE(group.getTrlCohDataAny(), nullptr);
        EXPECT_EQ(group.getCohTimSlcMax(), 0);
        EXPECT_EQ(group.averageAll(), 4);
        EXPECT_EQ(group.setCohData(nullptr, -1), 1);
        EXPECT_EQ(group.m_cohDatasets.GetAt(std::clamp(stale, 0, 4)), nullptr);
        EXPECT_EQ(group.deleteCohDataset(-1), 1);
        EXPECT_EQ(group.size(), 4);
    }
}

TEST(CGroupMeegCxcFace, CleaningEmptiesTheListAndTheCurrentIndex) {
    ThreeDatasets group;
    group.setCohData(nullptr, 1);
    group.m_curntCohDataSetID = 1;
    group.viewerAdd(nullptr);
    EXPECT_EQ(group.cleanSnsCohPkg(), 1);
    EXPECT_EQ(group.size(), 0);
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
    EXPECT_EQ(group.m_viewers.GetSize(), 1);
    EXPECT_EQ(group.cleanSnsCohPkg(), 1);
}

TEST(CGroupMeegCxcFace, DatasetInsertedTwiceIsReleasedOnce) {
    ThreeDatasets group;
    CSnsCohDatazq* const twice = newSingle(9);
    group.setCohData(twice, 0);
    group.setCohData(twice, 2);
    group.setCohData(twice, 99);
    EXPECT_EQ(group.values(), (Values{9, 1, 9, 2, 3, 9}));
    EXPECT_EQ(group.deleteCohDataset(2), 1);
    EXPECT_EQ(group.size(), 5);
    EXPECT_EQ(group.getCoherenceData(0), nullptr);
    EXPECT_EQ(group.getCoherenceData(4), nullptr);
    CSnsCohDatazq* const again = newSingle(8);
    group.setCohData(again, 0);
    group.setCohData(again, 3);
    EXPECT_EQ(group.cleanSnsCohPkg(), 1);
}

TEST(CGroupMeegCxcFace, DestructorLeavesTheDatasets) {
    CSnsCohDatazq* const data = newSingle(5);
    {
        CGroupMeegCxcFacezq group;
        group.setCohData(data, 0);
    }
    EXPECT_EQ(data->getValue(0, 0, 0), 5.0);
    delete data;
}

TEST(CGroupMeegCxcFace, SizesAreTakenIndependentlyOverTheDatasets) {
    CleanGroup group;
    group.append(newFilled(64, 32, 2));
    group.append(nullptr);
    group.append(newFilled(48, 40, 3));
    __int64 rows = 0;
    __int64 cols = 0;
    EXPECT_EQ(group.getCxcSizeMin(rows, cols), 2);
    EXPECT_EQ(rows, 48);
    EXPECT_EQ(cols, 32);
    EXPECT_EQ(group.getCxcSizeMax(rows, cols), 2);
    EXPECT_EQ(rows, 64);
    EXPECT_EQ(cols, 40);
    EXPECT_EQ(group.getTimeSliceMax(), 3);
    EXPECT_EQ(group.getTimeSliceMin(), 2);
}

TEST(CGroupMeegCxcFace, ListOfNullsHasNoSizes) {
    CleanGroup group;
    group.append(nullptr);
    group.append(nullptr);
    __int64 rows = 5;
    __int64 cols = 5;
    EXPECT_EQ(group.getTimeSliceMax(), 0);
    EXPECT_EQ(group.getTimeSliceMin(), 0);
    EXPECT_EQ(group.getCxcSizeMin(rows, cols), 0);
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(cols, 0);
    EXPECT_EQ(group.getTotalCohDataset(), 2);
}

}  // namespace
