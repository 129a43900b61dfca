#include "cxcpkg/CSnsCohFace.h"

#include "tests/cxcpkg/package_fixture.h"

#include <type_traits>

namespace {

using test::actCtl;
using test::active;
using test::control;
using test::FullPackage;
using test::newFilled;
using test::Texts;

class CSnsCohFaceTest : public ::testing::Test {
protected:
    test::TestApp app;
};

using CSnsCohFaceSlots = CSnsCohFaceTest;
using CSnsCohFaceSizes = CSnsCohFaceTest;

std::string nameOf(CSnsCohDatazq* data) {
    return data == nullptr ? "none" : test::ascii(data->m_cxcName);
}

TEST_F(CSnsCohFaceSlots, NewPackageIsEmpty) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.m_pkgID, 0);
    EXPECT_EQ(test::ascii(package.m_pkgName), "SnsCohFace");
    EXPECT_EQ(test::ascii(package.getCohDataPkgName()), "SnsCohFace");
    EXPECT_EQ(test::ascii(package.m_pkgInfo), "Unknown");
    EXPECT_FALSE(package.getCohDataPkgShow());
    EXPECT_EQ(package.m_actCtlOperation, 0);
    EXPECT_EQ(package.getCurntCohDataSetID(), -1);
    EXPECT_EQ(package.m_cohActive, nullptr);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
    EXPECT_EQ(package.m_viewers.GetSize(), 0);
    EXPECT_EQ(package.m_dlgSnsCohManager, nullptr);

    EXPECT_EQ(package.getTotalCohDataset(), 0);
    EXPECT_EQ(package.hasCohTimeData4Show(), 0);
    EXPECT_EQ(package.getCohDatasetListID(5), -1);
    EXPECT_EQ(package.setCurntCohDataSetID(2), -1);
    EXPECT_EQ(package.getTrlCohDataAny(), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
    EXPECT_TRUE(app.messages().empty());
    EXPECT_EQ(package.getCoherenceData(-1), nullptr);
    EXPECT_EQ(app.messages(), Texts{"This is no data!"});
    EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
}

TEST_F(CSnsCohFaceSlots, FieldsStandInTheGivenOrder) {
    const CSnsCohFacezq p;
    test::expectAscending({&p.m_pkgID, &p.m_pkgName, &p.m_pkgInfo, &p.m_pkgShow,
                           &p.m_actCtlOperation, &p.m_curntCohDataSetID, &p.m_cohActive,
                           &p.m_cohControl, &p.m_cohActCtl, &p.m_viewers, &p.m_dlgSnsCohManager});
    EXPECT_FALSE(std::is_copy_constructible_v<CSnsCohFacezq>);
    EXPECT_FALSE(std::is_copy_assignable_v<CSnsCohFacezq>);
}

TEST_F(CSnsCohFaceSlots, NameAndShowFlagAreThoseOfTheFields) {
    CSnsCohFacezq package;
    package.m_pkgName = _T("Subject 7");
    package.m_pkgShow = true;
    EXPECT_EQ(test::ascii(package.getCohDataPkgName()), "Subject 7");
    EXPECT_TRUE(package.getCohDataPkgShow());
}

