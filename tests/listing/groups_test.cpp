// The manager of groups with records that may hold anything: its list, a real control, holds what a
// second reader makes of the same bytes, also after a user has chosen in it.
#ifdef _WIN32

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "res/resource.h"
#include "tests/listing/listed.h"
#include "tests/ui/ui_fixture.h"

namespace {

using namespace listed;

class HostileGroups : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_GROUP_MANAGER, &app.m_main));
        test::parkPointer();
    }

    CListGrpTrlCxcDatazq& list() { return dialog.m_list; }
    int count() { return list().GetItemCount(); }
    void command(int id) { dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }

    // shown: what all datasets have been set to, -1 for what was read.
    void expectRows(const reference::Group& model, int current, int shown = -1) {
        ASSERT_EQ(count(), static_cast<int>(model.entries.size()));
        for (const int i : someOf(count())) {
            const reference::Dataset& data = model.entries[static_cast<std::size_t>(i)];
            const bool seen = shown == -1 ? isShown(data) : shown == 1;
            ASSERT_EQ(rowOf(list(), i, 7), entryRow(data, i == current, seen));
            ASSERT_EQ(test::imageOf(list(), i), seen ? 1 : 0);
        }
    }

    void fill(test::CleanGroup& group, const reference::Group& model) {
        list().m_group = &group;
        ASSERT_EQ(list().refill(), 1);
        expectRows(model, group.m_curntCohDataSetID);
        for (const int i : {least, -2, -1, 0, count() - 1, count(), most}) {
            const int meant = i == -1 ? group.m_curntCohDataSetID : i;
            const bool there = meant >= 0 && meant < group.size();
            const int before = count();
            ASSERT_EQ(list().fillRow(i), there ? 1 : 0) << i;
            ASSERT_EQ(count(), before + (there ? 1 : 0)) << i;
        }
    }

    void show(test::CleanGroup& group, const reference::Group& model) {
        const Text before = windowText(dialog.m_hWnd);
        const int current = group.m_curntCohDataSetID;
        dialog.show(group, &app.m_main);
        expectRows(model, current);
        const bool active = current >= 0 && current < count();
        const Text title =
            active ? L"Active:" + textOf(model.entries[static_cast<std::size_t>(current)].field(22))
                   : L"No File";
        ASSERT_EQ(Text(dialog.m_title.GetString()), title);
        ASSERT_EQ(windowText(dialog.m_hWnd), active ? title : before);
    }

    void choose(test::CleanGroup& group, const reference::Group& model) {
        for (const int row : {count() - 1, 0}) {
            if (row < 0 || count() == 0) continue;
            list().SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
            ASSERT_EQ(group.m_curntCohDataSetID, row);
            command(IDC_GROUP_APPLY);
            expectRows(model, row);
        }
        for (const int shown : {1, 0}) {
            command(shown == 1 ? IDC_GROUP_SHOW_ALL : IDC_GROUP_HIDE_ALL);
            expectRows(model, group.m_curntCohDataSetID, shown);
        }
        if (count() == 0) return;
        reference::Group rest = model;
        rest.entries.pop_back();
        list().SetItemState(count() - 1, LVIS_SELECTED, LVIS_SELECTED);
        command(ID_GROUP_DELETE);
        expectRows(rest, group.m_curntCohDataSetID, 0);
    }

    void use(const std::string& bytes) {
        test::CleanGroup group;
        reference::Group model;
        if (!readBoth(bytes, group, model)) return;
        fill(group, model);
        if (!HasFailure() && ++m_used % shownEvery == 0) {
            show(group, model);
            choose(group, model);
            test::pump();
            dialog.ShowWindow(SW_HIDE);
        }
        dialog.forgetGroup();
    }

    test::HostApp app;
    CDlgGroupTrlCxcDataManager dialog;
    int shownEvery = 4;

private:
    int m_used = 0;
};

TEST_F(HostileGroups, GroupsAreListedAsTheSecondReaderReadsThem) {
    Cases cases([&](const std::string& bytes) { use(bytes); });
    cases.whole(corpus("group"));
    shownEvery = 61;
    cases.damaged(golden::groupFiles(), 5);
    EXPECT_GT(cases.tell(), 1000);
}

}  // namespace

#endif
