#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

using test::ControlsDialog;
using test::TestApp;

constexpr UINT missing = static_cast<UINT>(-1);

class CMenuTest : public testing::Test {
protected:
    TestApp app;
};

TEST_F(CMenuTest, LoadsFromTheResources) {
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(IDR_DIALOG_MENU));
    EXPECT_EQ(menu.GetMenuItemCount(), 2u);
    EXPECT_EQ(menu.GetMenuItemID(0), missing);
    CMenu* const first = menu.GetSubMenu(0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetMenuItemID(0), static_cast<UINT>(ID_ONE));
    EXPECT_EQ(first->GetMenuItemID(2), 0u) << "a separator";
    CString text;
    EXPECT_EQ(first->GetMenuString(1, text, MF_BYPOSITION), 8);
    EXPECT_EQ(test::toUtf8(text), "Shared A");
    EXPECT_EQ(menu.GetSubMenu(2), nullptr);
    CMenu other;
    EXPECT_FALSE(other.LoadMenu(4711));
    EXPECT_FALSE(other.DestroyMenu());
}

TEST_F(CMenuTest, ChecksACommandInItsPopupsAndReturnsTheEarlierState) {
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(IDR_DIALOG_MENU));
    EXPECT_EQ(menu.CheckMenuItem(ID_TWO, MF_CHECKED), static_cast<UINT>(MF_UNCHECKED));
    EXPECT_EQ(menu.GetSubMenu(1)->GetMenuState(ID_TWO, MF_BYCOMMAND) & MF_CHECKED,
              static_cast<UINT>(MF_CHECKED));
    EXPECT_EQ(menu.CheckMenuItem(ID_TWO, MF_UNCHECKED), static_cast<UINT>(MF_CHECKED));
}

TEST_F(CMenuTest, CheckingACommandThatIsNotThereHasNoEffect) {
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(IDR_DIALOG_MENU));
    EXPECT_EQ(menu.GetSubMenu(0)->CheckMenuItem(ID_TWO, MF_CHECKED), missing);
    EXPECT_EQ(menu.GetMenuState(ID_TWO, MF_BYCOMMAND) & MF_CHECKED, 0u);
}

TEST_F(CMenuTest, EndOfTheObjectDestroysTheMenu) {
    HMENU handle = nullptr;
    {
        CMenu menu;
        ASSERT_TRUE(menu.CreatePopupMenu());
        EXPECT_TRUE(menu.AppendMenu(MF_STRING, 17, _T("item")));
        EXPECT_EQ(CMenu::FromHandle(menu.m_hMenu), &menu);
        handle = menu.m_hMenu;
    }
    EXPECT_FALSE(::IsMenu(handle));
}

TEST_F(CMenuTest, MenuOfAWindowIsTemporaryAndStaysWhenIdle) {
    ControlsDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    const HMENU handle = dialog.GetMenu()->m_hMenu;
    EXPECT_EQ(dialog.GetMenu(), CMenu::FromHandle(handle));
    app.OnIdle(0);
    EXPECT_TRUE(::IsMenu(handle));
    EXPECT_EQ(dialog.GetMenu()->m_hMenu, handle);
    dialog.SetMenu(nullptr);
    EXPECT_EQ(dialog.GetMenu(), nullptr);
    ::DestroyMenu(handle);
}

// Chooses in the menu that it opens: the keys wait in the queue that the menu's own loop reads.
class Opener : public ControlsDialog {
public:
    BOOL track() {
        CMenu menu;
        menu.LoadMenu(IDR_DIALOG_MENU);
        PostMessage(WM_KEYDOWN, VK_DOWN);
        PostMessage(WM_KEYDOWN, VK_RETURN);
        const BOOL tracked =
            menu.GetSubMenu(0)->TrackPopupMenu(TPM_LEFTALIGN | TPM_LEFTBUTTON, 50, 50, this);
        duringTracking = countOf("one");
        return tracked;
    }
    int duringTracking = -1;
};

TEST_F(CMenuTest, ChosenCommandArrivesAfterTheMenu) {
    Opener dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    dialog.showActive();
    EXPECT_TRUE(dialog.track());
    EXPECT_EQ(dialog.duringTracking, 0);
    test::pump();
    EXPECT_EQ(dialog.countOf("one"), 1);
}

}  // namespace

#endif
