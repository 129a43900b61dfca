#ifdef _WIN32

#include "siblings/commonui/CRichInfozq.h"
#include "siblings/commonui/resource.h"
#include "tests/support/Input.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using test::click;
using test::pressKey;
using test::pump;
using test::pumpUntil;
using test::toUtf8;

// Shown or not.
std::vector<HWND> infoWindows() {
    std::vector<HWND> windows;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM data) -> BOOL {
            if (::GetDlgItem(window, IDC_RICH_INFO_TEXT) != nullptr)
                reinterpret_cast<std::vector<HWND>*>(data)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

HWND textControl(HWND window) {
    return ::GetDlgItem(window, IDC_RICH_INFO_TEXT);
}

std::string textOf(HWND window) {
    if (window == nullptr) return "no window";
    CString text;
    CWnd::FromHandle(window)->GetWindowText(text);
    return toUtf8(text);
}

// Line ends as in the strings of the program.
std::string linesOf(HWND window) {
    std::string text = textOf(textControl(window));
    std::string lines;
    for (const char c : text) {
        if (c == '\r') continue;
        lines += c;
    }
    return lines;
}

CHARRANGE selectionOf(HWND window) {
    CHARRANGE range = {};
    ::SendMessage(textControl(window), EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
    return range;
}

void press(WORD modifier, WORD key) {
    const auto send = [](WORD virtualKey, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = virtualKey;
        input.ki.dwFlags = flags;
        ::SendInput(1, &input, sizeof(input));
        pump();
    };
    send(modifier, 0);
    send(key, 0);
    send(key, KEYEVENTF_KEYUP);
    send(modifier, KEYEVENTF_KEYUP);
}

void setClipboard(const wchar_t* text) {
    ASSERT_TRUE(::OpenClipboard(nullptr));
    ::EmptyClipboard();
    const std::size_t bytes = (std::wcslen(text) + 1) * sizeof(wchar_t);
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::memcpy(::GlobalLock(block), text, bytes);
    ::GlobalUnlock(block);
    ::SetClipboardData(CF_UNICODETEXT, block);
    ::CloseClipboard();
}

std::string clipboard() {
    if (!::OpenClipboard(nullptr)) return "closed";
    const HANDLE data = ::GetClipboardData(CF_UNICODETEXT);
    std::string text = "none";
    if (data != nullptr) {
        text = toUtf8(CString(static_cast<const wchar_t*>(::GlobalLock(data))));
        ::GlobalUnlock(data);
    }
    ::CloseClipboard();
    std::string lines;
    for (const char c : text) {
        if (c != '\r') lines += c;
    }
    return lines;
}

// Pressed again until it has worked: the system settles the state of the modifier keys a while
// after a window has become active, and may take the first press for released.
template <class Worked>
bool press(WORD modifier, WORD key, Worked worked) {
    return pumpUntil([&] {
        press(modifier, key);
        return worked();
    });
}

bool allIsSelected(HWND window) {
    const CHARRANGE range = selectionOf(window);
    const LRESULT length = ::GetWindowTextLength(textControl(window));
    return length > 0 && range.cpMin == 0 && range.cpMax >= length;
}

bool selectAll(HWND window) {
    return press(VK_CONTROL, 'A', [=] { return allIsSelected(window); });
}

bool copy() {
    return press(VK_CONTROL, 'C', [] { return clipboard() != "old"; });
}

class CRichInfozqTest : public testing::Test {
protected:
    CRichInfozqTest() { test::parkPointer(); }

    HWND show(CRichInfozq& info, LPCTSTR text, LPCTSTR title) {
        const std::vector<HWND> before = infoWindows();
        EXPECT_EQ(info.showRichInfo02(text, title), 1);
        pump();
        for (const HWND window : infoWindows()) {
            if (textOf(window) == toUtf8(title)) return window;
        }
        ADD_FAILURE() << "no window";
        return nullptr;
    }

    test::TestApp app;
    CRichInfozq info;
};

TEST_F(CRichInfozqTest, HasNoWindowBeforeTheFirstUse) {
    EXPECT_TRUE(infoWindows().empty());
}

TEST_F(CRichInfozqTest, ShowsTheTextUnderTheTitle) {
    const HWND window = show(info, _T("Min: 1\tMax: 2\nnext \x03B1"), _T("Dataset"));
    EXPECT_TRUE(::IsWindowVisible(window));
    EXPECT_EQ(linesOf(window), u8"Min: 1\tMax: 2\nnext \u03B1");
    EXPECT_EQ(::GetActiveWindow(), window);
    EXPECT_EQ(::GetFocus(), textControl(window));
    const CHARRANGE nothing = selectionOf(window);
    EXPECT_EQ(nothing.cpMin, 0);
    EXPECT_EQ(nothing.cpMax, 0);
}

TEST_F(CRichInfozqTest, TextStandsInARealRichEditControl) {
    const HWND window = show(info, _T("text"), _T("t"));
    wchar_t name[64] = {};
    ::GetClassNameW(textControl(window), name, 64);
    EXPECT_EQ(toUtf8(CString(name)).substr(0, 8), "RichEdit");
}

TEST_F(CRichInfozqTest, TextCannotBeChanged) {
    const HWND window = show(info, _T("text"), _T("t"));
    test::typeText(L"x");
    pressKey(VK_DELETE);
    EXPECT_EQ(linesOf(window), "text");
}

TEST_F(CRichInfozqTest, KeysSelectAllAndCopy) {
    setClipboard(L"old");
    const HWND window = show(info, _T("one two"), _T("t"));
    EXPECT_TRUE(selectAll(window));
    EXPECT_TRUE(copy());
    EXPECT_EQ(clipboard().substr(0, 7), "one two");
}

TEST_F(CRichInfozqTest, KeysStillWorkWhenItIsShownAgain) {
    show(info, _T("first"), _T("t"));
    pressKey(VK_ESCAPE);
    setClipboard(L"old");
    const HWND window = show(info, _T("second"), _T("t"));
    EXPECT_TRUE(selectAll(window));
    EXPECT_TRUE(copy());
    EXPECT_EQ(clipboard().substr(0, 6), "second");
}

TEST_F(CRichInfozqTest, CopyTakesOnlyWhatIsSelected) {
    setClipboard(L"old");
    const HWND window = show(info, _T("first\nsecond"), _T("t"));
    EXPECT_TRUE(press(VK_SHIFT, VK_END, [=] {
        const CHARRANGE range = selectionOf(window);
        if (range.cpMin == 0 && range.cpMax == 5) return true;
        pressKey(VK_HOME);
        return false;
    }));
    EXPECT_TRUE(copy());
    EXPECT_EQ(clipboard(), "first");
}

TEST_F(CRichInfozqTest, MenuSelectsAllAndCopies) {
    setClipboard(L"old");
    const HWND window = show(info, _T("menu"), _T("t"));
    const HMENU edit = ::GetSubMenu(::GetMenu(window), 1);
    ASSERT_EQ(::GetMenuItemCount(edit), 2);
    ::SendMessage(window, WM_COMMAND, ::GetMenuItemID(edit, 1), 0);
    EXPECT_EQ(selectionOf(window).cpMin, 0);
    EXPECT_GE(selectionOf(window).cpMax, 4);
    ::SendMessage(window, WM_COMMAND, ::GetMenuItemID(edit, 0), 0);
    EXPECT_EQ(clipboard().substr(0, 4), "menu");
}

// The popup runs a loop of its own, in which the timer comes: keys choose an item.
class InPopup {
public:
    explicit InPopup(std::vector<WORD> keys) {
        s_keys = std::move(keys);
        m_timer = ::SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
            GUITHREADINFO info = {};
            info.cbSize = sizeof(info);
            ::GetGUIThreadInfo(::GetCurrentThreadId(), &info);
            if ((info.flags & GUI_INMENUMODE) == 0) return;
            std::vector<WORD> once;
            once.swap(s_keys);
            for (const WORD key : once) {
                INPUT input[2] = {};
                input[0].type = input[1].type = INPUT_KEYBOARD;
                input[0].ki.wVk = input[1].ki.wVk = key;
                input[1].ki.dwFlags = KEYEVENTF_KEYUP;
                ::SendInput(2, input, sizeof(INPUT));
            }
        });
    }
    ~InPopup() {
        ::KillTimer(nullptr, m_timer);
        EXPECT_TRUE(s_keys.empty()) << "no popup menu came";
    }
    InPopup(const InPopup&) = delete;
    InPopup& operator=(const InPopup&) = delete;

private:
    inline static std::vector<WORD> s_keys;
    UINT_PTR m_timer = 0;
};

