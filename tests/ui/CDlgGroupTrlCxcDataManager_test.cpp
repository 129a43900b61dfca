#ifdef _WIN32

#include "cxcui/CDlgGroupTrlCxcDataManager.h"

#include "res/resource.h"
#include "tests/ui/ui_fixture.h"

#include <fstream>
#include <initializer_list>

namespace {

using test::Texts;

// What the host was told, and what it does then.
int notifications = 0;
std::vector<int> arguments;
std::function<void()> hostAction;

void hostNotify(int argument) {
    ++notifications;
    arguments.push_back(argument);
    if (hostAction) hostAction();
}

class CDlgGroupTrlCxcDataManagerTest : public testing::Test {
protected:
    CDlgGroupTrlCxcDataManagerTest() {
        notifications = 0;
        arguments.clear();
        hostAction = nullptr;
    }
    ~CDlgGroupTrlCxcDataManagerTest() override { hostAction = nullptr; }

    void give(const TCHAR* name) {
        CSnsCohDatazq* const data = test::newFilled(3, 3, 4);
        data->m_cxcName = name;
        group->append(data);
    }
    void giveThree() {
        give(_T("one"));
        give(_T("two"));
        give(_T("three"));
        group->m_curntCohDataSetID = 1;
    }
    void open() {
        ASSERT_EQ(group->showDlgGroupCxcManager(&app.m_main), 1);
        dialog().m_hostNotify = hostNotify;
        test::pump();
        test::parkPointer();
    }
    void openThree() {
        giveThree();
        open();
    }
    CDlgGroupTrlCxcDataManager& dialog() { return *group->m_dlgGroupCxcManager; }
    CListCtrl& list() { return dialog().m_list; }
    HWND at(int id) { return ::GetDlgItem(dialog().m_hWnd, id); }
    void press(int id) {
        test::click(at(id));
        test::parkPointer();
    }
    void choose(UINT command) {
        dialog().SendMessage(WM_COMMAND, command, 0);
        test::pump();
    }
    // Selects rows by code, without what choosing them by hand does to the group.
    void select(std::initializer_list<int> rows) {
        const int current = group->m_curntCohDataSetID;
        for (const int row : rows)
            list().SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
        group->m_curntCohDataSetID = current;
        notifications = 0;
    }
    std::string caption() { return test::textOf(dialog().m_hWnd); }
    std::string state(int index) { return group->at(index).m_tscsInfo ? "shown" : "hidden"; }
    Texts states() {
        Texts all;
        for (int i = 0; i < group->size(); ++i)
            all.push_back(state(i));
        return all;
    }
    Texts names() {
        Texts all;
        for (int i = 0; i < group->size(); ++i)
            all.push_back(group->name(i));
        return all;
    }

