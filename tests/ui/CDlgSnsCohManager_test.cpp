#ifdef _WIN32

#include "cxcui/CDlgSnsCohManager.h"

#include "cxcui/selection_step.h"
#include "res/resource.h"
#include "tests/support/DialogDriver.h"
#include "tests/ui/ui_fixture.h"

#include <algorithm>
#include <iterator>
#include <new>

namespace {

using test::actCtl;
using test::active;
using test::control;
using test::Texts;

constexpr char noData[] = "This is no data!";

class CDlgSnsCohManagerTest : public testing::Test {
protected:
    void give(int cls, CSnsCohDatazq* data, const TCHAR* name) {
        data->m_cxcName = name;
        package->setCohData(data, cls);
    }
    void giveAll() {
        give(active, test::newFilled(3, 3, 5), _T("rest"));
        give(control, test::newFilled(3, 3, 2), _T("base"));
        give(actCtl, test::newFilled(3, 3, 7), _T("mix"));
        package->m_curntCohDataSetID = active;
    }
    // A package with one dataset of 10 slices as Act-Ctl: listed and current are the same.
    CSnsCohDatazq& giveOne() {
        give(actCtl, test::newFilled(3, 3, 10), _T("only"));
        package->m_curntCohDataSetID = actCtl;
        return *package->m_cohActCtl;
    }
    void open() {
        ASSERT_EQ(package->showDlgSnsCohManager(&app.m_main), 1);
        dialog().SetForegroundWindow();
        test::pump();
        test::parkPointer();
    }
    CDlgSnsCohManager& dialog() { return *package->m_dlgSnsCohManager; }
    HWND at(int id) { return ::GetDlgItem(dialog().m_hWnd, id); }
    void press(int id) {
        test::click(at(id));
        test::parkPointer();
    }
    void choose(UINT menuItem) {
        dialog().SendMessage(WM_COMMAND, menuItem, 0);
        test::pump();
    }
    // Replaces the text of the edit of the first slice by keys.
    void type(const wchar_t* text) {
        ::SetFocus(at(IDC_WAVEFORM_SLICE_FIRST));
        ::SendMessage(at(IDC_WAVEFORM_SLICE_FIRST), EM_SETSEL, 0, -1);
        if (*text == 0) test::pressKey(VK_DELETE);
        test::typeText(text);
    }
    std::string caption() { return test::textOf(dialog().m_hWnd); }
    CSnsCohDatazq* listed() { return dialog().m_listData.m_dataset; }
    std::pair<__int64, __int64> selection(const CSnsCohDatazq& data) {
        return {data.m_selectBegin, data.m_selectEnd};
    }

    test::HostApp app;
    std::unique_ptr<CSnsCohFacezq> package = std::make_unique<CSnsCohFacezq>();
};

using Selection = std::pair<__int64, __int64>;

// ---- showing

TEST_F(CDlgSnsCohManagerTest, NewObjectHasTheStatedMembers) {
    // In memory that has been used before.
    alignas(CDlgSnsCohManager) unsigned char memory[sizeof(CDlgSnsCohManager)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xCD));
    const auto destroy = [](CDlgSnsCohManager* dialog) { dialog->~CDlgSnsCohManager(); };
    const std::unique_ptr<CDlgSnsCohManager, decltype(destroy)> owner(
        ::new (memory) CDlgSnsCohManager, destroy);
    const CDlgSnsCohManager& fresh = *owner;
    EXPECT_EQ(fresh.m_factor, 0.8);
    EXPECT_EQ(fresh.m_option, 1);
    EXPECT_EQ(fresh.m_extra, 0);
    EXPECT_EQ(fresh.m_package, nullptr);
    EXPECT_EQ(fresh.m_dragPoint, CPoint(0, 0));
    EXPECT_EQ(fresh.m_sliceFirst, 0);
    EXPECT_EQ(fresh.m_timeTotal, 0);
    EXPECT_FALSE(fresh.m_overSplitter);
    EXPECT_EQ(test::toUtf8(fresh.m_title), "Wave CxC Manager");
    EXPECT_STREQ(fresh.GetRuntimeClass()->m_lpszClassName, "CDlgSnsCohManager");
    test::expectAscending({&fresh.m_listFace, &fresh.m_listData, &fresh.m_factor, &fresh.m_option,
                           &fresh.m_package, &fresh.m_extra, &fresh.m_splitter, &fresh.m_dragPoint,
                           &fresh.m_overSplitter, &fresh.m_comboRow, &fresh.m_sliceFirst,
                           &fresh.m_timeTotal, &fresh.m_comboOperation, &fresh.m_title});
}

TEST_F(CDlgSnsCohManagerTest, EmptyPackageIsToldTwiceAndTheListsAreEmpty) {
    open();
    EXPECT_EQ(app.messages(), Texts(2, noData));
    EXPECT_TRUE(dialog().IsWindowVisible());
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 0);
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 0);
    EXPECT_EQ(package->m_curntCohDataSetID, 2);
    EXPECT_EQ(caption(), "Waveform CxC Manager");
}

TEST_F(CDlgSnsCohManagerTest, WithoutACurrentClassTheUserIsToldOnceAndTheFirstDatasetIsListed) {
    giveAll();
    package->deleteCohDataset(active);
    package->m_curntCohDataSetID = -1;
    open();
    EXPECT_EQ(app.messages(), Texts(1, noData));
    EXPECT_EQ(listed(), package->m_cohControl);
    EXPECT_EQ(package->m_curntCohDataSetID, 2);
}

TEST_F(CDlgSnsCohManagerTest, CurrentDatasetIsListedAndActCtlBecomesCurrent) {
    giveAll();
    open();
    EXPECT_TRUE(app.messages().empty());
    EXPECT_EQ(listed(), package->m_cohActive);
    EXPECT_EQ(package->m_curntCohDataSetID, 2);
    EXPECT_EQ(caption(), "Wave CxC Manager-mix");
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_TIME_TOTAL)), "7");
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_SLICE_FIRST)), "0");
}

TEST_F(CDlgSnsCohManagerTest, SecondShowUsesTheSameWindow) {
    giveAll();
    open();
    const HWND window = dialog().m_hWnd;
    press(IDOK);
    EXPECT_FALSE(dialog().IsWindowVisible());
    open();
    EXPECT_EQ(dialog().m_hWnd, window);
    EXPECT_TRUE(dialog().IsWindowVisible());
}

