#ifdef _WIN32

#include "tests/afx/resource.h"
#include "tests/support/Input.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

namespace {

using test::pump;
using test::TestApp;

class Frame : public CFrameWnd {
public:
    explicit Frame(bool& deleted) : m_deleted(deleted) {}
    ~Frame() override { m_deleted = true; }
    int ones = 0;
    bool twoEnabled = true;

protected:
    afx_msg void onOne() { ++ones; }
    afx_msg void onUpdateOne(CCmdUI* ui) {
        ui->SetCheck(1);
        ui->SetText(_T("Renamed"));
    }
    afx_msg void onTwo() {}
    afx_msg void onUpdateTwo(CCmdUI* ui) {
        ui->Enable(twoEnabled);
        ui->SetRadio();
    }
    DECLARE_MESSAGE_MAP()

private:
    bool& m_deleted;
};

BEGIN_MESSAGE_MAP(Frame, CFrameWnd)
ON_COMMAND(ID_ONE, &Frame::onOne)
ON_UPDATE_COMMAND_UI(ID_ONE, &Frame::onUpdateOne)
ON_COMMAND(ID_TWO, &Frame::onTwo)
ON_UPDATE_COMMAND_UI(ID_TWO, &Frame::onUpdateTwo)
END_MESSAGE_MAP()

class FrameApp : public TestApp {
public:
    int threes = 0;

protected:
    afx_msg void onThree() { ++threes; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(FrameApp, TestApp)
ON_COMMAND(ID_THREE, &FrameApp::onThree)
END_MESSAGE_MAP()

class CFrameWndTest : public testing::Test {
protected:
    void SetUp() override {
        frame = new Frame(deleted);
        ASSERT_TRUE(frame->LoadFrame(IDR_FRAME));
    }
    void TearDown() override {
        if (!deleted) frame->DestroyWindow();
        EXPECT_TRUE(deleted);
    }
    // As the system does before it shows a popup.
    CMenu* openPopup() {
        CMenu* const popup = frame->GetMenu()->GetSubMenu(0);
        frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup->m_hMenu), 0);
        return popup;
    }
    UINT stateOf(UINT command) { return openPopup()->GetMenuState(command, MF_BYCOMMAND); }

    FrameApp app;
    bool deleted = false;
    Frame* frame = nullptr;
};

TEST_F(CFrameWndTest, LoadsMenuTitleAndAccelerators) {
    ASSERT_NE(frame->GetMenu(), nullptr);
    CString title;
    frame->GetWindowText(title);
    EXPECT_EQ(test::toUtf8(title), "Tests");
    frame->ShowWindow(SW_SHOW);
    frame->SetForegroundWindow();
    frame->SetFocus();
    pump();
    test::pressKey(VK_F7);
    EXPECT_EQ(frame->ones, 1);
}

TEST_F(CFrameWndTest, CommandsGoOnToTheApplication) {
    frame->SendMessage(WM_COMMAND, ID_THREE);
    EXPECT_EQ(app.threes, 1);
}

TEST_F(CFrameWndTest, UpdateHandlersRunWhenAPopupOpens) {
    CMenu* const popup = openPopup();
    CString text;
    popup->GetMenuString(ID_ONE, text, MF_BYCOMMAND);
    EXPECT_EQ(test::toUtf8(text), "Renamed");
    EXPECT_NE(stateOf(ID_ONE) & MF_CHECKED, 0u);
    EXPECT_EQ(stateOf(ID_TWO) & MF_GRAYED, 0u);
    frame->twoEnabled = false;
    EXPECT_NE(stateOf(ID_TWO) & MF_GRAYED, 0u);
}

TEST_F(CFrameWndTest, ItemsWithoutAHandlerAreDisabled) {
    EXPECT_EQ(stateOf(ID_THREE) & MF_GRAYED, 0u);
    EXPECT_NE(stateOf(32999) & MF_GRAYED, 0u);
    frame->GetMenu()->EnableMenuItem(32999, MF_ENABLED);
    frame->m_bAutoMenuEnable = FALSE;
    EXPECT_EQ(stateOf(32999) & MF_GRAYED, 0u);
}

TEST_F(CFrameWndTest, EndOfTheMainFrameEndsTheLoopAndTheObject) {
    app.m_pMainWnd = frame;
    frame->ShowWindow(SW_SHOW);
    frame->PostMessage(WM_CLOSE);
    EXPECT_EQ(app.Run(), 0);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST(CFrameWndCreate, MissingMenuIsAFailure) {
    TestApp app;
    bool deleted = false;
    Frame frame(deleted);
    EXPECT_FALSE(frame.LoadFrame(4711));
    EXPECT_EQ(frame.m_hWnd, nullptr);
}

TEST(CFrameWndCreate, TakesAPlaceAndAMenu) {
    TestApp app;
    bool deleted = false;
    auto* const frame = new Frame(deleted);
    const CRect place(40, 50, 340, 250);
    ASSERT_TRUE(frame->Create(nullptr, _T("title"), WS_OVERLAPPEDWINDOW, place, nullptr,
                              MAKEINTRESOURCE(IDR_FRAME)));
    CRect window;
    frame->GetWindowRect(window);
    EXPECT_EQ(window, place);
    EXPECT_NE(frame->GetMenu(), nullptr);
    frame->DestroyWindow();
    EXPECT_TRUE(deleted);
}

}  // namespace

#endif
