#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <algorithm>

namespace {

using test::ControlsDialog;
using test::pump;
using test::TestApp;

class Routing : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.calls.clear();
    }
    void notifyFromButton(WORD code) {
        const HWND button = dialog.control(IDC_BUTTON);
        dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(MAKELONG(IDC_BUTTON, code)),
                           reinterpret_cast<LPARAM>(button));
    }

    TestApp app;
    ControlsDialog dialog;
};

TEST_F(Routing, FirstEntryForAnIdWins) {
    notifyFromButton(BN_CLICKED);
    EXPECT_EQ(dialog.calls, std::vector<std::string>{"pressed"});
    dialog.calls.clear();
    dialog.SendMessage(WM_COMMAND, ID_SHARED);
    EXPECT_EQ(dialog.calls, std::vector<std::string>{"shared"});
}

TEST_F(Routing, ButtonAndMenuItemOfOneIdShareTheHandler) {
    dialog.SendMessage(WM_COMMAND, IDC_BUTTON);
    EXPECT_EQ(dialog.calls, std::vector<std::string>{"pressed"});
}

TEST_F(Routing, OtherCodesOfAControlAreOthers) {
    notifyFromButton(BN_DOUBLECLICKED);
    EXPECT_TRUE(dialog.calls.empty());
}

TEST_F(Routing, RealClickReachesTheHandler) {
    dialog.showActive();
    test::click(dialog.control(IDC_BUTTON));
    test::parkPointer();
    EXPECT_EQ(dialog.countOf("pressed"), 1);
}

TEST_F(Routing, DisabledCommandIsDropped) {
    dialog.oneEnabled = FALSE;
    dialog.SendMessage(WM_COMMAND, ID_ONE);
    EXPECT_EQ(dialog.calls, std::vector<std::string>{"update one"});
    dialog.oneEnabled = TRUE;
    dialog.SendMessage(WM_COMMAND, ID_ONE);
    EXPECT_EQ(dialog.countOf("one"), 1);
}

TEST_F(Routing, MenuOfADialogIsNotUpdatedByItself) {
    dialog.oneEnabled = FALSE;
    CMenu* const popup = dialog.GetMenu()->GetSubMenu(0);
    dialog.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup->m_hMenu), 0);
    EXPECT_EQ(dialog.countOf("update one"), 0);
    EXPECT_EQ(popup->GetMenuState(ID_ONE, MF_BYCOMMAND) & MF_GRAYED, 0u);
}

TEST_F(Routing, HandlerInfoTellsWithoutRunning) {
    AFX_CMDHANDLERINFO info = {};
    EXPECT_TRUE(dialog.OnCmdMsg(ID_SHARED, CN_COMMAND, nullptr, &info));
    EXPECT_EQ(info.pTarget, &dialog);
    EXPECT_FALSE(dialog.OnCmdMsg(4711, CN_COMMAND, nullptr, &info));
    EXPECT_TRUE(dialog.calls.empty());
}

class CommandApp : public TestApp {
public:
    int twos = 0;

protected:
    afx_msg void onTwo() { ++twos; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CommandApp, TestApp)
ON_COMMAND(ID_TWO, &CommandApp::onTwo)
ON_COMMAND(4711, &CommandApp::onTwo)
END_MESSAGE_MAP()

TEST_F(Routing, CommandsGoOnToTheApplication) {
    CommandApp commands;
    dialog.SendMessage(WM_COMMAND, ID_TWO);
    EXPECT_EQ(commands.twos, 1);
    dialog.SendMessage(WM_COMMAND, 4711);
    EXPECT_EQ(commands.twos, 1) << "an id of a control";
}

TEST_F(Routing, ExceptionInAHandlerEndsAtTheProcedure) {
    dialog.throwOnPress = true;
    notifyFromButton(BN_CLICKED);
    EXPECT_EQ(app.messages().size(), 1u);
    dialog.throwOnPress = false;
    notifyFromButton(BN_CLICKED);
    EXPECT_EQ(dialog.countOf("pressed"), 2);
}

TEST_F(Routing, SizeIsThatOfTheClientArea) {
    dialog.ShowWindow(SW_SHOW);
    dialog.MoveWindow(10, 10, 500, 400);
    CRect client;
    dialog.GetClientRect(client);
    EXPECT_EQ(dialog.size.cx, client.Width());
    EXPECT_EQ(dialog.size.cy, client.Height());
    EXPECT_GT(client.Width(), 400);
}

TEST_F(Routing, ContextMenuNamesTheChildAndTheScreenPoint) {
    dialog.SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(dialog.control(IDC_LIST)),
                       MAKELPARAM(-3, 77));
    EXPECT_EQ(dialog.menuWindow, dialog.control(IDC_LIST));
    EXPECT_EQ(dialog.menuPoint, CPoint(-3, 77));
    dialog.SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(dialog.m_hWnd), MAKELPARAM(-1, -1));
    EXPECT_EQ(dialog.menuPoint, CPoint(-1, -1));
}

