#include "cxcpkg/CSnsCohFace02Prcs.h"

#include "tests/cxcpkg/package_fixture.h"

#include <cmath>
#include <limits>

namespace {

using test::actCtl;
using test::active;
using test::cell;
using test::cellValue;
using test::control;
using test::FullPackage;
using test::newFilled;
using test::Texts;
using test::valuesOf;

class CSnsCohFace02PrcsTest : public ::testing::Test {
protected:
    test::TestApp app;
};

using CSnsCohFace02Prcs_Queries = CSnsCohFace02PrcsTest;
using CSnsCohFace02Prcs_Match = CSnsCohFace02PrcsTest;
using CSnsCohFace02Prcs_ActCtl = CSnsCohFace02PrcsTest;

TEST_F(CSnsCohFace02Prcs_Queries, SliceMaximumIsThatOfActive) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.getCohTimSlcMax(), 1);
    package.setCohData(newFilled(2, 2, 3), control);
    package.m_cohControl->m_headerLong2 = 7;
    EXPECT_EQ(package.getCohTimSlcMax(), 1);
    package.setCohData(newFilled(2, 2, 3), active);
    EXPECT_EQ(package.getCohTimSlcMax(), 0);
    package.m_cohActive->m_headerLong2 = 9000000000;
    EXPECT_EQ(package.getCohTimSlcMax(), 9000000000);
}

TEST_F(CSnsCohFace02Prcs_Queries, RangeIsThatOfTheClass) {
    FullPackage package;
    double lo = 5.0;
    double hi = 5.0;
    EXPECT_EQ(package.getSnsCohRange(control, lo, hi, false, 0), 1);
    EXPECT_EQ(lo, cellValue(0, 0, 0));
    EXPECT_EQ(hi, cellValue(1, 2, 2));
    EXPECT_EQ(package.getSnsCohRange(active, lo, hi, false, 1), 1);
    EXPECT_EQ(lo, cellValue(0, 0, 1));
    EXPECT_EQ(hi, cellValue(4, 2, 1));
    package.m_cohActive->setSelect(2, 3);
    EXPECT_EQ(package.getSnsCohRange(active, lo, hi, true, 0), 1);
    EXPECT_EQ(lo, cellValue(2, 0, 0));
    EXPECT_EQ(hi, cellValue(3, 2, 2));
}

TEST_F(CSnsCohFace02Prcs_Queries, RangeWithoutADatasetIsZero) {
    FullPackage package;
    package.m_curntCohDataSetID = 0;
    package.deleteCohDataset(control);
    for (const int cls : {control, -1, 3}) {  // -1 is not the current class here
        double lo = 5.0;
        double hi = 5.0;
        EXPECT_EQ(package.getSnsCohRange(cls, lo, hi, false, 0), 0);
        EXPECT_EQ(lo, 0.0);
        EXPECT_EQ(hi, 0.0);
    }
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_Queries, SelectionIsCheckedInEitherOrder) {
    CSnsCohFacezq package;
    package.setCohData(newFilled(2, 2, 10), active);
    EXPECT_EQ(package.checkSelect4Class(5, 3, 0), 1);
    EXPECT_EQ(package.checkSelect4Class(0, 9, 0), 1);
    EXPECT_EQ(package.checkSelect4Class(0, 10, 0), 0);
    EXPECT_EQ(package.checkSelect4Class(10, 0, 0), 0);
    EXPECT_EQ(package.checkSelect4Class(-1, 3, 0), 0);
    EXPECT_EQ(package.checkSelect4Class(3, -1, 0), 0);
    EXPECT_EQ(package.checkSelect4Class(0, 0, control), 0);
    package.setCohData(new CSnsCohDatazq, control);
    package.m_cohControl->m_cohTimTotal = 5;
    EXPECT_EQ(package.checkSelect4Class(0, 0, control), 0);  // no grid
    package.m_cohActive->m_cohTimTotal = 0;
    EXPECT_EQ(package.checkSelect4Class(0, 0, 0), 0);
    EXPECT_TRUE(app.messages().empty());
    package.m_curntCohDataSetID = 0;
    for (const int cls : {-1, 3}) {  // -1 is not the current class here
        EXPECT_EQ(package.checkSelect4Class(0, 0, cls), 0);
        EXPECT_EQ(app.messages(), Texts{"Wrong wave selection class!"});
        app.clearMessages();
    }
}