TEST_F(CDlgSnsCohManagerTest, WindowThatDiedWithItsParentIsMadeAgain) {
    giveAll();
    test::ShortLivedOwner owner;
    ASSERT_EQ(package->showDlgSnsCohManager(owner.window()), 1);
    CDlgSnsCohManager* const object = &dialog();
    owner.end();
    EXPECT_EQ(dialog().m_hWnd, nullptr);
    open();
    EXPECT_EQ(&dialog(), object);
    EXPECT_TRUE(dialog().IsWindowVisible());
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 3);
}

TEST_F(CDlgSnsCohManagerTest, WindowThatIsMadeAgainHasItsPicturesAgain) {
    giveAll();
    package->m_cohControl->m_tscsInfo = true;
    const std::pair<int, int> two(2, 2);
    for (int round = 0; round < 3; ++round) {
        test::ShortLivedOwner owner;
        ASSERT_EQ(package->showDlgSnsCohManager(owner.window()), 1);
        EXPECT_EQ(test::picturesOf(dialog().m_listFace), two) << round;
        EXPECT_EQ(test::picturesOf(dialog().m_listData), two) << round;
        EXPECT_EQ(dialog().m_listFace.GetImageList(LVSIL_SMALL), dialog().m_listFace.m_imageSmall);
        EXPECT_EQ(test::imageOf(dialog().m_listFace, 1), 1);
        owner.end();
    }
}

TEST_F(CDlgSnsCohManagerTest, WithoutMemoryForTheWindowThereIsNone) {
    giveAll();
    {
        const test::FailingMemory failing(1);
        EXPECT_EQ(package->showDlgSnsCohManager(&app.m_main), 1);
        EXPECT_EQ(package->m_dlgSnsCohManager, nullptr);
    }
    open();
    EXPECT_TRUE(dialog().IsWindowVisible());
}

TEST_F(CDlgSnsCohManagerTest, WindowThatCannotBeMadeLeavesThePackageAsItIs) {
    giveAll();
    {
        const test::NoNewControls system;
        EXPECT_EQ(package->showDlgSnsCohManager(&app.m_main), 1);
    }
    ASSERT_NE(package->m_dlgSnsCohManager, nullptr);
    EXPECT_EQ(dialog().m_hWnd, nullptr);
    EXPECT_EQ(dialog().m_package, nullptr);
    EXPECT_EQ(package->m_curntCohDataSetID, active);  // filling the list makes it Act-Ctl
    open();
    EXPECT_TRUE(dialog().IsWindowVisible());
}

TEST_F(CDlgSnsCohManagerTest, PackageDestroysItsWindow) {
    giveAll();
    open();
    const HWND window = dialog().m_hWnd;
    package.reset();
    EXPECT_FALSE(::IsWindow(window));
    package = std::make_unique<CSnsCohFacezq>();
}

TEST_F(CDlgSnsCohManagerTest, LargeIconIsSet) {
    open();
    EXPECT_NE(dialog().GetIcon(TRUE), nullptr);
}

// ---- message map

class ExposedDialog : public CDlgSnsCohManager {
public:
    static const AFX_MSGMAP* map() {
        const ExposedDialog dialog;
        return dialog.CDlgSnsCohManager::GetMessageMap();
    }
};

TEST_F(CDlgSnsCohManagerTest, MessageMapHasTheStatedEntriesInTheStatedOrder) {
    const UINT changed = static_cast<WORD>(LVN_ITEMCHANGED);
    const std::vector<test::MapRow> expected = {
        {WM_SIZE, 0, 0},
        {WM_CONTEXTMENU, 0, 0},
        {WM_NOTIFY, changed, 4009},
        {WM_COMMAND, BN_CLICKED, 4011},
        {WM_LBUTTONDOWN, 0, 0},
        {WM_LBUTTONUP, 0, 0},
        {WM_MOUSEMOVE, 0, 0},
        {WM_SETCURSOR, 0, 0},
        {WM_NOTIFY, changed, 4010},
        {WM_LBUTTONDBLCLK, 0, 0},
        {WM_COMMAND, BN_CLICKED, 1},
        {WM_COMMAND, CBN_SELCHANGE, 4002},
        {WM_COMMAND, EN_CHANGE, 4000},
        {WM_COMMAND, BN_CLICKED, 4016},
        {WM_COMMAND, BN_CLICKED, 4017},
        {WM_COMMAND, BN_CLICKED, 4018},
        {WM_COMMAND, CBN_SELCHANGE, 4004},
        {WM_COMMAND, BN_CLICKED, 4019},
        {WM_COMMAND, BN_CLICKED, 4014},
        {WM_COMMAND, BN_CLICKED, 4012},
        {WM_COMMAND, BN_CLICKED, 4020},
        {WM_COMMAND, 0, 4039},
        {WM_COMMAND, 0, 4040},
        {WM_COMMAND, 0, 4049},
        {WM_COMMAND, 0, 4051},
        {WM_COMMAND, 0, 4055},
    };
    EXPECT_EQ(test::rowsOf(*ExposedDialog::map()), expected);
}

// ---- the lists

TEST_F(CDlgSnsCohManagerTest, FaceListHasItsColumnsAndARowForEachDataset) {
    giveAll();
    package->m_cohActive->m_cxcCmptInfo = _T("how");
    package->m_cohActive->setAnaLatency(0.25, 1.5);
    package->m_cohActive->m_rowCrt = 1;
    package->m_cohActive->m_columnCrt = 2;
    package->m_cohControl->m_tscsInfo = true;
    open();
    EXPECT_EQ(
        test::columnsOf(dialog().m_listFace),
        (Texts{"Name", "CmptInfo", "Latency B", "Latency E", "Sensors", "Act Sns", "CxC Sns"}));
    EXPECT_EQ(test::namesOf(dialog().m_listFace), (Texts{"rest", "base", "mix"}));
    EXPECT_EQ(test::rowOf(dialog().m_listFace, 0, 7), "rest|how|0.250000|1.500000|3|1|2");
    EXPECT_EQ(test::imageOf(dialog().m_listFace, 0), 0);
    EXPECT_EQ(test::imageOf(dialog().m_listFace, 1), 1);
    EXPECT_EQ(dialog().m_listFace.GetExtendedStyle(), 105u);
    EXPECT_EQ(dialog().m_listData.GetExtendedStyle(), 105u);
}