TEST_F(Routing, DialogGetsTheMouseOverAPlainStatic) {
    dialog.showActive();
    CRect splitter;
    dialog.splitter.GetWindowRect(splitter);
    dialog.ScreenToClient(splitter);
    const CPoint middle = splitter.CenterPoint();
    EXPECT_EQ(dialog.ChildWindowFromPoint(middle), &dialog.splitter);

    test::movePointer(dialog.m_hWnd, middle);
    EXPECT_GE(dialog.countOf("cursor"), 1);
    EXPECT_EQ(dialog.cursorWindow, dialog.m_hWnd);
    test::pressButton();
    EXPECT_EQ(dialog.down, middle);
    EXPECT_EQ(CWnd::GetCapture(), &dialog);
    test::movePointer(dialog.m_hWnd, CPoint(-9, middle.y + 5));
    EXPECT_EQ(dialog.moved, CPoint(-9, middle.y + 5)) << "captured, and left of the window";
    EXPECT_EQ(dialog.countOf("up"), 0);
    test::releaseButton();
    EXPECT_EQ(dialog.countOf("up"), 1);
    EXPECT_EQ(dialog.countOf("capture lost"), 1);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    test::parkPointer();
}

TEST_F(Routing, StaticThatNotifiesTakesTheMouseItself) {
    dialog.showActive();
    dialog.splitter.ModifyStyle(0, SS_NOTIFY);
    CRect splitter;
    dialog.splitter.GetClientRect(splitter);
    test::click(dialog.splitter.m_hWnd);
    EXPECT_EQ(dialog.countOf("down"), 0);
    test::parkPointer();
}

TEST_F(Routing, DoubleClickIsTold) {
    dialog.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 6));
    EXPECT_EQ(dialog.countOf("double"), 1);
}

// Answers in its own procedure, and counts what gets past its maps.
class Inner : public CWnd {
public:
    int empty = 0;
    int timers = 0;
    int defaults = 0;
    CSize wheel;
    CPoint point;
    UINT key = 0;
    bool closed = false;
    bool destroyed = false;
    std::vector<std::string> dropped;

    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_LBUTTONDOWN || message == WM_TIMER) ++defaults;
        return CWnd::DefWindowProc(message, wParam, lParam);
    }

protected:
    afx_msg int OnCreate(LPCREATESTRUCT create) {
        if (CWnd::OnCreate(create) == -1) return -1;
        return create->cx == 13 ? -1 : 0;
    }
    afx_msg void OnLButtonDown(UINT, CPoint) { ++empty; }
    afx_msg void OnTimer(UINT_PTR id) {
        timers += static_cast<int>(id);
        CWnd::OnTimer(99);
    }
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint at) {
        wheel = CSize(static_cast<int>(flags), delta);
        point = at;
        return TRUE;
    }
    afx_msg void OnKeyDown(UINT pressed, UINT, UINT) { key = pressed; }
    afx_msg void OnClose() { closed = true; }
    afx_msg void OnDestroy() {
        destroyed = true;
        CWnd::OnDestroy();
    }
    afx_msg BOOL OnEraseBkgnd(CDC* dc) {
        const CRect all(0, 0, 100, 100);
        dc->FillSolidRect(all, RGB(1, 2, 3));
        return TRUE;
    }
    afx_msg void OnPaint() {
        CPaintDC dc(this);
        dc.FillSolidRect(2, 2, 3, 3, RGB(4, 5, 6));
    }
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* info) { info->ptMinTrackSize = {222, 111}; }
    afx_msg void OnDropFiles(HDROP drop) {
        const UINT count = ::DragQueryFile(drop, 0xFFFFFFFF, nullptr, 0);
        for (UINT i = 0; i < count; ++i) {
            TCHAR path[MAX_PATH] = {};
            ::DragQueryFile(drop, i, path, MAX_PATH);
            dropped.push_back(test::toUtf8(path));
        }
        ::DragFinish(drop);
    }
    afx_msg LRESULT onOwn(WPARAM wParam, LPARAM lParam) {
        return static_cast<LRESULT>(wParam) * 10 + lParam;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Inner, CWnd)