TEST_F(CSnsCohFaceSlots, IndicesAreClampedAgainstTheNumberOfDatasets) {
    CSnsCohFacezq package;
    package.setCohData(newFilled(2, 2, 1), active);
    package.setCohData(newFilled(2, 2, 1), actCtl);
    EXPECT_EQ(package.getCohDatasetListID(2), 1);
    EXPECT_EQ(package.getCohDatasetListID(-9), 0);
    EXPECT_EQ(package.getCohDatasetListID(1), 1);
    EXPECT_EQ(package.setCurntCohDataSetID(2), 1);
    EXPECT_EQ(package.setCurntCohDataSetID(-1), 0);
    EXPECT_EQ(package.setCurrentCohDataset(-5), 1);
    EXPECT_EQ(package.m_curntCohDataSetID, 0);
    EXPECT_EQ(package.setCurrentCohDataset(2), 1);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    // Class 1 is Control, which is not there.
    EXPECT_EQ(package.getCoherenceData(-1), nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSlots, CurrentClassOfAnEmptyPackageDependsOnTheSetter) {
    CSnsCohFacezq package;
    package.m_curntCohDataSetID = 2;
    EXPECT_EQ(package.setCurrentCohDataset(2), 0);
    EXPECT_EQ(package.m_curntCohDataSetID, 0);
    EXPECT_EQ(package.setCurntCohDataSetID(2), -1);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
}

TEST_F(CSnsCohFaceSlots, DatasetIsPutIntoItsClass) {
    CSnsCohFacezq package;
    CSnsCohDatazq* const data = newFilled(2, 2, 1);
    EXPECT_EQ(package.setCohData(data, control), 1);
    EXPECT_EQ(package.m_cohControl, data);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
    package.m_curntCohDataSetID = actCtl;
    CSnsCohDatazq* const other = newFilled(2, 2, 1);
    EXPECT_EQ(package.setCohData(other, -1), 1);
    EXPECT_EQ(package.m_cohActCtl, other);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
    EXPECT_EQ(package.hasCohTimeData4Show(), 1);
}

TEST_F(CSnsCohFaceSlots, ReplacedDatasetIsReleasedAndNullEmptiesTheSlot) {
    FullPackage package;
    CSnsCohDatazq* const data = newFilled(2, 2, 1);
    EXPECT_EQ(package.setCohData(data, active), 1);
    EXPECT_EQ(package.m_cohActive, data);
    EXPECT_EQ(package.setCohData(nullptr, active), 1);
    EXPECT_EQ(package.m_cohActive, nullptr);
    EXPECT_EQ(package.setCohData(nullptr, active), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
}

TEST_F(CSnsCohFaceSlots, DatasetOfNoClassStaysTheCallers) {
    CSnsCohFacezq package;
    CSnsCohDatazq data;
    for (const int cls : {3, 7, -2, -1})  // -1: no class is current
        EXPECT_EQ(package.setCohData(&data, cls), 0) << cls;
    EXPECT_EQ(package.getTotalCohDataset(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSlots, OwnDatasetOfTheSlotIsDestroyedAndTheSlotIsEmpty) {
    FullPackage package;
    EXPECT_EQ(package.setCohData(package.m_cohControl, control), 1);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
}

TEST_F(CSnsCohFaceSlots, DatasetInTwoSlotsIsReleasedOnce) {
    CSnsCohFacezq package;
    CSnsCohDatazq* const data = newFilled(2, 2, 1);
    package.setCohData(data, active);
    package.setCohData(data, actCtl);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
    EXPECT_EQ(package.deleteCohDataset(actCtl), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 0);
    CSnsCohDatazq* const second = newFilled(2, 2, 1);
    package.setCohData(second, active);
    package.setCohData(second, control);
    EXPECT_EQ(package.setCohData(newFilled(2, 2, 1), active), 1);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.getTotalCohDataset(), 1);
}

TEST_F(CSnsCohFaceSlots, AskedForClassBecomesCurrent) {
    FullPackage package;
    EXPECT_EQ(package.getCoherenceData(2), package.m_cohActCtl);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(package.getCoherenceData(0), package.m_cohActive);
    EXPECT_EQ(package.m_curntCohDataSetID, 0);
    EXPECT_EQ(package.getCoherenceData(-1), package.m_cohActive);
    package.deleteCohDataset(control);
    EXPECT_EQ(package.getCoherenceData(1), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSlots, NoSuchClassIsNullAndKeepsTheCurrentOne) {
    FullPackage package;
    package.m_curntCohDataSetID = 1;
    for (const int cls : {7, 3, -2})
        EXPECT_EQ(package.getCoherenceData(cls), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSlots, CurrentClassFromAFileMayBeAnything) {
    for (const int stale : {7, -2, 3, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        FullPackage package;
        package.m_curntCohDataSetID = stale;
        CSnsCohDatazq data;
        EXPECT_EQ(package.getCoherenceData(-1), nullptr);
        EXPECT_EQ(package.setCohData(&data, -1), 0);
        EXPECT_EQ(package.deleteCohDataset(-1), 0);
        EXPECT_EQ(package.sumPkg(data, -1), 0);
        EXPECT_EQ(package.getSnsCohMtx4class(-1), nullptr);
        EXPECT_EQ(test::ascii(package.getCxcDataName4Class(-1)), "Unknown");
        EXPECT_EQ(package.hasCohData4show(), 0);
        EXPECT_TRUE(app.messages().empty());
        EXPECT_EQ(package.checkInitSnsCoh4Class(2, 1, -1, true), nullptr);
        EXPECT_EQ(app.messages(), Texts{"Wrong wave selection class!"});
        EXPECT_EQ(package.m_curntCohDataSetID, stale);
        EXPECT_EQ(package.getTotalCohDataset(), 3);
        app.clearMessages();
    }
}

TEST_F(CSnsCohFaceSlots, AnyDatasetIsTheFirstInClassOrder) {
    FullPackage package;
    EXPECT_EQ(package.getTrlCohDataAny(), package.m_cohActive);
    EXPECT_EQ(package.m_curntCohDataSetID, 0);
    package.deleteCohDataset(active);
    EXPECT_EQ(package.getTrlCohDataAny(), package.m_cohControl);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    package.deleteCohDataset(control);
    EXPECT_EQ(package.getTrlCohDataAny(), package.m_cohActCtl);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    package.deleteCohDataset(actCtl);
    EXPECT_EQ(package.getTrlCohDataAny(), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

TEST_F(CSnsCohFaceSlots, ListItemLeadsToTheFirstDatasetWithIt) {
    FullPackage package;
    package.m_cohActive->m_headerInt9 = 4;
    package.m_cohControl->m_headerInt9 = 6;
    package.m_cohActCtl->m_headerInt9 = 6;
    EXPECT_EQ(package.actCohDataset2ListID(6), package.m_cohControl);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    package.deleteCohDataset(control);
    EXPECT_EQ(package.actCohDataset2ListID(6), package.m_cohActCtl);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(package.actCohDataset2ListID(5), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

TEST_F(CSnsCohFaceSlots, DeletingKeepsTheCurrentClass) {
    FullPackage package;
    package.m_curntCohDataSetID = 1;
    EXPECT_EQ(package.deleteCohDataset(-1), 1);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    EXPECT_EQ(package.deleteCohDataset(-1), 1);
    EXPECT_EQ(package.deleteCohDataset(3), 0);
    EXPECT_EQ(package.deleteCohDataset(-2), 0);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
}

TEST_F(CSnsCohFaceSlots, CleaningKeepsCurrentClassAndViewers) {
    FullPackage package;
    package.m_curntCohDataSetID = 2;
    package.viewerAdd(nullptr);
    EXPECT_EQ(package.cleanSnsCohPkg(), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 0);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(package.m_viewers.GetSize(), 1);
}

TEST_F(CSnsCohFaceSlots, OnlyAClassWithADatasetIsSet) {
    FullPackage package;
    package.deleteCohDataset(control);
    EXPECT_EQ(package.setTrlCxcClass(2), 1);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(package.setTrlCxcClass(1), 0);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_TRUE(app.messages().empty());
    for (const int cls : {-1, 3}) {  // -1 is not the current class here
        EXPECT_EQ(package.setTrlCxcClass(cls), 0);
        EXPECT_EQ(app.messages(), Texts{"The set class is wrong!?"});
        app.clearMessages();
    }
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

TEST_F(CSnsCohFaceSizes, TooFewSensorsOrSlicesChangeNothing) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.checkInitSnsCohPkg(1, 10, 0, 0, true), 0);
    EXPECT_EQ(package.checkInitSnsCohPkg(2, 0, 3, 3, true), 0);
    EXPECT_EQ(package.checkInitSnsCohPkg(-4, 10, 0, 0, true), 0);
    EXPECT_EQ(package.getTotalCohDataset(), 0);
    EXPECT_EQ(package.checkInitSnsCoh4Class(1, 10, 0, true), nullptr);
    EXPECT_EQ(package.checkInitSnsCoh4Class(2, 0, 7, true), nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSizes, ActiveAloneIsMadeAndNamed) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.checkInitSnsCohPkg(64, 10, 0, 0, true), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 1);
    EXPECT_EQ(nameOf(package.m_cohActive), "Active CxC");
    EXPECT_EQ(package.m_cohActive->m_snsRowTotal, 64);
    EXPECT_EQ(package.m_cohActive->m_snsColTotal, 64);
    EXPECT_EQ(package.m_cohActive->m_cohTimTotal, 10);
    EXPECT_EQ(test::cell(*package.m_cohActive, 9, 63, 63), 0.0);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
}

TEST_F(CSnsCohFaceSizes, ActCtlIsMadeAndNamed) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.checkInitSnsCohPkg(3, 5, 0, 7, true), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
    EXPECT_EQ(nameOf(package.m_cohActCtl), "Act-Ctl CxC");
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 7);
}

TEST_F(CSnsCohFaceSizes, OneSliceOfEachClassIsWanted) {
    FullPackage package;
    EXPECT_EQ(package.checkInitSnsCohPkg(2, 1, 1, 1, true), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 3);
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 1);
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 1);
}

TEST_F(CSnsCohFaceSizes, ControlThatCannotBeSizedEndsTheCall) {
    FullPackage package;
    EXPECT_EQ(package.checkInitSnsCohPkg(2, 4, test::mostIndex, 3, true), 0);
    EXPECT_EQ(package.m_cohActive->m_cohTimTotal, 4);
    ASSERT_NE(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohControl->m_mCC, nullptr);
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 7);  // not reached
}

TEST_F(CSnsCohFaceSizes, MissingControlReplacesActiveByAFreshDataset) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.checkInitSnsCohPkg(64, 10, 5, 3, true), 0);
    ASSERT_NE(package.m_cohActive, nullptr);
    EXPECT_EQ(nameOf(package.m_cohActive), "CxcTrial");
    EXPECT_EQ(package.m_cohActive->m_mCC, nullptr);
    EXPECT_EQ(package.m_cohActive->m_snsRowTotal, 0);
    EXPECT_EQ(package.m_cohActive->m_selectEnd, 1);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSizes, FormerActiveOfAMissingControlIsNotReleased) {
    CSnsCohFacezq package;
    package.setCohData(newFilled(3, 3, 5), active);
    package.setCohData(newFilled(3, 3, 7), actCtl);
    CSnsCohDatazq* const former = package.m_cohActive;
    EXPECT_EQ(package.checkInitSnsCohPkg(3, 5, 2, 0, false), 0);
    EXPECT_NE(package.m_cohActive, former);
    EXPECT_EQ(test::cell(*former, 4, 2, 2), test::cellValue(4, 2, 2));
    EXPECT_NE(package.m_cohActCtl, nullptr);  // the steps behind the failure are not reached
    delete former;
}

TEST_F(CSnsCohFaceSizes, MissingControlWithoutMemoryKeepsActive) {
    CSnsCohFacezq package;
    ASSERT_EQ(package.checkInitSnsCohPkg(2, 3, 0, 0, true), 1);
    CSnsCohDatazq* const former = package.m_cohActive;
    const test::FailingMemory memory(1);
    EXPECT_EQ(package.checkInitSnsCohPkg(2, 3, 4, 0, true), 0);
    EXPECT_EQ(package.m_cohActive, former);
}

TEST_F(CSnsCohFaceSizes, PresentControlIsSized) {
    FullPackage package;
    EXPECT_EQ(package.checkInitSnsCohPkg(2, 3, 5, 7, true), 1);
    EXPECT_EQ(package.m_cohActive->m_cohTimTotal, 3);
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 5);
    EXPECT_EQ(package.m_cohControl->m_snsColTotal, 2);
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 7);
    EXPECT_EQ(nameOf(package.m_cohControl), "CxcTrial");  // only new datasets are named
}