TEST_F(CSnsCohFace02Prcs_Queries, OnlySeveralSlicesAreAccumulated) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.accumulateTrlCoh(nullptr), 0);
    CSnsCohDatazq data;
    EXPECT_EQ(package.accumulateTrlCoh(&data), 0);
    test::fill(data, 2, 3, 1);
    EXPECT_EQ(package.accumulateTrlCoh(&data), 0);
    EXPECT_EQ(test::pairOf(data, 0, 0).m_bkData, nullptr);
    test::fill(data, 2, 3, 3);
    EXPECT_EQ(package.accumulateTrlCoh(&data), 1);
    EXPECT_EQ(valuesOf(data, 1, 2), std::vector<double>{232.0});
    EXPECT_EQ(package.getLatency4PtSecond(1000), 0.0);
}

struct Match {
    __int64 activeFirst, activeLast, controlFirst, controlLast;
};

int match(CSnsCohFace02Prcs& package, Match& m) {
    return package.matchAtiveControl(m.activeFirst, m.activeLast, m.controlFirst, m.controlLast);
}

void expectMatch(const Match& m, __int64 activeFirst, __int64 activeLast, __int64 controlFirst,
                 __int64 controlLast) {
    EXPECT_EQ(m.activeFirst, activeFirst);
    EXPECT_EQ(m.activeLast, activeLast);
    EXPECT_EQ(m.controlFirst, controlFirst);
    EXPECT_EQ(m.controlLast, controlLast);
}

struct MatchPackage : CSnsCohFacezq {
    MatchPackage(__int64 actTotal, __int64 ctlTotal) {
        setCohData(new CSnsCohDatazq, active);
        setCohData(new CSnsCohDatazq, control);
        m_cohActive->m_cohTimTotal = actTotal;
        m_cohControl->m_cohTimTotal = ctlTotal;
    }
};

TEST_F(CSnsCohFace02Prcs_Match, NarrowControlGrowsDownwardsFirst) {
    MatchPackage package(100, 100);
    Match m = {10, 20, 5, 8};
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 10, 20, 1, 11);
    m = {10, 14, 5, 8};  // one slice is missing: the lower end takes it
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 10, 14, 4, 8);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_Match, NarrowActiveGrowsInItsOwnSlices) {
    MatchPackage package(12, 100);
    Match m = {9, 10, 40, 47};
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 4, 11, 40, 47);
    m = {0, 1, 40, 45};
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 0, 5, 40, 45);
}

TEST_F(CSnsCohFace02Prcs_Match, BothEndsAtTheirBoundsEndTheSearch) {
    MatchPackage package(100, 5);
    Match m = {0, 10, 0, 2};
    EXPECT_EQ(match(package, m), 0);
    expectMatch(m, 0, 10, 0, 4);
    EXPECT_EQ(app.messages(), Texts{"Can't match the active and control selections!"});
    EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
    app.clearMessages();
    MatchPackage other(6, 100);
    m = {2, 3, 40, 50};
    EXPECT_EQ(match(other, m), 0);
    expectMatch(m, 0, 5, 40, 50);
    EXPECT_EQ(app.messages(), Texts{"Can't match the active and control selections!"});
}

TEST_F(CSnsCohFace02Prcs_Match, EqualWidthsStayAsTheyAre) {
    MatchPackage package(5, 5);
    Match m = {3, 3, 90, 90};
    EXPECT_EQ(match(package, m), 1);
    m = {5, 1, 9, 5};  // both reversed
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 5, 1, 9, 5);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_Match, UnequalWidthsWithoutExtentAreWrong) {
    MatchPackage package(50, 50);
    for (Match m : {Match{3, 3, 9, 5}, Match{5, 3, 9, 9}, Match{5, 3, 9, 5}}) {
        const Match before = m;
        EXPECT_EQ(match(package, m), 0);
        expectMatch(m, before.activeFirst, before.activeLast, before.controlFirst,
                    before.controlLast);
        EXPECT_EQ(app.messages(), Texts{"The selected data range is wrong!"});
        app.clearMessages();
    }
    Match m = {9, 5, 10, 12};  // a reversed one beside one with extent is widened
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 6, 8, 10, 12);
}