ON_WM_CREATE()
ON_WM_LBUTTONDOWN()
ON_WM_TIMER()
ON_WM_MOUSEWHEEL()
ON_WM_KEYDOWN()
ON_WM_CLOSE()
ON_WM_DESTROY()
ON_WM_ERASEBKGND()
ON_WM_PAINT()
ON_WM_GETMINMAXINFO()
ON_WM_DROPFILES()
ON_MESSAGE(WM_APP + 3, &Inner::onOwn)
END_MESSAGE_MAP()

class MessageMap : public testing::Test {
protected:
    bool create(int width = 60, DWORD style = WS_POPUP) {
        return inner.CreateEx(0, AfxRegisterWndClass(0), _T("inner"), style, 30, 30, width, 60,
                              nullptr, nullptr) != FALSE;
    }
    TestApp app;
    Inner inner;
};

TEST_F(MessageMap, HandlerMayRefuseTheCreation) {
    EXPECT_FALSE(create(13));
    EXPECT_EQ(inner.m_hWnd, nullptr);
    EXPECT_TRUE(create());
}

TEST_F(MessageMap, EmptyHandlerKeepsTheDefaultAway) {
    ASSERT_TRUE(create());
    EXPECT_EQ(inner.SendMessage(WM_LBUTTONDOWN), 0);
    EXPECT_EQ(inner.empty, 1);
    EXPECT_EQ(inner.defaults, 0);
}

TEST_F(MessageMap, BaseHandlerDoesTheDefault) {
    ASSERT_TRUE(create());
    inner.SendMessage(WM_TIMER, 7);
    EXPECT_EQ(inner.timers, 7);
    EXPECT_EQ(inner.defaults, 1);
}

TEST_F(MessageMap, ArgumentsAreUnpackedWithTheirSigns) {
    ASSERT_TRUE(create());
    EXPECT_EQ(inner.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, -120), MAKELPARAM(-4, 5)), 1);
    EXPECT_EQ(inner.wheel.cx, MK_CONTROL);
    EXPECT_EQ(inner.wheel.cy, -120);
    EXPECT_EQ(inner.point, CPoint(-4, 5));
    inner.SendMessage(WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(inner.key, static_cast<UINT>(VK_RIGHT));
    EXPECT_EQ(inner.SendMessage(WM_APP + 3, 4, 2), 42);
}

TEST_F(MessageMap, CloseAndDestroyAreTold) {
    ASSERT_TRUE(create());
    inner.SendMessage(WM_CLOSE);
    EXPECT_TRUE(inner.closed);
    EXPECT_NE(inner.m_hWnd, nullptr);
    inner.DestroyWindow();
    EXPECT_TRUE(inner.destroyed);
}

TEST_F(MessageMap, SmallestSizeIsTheHandlers) {
    ASSERT_TRUE(create(400, WS_POPUP | WS_THICKFRAME));
    inner.MoveWindow(0, 0, 10, 10);
    CRect window;
    inner.GetWindowRect(window);
    EXPECT_EQ(window.Size().cx, 222);
    EXPECT_EQ(window.Size().cy, 111);
}

TEST_F(MessageMap, PaintsWhatItsHandlersDraw) {
    ASSERT_TRUE(create(60, WS_POPUP | WS_VISIBLE));
    inner.Invalidate();
    inner.UpdateWindow();
    CClientDC dc(&inner);
    EXPECT_EQ(dc.GetPixel(3, 3), RGB(4, 5, 6));
    EXPECT_EQ(dc.GetPixel(5, 5), RGB(1, 2, 3)) << "right and bottom are excluded";
}