TEST_F(CSnsCohFaceSizes, CountsBelowOneReleaseControlAndActCtl) {
    FullPackage package;
    EXPECT_EQ(package.checkInitSnsCohPkg(64, 10, 0, 0, true), 1);
    EXPECT_NE(package.m_cohActive, nullptr);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
    package.setCohData(newFilled(2, 2, 1), control);
    EXPECT_EQ(package.checkInitSnsCohPkg(64, 10, -3, -1, true), 1);
    EXPECT_EQ(package.getTotalCohDataset(), 1);
}

TEST_F(CSnsCohFaceSizes, FlagDecidesWhetherKeptValuesAreCleared) {
    FullPackage package;
    EXPECT_EQ(package.checkInitSnsCohPkg(3, 5, 2, 7, false), 1);
    EXPECT_EQ(test::cell(*package.m_cohActive, 4, 2, 1), test::cellValue(4, 2, 1));
    EXPECT_EQ(test::cell(*package.m_cohControl, 1, 2, 1), test::cellValue(1, 2, 1));
    EXPECT_EQ(package.checkInitSnsCohPkg(3, 5, 2, 7, true), 1);
    EXPECT_EQ(test::cell(*package.m_cohActive, 4, 2, 1), 0.0);
    EXPECT_EQ(test::cell(*package.m_cohActCtl, 6, 2, 1), 0.0);
    EXPECT_EQ(package.checkInitSnsCoh4Class(3, 5, 0, false), package.m_cohActive);
}

