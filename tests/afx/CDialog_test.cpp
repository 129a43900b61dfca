#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

#include <new>

namespace {

using test::ControlsDialog;
using test::pump;
using test::TestApp;

class CDialogTest : public testing::Test {
protected:
    void create() { ASSERT_TRUE(dialog.Create(IDD_CONTROLS)); }

    TestApp app;
    ControlsDialog dialog;
};

class PlainDialog : public CDialog {
public:
    PlainDialog() = default;
    ~PlainDialog() override { DestroyWindow(); }
    int oks = 0;
    int cancels = 0;

protected:
    void OnOK() override {
        ++oks;
        CDialog::OnOK();
    }
    void OnCancel() override {
        ++cancels;
        CDialog::OnCancel();
    }
};

TEST_F(CDialogTest, IsCreatedHiddenWithItsControlsAndMenu) {
    create();
    EXPECT_EQ(dialog.calls, std::vector<std::string>{"init"});
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_EQ(CWnd::FromHandle(dialog.control(IDC_LIST)), &dialog.list);
    CString caption;
    dialog.GetWindowText(caption);
    EXPECT_EQ(test::toUtf8(caption), "Controls");
    ASSERT_NE(dialog.GetMenu(), nullptr);
    EXPECT_EQ(dialog.GetMenu()->GetMenuItemCount(), 2u);
    EXPECT_EQ(dialog.textOf(IDC_FIRST), "11");
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CDialogTest, TemplateDecidesWhetherItShows) {
    PlainDialog shown;
    ASSERT_TRUE(shown.Create(IDD_SHOWN));
    EXPECT_TRUE(shown.IsWindowVisible());
}

TEST_F(CDialogTest, MissingTemplateIsAFailure) {
    PlainDialog missing;
    EXPECT_FALSE(missing.Create(4711));
    EXPECT_EQ(missing.m_hWnd, nullptr);
    CDialog modal(4711);
    EXPECT_EQ(modal.DoModal(), -1);
}

TEST_F(CDialogTest, SecondWindowIsRefused) {
    create();
    const HWND handle = dialog.m_hWnd;
    EXPECT_FALSE(dialog.Create(IDD_CONTROLS));
    EXPECT_EQ(dialog.m_hWnd, handle);
}

TEST_F(CDialogTest, NullParentStandsForTheMainWindow) {
    CWnd main;
    ASSERT_TRUE(
        main.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr));
    app.m_pMainWnd = &main;
    create();
    EXPECT_EQ(::GetWindow(dialog.m_hWnd, GW_OWNER), main.m_hWnd);
    dialog.DestroyWindow();
    app.m_pMainWnd = nullptr;
}

TEST_F(CDialogTest, EndingHidesAndTheSameWindowShowsAgain) {
    create();
    const HWND handle = dialog.m_hWnd;
    for (int round = 0; round < 3; ++round) {
        dialog.ShowWindow(SW_SHOW);
        EXPECT_TRUE(dialog.IsWindowVisible());
        dialog.EndDialog(IDOK);
        dialog.EndDialog(IDOK);
        pump();
        EXPECT_FALSE(dialog.IsWindowVisible());
        EXPECT_EQ(dialog.m_hWnd, handle);
        EXPECT_TRUE(::IsWindow(dialog.control(IDC_FIRST)));
    }
}

TEST_F(CDialogTest, ExitButtonExchangesDataAndHides) {
    create();
    dialog.showActive();
    ::SetWindowText(dialog.control(IDC_SECOND), _T("7"));
    test::click(dialog.control(IDOK));
    EXPECT_EQ(dialog.countOf("ok"), 1);
    EXPECT_EQ(dialog.second, 7);
    EXPECT_FALSE(dialog.IsWindowVisible());
}

TEST_F(CDialogTest, ExitStaysWhileANumberDoesNotParse) {
    create();
    dialog.showActive();
    ::SetWindowText(dialog.control(IDC_SECOND), _T("none"));
    test::click(dialog.control(IDOK));
    EXPECT_TRUE(dialog.IsWindowVisible());
    EXPECT_EQ(app.messages(), std::vector<std::string>{"Enter an integer."});
    EXPECT_EQ(::GetFocus(), dialog.control(IDC_SECOND));
    test::pressKey(VK_ESCAPE);
    EXPECT_EQ(dialog.countOf("cancel"), 1);
    EXPECT_FALSE(dialog.IsWindowVisible());
}