TEST_F(CDlgSnsCohManagerTest, PressedRowBecomesCurrentAndListed) {
    giveAll();
    open();
    test::clickRow(dialog().m_listFace, 1);
    EXPECT_EQ(package->m_curntCohDataSetID, control);
    EXPECT_EQ(listed(), package->m_cohControl);
    EXPECT_EQ(caption(), "Wave CxC Manager-base");
    EXPECT_EQ(test::toUtf8(dialog().m_title), "Wave CxC Manager-base");
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_TIME_TOTAL)), "2");
    EXPECT_EQ(dialog().m_comboRow.GetCount(), 3);
    EXPECT_EQ(test::rowOf(dialog().m_listData, 2, 6), "CxC3|0|0|2|0|131.000000");
}

TEST_F(CDlgSnsCohManagerTest, RowWithoutItsDatasetLeavesNothingListedAndTheOldRows) {
    giveAll();
    open();
    package->m_cohControl->m_headerInt9 = 77;
    test::clickRow(dialog().m_listFace, 1);
    EXPECT_EQ(listed(), nullptr);
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 3);
}

TEST_F(CDlgSnsCohManagerTest, ChangesWhileAListIsFilledAreNoChoice) {
    giveAll();
    open();
    test::clickRow(dialog().m_listFace, 1);
    int told = 0;
    // As some lists do with the rows that were selected.
    const auto tellOf = [&](int id, int row) {
        NMLISTVIEW change = {};
        change.hdr = {at(id), static_cast<UINT_PTR>(id), LVN_ITEMCHANGED};
        change.iItem = row;
        dialog().SendMessage(WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&change));
        ++told;
        return std::optional<LRESULT>();
    };
    {
        const test::BeforeControl datasets(
            at(IDC_WAVEFORM_DATASETS), LVM_DELETEALLITEMS,
            [&](const auto&) { return tellOf(IDC_WAVEFORM_DATASETS, 0); });
        choose(ID_WAVEFORM_ZERO_DIAGONAL);
    }
    EXPECT_EQ(told, 1);
    EXPECT_EQ(listed(), package->m_cohControl);
    EXPECT_EQ(caption(), "Wave CxC Manager-base");
    const test::BeforeControl pairs(at(IDC_WAVEFORM_PAIRS), LVM_DELETEALLITEMS,
                                    [&](const auto&) { return tellOf(IDC_WAVEFORM_PAIRS, 2); });
    test::clickColumn(dialog().m_listData, 1);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(package->m_cohControl->m_columnCrt, 0);
}

TEST_F(CDlgSnsCohManagerTest, PressedPairChoosesTheColumnOfTheListedDataset) {
    giveAll();
    open();
    test::clickRow(dialog().m_listData, 2);
    EXPECT_EQ(package->m_cohActive->m_columnCrt, 2);
    EXPECT_EQ(package->m_cohActCtl->m_columnCrt, 0);
}

TEST_F(CDlgSnsCohManagerTest, ColumnIsClampedIntoTheListedDataset) {
    give(active, test::newFilled(5, 2, 3), _T("tall"));
    package->m_curntCohDataSetID = active;
    open();
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 5);
    test::clickRow(dialog().m_listData, 4);
    EXPECT_EQ(package->m_cohActive->m_columnCrt, 1);
}

TEST_F(CDlgSnsCohManagerTest, RowComboNamesTheRowsAndChoosesTheRowOfTheListedDataset) {
    giveAll();
    for (int r = 0; r < 3; ++r)
        test::pairOf(*package->m_cohActCtl, r, 0).m_chnlA = 100 + r;
    package->m_cohActCtl->m_rowCrt = 1;
    open();
    CString text;
    dialog().m_comboRow.GetLBText(2, text);
    EXPECT_EQ(test::toUtf8(text), "2->102");
    EXPECT_EQ(dialog().m_comboRow.GetCurSel(), 1);
    dialog().m_comboRow.SetFocus();
    test::pressKey(VK_DOWN);
    EXPECT_EQ(package->m_cohActive->m_rowCrt, 2);
    EXPECT_EQ(package->m_cohActCtl->m_rowCrt, 1);
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|5|0|311.000000");
}

TEST_F(CDlgSnsCohManagerTest, OperationComboChoosesThePackagesOperation) {
    giveAll();
    package->m_actCtlOperation = 1;
    open();
    EXPECT_EQ(dialog().m_comboOperation.GetCurSel(), 1);
    EXPECT_EQ(dialog().m_comboOperation.GetCount(), 4);
    dialog().m_comboOperation.SetFocus();
    test::pressKey(VK_DOWN);
    EXPECT_EQ(package->m_actCtlOperation, 2);
    test::pressKey(VK_END);
    EXPECT_EQ(package->m_actCtlOperation, 3);
    CString text;
    for (int i = 0; i < 4; ++i) {
        dialog().m_comboOperation.GetLBText(i, text);
        EXPECT_EQ(test::toUtf8(text), (Texts{"A-C", "A+C", "A*C", "A/C"})[static_cast<size_t>(i)]);
    }
}

TEST_F(CDlgSnsCohManagerTest, ComboWithoutAChoiceChangesNothing) {
    giveAll();
    package->m_actCtlOperation = 3;
    package->m_cohActive->m_rowCrt = 1;
    open();
    dialog().m_comboOperation.SetCurSel(-1);
    dialog().m_comboRow.SetCurSel(-1);
    for (const int combo : {IDC_WAVEFORM_OPERATION, IDC_WAVEFORM_ROW})
        dialog().SendMessage(WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
                             reinterpret_cast<LPARAM>(at(combo)));
    EXPECT_EQ(package->m_actCtlOperation, 3);
    EXPECT_EQ(package->m_cohActive->m_rowCrt, 1);
}

// ---- the slices

TEST_F(CDlgSnsCohManagerTest, TypedSliceIsClampedAndApplyStoresItAsTyped) {
    CSnsCohDatazq& data = giveOne();
    open();
    type(L"999");
    EXPECT_EQ(selection(data), Selection(9, 9));
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|10|9|120.000000");
    press(IDC_WAVEFORM_APPLY);
    EXPECT_EQ(selection(data), Selection(999, 9));
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|10|9|120.000000");
    test::clickColumn(dialog().m_listData, 0);
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|10|999|120.000000");
}

TEST_F(CDlgSnsCohManagerTest, TypingActsOnTheListedDatasetAndApplyOnTheCurrentOne) {
    giveAll();
    open();
    type(L"1");
    EXPECT_EQ(selection(*package->m_cohActive), Selection(1, 1));
    EXPECT_EQ(package->m_cohActCtl->m_selectBegin, 0);
    press(IDC_WAVEFORM_APPLY);
    EXPECT_EQ(package->m_cohActCtl->m_selectBegin, 1);
    EXPECT_EQ(app.messages(), Texts());
}