    test::HostApp app;
    std::unique_ptr<test::CleanGroup> group = std::make_unique<test::CleanGroup>();
};

TEST_F(CDlgGroupTrlCxcDataManagerTest, NewObjectHasTheStatedMembers) {
    const CDlgGroupTrlCxcDataManager fresh;
    EXPECT_EQ(fresh.m_viewer, nullptr);
    EXPECT_EQ(fresh.m_hostNotify, nullptr);
    EXPECT_EQ(fresh.m_mode, 0);
    EXPECT_EQ(test::toUtf8(fresh.m_title), "Managers for Group CxC Data");
    EXPECT_EQ(fresh.m_select, 0);
    EXPECT_EQ(fresh.m_all, 1);
    EXPECT_EQ(fresh.m_smallWorldThreshold, 1);
    EXPECT_EQ(fresh.m_smallWorldDirection, 0);
    EXPECT_EQ(fresh.m_smallWorldPrecise, 1);
    EXPECT_STREQ(fresh.GetRuntimeClass()->m_lpszClassName, "CDlgGroupTrlCxcDataManager");
    EXPECT_STREQ(fresh.m_list.GetRuntimeClass()->m_lpszClassName, "CListGrpTrlCxcDatazq");
    EXPECT_TRUE(fresh.m_list.IsKindOf(RUNTIME_CLASS(CListGrpTrlCxcData)));
    test::expectAscending({&fresh.m_viewer, &fresh.m_parent, &fresh.m_group, &fresh.m_hostNotify,
                           &fresh.m_mode, &fresh.m_colorSwatch, &fresh.m_buttonApply, &fresh.m_list,
                           &fresh.m_title, &fresh.m_select, &fresh.m_all, &fresh.m_infoFirst,
                           &fresh.m_infoSecond, &fresh.m_smallWorldThreshold,
                           &fresh.m_smallWorldDirection, &fresh.m_smallWorldPrecise});
}

class ExposedDialog : public CDlgGroupTrlCxcDataManager {
public:
    static const AFX_MSGMAP* map() {
        const ExposedDialog dialog;
        return dialog.CDlgGroupTrlCxcDataManager::GetMessageMap();
    }
};

TEST_F(CDlgGroupTrlCxcDataManagerTest, MessageMapHasTheStatedEntriesInTheStatedOrder) {
    std::vector<test::MapRow> expected = {{WM_SIZE, 0, 0}, {WM_CONTEXTMENU, 0, 0}};
    const auto command = [&](UINT id) { expected.emplace_back(WM_COMMAND, 0, id); };
    command(4037);
    expected.emplace_back(WM_NOTIFY, static_cast<WORD>(LVN_ITEMCHANGED), 4027);
    for (const UINT id : {4044u, 4046u, 4043u, 4036u})
        command(id);
    expected.emplace_back(WM_MOUSEMOVE, 0, 0);
    for (const UINT id : {4021u, 4022u, 4026u, 4035u, 4038u, 4029u, 4024u})
        command(id);
    expected.emplace_back(WM_TIMER, 0, 0);
    for (const UINT id :
         {4028u, 4031u, 4033u, 4041u, 4042u, 4045u, 4023u, 4047u, 4048u, 4050u, 4052u})
        command(id);
    expected.emplace_back(WM_COMMAND, static_cast<UINT>(CN_UPDATE_COMMAND_UI), 4052);
    for (const UINT id : {4053u, 4054u, 4057u, 4058u})
        command(id);
    EXPECT_EQ(test::rowsOf(*ExposedDialog::map()), expected);
}

// ---- showing

TEST_F(CDlgGroupTrlCxcDataManagerTest, ShowsTheDatasetsAndNamesTheActiveOne) {
    giveThree();
    CSnsCohDatazq& two = group->at(1);
    two.m_tscsInfo = true;
    two.setAnaLatency(-0.5, 12.25);
    two.m_headerReal0 = 8.0;
    two.m_headerReal1 = 13.5;
    two.setSelect(1, 2);
    two.m_cxcCmptInfo = _T("note");
    open();
    EXPECT_EQ(test::columnsOf(list()),
              (Texts{"Name", "Mode", "State", "Frame", "Latency (ms)", "Frequency(Hz)", "Notes"}));
    EXPECT_EQ(test::namesOf(list()), (Texts{"one", "two", "three"}));
    EXPECT_EQ(test::rowOf(list(), 1, 7),
              "two|Active|Show|4: (1->2|-0.500->12.250|8.000->13.500|note");
    EXPECT_EQ(test::rowOf(list(), 0, 4), "one|Layer|Hide|4: (0->1");
    EXPECT_EQ(test::imageOf(list(), 0), 0);
    EXPECT_EQ(test::imageOf(list(), 1), 1);
    EXPECT_EQ(caption(), "Active:two");
    EXPECT_EQ(test::toUtf8(dialog().m_title), "Active:two");
    EXPECT_EQ(dialog().m_parent, &app.m_main);
    EXPECT_EQ(list().GetExtendedStyle(), 168u);
    EXPECT_EQ(list().GetStyle() & LVS_TYPEMASK, static_cast<DWORD>(LVS_REPORT));
    EXPECT_EQ(list().GetStyle() & LVS_ALIGNMASK, static_cast<DWORD>(LVS_ALIGNLEFT));
    EXPECT_EQ(notifications, 0);
    EXPECT_EQ(group->at(2).m_headerInt9, 2);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, EmptyGroupIsNoFileAndTheCaptionStays) {
    open();
    EXPECT_EQ(list().GetItemCount(), 0);
    EXPECT_EQ(test::toUtf8(dialog().m_title), "No File");
    EXPECT_EQ(caption(), "Source Coherence Image Manager");
    EXPECT_EQ(list().GetExtendedStyle(), 168u);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, CaptionStaysWhenTheLastDatasetGoes) {
    give(_T("one"));
    group->m_curntCohDataSetID = 0;
    open();
    select({0});
    choose(ID_GROUP_DELETE);
    EXPECT_EQ(test::toUtf8(dialog().m_title), "No File");
    EXPECT_EQ(caption(), "Active:one");
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, NullEntryEndsTheListAndKeepsTheFirstStyle) {
    give(_T("one"));
    group->append(nullptr);
    give(_T("three"));
    open();
    EXPECT_EQ(test::namesOf(list()), Texts{"one"});
    EXPECT_EQ(list().GetExtendedStyle(), 72u);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, SwatchShowsTheBasicColorUntilItIsPaintedAgain) {
    openThree();
    group->at(1).m_basicColor = RGB(12, 200, 34);
    choose(ID_GROUP_ZERO_DIAGONAL);
    const HWND swatch = at(IDC_GROUP_SWATCH);
    const HDC dc = ::GetDC(swatch);
    EXPECT_EQ(::GetPixel(dc, 3, 3), static_cast<COLORREF>(RGB(12, 200, 34)));
    ::RedrawWindow(swatch, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_NE(::GetPixel(dc, 3, 3), static_cast<COLORREF>(RGB(12, 200, 34)));
    ::ReleaseDC(swatch, dc);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, SecondShowUsesTheSameWindow) {
    openThree();
    const HWND window = dialog().m_hWnd;
    choose(ID_GROUP_EXIT);
    EXPECT_FALSE(dialog().IsWindowVisible());
    open();
    EXPECT_EQ(dialog().m_hWnd, window);
    EXPECT_TRUE(dialog().IsWindowVisible());
    test::pressKey(VK_ESCAPE);
    EXPECT_FALSE(dialog().IsWindowVisible());
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, WindowThatIsMadeAgainHasItsRowsAndPicturesAgain) {
    giveThree();
    group->at(2).m_tscsInfo = true;
    for (int round = 0; round < 3; ++round) {
        test::ShortLivedOwner owner;
        ASSERT_EQ(group->showDlgGroupCxcManager(owner.window()), 1);
        EXPECT_EQ(test::namesOf(list()), (Texts{"one", "two", "three"})) << round;
        EXPECT_EQ(test::picturesOf(list()), (std::pair<int, int>(2, 2))) << round;
        EXPECT_EQ(test::imageOf(list(), 2), 1);
        owner.end();
        EXPECT_EQ(dialog().m_hWnd, nullptr);
    }
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, WithoutMemoryForTheWindowThereIsNone) {
    giveThree();
    {
        const test::FailingMemory failing(1);
        EXPECT_EQ(group->showDlgGroupCxcManager(&app.m_main), 1);
        EXPECT_EQ(group->m_dlgGroupCxcManager, nullptr);
    }
    open();
    EXPECT_TRUE(dialog().IsWindowVisible());
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, WindowThatCannotBeMadeLeavesTheGroupAsItIs) {
    giveThree();
    group->at(1).m_headerInt9 = 7;
    {
        const test::NoNewControls system;
        EXPECT_EQ(group->showDlgGroupCxcManager(&app.m_main), 1);
    }
    ASSERT_NE(group->m_dlgGroupCxcManager, nullptr);
    EXPECT_EQ(dialog().m_hWnd, nullptr);
    EXPECT_EQ(dialog().m_group, nullptr);
    EXPECT_EQ(group->at(1).m_headerInt9, 7);
    open();
    EXPECT_TRUE(dialog().IsWindowVisible());
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, GroupDestroysItsWindow) {
    openThree();
    const HWND window = dialog().m_hWnd;
    group = std::make_unique<test::CleanGroup>();
    EXPECT_FALSE(::IsWindow(window));
}

// ---- choosing

TEST_F(CDlgGroupTrlCxcDataManagerTest, PressedRowBecomesActiveAndTheHostIsTold) {
    openThree();
    test::clickRow(list(), 2);
    EXPECT_EQ(group->m_curntCohDataSetID, 2);
    EXPECT_GT(notifications, 0);
    EXPECT_EQ(arguments.front(), 0);
    // The list is filled anew only by commands.
    EXPECT_EQ(test::rowOf(list(), 2, 2), "three|Layer");
    EXPECT_EQ(caption(), "Active:two");
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, FirstRowBecomesActiveWithoutSelectAndWithoutTheHost) {
    openThree();
    press(IDC_GROUP_SELECT);
    ASSERT_EQ(dialog().m_select, 1);
    for (int i = 0; i < 3; ++i)
        group->at(i).m_tscsInfo = true;
    test::clickRow(list(), 0);
    EXPECT_EQ(group->m_curntCohDataSetID, 0);
    EXPECT_EQ(notifications, 0);
    EXPECT_EQ(states(), (Texts{"shown", "shown", "shown"}));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, WithSelectCheckedOnlyTheChosenDatasetIsShown) {
    openThree();
    press(IDC_GROUP_SELECT);
    for (int i = 0; i < 3; ++i)
        group->at(i).m_tscsInfo = true;
    test::clickRow(list(), 2);
    EXPECT_EQ(states(), (Texts{"hidden", "hidden", "shown"}));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, RowWithoutItsDatasetOnlyChangesTheStyle) {
    openThree();
    for (int i = 0; i < 3; ++i)
        group->at(i).m_headerInt9 = 50 + i;
    test::clickRow(list(), 2);
    EXPECT_EQ(group->m_curntCohDataSetID, 1);
    EXPECT_EQ(list().GetExtendedStyle(), 72u);
    EXPECT_EQ(notifications, 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, RowThatIsNoneChoosesNothing) {
    openThree();
    group->at(2).m_headerInt9 = -1;  // its row could not be inserted
    NMLISTVIEW none = {};
    none.hdr = {at(IDC_GROUP_DATASETS), IDC_GROUP_DATASETS, LVN_ITEMCHANGED};
    none.iItem = -1;
    dialog().SendMessage(WM_NOTIFY, IDC_GROUP_DATASETS, reinterpret_cast<LPARAM>(&none));
    EXPECT_EQ(group->m_curntCohDataSetID, 1);
    EXPECT_EQ(notifications, 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, MakeActiveTakesTheLastOfTheSelectedRows) {
    openThree();
    select({0, 2});
    choose(ID_GROUP_MAKE_ACTIVE);
    EXPECT_EQ(group->m_curntCohDataSetID, 2);
    EXPECT_EQ(caption(), "Active:three");
    EXPECT_EQ(test::rowOf(list(), 2, 2), "three|Active");
    EXPECT_EQ(notifications, 1);
}

// ---- showing and hiding

TEST_F(CDlgGroupTrlCxcDataManagerTest, ShowTogglesEverySelectedDataset) {
    openThree();
    group->at(2).m_tscsInfo = true;
    select({0, 2});
    choose(ID_GROUP_SHOW);
    EXPECT_EQ(states(), (Texts{"shown", "hidden", "hidden"}));
    EXPECT_EQ(test::rowOf(list(), 0, 3), "one|Layer|Show");
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, HideAllAndShowAllReachEveryDataset) {
    openThree();
    press(IDC_GROUP_SHOW_ALL);
    EXPECT_EQ(states(), (Texts{"shown", "shown", "shown"}));
    EXPECT_EQ(notifications, 1);
    press(IDC_GROUP_HIDE_ALL);
    EXPECT_EQ(states(), (Texts{"hidden", "hidden", "hidden"}));
    EXPECT_EQ(notifications, 2);
    EXPECT_EQ(test::imageOf(list(), 1), 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, DeleteRemovesTheFirstOfTheSelectedRows) {
    openThree();
    select({0, 1, 2});
    choose(ID_GROUP_DELETE);
    EXPECT_EQ(names(), (Texts{"two", "three"}));
    EXPECT_EQ(test::namesOf(list()), (Texts{"two", "three"}));
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, DeleteWithoutASelectionRemovesNothing) {
    openThree();
    choose(ID_GROUP_DELETE);
    EXPECT_EQ(group->size(), 3);
    EXPECT_EQ(notifications, 1);
}

// ---- colours

TEST_F(CDlgGroupTrlCxcDataManagerTest, ColorOfTheActiveDatasetWhereNoRowIsSelected) {
    openThree();
    const COLORREF before = group->at(1).m_basicColor;
    app.colorScript().choose(RGB(1, 2, 3));
    choose(ID_GROUP_BASIC_COLOR);
    EXPECT_EQ(group->at(1).m_basicColor, static_cast<COLORREF>(RGB(1, 2, 3)));
    EXPECT_EQ(app.colorScript().last().initial, before);
    EXPECT_TRUE(app.colorScript().last().fullOpen);
    EXPECT_EQ(notifications, 1);
    EXPECT_NE(group->at(0).m_basicColor, static_cast<COLORREF>(RGB(1, 2, 3)));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, EverySelectedDatasetIsAskedForItsColor) {
    openThree();
    select({0, 2});
    app.colorScript().choose(RGB(9, 8, 7));
    app.colorScript().cancel();
    choose(ID_GROUP_ACTIVE_COLOR);
    EXPECT_EQ(group->at(0).m_activeColor, static_cast<COLORREF>(RGB(9, 8, 7)));
    EXPECT_EQ(group->at(2).m_activeColor, static_cast<COLORREF>(0x0000FF));
    EXPECT_EQ(app.colorScript().shown(), 2);
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, SuppressiveColorHasItsOwnCommand) {
    openThree();
    app.colorScript().choose(RGB(4, 5, 6));
    choose(ID_GROUP_SUPPRESSIVE_COLOR);
    EXPECT_EQ(group->at(1).m_suppressiveColor, static_cast<COLORREF>(RGB(4, 5, 6)));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, DatasetsThatTheHostTakesAwayUnderTheColorDialogKeepTheirs) {
    openThree();
    select({0, 2});
    std::vector<std::unique_ptr<CSnsCohDatazq>> taken;
    const test::InNextLoop host([&] {
        for (const int index : {2, 0}) {
            taken.emplace_back(&group->at(index));
            group->m_cohDatasets.RemoveAt(index);
        }
    });
    app.colorScript().choose(RGB(9, 8, 7));
    choose(ID_GROUP_ACTIVE_COLOR);
    EXPECT_EQ(names(), Texts{"two"});
    EXPECT_EQ(app.colorScript().shown(), 1);
    ASSERT_EQ(taken.size(), 2u);
    for (const auto& dataset : taken) {
        EXPECT_EQ(dataset->m_activeColor, static_cast<COLORREF>(0x0000FF));
        dataset->cleanSnsCohData();
    }
}

// ---- commands for the host

TEST_F(CDlgGroupTrlCxcDataManagerTest, FiveMenuItemsOnlyTellTheHost) {
    openThree();
    const std::vector<double> before = test::valuesOf(group->at(1), 1, 1);
    int expected = 0;
    for (const UINT command : {ID_GROUP_EXCIT_OR_AVERAGE_FRAMES, ID_GROUP_INHIBIT_OR_BEST_FRAME,
                               ID_GROUP_ZERO_DIAGONAL}) {
        choose(command);
        EXPECT_EQ(notifications, ++expected);
    }
    EXPECT_EQ(test::valuesOf(group->at(1), 1, 1), before);
    EXPECT_EQ(group->at(1).m_cohTimTotal, 4);
    EXPECT_EQ(app.colorScript().shown(), 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, HostIsToldBeforeTheRefreshOfItsCommands) {
    openThree();
    hostAction = [&] { group->at(1).m_cxcName = _T("renamed"); };
    choose(ID_GROUP_ZERO_DIAGONAL);
    EXPECT_EQ(caption(), "Active:renamed");
    hostAction = [&] { group->at(1).m_cxcName = _T("later"); };
    press(IDC_GROUP_SHOW_ALL);
    EXPECT_EQ(caption(), "Active:renamed");
    EXPECT_EQ(test::namesOf(list())[1], "renamed");
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, SmallWorldItemsToggleTheirFlagAndTellNobody) {
    openThree();
    choose(ID_GROUP_SMALL_WORLD_THRESHOLD);
    choose(ID_GROUP_SMALL_WORLD_DIRECTION);
    choose(ID_GROUP_SMALL_WORLD_PRECISE);
    EXPECT_EQ(dialog().m_smallWorldThreshold, 0);
    EXPECT_EQ(dialog().m_smallWorldDirection, 1);
    EXPECT_EQ(dialog().m_smallWorldPrecise, 0);
    choose(ID_GROUP_SMALL_WORLD_DIRECTION);
    EXPECT_EQ(dialog().m_smallWorldDirection, 0);
    EXPECT_EQ(notifications, 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, ItemsWithoutEffectHaveNone) {
    openThree();
    for (const UINT command :
         {ID_GROUP_CHANGE_NAME, ID_GROUP_SELECT_HIDE, ID_GROUP_NOTE, ID_GROUP_COMPUTING_INFO}) {
        choose(command);
        EXPECT_EQ(notifications, 0) << command;
    }
    EXPECT_EQ(names(), (Texts{"one", "two", "three"}));
    press(IDC_GROUP_ALL);
    EXPECT_EQ(states(), (Texts{"hidden", "hidden", "hidden"}));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, ApplyFillsTheListAndTellsTheHostButLeavesTheCaption) {
    openThree();
    group->at(1).m_cxcName = _T("renamed");
    press(IDC_GROUP_APPLY);
    EXPECT_EQ(test::namesOf(list())[1], "renamed");
    EXPECT_EQ(caption(), "Active:two");
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, StatisticsShowsTheActiveDatasetAndTellsTheHost) {
    openThree();
    press(IDC_GROUP_STATISTICS);
    const HWND window = test::findWindow("two");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(notifications, 1);
    ::SendMessage(window, WM_CLOSE, 0, 0);
    test::pump();
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, AverageAppendsOneAndSummaryThreeAfterTellingTheHost) {
    openThree();
    std::vector<int> rowsWhenTold;
    hostAction = [&] { rowsWhenTold.push_back(list().GetItemCount()); };
    choose(ID_GROUP_AVERAGE_ALL);
    EXPECT_EQ(group->size(), 4);
    EXPECT_EQ(list().GetItemCount(), 4);
    choose(ID_GROUP_SUMMARIZE_ALL);
    EXPECT_EQ(group->size(), 7);
    EXPECT_EQ(list().GetItemCount(), 7);
    EXPECT_EQ(rowsWhenTold, (std::vector<int>{3, 4}));
}

// ---- files

TEST_F(CDlgGroupTrlCxcDataManagerTest, SaveAndExportWriteTheActiveDatasetAndTellNobody) {
    openThree();
    const test::TempDir dir;
    app.script().choose(dir.path() / "two.cxc");
    choose(ID_GROUP_SAVE);
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "two.cxc"));
    app.script().choose(dir.path() / "two.txt");
    choose(ID_GROUP_EXPORT);
    EXPECT_EQ(app.script().shown(), 2);
    EXPECT_EQ(notifications, 0);
    app.script().choose(dir.path() / "two.cxc");
    choose(ID_GROUP_OPEN);
    EXPECT_EQ(names(), (Texts{"one", "two", "three", "two"}));
    EXPECT_EQ(list().GetItemCount(), 4);
    EXPECT_EQ(group->m_curntCohDataSetID, 1);
    EXPECT_EQ(notifications, 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, CancelledOpenAppendsAnEmptyDataset) {
    openThree();
    app.script().cancel();
    choose(ID_GROUP_OPEN);
    EXPECT_EQ(group->size(), 4);
    EXPECT_EQ(group->at(3).m_mCC, nullptr);
    EXPECT_EQ(list().GetItemCount(), 4);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, FileThatCannotBeReadIsToldAndAppendsNothing) {
    openThree();
    const test::TempDir dir;
    std::ofstream(dir.path() / "empty.cxc", std::ios::binary).close();
    int held = 0;
    for (int round = 0; round < 3; ++round) {
        app.script().choose(dir.path() / "empty.cxc");
        choose(ID_GROUP_OPEN);
        EXPECT_EQ(app.messages().size(), 1u);
        app.clearMessages();
        if (round == 0) held = test::datasetBlocks();  // the first dialog makes the system's own
    }
    EXPECT_LT(test::datasetBlocks(), held + 2);  // one each, if they were lost
    EXPECT_EQ(names(), (Texts{"one", "two", "three"}));
    EXPECT_TRUE(dialog().IsWindowEnabled());
    EXPECT_FALSE(app.waiting());
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, OpenedDatasetWithoutRoomInTheGroupIsReleased) {
    openThree();
    int held = 0;
    for (int round = 0; round < 3; ++round) {
        app.script().cancel();
        const test::FailingMemory failing(2);  // the dataset comes first, then its entry
        choose(ID_GROUP_OPEN);
        EXPECT_GE(failing.count(), 2);
        if (round == 0) held = test::datasetBlocks();
    }
    EXPECT_LT(test::datasetBlocks(), held + 2);  // one each, if they were lost
    EXPECT_EQ(names(), (Texts{"one", "two", "three"}));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, DatasetThatTheHostReleasesUnderTheFileDialogIsNotWritten) {
    openThree();
    const test::TempDir dir;
    for (const UINT command : {ID_GROUP_SAVE, ID_GROUP_EXPORT}) {
        app.script().choose(dir.path() / "gone.cxc.txt");
        bool managerEnabled = true;
        const test::InNextLoop host([&] {
            managerEnabled = dialog().IsWindowEnabled() != FALSE;
            group->deleteCohDataset(group->m_curntCohDataSetID);
        });
        choose(command);
        EXPECT_FALSE(managerEnabled) << command;
        EXPECT_TRUE(dialog().IsWindowEnabled()) << command;
        EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << command;
        group->m_curntCohDataSetID = 1;
    }
    EXPECT_EQ(app.script().shown(), 2);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, GroupMayEndUnderTheFileDialog) {
    const test::TempDir dir;
    for (const UINT command : {ID_GROUP_SAVE, ID_GROUP_EXPORT}) {
        openThree();
        app.script().choose(dir.path() / "gone.cxc.txt");
        const test::InNextLoop host([&] { group.reset(); });
        dialog().SendMessage(WM_COMMAND, command, 0);
        test::pump();
        EXPECT_EQ(group, nullptr) << command;
        EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << command;
        group = std::make_unique<test::CleanGroup>();
    }
    EXPECT_EQ(app.script().shown(), 2);
}

// ---- menus, places, the pointer

TEST_F(CDlgGroupTrlCxcDataManagerTest, SelectHideIsNeverSeenChecked) {
    giveThree();
    group->at(1).m_tscsInfo = true;
    open();
    const UINT state = dialog().GetMenu()->GetMenuState(ID_GROUP_SELECT_HIDE, MF_BYCOMMAND);
    EXPECT_EQ(state & MF_CHECKED, 0u);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, RightClickOpensThePopupAndItsItemIsCarriedOut) {
    openThree();
    test::clickRow(list(), 1);
    notifications = 0;
    // The keys wait in the queue that the menu's own loop reads.
    bool showChecked = false;
    const test::WhenMenuOpens user([&](HMENU menu) {
        showChecked = (::GetMenuState(menu, ID_GROUP_SHOW, MF_BYCOMMAND) & MF_CHECKED) != 0;
        for (const WPARAM key : {VK_DOWN, VK_DOWN, VK_RETURN})
            dialog().PostMessage(WM_KEYDOWN, key);
    });
    CRect rect;
    list().GetItemRect(1, rect, LVIR_LABEL);
    test::rightClick(list().m_hWnd, CPoint(rect.left + 4, rect.CenterPoint().y));
    test::parkPointer();
    EXPECT_TRUE(showChecked);
    EXPECT_EQ(states(), (Texts{"hidden", "shown", "hidden"}));
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, MenuBarOpensAndItsItemsAreCarriedOut) {
    openThree();
    test::chooseInMenuBar(dialog(), 3, 4);  // Process, Average All Network
    EXPECT_EQ(group->size(), 4);
    EXPECT_EQ(notifications, 1);
    test::chooseInMenuBar(dialog(), 0, 4);  // File, Exit
    EXPECT_FALSE(dialog().IsWindowVisible());
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, WithoutItsMenuBarTheManagerWorks) {
    openThree();
    const HMENU bar = ::GetMenu(dialog().m_hWnd);
    ASSERT_TRUE(::SetMenu(dialog().m_hWnd, nullptr));
    group->at(1).m_cxcName = _T("renamed");
    choose(ID_GROUP_ZERO_DIAGONAL);
    EXPECT_EQ(caption(), "Active:renamed");
    ::SetMenu(dialog().m_hWnd, bar);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, TimerDoesNothing) {
    openThree();
    EXPECT_EQ(dialog().SendMessage(WM_TIMER, 1, 0), 0);
    EXPECT_EQ(notifications, 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, ListFollowsTheSizeOfTheWindow) {
    openThree();
    dialog().SetWindowPos(nullptr, 0, 0, 900, 400, SWP_NOMOVE | SWP_NOZORDER);
    test::pump();
    CRect client;
    dialog().GetClientRect(client);
    WINDOWPLACEMENT placement = {};
    list().GetWindowPlacement(&placement);
    EXPECT_EQ(placement.rcNormalPosition.right, client.right - 10);
    EXPECT_EQ(placement.rcNormalPosition.bottom, client.bottom - 10);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, PointerOverTheDialogTakesTheFocus) {
    openThree();
    list().SetFocus();
    test::movePointer(dialog().m_hWnd, CPoint(2, 60));
    EXPECT_NE(::GetFocus(), list().m_hWnd);
    test::parkPointer();
}

// ---- a list that does not empty quietly

TEST_F(CDlgGroupTrlCxcDataManagerTest, DeselectionWhileTheListIsEmptiedIsNoChoice) {
    openThree();
    select({2});
    int emptied = 0;
    const test::BeforeControl control(list().m_hWnd, LVM_DELETEALLITEMS, [&](const auto& before) {
        LVITEM nothing = {};
        nothing.stateMask = LVIS_SELECTED;
        before(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&nothing));
        ++emptied;
        return std::optional<LRESULT>();
    });
    choose(ID_GROUP_SHOW);
    EXPECT_EQ(emptied, 1);
    EXPECT_EQ(group->m_curntCohDataSetID, 1);
    EXPECT_EQ(notifications, 1);
    EXPECT_EQ(states(), (Texts{"hidden", "hidden", "shown"}));
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, ListThatCannotBeEmptiedIsToldAndFilledAllTheSame) {
    openThree();
    const test::BeforeControl control(list().m_hWnd, LVM_DELETEALLITEMS, test::refuse);
    bool managerEnabled = true;
    app.whileBoxStands = [&] { managerEnabled = dialog().IsWindowEnabled() != FALSE; };
    choose(ID_GROUP_ZERO_DIAGONAL);
    EXPECT_EQ(app.messages(), Texts{"Clean all items error"});
    EXPECT_FALSE(managerEnabled);
    EXPECT_TRUE(dialog().IsWindowEnabled());
    EXPECT_EQ(list().GetItemCount(), 6);
    EXPECT_EQ(notifications, 1);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, GroupMayEndWhileTheUserIsToldThatTheListIsNotEmpty) {
    for (const UINT command : {ID_GROUP_SHOW, ID_GROUP_ZERO_DIAGONAL, ID_GROUP_AVERAGE_ALL,
                               ID_GROUP_DELETE, ID_GROUP_MAKE_ACTIVE, ID_GROUP_OPEN}) {
        openThree();
        const test::BeforeControl control(list().m_hWnd, LVM_DELETEALLITEMS, test::refuse);
        app.whileBoxStands = [&] { group.reset(); };
        if (command == ID_GROUP_OPEN) app.script().cancel();
        notifications = 0;
        dialog().SendMessage(WM_COMMAND, command, 0);
        app.whileBoxStands = nullptr;
        test::pump();
        EXPECT_EQ(group, nullptr) << command;
        EXPECT_LE(notifications, 1) << command;
        group = std::make_unique<test::CleanGroup>();
    }
    for (const bool apply : {true, false}) {
        openThree();
        const test::BeforeControl control(list().m_hWnd, LVM_DELETEALLITEMS, test::refuse);
        app.whileBoxStands = [&] { group.reset(); };
        if (apply)
            dialog().SendMessage(WM_COMMAND, IDC_GROUP_APPLY,
                                 reinterpret_cast<LPARAM>(at(IDC_GROUP_APPLY)));
        else
            dialog().show(*group, &app.m_main);
        app.whileBoxStands = nullptr;
        test::pump();
        EXPECT_EQ(group, nullptr);
        EXPECT_EQ(notifications, 0);
        group = std::make_unique<test::CleanGroup>();
    }
}

// ---- hosts that do as they like

TEST_F(CDlgGroupTrlCxcDataManagerTest, HostMayDestroyTheGroupWhenItIsTold) {
    for (const UINT command : {ID_GROUP_SHOW, ID_GROUP_ZERO_DIAGONAL, ID_GROUP_AVERAGE_ALL,
                               ID_GROUP_DELETE, ID_GROUP_MAKE_ACTIVE}) {
        openThree();
        hostAction = [&] { group.reset(); };
        dialog().SendMessage(WM_COMMAND, command, 0);
        test::pump();
        EXPECT_EQ(group, nullptr) << command;
        hostAction = nullptr;
        group = std::make_unique<test::CleanGroup>();
    }
    openThree();
    hostAction = [&] { group.reset(); };
    test::click(at(IDC_GROUP_APPLY));
    EXPECT_EQ(group, nullptr);
    hostAction = nullptr;
    group = std::make_unique<test::CleanGroup>();
    openThree();
    hostAction = [&] { group.reset(); };
    CListCtrl* const doomed = &list();
    test::clickRow(*doomed, 2);
    EXPECT_EQ(group, nullptr);
    hostAction = nullptr;
    group = std::make_unique<test::CleanGroup>();
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, ExceptionOfTheHostIsToldAndTheManagerGoesOn) {
    openThree();
    hostAction = [] { AfxThrowFileException(CFileException::diskFull); };
    for (const UINT command : {ID_GROUP_SHOW, ID_GROUP_ZERO_DIAGONAL, ID_GROUP_AVERAGE_ALL}) {
        app.clearMessages();
        choose(command);
        EXPECT_EQ(app.messages().size(), 1u) << command;
    }
    hostAction = nullptr;
    press(IDC_GROUP_SHOW_ALL);
    EXPECT_EQ(list().GetItemCount(), 4);
    EXPECT_TRUE(dialog().IsWindowEnabled());
}

// Both windows are the host's; it may have destroyed them without telling.
TEST_F(CDlgGroupTrlCxcDataManagerTest, WindowsOfTheHostAreNeverLookedInto) {
    openThree();
    auto* const gone = reinterpret_cast<CWnd*>(1);
    dialog().m_viewer = gone;
    dialog().m_parent = gone;
    for (const UINT command :
         {ID_GROUP_SHOW, ID_GROUP_ZERO_DIAGONAL, ID_GROUP_AVERAGE_ALL, ID_GROUP_MAKE_ACTIVE})
        choose(command);
    for (const int button : {IDC_GROUP_APPLY, IDC_GROUP_SHOW_ALL, IDC_GROUP_HIDE_ALL})
        press(button);
    test::movePointer(dialog().m_hWnd, CPoint(2, 60));
    test::clickRow(list(), 2);
    EXPECT_EQ(dialog().m_viewer, gone);
    EXPECT_EQ(dialog().m_parent, gone);
    EXPECT_GE(notifications, 8);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, EveryCommandBearsAGroupThatTheHostHasEmptied) {
    openThree();
    group->cleanSnsCohPkg();
    for (UINT command = 4021; command <= 4058; ++command) {
        if (command != ID_GROUP_OPEN) choose(command);
    }
    EXPECT_EQ(group->size(), 0);
    EXPECT_EQ(list().GetItemCount(), 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, StaleCurrentIndexIsNoFile) {
    giveThree();
    group->m_curntCohDataSetID = 99;
    open();
    EXPECT_EQ(test::toUtf8(dialog().m_title), "No File");
    for (const UINT command : {ID_GROUP_SAVE, ID_GROUP_EXPORT, ID_GROUP_BASIC_COLOR})
        choose(command);
    press(IDC_GROUP_STATISTICS);
    EXPECT_EQ(app.script().shown(), 0);
    EXPECT_EQ(app.colorScript().shown(), 0);
}

TEST_F(CDlgGroupTrlCxcDataManagerTest, HostileDatasetsAreListedWithoutHarm) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        auto* const data = new CSnsCohDatazq;
        hostile.make(*data);
        group->append(data);
    }
    group->m_curntCohDataSetID = 0;
    open();
    EXPECT_EQ(list().GetItemCount(), group->size());
    for (int i = 0; i < group->size(); ++i) {
        group->m_curntCohDataSetID = i;
        press(IDC_GROUP_STATISTICS);
    }
    choose(ID_GROUP_AVERAGE_ALL);
    choose(ID_GROUP_SUMMARIZE_ALL);
    EXPECT_EQ(list().GetItemCount(), group->size());
}

}  // namespace

#endif