TEST_F(CDialogTest, CloseBoxCancels) {
    create();
    dialog.ShowWindow(SW_SHOW);
    dialog.SendMessage(WM_SYSCOMMAND, SC_CLOSE);
    pump();
    EXPECT_EQ(dialog.countOf("cancel"), 1);
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_NE(dialog.m_hWnd, nullptr);
}

TEST_F(CDialogTest, EnterAndEscapeWorkWithoutTheirButtons) {
    PlainDialog plain;
    ASSERT_TRUE(plain.Create(IDD_PLAIN));
    plain.ShowWindow(SW_SHOW);
    plain.SetForegroundWindow();
    pump();
    test::pressKey(VK_RETURN);
    EXPECT_EQ(plain.oks, 1);
    EXPECT_FALSE(plain.IsWindowVisible());
    plain.ShowWindow(SW_SHOW);
    plain.SetForegroundWindow();
    pump();
    test::pressKey(VK_ESCAPE);
    EXPECT_EQ(plain.cancels, 1);
    EXPECT_FALSE(plain.IsWindowVisible());
}

TEST_F(CDialogTest, TabMovesTheFocus) {
    create();
    dialog.showActive();
    ::SetFocus(dialog.control(IDC_FIRST));
    test::pressKey(VK_TAB);
    EXPECT_EQ(::GetFocus(), dialog.control(IDC_SECOND));
}

TEST_F(CDialogTest, MenuItemWithTheIdOfAButtonDoesWhatTheButtonDoes) {
    create();
    dialog.ShowWindow(SW_SHOW);
    dialog.SendMessage(WM_COMMAND, IDOK);
    EXPECT_EQ(dialog.countOf("ok"), 1);
    EXPECT_FALSE(dialog.IsWindowVisible());
}

TEST_F(CDialogTest, MissingControlEndsTheCreation) {
    class Lacking : public CDialog {
        void DoDataExchange(CDataExchange* pDX) override { DDX_Control(pDX, 4711, m_control); }
        CWnd m_control;
    };
    class Lack : public Lacking {};
    Lack lacking;
    EXPECT_FALSE(lacking.Create(IDD_PLAIN));
    EXPECT_EQ(lacking.m_hWnd, nullptr);
    EXPECT_EQ(app.messages().size(), 1u);
}

TEST_F(CDialogTest, ExceptionInOnInitDialogIsReportedOnce) {
    class Throwing : public CDialog {
    public:
        BOOL OnInitDialog() override { AfxThrowResourceException(); }
    };
    Throwing throwing;
    EXPECT_TRUE(throwing.Create(IDD_PLAIN));
    EXPECT_EQ(app.messages().size(), 1u);
    throwing.DestroyWindow();
}

TEST_F(CDialogTest, MemoryRefusedInOnInitDialogIsReportedOnce) {
    class Hungry : public CDialog {
    public:
        BOOL OnInitDialog() override { throw std::bad_alloc(); }
    };
    Hungry hungry;
    EXPECT_TRUE(hungry.Create(IDD_PLAIN));
    EXPECT_EQ(app.messages(), std::vector<std::string>{"Out of memory."});
    hungry.DestroyWindow();
}

class ModalDialog : public ControlsDialog {
public:
    using ControlsDialog::ControlsDialog;
    BOOL OnInitDialog() override {
        const BOOL result = ControlsDialog::OnInitDialog();
        owner = ::GetWindow(m_hWnd, GW_OWNER);
        ownerEnabled = owner != nullptr && ::IsWindowEnabled(owner);
        if (endAtOnce) {
            EndDialog(5);
        } else {
            PostMessage(message, wParam);
        }
        return result;
    }
    HWND owner = nullptr;
    bool ownerEnabled = true;
    bool endAtOnce = false;
    UINT message = WM_COMMAND;
    WPARAM wParam = IDOK;
};

TEST_F(CDialogTest, ModalDialogReturnsTheButton) {
    ModalDialog modal;
    EXPECT_EQ(modal.DoModal(), IDOK);
    EXPECT_EQ(modal.m_hWnd, nullptr);
    ModalDialog second;
    second.wParam = IDCANCEL;
    EXPECT_EQ(second.DoModal(), IDCANCEL);
    EXPECT_EQ(second.countOf("cancel"), 1);
}