TEST_F(CSnsCohFace02Prcs_Match, BothClassesAreNeeded) {
    CSnsCohFacezq package;
    Match m = {1, 2, 3, 9};
    EXPECT_EQ(match(package, m), 0);
    package.setCohData(new CSnsCohDatazq, active);
    EXPECT_EQ(match(package, m), 0);
    package.setCohData(nullptr, active);
    package.setCohData(new CSnsCohDatazq, control);
    EXPECT_EQ(match(package, m), 0);
    expectMatch(m, 1, 2, 3, 9);
    EXPECT_EQ(app.messages(), Texts(3, "There is no Active or Control data!?"));
}

TEST_F(CSnsCohFace02Prcs_Match, WildIndicesAndCountsEnd) {
    const __int64 wild[] = {test::leastIndex,    -1000000000000000000, -1, 0, 1,
                            1000000000000000000, test::mostIndex};
    for (const __int64 total : wild) {
        MatchPackage package(total, 1000000000000000000);
        for (const __int64 a : wild) {
            for (const __int64 b : wild) {
                Match m = {a, b, 3, 9};
                match(package, m);
                m = {3, 9, a, b};
                match(package, m);
                m = {a, b, b, a};
                match(package, m);
            }
        }
    }
    MatchPackage package(1000000000000000000, 1000000000000000000);
    Match m = {0, 999999999999999999, 7, 7};
    EXPECT_EQ(match(package, m), 1);
    expectMatch(m, 0, 999999999999999999, 0, 999999999999999999);
}

// Active 2 x 3 x 5 with its cell values, Control of one slice with 1, 2, 3 / 4, 5, 6.
struct ActCtlPackage : CSnsCohFacezq {
    ActCtlPackage() {
        setCohData(newFilled(2, 3, 5), active);
        setCohData(new CSnsCohDatazq, control);
        test::fillSlice(*m_cohControl, 2, 3, {1, 2, 3, 4, 5, 6});
    }
    static double baseline(__int64 r, __int64 c) { return static_cast<double>(3 * r + c + 1); }
};

void expectEveryCell(ActCtlPackage& package, double (*expected)(double value, double baseline)) {
    ASSERT_NE(package.m_cohActCtl, nullptr);
    ASSERT_EQ(package.m_cohActCtl->m_cohTimTotal, 5);
    for (__int64 r = 0; r < 2; ++r) {
        for (__int64 c = 0; c < 3; ++c) {
            for (__int64 t = 0; t < 5; ++t)
                EXPECT_EQ(cell(*package.m_cohActCtl, t, r, c),
                          expected(cellValue(t, r, c), ActCtlPackage::baseline(r, c)));
        }
    }
}

TEST_F(CSnsCohFace02Prcs_ActCtl, CodesSelectTheArithmetic) {
    ActCtlPackage package;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double a, double c) { return a - c; });
    package.m_actCtlOperation = 1;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double a, double c) { return a + c; });
    package.m_actCtlOperation = 2;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double a, double c) { return a * c; });
    package.m_actCtlOperation = 3;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double a, double c) { return a / c; });
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_ActCtl, UnknownCodeSizesOnly) {
    ActCtlPackage package;
    for (const int code : {4, -1}) {
        package.m_actCtlOperation = code;
        EXPECT_EQ(package.doAct_Ctl_operation(), 1);
        expectEveryCell(package, [](double, double) { return 0.0; });
        package.m_actCtlOperation = 1;
        EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    }
}

TEST_F(CSnsCohFace02Prcs_ActCtl, DivisionByZeroOfEitherSignIsZero) {
    ActCtlPackage package;
    package.m_actCtlOperation = 3;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    test::fillSlice(*package.m_cohControl, 2, 3, {0.0, -0.0, nan, 4, 5e-324, 6});
    cell(*package.m_cohActive, 2, 0, 0) = std::numeric_limits<double>::infinity();
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(valuesOf(*package.m_cohActCtl, 0, 0), std::vector<double>(5, 0.0));
    EXPECT_EQ(valuesOf(*package.m_cohActCtl, 0, 1), std::vector<double>(5, 0.0));
    for (const double value : valuesOf(*package.m_cohActCtl, 0, 2))
        EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(cell(*package.m_cohActCtl, 1, 1, 0), cellValue(1, 1, 0) / 4);
    EXPECT_TRUE(std::isinf(cell(*package.m_cohActCtl, 1, 1, 1)));
}

