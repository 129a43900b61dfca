#include "tests/support/TestApp.h"
#include "tests/support/Viewer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <vector>

namespace {

using test::Repaint;
using test::TestApp;
using test::Viewer;

TEST(CWnd, HasNoWindowAtFirst) {
    CWnd window;
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    EXPECT_FALSE(window.DestroyWindow());
    EXPECT_EQ(window.Detach(), nullptr);
    EXPECT_FALSE(window.Attach(nullptr));
}

TEST(CWnd, CreatesAWindowOnce) {
    Viewer window;
    ASSERT_NE(window.m_hWnd, nullptr);
    EXPECT_TRUE(::IsWindow(window.m_hWnd));
    EXPECT_EQ(window.GetSafeHwnd(), window.m_hWnd);
    EXPECT_FALSE(
        window.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr));
}

TEST(CWnd, ChildWithoutAParentIsRefused) {
    CWnd window;
    EXPECT_FALSE(
        window.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_CHILD, 0, 0, 9, 9, nullptr, nullptr));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(CWnd, HandleLeadsToItsPermanentObject) {
    Viewer window;
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST(CWnd, HandleWithoutAnObjectGetsATemporaryOne) {
    Viewer window;
    const HWND handle = window.Detach();
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    CWnd* const temporary = CWnd::FromHandle(handle);
    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, handle);
    EXPECT_EQ(CWnd::FromHandle(handle), temporary);
    EXPECT_TRUE(window.Attach(handle));
    EXPECT_EQ(CWnd::FromHandle(handle), &window);
}