TEST_F(MessageMap, DroppedFilesAreTold) {
    ASSERT_TRUE(create());
    inner.DragAcceptFiles();
    EXPECT_NE(inner.GetExStyle() & WS_EX_ACCEPTFILES, 0u);
    const std::wstring paths = std::wstring(L"C:\\one.cxc") + L'\0' + L"C:\\two.cxc" + L'\0';
    const SIZE_T bytes = sizeof(DROPFILES) + (paths.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes);
    auto* const drop = static_cast<DROPFILES*>(::GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::copy(paths.begin(), paths.end(), reinterpret_cast<wchar_t*>(drop + 1));
    ::GlobalUnlock(memory);
    inner.PostMessage(WM_DROPFILES, reinterpret_cast<WPARAM>(memory));
    pump();
    EXPECT_EQ(inner.dropped, (std::vector<std::string>{"C:\\one.cxc", "C:\\two.cxc"}));
}

TEST_F(Routing, WindowsKnowTheirRelatives) {
    EXPECT_EQ(dialog.GetDlgItem(IDC_LIST), &dialog.list);
    EXPECT_EQ(dialog.GetDlgItem(4711), nullptr);
    EXPECT_EQ(dialog.list.GetParent(), &dialog);
    EXPECT_EQ(dialog.list.GetDlgCtrlID(), IDC_LIST);
    CWnd edit;
    EXPECT_TRUE(edit.SubclassDlgItem(IDC_FIRST, &dialog));
    EXPECT_EQ(dialog.GetDlgItem(IDC_FIRST), &edit);
    edit.UnsubclassWindow();
}

TEST_F(Routing, StylesAreModifiedInBits) {
    const DWORD before = dialog.list.GetStyle();
    EXPECT_FALSE(dialog.list.ModifyStyle(LVS_SMALLICON & ~LVS_REPORT, LVS_REPORT));
    EXPECT_TRUE(dialog.list.ModifyStyle(0, LVS_ALIGNLEFT, SWP_FRAMECHANGED));
    EXPECT_EQ(dialog.list.GetStyle(), before | LVS_ALIGNLEFT);
    EXPECT_TRUE(dialog.ModifyStyleEx(0, WS_EX_TOOLWINDOW));
    EXPECT_NE(dialog.GetExStyle() & WS_EX_TOOLWINDOW, 0u);
}

TEST_F(Routing, PlacementOfAChildIsInItsParent) {
    WINDOWPLACEMENT placement = {};
    ASSERT_TRUE(dialog.list.GetWindowPlacement(&placement));
    CRect list;
    dialog.list.GetWindowRect(list);
    dialog.ScreenToClient(list);
    EXPECT_EQ(CRect(placement.rcNormalPosition), list);
    placement.rcNormalPosition.right -= 40;
    ASSERT_TRUE(dialog.list.SetWindowPlacement(&placement));
    CRect narrower;
    dialog.list.GetWindowRect(narrower);
    EXPECT_EQ(narrower.Width(), list.Width() - 40);
}

TEST_F(Routing, IconsAreLargeAndSmall) {
    const HICON icon = ::LoadIcon(nullptr, IDI_WARNING);
    EXPECT_EQ(dialog.SetIcon(icon, TRUE), nullptr);
    EXPECT_EQ(dialog.GetIcon(TRUE), icon);
    EXPECT_EQ(dialog.SetIcon(nullptr, TRUE), icon);
}

TEST_F(Routing, FocusMovesBetweenControls) {
    dialog.showActive();
    dialog.combo.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &dialog.combo);
    EXPECT_EQ(dialog.list.SetFocus(), &dialog.combo);
}

TEST_F(Routing, CoordinatesGoBetweenScreenAndClient) {
    CPoint point(3, 4);
    dialog.ClientToScreen(&point);
    CRect window;
    dialog.GetWindowRect(window);
    EXPECT_TRUE(window.PtInRect(point));
    dialog.ScreenToClient(&point);
    EXPECT_EQ(point, CPoint(3, 4));
    EXPECT_EQ(dialog.ChildWindowFromPoint(CPoint(-5, -5)), nullptr);
}

}  // namespace

#endif