TEST_F(CDlgSnsCohManagerTest, StepBackWrapsToTheEndAndTheNewTextNarrowsTheSelection) {
    CSnsCohDatazq& data = giveOne();
    open();
    data.setSelect(0, 2);
    press(IDC_WAVEFORM_STEP_BACK);
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_SLICE_FIRST)), "7");
    EXPECT_EQ(selection(data), Selection(7, 7));
}

TEST_F(CDlgSnsCohManagerTest, StepBackKeepsTheWidthWhereTheListedDatasetIsNotTheCurrentOne) {
    give(active, test::newFilled(3, 3, 10), _T("rest"));
    package->m_curntCohDataSetID = active;
    open();
    package->m_cohActive->setSelect(0, 2);
    press(IDC_WAVEFORM_STEP_BACK);
    EXPECT_EQ(selection(*package->m_cohActive), Selection(7, 9));
    press(IDC_WAVEFORM_STEP_FORWARD);
    EXPECT_EQ(selection(*package->m_cohActive), Selection(0, 2));
    press(IDC_WAVEFORM_STEP_FORWARD);
    EXPECT_EQ(selection(*package->m_cohActive), Selection(1, 3));
}

TEST_F(CDlgSnsCohManagerTest, UnchangedTextLeavesTheSelection) {
    CSnsCohDatazq& data = giveOne();
    data.setSelect(0, 2);
    open();
    EXPECT_EQ(selection(data), Selection(0, 2));
    press(IDC_WAVEFORM_UPDATE);
    EXPECT_EQ(selection(data), Selection(0, 2));
}

TEST_F(CDlgSnsCohManagerTest, UpdateReloadsTheEditsAndTheNewTextNarrowsTheSelection) {
    CSnsCohDatazq& data = giveOne();
    open();
    data.setSelect(3, 6);
    press(IDC_WAVEFORM_UPDATE);
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_SLICE_FIRST)), "3");
    EXPECT_EQ(selection(data), Selection(3, 3));
    EXPECT_EQ(test::rowOf(dialog().m_listData, 1, 6), "CxC2|0|0|10|3|124.000000");
}

TEST_F(CDlgSnsCohManagerTest, UpdateWithoutACurrentClassTellsTheUser) {
    giveAll();
    open();
    package->m_curntCohDataSetID = -1;
    press(IDC_WAVEFORM_UPDATE);
    EXPECT_EQ(app.messages(), Texts(1, noData));
    EXPECT_EQ(package->m_curntCohDataSetID, 2);
}

TEST_F(CDlgSnsCohManagerTest, TextThatIsNoNumberIsToldAndChangesNothing) {
    CSnsCohDatazq& data = giveOne();
    open();
    type(L"4");
    app.clearMessages();
    for (const wchar_t* const text : {L"", L"-", L"x"}) {
        type(text);
        EXPECT_EQ(app.messages(), Texts(1, "Enter an integer.")) << test::toUtf8(text);
        EXPECT_EQ(selection(data), Selection(4, 4));
        app.clearMessages();
    }
}

TEST_F(CDlgSnsCohManagerTest, TextThatIsNoNumberSelectsTheSliceThatWasReadLast) {
    give(active, test::newFilled(3, 3, 10), _T("rest"));
    package->m_curntCohDataSetID = active;
    open();
    type(L"4");
    for (const wchar_t* const text : {L"", L"-", L"x"}) {
        package->m_cohActive->setSelect(2, 7);
        type(text);
        EXPECT_EQ(selection(*package->m_cohActive), Selection(4, 4)) << test::toUtf8(text);
        EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|10|4|115.000000");
    }
}

TEST_F(CDlgSnsCohManagerTest, ThirtyDigitsSaturate) {
    CSnsCohDatazq& data = giveOne();
    open();
    ::SetWindowText(at(IDC_WAVEFORM_SLICE_FIRST), _T("999999999999999999999999999999"));
    test::pump();
    EXPECT_EQ(selection(data), Selection(9, 9));
    press(IDC_WAVEFORM_APPLY);
    EXPECT_EQ(data.m_selectBegin, test::mostIndex);
    press(IDC_WAVEFORM_UPDATE);
    press(IDC_WAVEFORM_STEP_FORWARD);
    EXPECT_GT(dialog().m_listData.GetItemCount(), 0);
}

// ---- the commands

TEST_F(CDlgSnsCohManagerTest, CombineMakesActCtlByTheChosenOperation) {
    give(active, test::newFilled(2, 2, 3), _T("rest"));
    give(control, test::newFilled(2, 2, 1), _T("base"));
    package->m_curntCohDataSetID = active;
    open();
    dialog().m_comboOperation.SetFocus();
    test::pressKey(VK_DOWN);
    press(IDC_WAVEFORM_COMBINE);
    ASSERT_NE(package->m_cohActCtl, nullptr);
    EXPECT_EQ(test::valuesOf(*package->m_cohActCtl, 0, 1), (std::vector<double>{242, 243, 244}));
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 3);
    EXPECT_EQ(listed(), package->m_cohActive);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CDlgSnsCohManagerTest, AccumulateCollapsesTheCurrentDataset) {
    giveAll();
    open();
    press(IDC_WAVEFORM_ACCUMULATE);
    EXPECT_EQ(package->m_cohActCtl->m_cohTimTotal, 1);
    EXPECT_EQ(package->m_cohActive->m_cohTimTotal, 5);
    EXPECT_EQ(test::textOf(at(IDC_WAVEFORM_TIME_TOTAL)), "1");
    EXPECT_GT(app.waitBegins(), 0);
    EXPECT_FALSE(app.waiting());
}

TEST_F(CDlgSnsCohManagerTest, DeleteReleasesTheCurrentDatasetAndListsTheFirstOfTheRest) {
    giveAll();
    open();
    press(IDC_WAVEFORM_DELETE);
    EXPECT_EQ(package->m_cohActCtl, nullptr);
    EXPECT_EQ(test::namesOf(dialog().m_listFace), (Texts{"rest", "base"}));
    EXPECT_EQ(listed(), package->m_cohActive);
    EXPECT_EQ(package->m_curntCohDataSetID, active);
    EXPECT_EQ(caption(), "Wave CxC Manager-rest");
    press(IDC_WAVEFORM_DELETE);
    press(IDC_WAVEFORM_DELETE);
    EXPECT_EQ(package->getTotalCohDataset(), 0);
    EXPECT_EQ(listed(), nullptr);
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 0);
    press(IDC_WAVEFORM_DELETE);
}