TEST_F(CRichInfozqTest, RightClickOpensTheMenuThatSelectsAllAndCopies) {
    setClipboard(L"old");
    const HWND window = show(info, _T("context"), _T("t"));
    {
        const InPopup selectAll({VK_DOWN, VK_DOWN, VK_RETURN});
        test::rightClick(textControl(window), CPoint(30, 30));
        EXPECT_TRUE(pumpUntil([&] { return selectionOf(window).cpMax >= 7; }));
    }
    {
        const InPopup copy({VK_DOWN, VK_RETURN});
        test::rightClick(textControl(window), CPoint(30, 30));
        EXPECT_TRUE(pumpUntil([] { return clipboard() != "old"; }));
    }
    EXPECT_EQ(clipboard().substr(0, 7), "context");
}

TEST_F(CRichInfozqTest, ContextMenuByKeyOpensInTheWindow) {
    const HWND window = show(info, _T("context"), _T("t"));
    const InPopup selectAll({VK_DOWN, VK_DOWN, VK_RETURN});
    ::SendMessage(textControl(window), WM_CONTEXTMENU,
                  reinterpret_cast<WPARAM>(textControl(window)), MAKELPARAM(-1, -1));
    EXPECT_TRUE(pumpUntil([&] { return selectionOf(window).cpMax >= 7; }));
}