TEST_F(CSnsCohFaceSizes, OneClassIsMadeNamedSizedAndCurrent) {
    const char* const names[] = {"Active CxC", "Control CxC", "Act-Ctl CxC"};
    CSnsCohFacezq package;
    for (const int cls : {1, 2, 0}) {
        CSnsCohDatazq* const data = package.checkInitSnsCoh4Class(3, cls + 5, cls, true);
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(package.m_curntCohDataSetID, cls);
        EXPECT_EQ(package.getCoherenceData(cls), data);
        EXPECT_EQ(nameOf(data), names[cls]);
        EXPECT_EQ(data->m_snsColTotal, 3);
        EXPECT_EQ(data->m_cohTimTotal, cls + 5);
    }
    CSnsCohDatazq* const before = package.m_cohActive;
    before->m_cxcName = _T("Kept");
    EXPECT_EQ(package.checkInitSnsCoh4Class(4, 2, -1, true), before);
    EXPECT_EQ(nameOf(before), "Kept");
    EXPECT_EQ(before->m_snsRowTotal, 4);
}

TEST_F(CSnsCohFaceSizes, NoSuchClassToSizeIsSaid) {
    CSnsCohFacezq package;
    for (const int cls : {-1, 3, -2}) {
        EXPECT_EQ(package.checkInitSnsCoh4Class(2, 1, cls, true), nullptr);
        EXPECT_EQ(app.messages(), Texts{"Wrong wave selection class!"});
        EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
        app.clearMessages();
    }
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
}