TEST_F(CDlgSnsCohManagerTest, StatisticShowsTheTextOfTheCurrentDataset) {
    giveAll();
    open();
    press(IDC_WAVEFORM_STATISTIC);
    const HWND window = test::findWindow("mix");
    ASSERT_NE(window, nullptr);
    const std::string shown = test::textOf(::GetWindow(window, GW_CHILD));
    EXPECT_NE(shown.find("Min"), std::string::npos) << shown;
    ::SendMessage(window, WM_CLOSE, 0, 0);
    test::pump();
    EXPECT_FALSE(::IsWindowVisible(window));
}

TEST_F(CDlgSnsCohManagerTest, SetNameAsksForANameAndShowsIt) {
    giveAll();
    open();
    bool managerEnabled = true;
    const test::WhenOpen user("Enter Text", [&](HWND window) {
        managerEnabled = dialog().IsWindowEnabled();
        ::SetForegroundWindow(window);
        test::typeText(L"new name");
        test::pressKey(VK_RETURN);
    });
    choose(ID_WAVEFORM_SET_NAME);
    EXPECT_FALSE(managerEnabled);
    EXPECT_TRUE(dialog().IsWindowEnabled());
    EXPECT_EQ(test::namesOf(dialog().m_listFace), (Texts{"rest", "base", "new name"}));
    EXPECT_EQ(test::toUtf8(package->m_cohActCtl->m_cxcName), "new name");
}

TEST_F(CDlgSnsCohManagerTest, CancelledNameStays) {
    giveAll();
    open();
    const test::WhenOpen user("Enter Text", [&](HWND window) {
        ::SetForegroundWindow(window);
        test::typeText(L"other");
        test::pressKey(VK_ESCAPE);
    });
    choose(ID_WAVEFORM_SET_NAME);
    EXPECT_EQ(test::toUtf8(package->m_cohActCtl->m_cxcName), "mix");
}

TEST_F(CDlgSnsCohManagerTest, DatasetThatTheHostReleasesMeanwhileIsNotNamed) {
    giveAll();
    open();
    const test::WhenOpen user("Enter Text", [&](HWND window) {
        package->deleteCohDataset(actCtl);
        ::SetForegroundWindow(window);
        test::pressKey(VK_RETURN);
    });
    choose(ID_WAVEFORM_SET_NAME);
    EXPECT_EQ(package->m_cohActCtl, nullptr);
}

TEST_F(CDlgSnsCohManagerTest, DatasetThatTheHostTakesAwayMeanwhileKeepsItsName) {
    giveAll();
    open();
    const std::unique_ptr<CSnsCohDatazq> taken(package->m_cohActCtl);
    const test::WhenOpen user("Enter Text", [&](HWND window) {
        package->m_cohActCtl = nullptr;
        ::SetForegroundWindow(window);
        test::typeText(L"new name");
        test::pressKey(VK_RETURN);
    });
    choose(ID_WAVEFORM_SET_NAME);
    EXPECT_EQ(test::toUtf8(taken->m_cxcName), "mix");
    taken->cleanSnsCohData();
}

TEST_F(CDlgSnsCohManagerTest, PackageMayEndWhileANameIsAskedFor) {
    giveAll();
    open();
    const test::WhenOpen user("Enter Text", [&](HWND window) {
        package.reset();
        ::SetForegroundWindow(window);
        test::pressKey(VK_RETURN);
    });
    dialog().SendMessage(WM_COMMAND, ID_WAVEFORM_SET_NAME, 0);
    test::pump();
    EXPECT_EQ(package, nullptr);
}

TEST_F(CDlgSnsCohManagerTest, ZeroDiagonalActsOnActCtlUntilARowIsPressed) {
    giveAll();
    open();
    choose(ID_WAVEFORM_ZERO_DIAGONAL);
    EXPECT_EQ(test::cell(*package->m_cohActCtl, 0, 1, 1), 0.0);
    EXPECT_NE(test::cell(*package->m_cohActive, 0, 1, 1), 0.0);
    test::clickRow(dialog().m_listFace, 0);
    choose(ID_WAVEFORM_ZERO_DIAGONAL);
    EXPECT_EQ(test::cell(*package->m_cohActive, 0, 1, 1), 0.0);
    // Until it is filled anew, the list shows what it was filled with.
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|5|0|111.000000");
    test::clickColumn(dialog().m_listData, 2);
    EXPECT_EQ(test::rowOf(dialog().m_listData, 0, 6), "CxC1|0|0|5|0|0.000000");
}

TEST_F(CDlgSnsCohManagerTest, MenuBarOpensAndItsItemsAreCarriedOut) {
    giveAll();
    open();
    test::chooseInMenuBar(dialog(), 1, 2);  // Edit, Zero Diagonal
    EXPECT_EQ(test::cell(*package->m_cohActCtl, 0, 1, 1), 0.0);
    test::chooseInMenuBar(dialog(), 0, 4);  // File, Exit
    EXPECT_FALSE(dialog().IsWindowVisible());
}