TEST_F(CRichInfozqTest, TextFillsTheWindowAtEverySize) {
    const HWND window = show(info, _T("text"), _T("t"));
    EXPECT_NE(::GetWindowLong(window, GWL_STYLE) & WS_THICKFRAME, 0);
    for (const CSize size : {CSize(500, 400), CSize(200, 120), CSize(900, 600)}) {
        ::SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER);
        CRect client;
        CRect text;
        ::GetClientRect(window, client);
        ::GetWindowRect(textControl(window), text);
        CWnd::FromHandle(window)->ScreenToClient(text);
        EXPECT_TRUE(::EqualRect(client, text)) << size.cx;
    }
}

TEST_F(CRichInfozqTest, LaterCallUsesTheSameWindowWithTheNewText) {
    const HWND window = show(info, _T("a long first text\nwith lines"), _T("first"));
    EXPECT_TRUE(selectAll(window));
    EXPECT_EQ(show(info, _T("second"), _T("other")), window);
    EXPECT_EQ(linesOf(window), "second");
    EXPECT_EQ(selectionOf(window).cpMax, 0);
    EXPECT_EQ(infoWindows().size(), 1u);
}

TEST_F(CRichInfozqTest, EscapeEnterAndTheCloseBoxHideItAndItShowsAgain) {
    const HWND window = show(info, _T("text"), _T("t"));
    pressKey(VK_ESCAPE);
    EXPECT_TRUE(pumpUntil([&] { return !::IsWindowVisible(window); }));
    EXPECT_EQ(show(info, _T("text"), _T("t")), window);
    EXPECT_TRUE(::IsWindowVisible(window));
    ::SendMessage(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(pumpUntil([&] { return !::IsWindowVisible(window); }));
    EXPECT_EQ(show(info, _T("text"), _T("t")), window);
    EXPECT_TRUE(::IsWindowVisible(window));
    ::SendMessage(window, WM_COMMAND, ID_RICH_INFO_CLOSE, 0);
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_TRUE(::IsWindow(window));
}

TEST_F(CRichInfozqTest, TwoObjectsHaveWindowsOfTheirOwn) {
    CRichInfozq other;
    const HWND first = show(info, _T("first"), _T("one"));
    const HWND second = show(other, _T("second"), _T("two"));
    EXPECT_NE(first, second);
    EXPECT_TRUE(::IsWindowVisible(first));
    EXPECT_TRUE(::IsWindowVisible(second));
    EXPECT_EQ(linesOf(first), "first");
    EXPECT_EQ(linesOf(second), "second");
    pressKey(VK_ESCAPE);
    EXPECT_TRUE(::IsWindowVisible(first));
    EXPECT_FALSE(::IsWindowVisible(second));
}

TEST_F(CRichInfozqTest, EndOfTheObjectEndsItsWindow) {
    HWND window = nullptr;
    {
        CRichInfozq local;
        window = show(local, _T("text"), _T("local"));
    }
    EXPECT_FALSE(::IsWindow(window));
    EXPECT_TRUE(infoWindows().empty());
}

TEST_F(CRichInfozqTest, WindowDiesWithTheMainWindowAndIsMadeAgain) {
    CWnd main;
    ASSERT_TRUE(
        main.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr));
    app.m_pMainWnd = &main;
    const HWND first = show(info, _T("text"), _T("t"));
    EXPECT_EQ(::GetWindow(first, GW_OWNER), main.m_hWnd);
    app.m_pMainWnd = nullptr;  // otherwise its end would be the end of the program
    main.DestroyWindow();
    EXPECT_FALSE(::IsWindow(first));
    const HWND second = show(info, _T("again"), _T("t"));
    EXPECT_TRUE(::IsWindowVisible(second));
    EXPECT_EQ(linesOf(second), "again");
}

// Objects of a library end after the program's own: no window may be touched then.
TEST(CRichInfozqAtTheEnd, LeavesItsWindowAloneWithoutAnApplicationObject) {
    auto info = std::make_unique<CRichInfozq>();
    ASSERT_EQ(info->showRichInfo02(_T("left"), _T("left")), 1);
    const std::vector<HWND> windows = infoWindows();
    ASSERT_EQ(windows.size(), 1u);
    test::mainApp().reset();
    ASSERT_EQ(AfxGetApp(), nullptr);
    info.reset();
    EXPECT_TRUE(::IsWindow(windows[0]));
    test::mainApp() = std::make_unique<test::TestApp>();
    ::DestroyWindow(windows[0]);
    EXPECT_TRUE(infoWindows().empty());
}

TEST_F(CRichInfozqTest, LongTextIsShownWholeFromItsBeginning) {
    CString text;
    for (int i = 0; i < 2000; ++i)
        text += _T("a line of text\n");
    const HWND window = show(info, text.GetString(), _T("long"));
    EXPECT_EQ(linesOf(window).size(), static_cast<std::size_t>(text.GetLength()));
    EXPECT_EQ(::SendMessage(textControl(window), EM_GETFIRSTVISIBLELINE, 0, 0), 0);
    EXPECT_EQ(show(info, _T(""), _T("long")), window);
    EXPECT_EQ(linesOf(window), "");
}

}  // namespace

#endif