TEST_F(CSnsCohFace02Prcs_ActCtl, NewDatasetKeepsTheDefaultName) {
    ActCtlPackage package;
    ASSERT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(test::ascii(package.m_cohActCtl->m_cxcName), "CxcTrial");
}

TEST_F(CSnsCohFace02Prcs_ActCtl, PresentDatasetIsResizedAndOverwritten) {
    ActCtlPackage package;
    CSnsCohDatazq* const present = newFilled(7, 7, 2);
    present->m_cxcName = _T("Mine");
    package.setCohData(present, actCtl);
    ASSERT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(package.m_cohActCtl, present);
    EXPECT_EQ(test::ascii(present->m_cxcName), "Mine");
    EXPECT_EQ(present->m_snsRowTotal, 2);
    EXPECT_EQ(present->m_snsColTotal, 3);
    expectEveryCell(package, [](double a, double c) { return a - c; });
}

TEST_F(CSnsCohFace02Prcs_ActCtl, BothClassesAreNeeded) {
    CSnsCohFacezq package;
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    package.setCohData(newFilled(2, 2, 1), active);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    package.setCohData(nullptr, active);
    package.setCohData(newFilled(2, 2, 1), control);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    // Two blanks between "requires" and "both".
    EXPECT_EQ(app.messages(),
              Texts(3, "This operation requires  both Active and Control datasets!"));
    EXPECT_EQ(package.m_cohActCtl, nullptr);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, SizesMustBeTheSame) {
    const std::string text =
        "This operation requires Active and Control datasets have the same size";
    CSnsCohFacezq package;
    package.setCohData(newFilled(4, 4, 3), active);
    package.setCohData(newFilled(4, 2, 1), control);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    package.setCohData(newFilled(2, 4, 7), control);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);  // said before the question
    EXPECT_EQ(app.messages(), Texts(2, text));
    EXPECT_EQ(package.m_cohActCtl, nullptr);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, RefusedQuestionChangesNothing) {
    FullPackage package;
    package.setCohData(nullptr, actCtl);
    app.answer(IDNO);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    EXPECT_EQ(app.messages(), Texts{"This operation requires Control dataset has 1 slice"});
    EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_YESNO});
    app.answer(IDCANCEL);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 2);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, AcceptedQuestionReducesControl) {
    FullPackage package;
    app.answer(IDYES);
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 1);
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 5);
    const double baseline = (cellValue(0, 1, 2) + cellValue(1, 1, 2)) / 2;
    EXPECT_EQ(cell(*package.m_cohActCtl, 4, 1, 2), cellValue(4, 1, 2) - baseline);
    EXPECT_EQ(app.messages().size(), 1u);
    app.clearMessages();
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);  // one slice: nothing is asked
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_ActCtl, ReductionThatFailsIsSaid) {
    FullPackage package;
    package.m_cohControl->cleanSnsCohData();
    package.m_cohControl->setChnlRowCol(3, 3);
    package.m_cohControl->m_cohTimTotal = 2;
    app.answer(IDYES);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    EXPECT_EQ(app.messages(), (Texts{"This operation requires Control dataset has 1 slice",
                                     "Control dataset accumulating failed!"}));
    EXPECT_EQ(app.messageTypes(), (std::vector<UINT>{MB_YESNO, MB_OK}));
}