TEST(CWnd, DestructorDestroysAnAttachedWindow) {
    HWND handle = nullptr;
    {
        Viewer maker;
        handle = maker.Detach();
        CWnd owner;
        owner.Attach(handle);
        EXPECT_TRUE(::IsWindow(handle));
    }
    EXPECT_FALSE(::IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(CWnd, DestroyedWindowLeavesTheObject) {
    Viewer window;
    const HWND handle = window.m_hWnd;
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_FALSE(::IsWindow(handle));
    EXPECT_FALSE(window.DestroyWindow());
}

TEST(CWnd, WindowDestroyedByItsHandleFreesTheObject) {
    Viewer window;
    ::DestroyWindow(window.m_hWnd);
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(CWnd, ChildrenAreDestroyedWithTheirParent) {
    Viewer parent;
    CWnd child;
    const RECT rect = {1, 2, 11, 22};
    ASSERT_TRUE(child.Create(AfxRegisterWndClass(0), _T("child"), WS_VISIBLE, rect, &parent, 17));
    const HWND handle = child.m_hWnd;
    RECT client = {};
    child.GetClientRect(&client);
    EXPECT_EQ(client.right, 10);
    EXPECT_EQ(client.bottom, 20);
    parent.DestroyWindow();
    EXPECT_EQ(child.m_hWnd, nullptr);
    EXPECT_FALSE(::IsWindow(handle));
}

class SelfDeleting : public CWnd {
public:
    explicit SelfDeleting(bool& deleted) : m_deleted(deleted) {}
    ~SelfDeleting() override { m_deleted = true; }

protected:
    void PostNcDestroy() override { delete this; }

private:
    bool& m_deleted;
};

TEST(CWnd, ObjectMayDeleteItselfWithItsWindow) {
    bool deleted = false;
    auto* const window = new SelfDeleting(deleted);
    ASSERT_TRUE(window->CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr,
                                 nullptr));
    EXPECT_TRUE(window->DestroyWindow());
    EXPECT_TRUE(deleted);
}

TEST(CWnd, ShowWindowTellsWhetherItWasVisible) {
    Viewer window(false);
    EXPECT_FALSE(window.IsWindowVisible());
    EXPECT_FALSE(::IsWindowVisible(window.m_hWnd));
    EXPECT_FALSE(window.ShowWindow(SW_SHOW));
    EXPECT_TRUE(window.IsWindowVisible());
    EXPECT_TRUE(::IsWindowVisible(window.m_hWnd));
    EXPECT_TRUE(window.ShowWindow(SW_HIDE));
    EXPECT_FALSE(window.IsWindowVisible());
}

TEST(CWnd, ChildOfAHiddenParentIsNotVisible) {
    Viewer parent(false);
    CWnd child;
    const RECT rect = {0, 0, 9, 9};
    ASSERT_TRUE(child.Create(AfxRegisterWndClass(0), _T(""), WS_VISIBLE, rect, &parent, 1));
    EXPECT_FALSE(child.IsWindowVisible());
    parent.ShowWindow(SW_SHOW);
    EXPECT_TRUE(child.IsWindowVisible());
}

TEST(CWnd, RepaintRequestsComeFromTheMemberAndFromTheFunction) {
    Viewer window;
    EXPECT_FALSE(window.takeRepaint().requested);

    window.Invalidate();
    Repaint repaint = window.takeRepaint();
    EXPECT_TRUE(repaint.requested && repaint.whole && repaint.erase);

    ::InvalidateRect(window.m_hWnd, nullptr, FALSE);
    repaint = window.takeRepaint();
    EXPECT_TRUE(repaint.requested && repaint.whole);
    EXPECT_FALSE(repaint.erase);

    const RECT part = {3, 4, 13, 24};
    window.InvalidateRect(&part, FALSE);
    repaint = window.takeRepaint();
    EXPECT_TRUE(repaint.requested);
    EXPECT_FALSE(repaint.whole || repaint.erase);
    EXPECT_FALSE(window.takeRepaint().requested);
}

TEST(CWnd, FunctionsRefuseAHandleThatIsNoWindow) {
    Viewer window;
    const HWND gone = window.m_hWnd;
    window.DestroyWindow();
    EXPECT_FALSE(::InvalidateRect(gone, nullptr, TRUE));
    EXPECT_FALSE(::IsWindowVisible(gone));
    EXPECT_FALSE(::ShowWindow(gone, SW_SHOW));
    RECT client = {};
    EXPECT_FALSE(::GetClientRect(gone, &client));
}

TEST(CWnd, TextIsKeptAndCutToTheBuffer) {
    Viewer window;
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(test::toUtf8(text), "Viewer");
    window.SetWindowText(_T("Coh\x00E4renz"));
    window.GetWindowText(text);
    EXPECT_EQ(test::toUtf8(text), "Coh\xC3\xA4renz");
    TCHAR buffer[4] = {};
    EXPECT_EQ(window.GetWindowText(buffer, 4), 3);
    EXPECT_EQ(test::toUtf8(buffer), "Coh");
    window.SetWindowText(_T(""));
    window.GetWindowText(text);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CWnd, MainWindowIsForgottenWhenItIsDestroyed) {
    TestApp app;
    Viewer window;
    app.m_pMainWnd = &window;
    window.DestroyWindow();
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
#ifdef _WIN32
    EXPECT_EQ(app.Run(), 0);  // the end of the main window ends the loop
#endif
}

#ifdef _WIN32

class Recorder : public CWnd {
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        messages.push_back(message);
        if (message == WM_APP) AfxThrowMemoryException();
        if (message == WM_APP + 1) return 1000 + Default();
        if (message == WM_APP + 2) throw std::bad_alloc();
        if (message == WM_APP + 3) throw std::bad_array_new_length();
        if (message == WM_CREATE && failAtCreation) AfxThrowResourceException();
        return CWnd::WindowProc(message, wParam, lParam);
    }
    bool saw(UINT message) const {
        return std::find(messages.begin(), messages.end(), message) != messages.end();
    }
    bool failAtCreation = false;
    std::vector<UINT> messages;
};

class RecordingApp : public TestApp {
public:
    LRESULT ProcessWndProcException(CException* e, const MSG* pMsg) override {
        failed.push_back(pMsg->message);
        EXPECT_TRUE(e->IsKindOf(RUNTIME_CLASS(CException)));
        return defaultProcessing ? TestApp::ProcessWndProcException(e, pMsg) : 42;
    }
    bool defaultProcessing = false;
    std::vector<UINT> failed;
};

bool createHidden(CWnd& window) {
    return window.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr,
                           nullptr) != FALSE;
}