TEST_F(CDlgSnsCohManagerTest, ZeroDiagonalDoesNothingWithoutActCtl) {
    giveAll();
    package->deleteCohDataset(actCtl);
    open();
    choose(ID_WAVEFORM_ZERO_DIAGONAL);
    EXPECT_NE(test::cell(*package->m_cohActive, 0, 1, 1), 0.0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CDlgSnsCohManagerTest, CommandsWithoutACurrentClassTellTheUserOnce) {
    giveAll();
    open();
    for (const UINT command :
         {ID_WAVEFORM_ZERO_DIAGONAL, ID_WAVEFORM_SAVE, ID_WAVEFORM_EXPORT, ID_WAVEFORM_SET_NAME}) {
        package->m_curntCohDataSetID = -1;
        app.clearMessages();
        choose(command);
        EXPECT_EQ(app.messages(), Texts(1, noData)) << command;
    }
    for (const int button : {IDC_WAVEFORM_APPLY, IDC_WAVEFORM_STATISTIC}) {
        package->m_curntCohDataSetID = -1;
        app.clearMessages();
        press(button);
        EXPECT_EQ(app.messages(), Texts(1, noData)) << button;
    }
}

TEST_F(CDlgSnsCohManagerTest, PackageMayEndWhileTheUserIsToldThatThereIsNoData) {
    for (const int command : {ID_WAVEFORM_SET_NAME, ID_WAVEFORM_ZERO_DIAGONAL, ID_WAVEFORM_SAVE,
                              ID_WAVEFORM_EXPORT, IDC_WAVEFORM_APPLY, IDC_WAVEFORM_STATISTIC,
                              IDC_WAVEFORM_UPDATE, IDC_WAVEFORM_ACCUMULATE}) {
        giveAll();
        open();
        package->m_curntCohDataSetID = -1;
        app.whileBoxStands = [&] { package.reset(); };
        dialog().SendMessage(WM_COMMAND, static_cast<WPARAM>(command), 0);
        app.whileBoxStands = nullptr;
        test::pump();
        EXPECT_EQ(package, nullptr) << command;
        package = std::make_unique<CSnsCohFacezq>();
    }
}

// ---- files

TEST_F(CDlgSnsCohManagerTest, SaveAndExportWriteTheCurrentDataset) {
    giveAll();
    open();
    const test::TempDir dir;
    app.script().choose(dir.path() / "saved.cxc");
    choose(ID_WAVEFORM_SAVE);
    EXPECT_GT(std::filesystem::file_size(dir.path() / "saved.cxc"), 7u * 9 * 8);
    EXPECT_TRUE(dialog().IsWindowEnabled());
    test::clickRow(dialog().m_listFace, 1);
    app.script().choose(dir.path() / "base.txt");
    choose(ID_WAVEFORM_EXPORT);
    EXPECT_FALSE(std::filesystem::is_empty(dir.path()));
    EXPECT_EQ(app.script().shown(), 2);
}

TEST_F(CDlgSnsCohManagerTest, DatasetThatTheHostReleasesUnderTheFileDialogIsNotWritten) {
    giveAll();
    open();
    const test::TempDir dir;
    for (const UINT command : {ID_WAVEFORM_SAVE, ID_WAVEFORM_EXPORT}) {
        give(actCtl, test::newFilled(3, 3, 2), _T("mix"));
        package->m_curntCohDataSetID = actCtl;
        app.script().choose(dir.path() / "gone.cxc.txt");
        bool managerEnabled = true;
        const test::InNextLoop host([&] {
            managerEnabled = dialog().IsWindowEnabled() != FALSE;
            package->deleteCohDataset(actCtl);
        });
        choose(command);
        EXPECT_FALSE(managerEnabled) << command;
        EXPECT_TRUE(dialog().IsWindowEnabled()) << command;
        EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << command;
    }
    EXPECT_EQ(app.script().shown(), 2);
}

TEST_F(CDlgSnsCohManagerTest, PackageMayEndUnderTheFileDialog) {
    const test::TempDir dir;
    for (const UINT command : {ID_WAVEFORM_SAVE, ID_WAVEFORM_EXPORT}) {
        giveAll();
        open();
        app.script().choose(dir.path() / "gone.cxc.txt");
        const test::InNextLoop host([&] { package.reset(); });
        dialog().SendMessage(WM_COMMAND, command, 0);
        test::pump();
        EXPECT_EQ(package, nullptr) << command;
        EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << command;
        package = std::make_unique<CSnsCohFacezq>();
    }
    EXPECT_EQ(app.script().shown(), 2);
}

class OpenData : public CDlgSnsCohManagerTest {
protected:
    void SetUp() override {
        CSnsCohDatazq data;
        test::fill(data, 2, 2, 4);
        data.m_cxcName = _T("from file");
        CFile file(test::fromPath(path), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        data.serialize(archive);
    }
    void openFile() {
        app.script().choose(path);
        choose(ID_WAVEFORM_OPEN);
    }
    std::string nameOf(const CSnsCohDatazq* data) {
        return data == nullptr ? "none" : test::toUtf8(data->m_cxcName);
    }
    Texts names() {
        return {nameOf(package->m_cohActive), nameOf(package->m_cohControl),
                nameOf(package->m_cohActCtl)};
    }

    const test::TempDir dir;
    const std::filesystem::path path = dir.path() / "file.cxc";
};

TEST_F(OpenData, FillsTheFreeClassesInTheirOrder) {
    open();
    app.clearMessages();
    openFile();
    EXPECT_EQ(names(), (Texts{"from file", "none", "none"}));
    openFile();
    EXPECT_EQ(app.messages(), Texts{"Set as Active?!"});
    EXPECT_EQ(names(), (Texts{"from file", "from file", "none"}));
    app.clearMessages();
    openFile();
    EXPECT_EQ(app.messages(), (Texts{"Set as Active?!", "Set as Control?!"}));
    EXPECT_EQ(names(), (Texts{"from file", "from file", "from file"}));
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 3);
    EXPECT_EQ(package->m_curntCohDataSetID, 2);
}

TEST_F(OpenData, ReplacesWhatTheUserAgreesTo) {
    giveAll();
    open();
    app.answer(IDNO);
    app.answer(IDYES);
    openFile();
    EXPECT_EQ(names(), (Texts{"rest", "from file", "mix"}));
    app.answer(IDNO);
    app.answer(IDNO);
    app.answer(IDYES);
    openFile();
    EXPECT_EQ(names(), (Texts{"rest", "from file", "from file"}));
    for (const UINT type : app.messageTypes())
        EXPECT_EQ(type & MB_TYPEMASK, static_cast<UINT>(MB_YESNO));
}

TEST_F(OpenData, QuestionIsARealBoxAndTheManagerIsDisabledMeanwhile) {
    // Shows the boxes that the host's application object would only record.
    class RealBoxes : public CWinApp {
    public:
        explicit RealBoxes(CDlgSnsCohManager& manager) : m_manager(manager) {}
        int DoMessageBox(LPCTSTR text, UINT type, UINT help) override {
            enabled = m_manager.IsWindowEnabled() != FALSE;
            return CWinApp::DoMessageBox(text, type, help);
        }
        bool enabled = true;

    private:
        CDlgSnsCohManager& m_manager;
    };
    giveAll();
    open();
    RealBoxes boxes(dialog());
    boxes.m_pMainWnd = &app.m_main;
    test::DialogDriver::instance().pressInNextBox(IDYES);
    openFile();
    const std::vector<test::BoxFacts> seen = test::DialogDriver::instance().takeBoxes();
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].text, "Set as Active?!");
    EXPECT_EQ(seen[0].buttons, (std::vector<int>{IDYES, IDNO}));
    EXPECT_FALSE(boxes.enabled);
    EXPECT_TRUE(dialog().IsWindowEnabled());
    EXPECT_EQ(names(), (Texts{"from file", "base", "mix"}));
    boxes.m_pMainWnd = nullptr;
}