TEST_F(CSnsCohFace02Prcs_ActCtl, ControlStaysReducedWhenTheResultFails) {
    FullPackage package;
    package.m_cohActive->m_cohTimTotal = 1000000000000;
    app.answer(IDYES);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    EXPECT_EQ(app.messages().size(), 1u);  // the question only
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 1);
    ASSERT_NE(package.m_cohActCtl, nullptr);
    EXPECT_EQ(package.m_cohActCtl->m_mCC, nullptr);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, OnlyTheFirstControlSliceIsUsed) {
    ActCtlPackage package;
    test::setPair(*package.m_cohControl, 1, 1, {50, 60, 70});  // longer than announced
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(cell(*package.m_cohActCtl, 3, 1, 1), cellValue(3, 1, 1) - 50);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, AbsentValuesLeaveZero) {
    ActCtlPackage package;
    test::pairOf(*package.m_cohActive, 0, 0).resize(2);
    test::claimValues(*package.m_cohActive, 0, 1, 5);
    test::claimValues(*package.m_cohControl, 0, 2, 1);
    test::pairOf(*package.m_cohControl, 1, 0).cleanData();
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(valuesOf(*package.m_cohActCtl, 0, 0), (std::vector<double>{110, 111, 0, 0, 0}));
    for (const __int64 r : {0, 1}) {
        for (const __int64 c : {1, 2}) {
            if (r == 0) {
                EXPECT_EQ(valuesOf(*package.m_cohActCtl, r, c), std::vector<double>(5, 0.0));
            }
        }
    }
    EXPECT_EQ(valuesOf(*package.m_cohActCtl, 1, 0), std::vector<double>(5, 0.0));
    EXPECT_EQ(cell(*package.m_cohActCtl, 4, 1, 2), cellValue(4, 1, 2) - 6);
}

// Some lengths of a cache line and every rest.
TEST_F(CSnsCohFace02Prcs_ActCtl, EverySliceOfManyIsCombined) {
    for (const __int64 nTim : {1, 2, 7, 8, 9, 15, 16, 17, 35}) {
        ActCtlPackage package;
        test::fill(*package.m_cohActive, 2, 3, nTim);
        for (const int code : {0, 1, 2, 3}) {
            package.m_actCtlOperation = code;
            ASSERT_EQ(package.doAct_Ctl_operation(), 1);
            for (__int64 t = 0; t < nTim; ++t) {
                const double a = cellValue(t, 1, 2);
                const double expected[] = {a - 6, a + 6, a * 6, a / 6};
                EXPECT_EQ(cell(*package.m_cohActCtl, t, 1, 2), expected[code]) << nTim;
            }
        }
    }
}

TEST_F(CSnsCohFace02Prcs_ActCtl, PairsThatOneGridLacksAreZero) {
    struct {
        __int64 rows, cols;  // of the grid, while 2 x 3 are counted
    } const smaller[] = {{2, 2}, {1, 3}, {1, 1}};
    for (const int lacking : {active, control}) {
        for (const auto& size : smaller) {
            ActCtlPackage package;
            CSnsCohDatazq& dataset =
                lacking == active ? *package.m_cohActive : *package.m_cohControl;
            test::fill(dataset, size.rows, size.cols, lacking == active ? 5 : 1);
            dataset.setChnlRowCol(2, 3);
            ASSERT_EQ(package.doAct_Ctl_operation(), 1);
            for (__int64 r = 0; r < 2; ++r) {
                for (__int64 c = 0; c < 3; ++c) {
                    const double baseline =
                        lacking == active ? ActCtlPackage::baseline(r, c) : cellValue(0, r, c);
                    const bool there = r < size.rows && c < size.cols;
                    EXPECT_EQ(cell(*package.m_cohActCtl, 4, r, c),
                              there ? cellValue(4, r, c) - baseline : 0.0);
                }
            }
        }
    }
}

TEST_F(CSnsCohFace02Prcs_ActCtl, ClassesWithoutGridsGiveZeros) {
    ActCtlPackage package;
    package.m_cohControl->cleanSnsCohData();
    package.m_cohControl->setChnlRowCol(2, 3);
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double, double) { return 0.0; });
    package.m_cohActive->cleanSnsCohData();
    package.m_cohActive->setChnlRowCol(2, 3);
    package.m_cohActive->m_cohTimTotal = 5;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    expectEveryCell(package, [](double, double) { return 0.0; });
    package.m_cohActive->m_cohTimTotal = 0;
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, OneDatasetInTwoSlotsIsBearable) {
    ActCtlPackage package;
    package.m_cohActCtl = package.m_cohActive;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(cell(*package.m_cohActive, 3, 1, 2), -6.0);  // cleared before it was combined
    package.m_cohActCtl = package.m_cohControl;
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(package.m_cohControl->m_cohTimTotal, 5);
    test::fill(*package.m_cohActive, 2, 3, 1);
    test::fill(*package.m_cohControl, 2, 3, 1);
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(cell(*package.m_cohControl, 0, 1, 2), cellValue(0, 1, 2));  // cleared before
    package.m_cohActCtl = nullptr;
}