TEST_F(CSnsCohFaceSizes, GridBeyondTheMachineLeavesTheDatasetInItsSlot) {
    CSnsCohFacezq package;
    const test::FailingMemory memory(0);
    EXPECT_EQ(package.checkInitSnsCoh4Class(0x7FFFFFFF, 1, control, true), nullptr);
    EXPECT_EQ(memory.count(), 1);  // the dataset, and nothing for its grid
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    ASSERT_NE(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohControl->m_mCC, nullptr);
    EXPECT_EQ(package.checkInitSnsCohPkg(0x7FFFFFFF, 1, 0, 0, true), 0);
    EXPECT_EQ(memory.count(), 2);
    ASSERT_NE(package.m_cohActive, nullptr);
    EXPECT_EQ(package.m_cohActive->m_mCC, nullptr);
    EXPECT_EQ(package.checkInitSnsCohPkg(2, test::mostIndex, 0, 0, true), 0);
    EXPECT_NE(package.m_cohControl, nullptr);  // not reached
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFaceSizes, EveryFailingAllocationIsAStatus) {
    int total = 0;
    {
        CSnsCohFacezq package;
        const test::FailingMemory memory(0);
        ASSERT_EQ(package.checkInitSnsCohPkg(2, 3, 0, 4, true), 1);
        total = memory.count();
    }
    ASSERT_GT(total, 10);
    for (int n = 1; n <= total; ++n) {
        FullPackage full;
        CSnsCohFacezq package;
        CSnsCohDatazq* const kept = newFilled(2, 2, 1);
        package.setCohData(kept, control);
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(package.checkInitSnsCohPkg(2, 3, 1, 4, true), 0) << n;
        EXPECT_EQ(package.m_cohControl, kept);
        EXPECT_TRUE(n > 1 || package.m_cohActive == nullptr);
        EXPECT_TRUE(package.m_cohActCtl == nullptr || package.m_cohActCtl->m_mCC == nullptr);
    }
    CSnsCohFacezq package;
    const test::FailingMemory memory(1);
    EXPECT_EQ(package.checkInitSnsCoh4Class(2, 3, 1, true), nullptr);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    EXPECT_TRUE(app.messages().empty());
}

}  // namespace