TEST_F(OpenData, ThreeRefusalsReplaceActive) {
    giveAll();
    open();
    openFile();
    EXPECT_EQ(app.messages(),
              (Texts{"Set as Active?!", "Set as Control?!", "Set as Act-Control?!"}));
    EXPECT_EQ(names(), (Texts{"from file", "base", "mix"}));
}

TEST_F(OpenData, CancelledOpenPlacesAnEmptyDataset) {
    open();
    app.script().cancel();
    choose(ID_WAVEFORM_OPEN);
    ASSERT_NE(package->m_cohActive, nullptr);
    EXPECT_EQ(package->m_cohActive->m_mCC, nullptr);
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 1);
}

TEST_F(OpenData, ListedDatasetThatWasReplacedIsNoLongerListedAndItsRowsStay) {
    giveAll();
    open();
    app.answer(IDYES);
    openFile();
    EXPECT_EQ(listed(), nullptr);
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 3);
    test::clickColumn(dialog().m_listData, 0);
    test::clickRow(dialog().m_listData, 1);
    type(L"2");
    press(IDC_WAVEFORM_STEP_FORWARD);
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 3);
}

TEST_F(OpenData, FileThatIsNoDatasetPlacesAnEmptyOneAfterItsMessage) {
    test::Bytes bytes = test::refusedRecord();
    std::ofstream(path, std::ios::binary) << bytes.str();
    open();
    app.clearMessages();
    openFile();
    EXPECT_EQ(app.messages().size(), 1u);
    ASSERT_NE(package->m_cohActive, nullptr);
    EXPECT_EQ(package->m_cohActive->m_mCC, nullptr);
}

TEST_F(OpenData, EmptyFileIsToldAndPlacesNothing) {
    std::ofstream(path, std::ios::binary).close();
    open();
    app.clearMessages();
    openFile();
    EXPECT_EQ(app.messages().size(), 1u);
    EXPECT_EQ(package->m_cohActive, nullptr);
    EXPECT_TRUE(dialog().IsWindowEnabled());
    EXPECT_FALSE(app.waiting());
    const int held = test::datasetBlocks();
    for (int round = 0; round < 2; ++round)
        openFile();
    EXPECT_LT(test::datasetBlocks(), held + 2);  // one each, if they were lost
}

// ---- hiding

TEST_F(CDlgSnsCohManagerTest, MenuExitEscapeAndCloseBoxHideTheWindow) {
    giveAll();
    open();
    choose(IDOK);
    EXPECT_FALSE(dialog().IsWindowVisible());
    open();
    test::pressKey(VK_ESCAPE);
    EXPECT_FALSE(dialog().IsWindowVisible());
    open();
    dialog().SendMessage(WM_SYSCOMMAND, SC_CLOSE);
    test::pump();
    EXPECT_FALSE(dialog().IsWindowVisible());
    EXPECT_NE(dialog().m_hWnd, nullptr);
}

TEST_F(CDlgSnsCohManagerTest, ExitStaysWhileTheSliceIsNoNumber) {
    giveOne();
    open();
    type(L"x");
    app.clearMessages();
    press(IDOK);
    EXPECT_TRUE(dialog().IsWindowVisible());
    EXPECT_EQ(app.messages(), Texts(2, "Enter an integer."));
}

// ---- places

CRect placeOf(CWnd& window) {
    WINDOWPLACEMENT placement = {};
    window.GetWindowPlacement(&placement);
    return placement.rcNormalPosition;
}

TEST_F(CDlgSnsCohManagerTest, ListsFollowTheSizeOfTheWindow) {
    giveAll();
    open();
    const CRect face = placeOf(dialog().m_listFace);
    dialog().SetWindowPos(nullptr, 0, 0, 1100, 500, SWP_NOMOVE | SWP_NOZORDER);
    test::pump();
    CRect client;
    dialog().GetClientRect(client);
    EXPECT_EQ(placeOf(dialog().m_listData).right, client.right - 10);
    EXPECT_EQ(placeOf(dialog().m_listData).bottom, client.bottom - 10);
    EXPECT_EQ(placeOf(dialog().m_listFace).bottom, client.bottom - 10);
    EXPECT_EQ(placeOf(dialog().m_listFace).right, face.right);
    EXPECT_EQ(placeOf(dialog().m_splitter).bottom, client.bottom - 10);
    dialog().SetWindowPos(nullptr, 0, 0, 60, 40, SWP_NOMOVE | SWP_NOZORDER);
    test::pump();
    EXPECT_LE(placeOf(dialog().m_listData).left, placeOf(dialog().m_listData).right);
}

class Splitter : public CDlgSnsCohManagerTest {
protected:
    void SetUp() override {
        giveAll();
        open();
        const CRect bar = placeOf(dialog().m_splitter);
        point = bar.CenterPoint();
    }
    void drag(int dx) {
        test::movePointer(dialog().m_hWnd, point);
        test::pressButton();
        for (int left = dx; left != 0;) {
            const int step = left > 0 ? std::min(left, 3) : std::max(left, -3);
            point.x += step;
            left -= step;
            test::movePointer(dialog().m_hWnd, point);
        }
        test::releaseButton();
        test::parkPointer();
    }
    int faceWidth() { return placeOf(dialog().m_listFace).Width(); }
    int dataWidth() { return placeOf(dialog().m_listData).Width(); }

    CPoint point;
};