TEST(CSnsCohFace02Prcs_Meddling, DatasetsMayGoWhileTheQuestionStands) {
    for (const int gone : {active, control}) {
        FullPackage package;
        test::MeddlingApp app;
        app.meddle = [&] { package.deleteCohDataset(gone); };
        app.answer(IDYES);
        EXPECT_EQ(package.doAct_Ctl_operation(), 0);
        EXPECT_EQ(app.messages().size(), 1u);
    }
    FullPackage package;
    test::MeddlingApp app;
    app.meddle = [&] {
        package.setCohData(newFilled(3, 3, 4), control);
        package.setCohData(nullptr, actCtl);
        package.setCohData(newFilled(3, 3, 6), active);
    };
    app.answer(IDYES);
    EXPECT_EQ(package.doAct_Ctl_operation(), 1);
    EXPECT_EQ(package.m_cohActCtl->m_cohTimTotal, 6);
    EXPECT_EQ(cell(*package.m_cohActCtl, 5, 0, 0), cellValue(5, 0, 0) - 112.5);
}

TEST_F(CSnsCohFace02Prcs_ActCtl, EveryFailingAllocationIsAStatus) {
    int total = 0;
    {
        ActCtlPackage package;
        const test::FailingMemory memory(0);
        ASSERT_EQ(package.doAct_Ctl_operation(), 1);
        total = memory.count();
    }
    ASSERT_EQ(total, 1 + 1 + 2 + 6);  // dataset, table, rows, vectors
    for (int n = 1; n <= total; ++n) {
        ActCtlPackage package;
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(package.doAct_Ctl_operation(), 0) << n;
        EXPECT_EQ(app.messages(), n == 1 ? Texts{"This operation requires more memory"} : Texts{});
        EXPECT_EQ(package.m_cohActCtl == nullptr, n == 1);
        app.clearMessages();
    }
}

TEST_F(CSnsCohFace02Prcs_ActCtl, ResultBeyondTheMachineIsRefusedBeforeAnythingIsTaken) {
    CSnsCohFacezq package;
    package.setCohData(test::newFilled(2, 2, 1), active);
    package.setCohData(test::newFilled(2, 2, 1), control);
    package.m_cohActive->m_cohTimTotal = 1LL << 45;
    const test::FailingMemory memory(0);
    EXPECT_EQ(package.doAct_Ctl_operation(), 0);
    EXPECT_EQ(memory.count(), 1);  // the dataset, and nothing for its grid
    ASSERT_NE(package.m_cohActCtl, nullptr);
    EXPECT_EQ(package.m_cohActCtl->m_mCC, nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace02Prcs_ActCtl, NoHostileDatasetLeavesItsGrid) {
    for (const test::HostileDataset& first : test::hostileDatasets()) {
        for (const test::HostileDataset& second : test::hostileDatasets()) {
            SCOPED_TRACE(first.name + " against " + second.name);
            CSnsCohFacezq package;
            package.setCohData(new CSnsCohDatazq, active);
            package.setCohData(new CSnsCohDatazq, control);
            first.make(*package.m_cohActive);
            second.make(*package.m_cohControl);
            package.m_cohControl->m_snsRowTotal = package.m_cohActive->m_snsRowTotal;
            package.m_cohControl->m_snsColTotal = package.m_cohActive->m_snsColTotal;
            package.m_cohControl->m_cohTimTotal = 1;
            for (const int code : {0, 3}) {
                package.m_actCtlOperation = code;
                const int result = package.doAct_Ctl_operation();
                EXPECT_TRUE(result == 0 || package.m_cohActCtl->m_mCC != nullptr);
            }
            double lo = 0.0;
            double hi = 0.0;
            package.getSnsCohRange(active, lo, hi, true, 0);
            package.checkSelect4Class(0, 1, active);
        }
    }
}

}  // namespace