TEST(CWnd, SeesItsMessagesFromTheFirstToTheLast) {
    Recorder window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_TRUE(window.saw(WM_NCCREATE));
    EXPECT_TRUE(window.saw(WM_CREATE));
    window.DestroyWindow();
    EXPECT_EQ(window.messages.back(), static_cast<UINT>(WM_NCDESTROY));
}

TEST(CWnd, ExceptionInAMessageEndsAtTheProcedure) {
    RecordingApp app;
    Recorder window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(::SendMessage(window.m_hWnd, WM_APP, 0, 0), 42);
    EXPECT_EQ(app.failed, std::vector<UINT>{WM_APP});
}

TEST(CWnd, MemoryRefusedInAMessageIsToldAsTheFrameworkTellsIt) {
    TestApp app;
    Recorder window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(::SendMessage(window.m_hWnd, WM_APP + 2, 0, 0), 0);
    EXPECT_EQ(::SendMessage(window.m_hWnd, WM_APP + 3, 0, 0), 0);
    EXPECT_EQ(app.messages(), std::vector<std::string>(2, "Out of memory."));
}

TEST(CWnd, UncaughtExceptionIsReportedByDefault) {
    RecordingApp app;
    app.defaultProcessing = true;
    Recorder window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(::SendMessage(window.m_hWnd, WM_APP, 0, 0), 0);
    EXPECT_EQ(app.messages().size(), 1u);
}

TEST(CWnd, ExceptionDuringCreationRefusesTheWindow) {
    RecordingApp app;
    app.defaultProcessing = true;
    Recorder window;
    window.failAtCreation = true;
    EXPECT_FALSE(createHidden(window));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CWnd, DefaultWorksOnTheCurrentMessage) {
    Recorder window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(::SendMessage(window.m_hWnd, WM_APP + 1, 5, 6), 1000);
}

TEST(CWnd, SubclassedControlSeesTheObjectFirstAndKeepsWorking) {
    Viewer parent;
    const HWND edit = ::CreateWindow(_T("EDIT"), _T("one"), WS_CHILD, 0, 0, 50, 20, parent.m_hWnd,
                                     nullptr, AfxGetInstanceHandle(), nullptr);
    Recorder control;
    ASSERT_TRUE(control.SubclassWindow(edit));
    EXPECT_FALSE(control.SubclassWindow(edit));
    control.SetWindowText(_T("two"));
    EXPECT_TRUE(control.saw(WM_SETTEXT));
    CString text;
    control.GetWindowText(text);
    EXPECT_EQ(test::toUtf8(text), "two");

    EXPECT_EQ(control.UnsubclassWindow(), edit);
    control.messages.clear();
    ::SetWindowText(edit, _T("three"));
    EXPECT_TRUE(control.messages.empty());
    EXPECT_EQ(::GetWindowTextLength(edit), 5);
}

TEST(CWnd, ControlCreatedByAnObjectBelongsToIt) {
    Viewer parent;
    Recorder control;
    const RECT rect = {0, 0, 50, 20};
    ASSERT_TRUE(control.Create(_T("EDIT"), _T("text"), WS_VISIBLE, rect, &parent, 5));
    EXPECT_EQ(CWnd::FromHandle(control.m_hWnd), &control);
    EXPECT_TRUE(control.saw(WM_CREATE));
    EXPECT_EQ(::GetDlgCtrlID(control.m_hWnd), 5);
    EXPECT_EQ(::SendMessage(control.m_hWnd, EM_GETLINECOUNT, 0, 0), 1);
}

TEST(CWnd, TemporaryObjectsEndWhenTheProgramIsIdle) {
    CWinApp app;
    Viewer window;
    const HWND handle = window.Detach();
    CWnd::FromHandle(handle);
    app.OnIdle(0);
    EXPECT_TRUE(::IsWindow(handle));
    window.Attach(handle);
}

TEST(AfxRegisterWndClass, SameSettingsGiveTheSameClass) {
    EXPECT_EQ(AfxRegisterWndClass(0), AfxRegisterWndClass(0));
    EXPECT_NE(AfxRegisterWndClass(0), AfxRegisterWndClass(CS_DBLCLKS));
}

#endif

}  // namespace