TEST_F(Splitter, MovesTheBorderBetweenTheLists) {
    const CRect face = placeOf(dialog().m_listFace);
    const CRect data = placeOf(dialog().m_listData);
    const CRect bar = placeOf(dialog().m_splitter);
    drag(30);
    EXPECT_EQ(placeOf(dialog().m_listFace).right, face.right + 30);
    EXPECT_EQ(placeOf(dialog().m_listData).left, data.left + 30);
    EXPECT_EQ(placeOf(dialog().m_splitter).left, bar.left + 30);
    EXPECT_EQ(placeOf(dialog().m_splitter).right, bar.right + 30);
    EXPECT_EQ(placeOf(dialog().m_listData).right, data.right);
    drag(-45);
    EXPECT_EQ(placeOf(dialog().m_listFace).right, face.right - 15);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST_F(Splitter, LeavesThirtyPixelsOfEachList) {
    drag(-1000);
    EXPECT_GE(faceWidth(), 30);
    EXPECT_LT(faceWidth(), 33);
    const CRect bar = placeOf(dialog().m_splitter);
    point = bar.CenterPoint();
    drag(1200);
    EXPECT_GE(dataWidth(), 30);
    EXPECT_LT(dataWidth(), 33);
}

TEST_F(Splitter, ShowsItsCursorAndNothingElseDoes) {
    test::movePointer(dialog().m_hWnd, point);
    EXPECT_TRUE(dialog().m_overSplitter);
    test::movePointer(dialog().m_hWnd, CPoint(point.x + 1, point.y + 1));
    EXPECT_EQ(::GetCursor(), AfxGetApp()->LoadCursor(IDC_CURSOR_SPLITTER));
    test::movePointer(dialog().m_hWnd, CPoint(2, 2));
    EXPECT_FALSE(dialog().m_overSplitter);
    test::parkPointer();
}

TEST_F(Splitter, DoesNotMoveWithoutAPressedButton) {
    const int before = faceWidth();
    test::movePointer(dialog().m_hWnd, point);
    test::movePointer(dialog().m_hWnd, CPoint(point.x + 2, point.y));
    EXPECT_EQ(faceWidth(), before);
    test::parkPointer();
}

// ---- hosts and files that do as they like

TEST_F(CDlgSnsCohManagerTest, EveryCommandBearsAPackageThatTheHostHasEmptied) {
    giveAll();
    open();
    package->cleanSnsCohPkg();
    for (const int button : {IDC_WAVEFORM_STEP_BACK, IDC_WAVEFORM_STEP_FORWARD,
                             IDC_WAVEFORM_STATISTIC, IDC_WAVEFORM_APPLY, IDC_WAVEFORM_ACCUMULATE,
                             IDC_WAVEFORM_COMBINE, IDC_WAVEFORM_UPDATE, IDC_WAVEFORM_DELETE})
        press(button);
    for (const UINT command :
         {ID_WAVEFORM_SET_NAME, ID_WAVEFORM_ZERO_DIAGONAL, ID_WAVEFORM_SAVE, ID_WAVEFORM_EXPORT})
        choose(command);
    type(L"3");
    test::clickColumn(dialog().m_listData, 1);
    EXPECT_EQ(dialog().m_listFace.GetItemCount(), 0);
    EXPECT_EQ(listed(), nullptr);
}

TEST_F(CDlgSnsCohManagerTest, ListedDatasetThatTheHostReleasesIsNotTouchedAgain) {
    giveAll();
    open();
    package->deleteCohDataset(active);
    type(L"1");
    test::clickColumn(dialog().m_listData, 0);
    test::clickRow(dialog().m_listData, 1);
    press(IDC_WAVEFORM_STEP_FORWARD);
    dialog().m_comboRow.SetFocus();
    test::pressKey(VK_DOWN);
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 3);
    EXPECT_EQ(dialog().m_listData.dataset(), nullptr);
}

TEST_F(CDlgSnsCohManagerTest, HostileDatasetsAreListedWithoutHarm) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        auto* const data = new CSnsCohDatazq;
        hostile.make(*data);
        package->setCohData(data, actCtl);
        package->m_curntCohDataSetID = actCtl;
        open();
        press(IDC_WAVEFORM_STEP_FORWARD);
        press(IDC_WAVEFORM_STEP_BACK);
        press(IDC_WAVEFORM_STATISTIC);
        type(L"2");
        EXPECT_LE(dialog().m_listData.GetItemCount(), 7);
    }
}

TEST_F(CDlgSnsCohManagerTest, TenThousandRowsAreListed) {
    give(actCtl, test::newFilled(10000, 1, 1), _T("long"));
    package->m_curntCohDataSetID = actCtl;
    open();
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 10000);
    EXPECT_EQ(dialog().m_comboRow.GetCount(), 10000);
}

TEST_F(CDlgSnsCohManagerTest, ContextMenuAndDoubleClickDoNothing) {
    giveAll();
    open();
    test::rightClick(dialog().m_hWnd, CPoint(3, 60));
    EXPECT_EQ(dialog().SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(5, 5)), 0);
    CRect rect;
    dialog().m_listData.GetItemRect(1, rect, LVIR_LABEL);
    dialog().m_listData.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON,
                                    MAKELPARAM(rect.left + 3, rect.top + 3));
    dialog().SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(1, 60));
    EXPECT_EQ(dialog().m_listData.GetItemCount(), 3);
    EXPECT_EQ(package->m_cohActive->m_columnCrt, 0);
}

// ---- the step by itself

TEST(SteppedSelection, WrapsAtBothEndsAndKeepsItsWidth) {
    const auto step = [](__int64 first, __int64 last, __int64 total, int by) {
        const cxc::Slices moved = cxc::stepped({first, last}, total, by);
        return Selection(moved.first, moved.last);
    };
    EXPECT_EQ(step(0, 2, 10, -1), Selection(7, 9));
    EXPECT_EQ(step(7, 9, 10, 1), Selection(0, 2));
    EXPECT_EQ(step(3, 3, 10, 1), Selection(4, 4));
    EXPECT_EQ(step(5, 2, 10, 1), Selection(6, 6));
    EXPECT_EQ(step(0, 0, 1, 1), Selection(0, 0));
    EXPECT_EQ(step(0, 0, 1, -1), Selection(0, 0));
    // Wider than there are slices, and no slices at all.
    EXPECT_EQ(step(0, 12, 10, -1), Selection(-3, 9));
    EXPECT_EQ(step(0, 0, 0, 1), Selection(0, 0));
}

// A number that overflows would not compile here.
TEST(SteppedSelection, DoesNotOverflow) {
    constexpr cxc::Slices wrapped =
        cxc::stepped({test::leastIndex, test::mostIndex}, test::leastIndex, -1);
    constexpr cxc::Slices atTheEnd =
        cxc::stepped({test::mostIndex, test::mostIndex}, test::mostIndex, 1);
    EXPECT_EQ(Selection(wrapped.first, wrapped.last), Selection(0, 0));
    EXPECT_EQ(Selection(atTheEnd.first, atTheEnd.last),
              Selection(test::mostIndex - 1, test::mostIndex - 1));
}

TEST(SteppedSelection, BearsEveryNumber) {
    for (const __int64 first : {test::leastIndex, -1LL, 0LL, test::mostIndex}) {
        for (const __int64 last : {test::leastIndex, 0LL, test::mostIndex}) {
            for (const __int64 total : {test::leastIndex, 0LL, 5LL, test::mostIndex}) {
                const cxc::Slices moved = cxc::stepped({first, last}, total, 1);
                EXPECT_LE(moved.first, moved.last);
            }
        }
    }
}

}  // namespace

#endif
