#ifdef _WIN32

#include "siblings/commonui/CDlgInputString.h"
#include "siblings/commonui/resource.h"
#include "tests/support/Input.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using test::pressKey;
using test::toUtf8;
using test::typeText;

constexpr UINT beginScript = WM_APP;

// Does what a user does, once the dialog's own loop runs.
class UsedDialog : public CDlgInputString {
public:
    using CDlgInputString::CDlgInputString;

    HWND edit() const { return ::GetDlgItem(m_hWnd, IDC_INPUT_STRING_TEXT); }
    std::string shown() const {
        CString text;
        GetDlgItem(IDC_INPUT_STRING_TEXT)->GetWindowText(text);
        return toUtf8(text);
    }

    INT_PTR runWith(const std::function<void()>& script) {
        m_script = script;
        m_done = false;
        const INT_PTR result = DoModal();
        EXPECT_TRUE(m_done) << "the dialog did not come up";
        return result;
    }

protected:
    BOOL OnInitDialog() override {
        const BOOL result = CDlgInputString::OnInitDialog();
        PostMessage(beginScript);
        return result;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != beginScript) return CDlgInputString::WindowProc(message, wParam, lParam);
        SetForegroundWindow();
        test::pump();
        m_script();
        m_done = true;
        return 0;
    }

private:
    std::function<void()> m_script;
    bool m_done = false;
};

class CDlgInputStringTest : public testing::Test {
protected:
    CDlgInputStringTest() { test::parkPointer(); }

    test::TestApp app;
    UsedDialog dialog;
};

TEST_F(CDlgInputStringTest, ShowsTheTextSelectedAndFocused) {
    dialog.m_text = _T("Active \x03B1");
    const INT_PTR result = dialog.runWith([this] {
        EXPECT_TRUE(dialog.IsWindowVisible());
        EXPECT_EQ(dialog.shown(), u8"Active \u03B1");
        EXPECT_EQ(::GetFocus(), dialog.edit());
        DWORD first = 9;
        DWORD end = 9;
        ::SendMessage(dialog.edit(), EM_GETSEL, reinterpret_cast<WPARAM>(&first),
                      reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(first, 0u);
        EXPECT_EQ(end, 8u);
        CString caption;
        dialog.GetWindowText(caption);
        EXPECT_EQ(toUtf8(caption), "Enter Text");
        pressKey(VK_ESCAPE);
    });
    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(CDlgInputStringTest, TypingReplacesTheTextAndOkTakesIt) {
    dialog.m_text = _T("before");
    const INT_PTR result = dialog.runWith([this] {
        typeText(L"Subject 7 \x03B8");
        EXPECT_EQ(toUtf8(dialog.m_text), "before");
        test::click(::GetDlgItem(dialog.m_hWnd, IDOK));
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(toUtf8(dialog.m_text), u8"Subject 7 \u03B8");
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(CDlgInputStringTest, EnterTakesTheText) {
    const INT_PTR result = dialog.runWith([] {
        typeText(L"named");
        pressKey(VK_RETURN);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(toUtf8(dialog.m_text), "named");
}

TEST_F(CDlgInputStringTest, EmptyTextIsTaken) {
    dialog.m_text = _T("before");
    const INT_PTR result = dialog.runWith([] {
        pressKey(VK_DELETE);
        pressKey(VK_RETURN);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_TRUE(dialog.m_text.IsEmpty());
}

TEST_F(CDlgInputStringTest, EscapeLeavesTheTextAsItWas) {
    dialog.m_text = _T("before");
    const INT_PTR result = dialog.runWith([] {
        typeText(L"after");
        pressKey(VK_ESCAPE);
    });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(toUtf8(dialog.m_text), "before");
}

TEST_F(CDlgInputStringTest, CancelAndTheCloseBoxLeaveTheTextAsItWas) {
    dialog.m_text = _T("before");
    const INT_PTR cancelled = dialog.runWith([this] {
        typeText(L"after");
        test::click(::GetDlgItem(dialog.m_hWnd, IDCANCEL));
    });
    EXPECT_EQ(cancelled, IDCANCEL);
    const INT_PTR closed = dialog.runWith([this] {
        typeText(L"after");
        dialog.SendMessage(WM_SYSCOMMAND, SC_CLOSE);
    });
    EXPECT_EQ(closed, IDCANCEL);
    EXPECT_EQ(toUtf8(dialog.m_text), "before");
}

TEST_F(CDlgInputStringTest, TabReachesBothButtonsAndTheEditAgain) {
    dialog.runWith([this] {
        pressKey(VK_TAB);
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog.m_hWnd, IDOK));
        pressKey(VK_TAB);
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog.m_hWnd, IDCANCEL));
        pressKey(VK_TAB);
        EXPECT_EQ(::GetFocus(), dialog.edit());
        pressKey(VK_ESCAPE);
    });
}

TEST_F(CDlgInputStringTest, TextLongerThanTheEditIsKeptWhole) {
    const CString text(_T('x'), 5000);
    dialog.m_text = text;
    EXPECT_EQ(dialog.runWith([] { pressKey(VK_RETURN); }), IDOK);
    EXPECT_EQ(toUtf8(dialog.m_text), toUtf8(text));
}

TEST_F(CDlgInputStringTest, OneObjectMayAskTwice) {
    dialog.m_text = _T("1");
    EXPECT_EQ(dialog.runWith([] {
        typeText(L"2");
        pressKey(VK_RETURN);
    }),
              IDOK);
    const INT_PTR second = dialog.runWith([this] {
        EXPECT_EQ(dialog.shown(), "2");
        typeText(L"3");
        pressKey(VK_RETURN);
    });
    EXPECT_EQ(second, IDOK);
    EXPECT_EQ(toUtf8(dialog.m_text), "3");
}

TEST_F(CDlgInputStringTest, DisablesItsParentMeanwhileAndGivesTheActivationBack) {
    CWnd parent;
    ASSERT_TRUE(parent.CreateEx(0, AfxRegisterWndClass(0), _T("parent"),
                                WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                nullptr));
    parent.SetForegroundWindow();
    test::pump();
    UsedDialog owned(&parent);
    owned.runWith([&] {
        EXPECT_EQ(::GetWindow(owned.m_hWnd, GW_OWNER), parent.m_hWnd);
        EXPECT_FALSE(parent.IsWindowEnabled());
        pressKey(VK_ESCAPE);
    });
    EXPECT_TRUE(parent.IsWindowEnabled());
    EXPECT_EQ(::GetActiveWindow(), parent.m_hWnd);
    parent.DestroyWindow();
}

TEST_F(CDlgInputStringTest, ControlsLieInsideTheDialogAndApart) {
    dialog.runWith([this] {
        CRect client;
        dialog.GetClientRect(client);
        std::vector<CRect> places;
        for (const int id : {IDC_INPUT_STRING_TEXT, IDOK, IDCANCEL}) {
            CRect place;
            dialog.GetDlgItem(id)->GetWindowRect(place);
            dialog.ScreenToClient(place);
            EXPECT_TRUE(place.left >= 0 && place.top >= 0) << id;
            EXPECT_TRUE(place.right <= client.right && place.bottom <= client.bottom) << id;
            for (const CRect& other : places) {
                CRect common;
                EXPECT_FALSE(::IntersectRect(common, place, other)) << id;
            }
            places.push_back(place);
        }
        pressKey(VK_ESCAPE);
    });
}

}  // namespace

#endif