TEST_F(CDialogTest, ModalDialogClosesByItsCloseBox) {
    ModalDialog modal;
    modal.message = WM_CLOSE;
    modal.wParam = 0;
    EXPECT_EQ(modal.DoModal(), IDCANCEL);
}

TEST_F(CDialogTest, ModalDialogReturnsWhatEndedIt) {
    ModalDialog modal;
    modal.cancelOnPress = true;
    modal.wParam = IDC_BUTTON;
    EXPECT_EQ(modal.DoModal(), 77);
    ModalDialog early;
    early.endAtOnce = true;
    EXPECT_EQ(early.DoModal(), 5);
}

TEST_F(CDialogTest, ModalDialogDisablesItsOwnerMeanwhile) {
    create();
    dialog.ShowWindow(SW_SHOW);
    ModalDialog modal(&dialog);
    EXPECT_EQ(modal.DoModal(), IDOK);
    EXPECT_EQ(modal.owner, dialog.m_hWnd);
    EXPECT_FALSE(modal.ownerEnabled);
    EXPECT_TRUE(dialog.IsWindowEnabled());
}

TEST_F(CDialogTest, ModalDialogMayBeShownTwice) {
    ModalDialog modal;
    EXPECT_EQ(modal.DoModal(), IDOK);
    EXPECT_EQ(modal.DoModal(), IDOK);
    EXPECT_EQ(modal.countOf("init"), 2);
}

TEST_F(CDialogTest, EndOfTheProgramEndsAModalDialog) {
    ModalDialog modal;
    modal.message = WM_NULL;
    ::PostQuitMessage(3);
    EXPECT_EQ(modal.DoModal(), -1);
    MSG msg = {};
    ASSERT_TRUE(::PeekMessage(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 3u);
}

TEST_F(CDialogTest, ObjectMayEndBeforeItsWindow) {
    auto gone = std::make_unique<ControlsDialog>();
    ASSERT_TRUE(gone->Create(IDD_CONTROLS));
    gone->list.InsertColumn(0, _T("column"));
    gone->list.InsertItem(0, _T("item"));
    gone->list.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    const HWND handle = gone->m_hWnd;
    gone.reset();
    EXPECT_FALSE(::IsWindow(handle));
}

TEST_F(CDialogTest, DialogOfABaseClassDestroysItsWindowToo) {
    HWND handle = nullptr;
    {
        class Plain : public CDialog {
        } plain;
        ASSERT_TRUE(plain.Create(IDD_PLAIN));
        handle = plain.m_hWnd;
    }
    EXPECT_FALSE(::IsWindow(handle));
}

TEST_F(CDialogTest, WindowDestroyedWithItsOwnerCanBeMadeAgain) {
    auto owner = std::make_unique<CWnd>();
    ASSERT_TRUE(
        owner->CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr));
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS, owner.get()));
    owner.reset();
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(dialog.list.m_hWnd, nullptr);
    EXPECT_TRUE(dialog.Create(IDD_CONTROLS));
    EXPECT_EQ(CWnd::FromHandle(dialog.control(IDC_LIST)), &dialog.list);
}

TEST_F(CDialogTest, DialogWithoutAPlaceIsCenteredWhenNothingElseIsActive) {
    create();
    CRect window;
    dialog.GetWindowRect(window);
    const CRect screen(0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN));
    EXPECT_NEAR(window.CenterPoint().x, screen.CenterPoint().x, 2);
    PlainDialog placed;
    ASSERT_TRUE(placed.Create(IDD_PLAIN));
    placed.GetWindowRect(window);
    EXPECT_LT(window.right, screen.CenterPoint().x);
}

TEST_F(CDialogTest, HasItsRuntimeClassChain) {
    EXPECT_STREQ(dialog.GetRuntimeClass()->m_lpszClassName, "ControlsDialog");
    EXPECT_TRUE(dialog.IsKindOf(RUNTIME_CLASS(CDialogEx)));
    EXPECT_TRUE(dialog.IsKindOf(RUNTIME_CLASS(CDialog)));
    EXPECT_TRUE(dialog.IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_TRUE(dialog.list.IsKindOf(RUNTIME_CLASS(CListCtrl)));
}

}  // namespace

#endif
