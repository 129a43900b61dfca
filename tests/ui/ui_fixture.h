// What the tests of the manager windows have in common: a user at work, and what a user sees.
#pragma once

#ifdef _WIN32

#include "cxc.h"
#include "tests/cxcpkg/package_fixture.h"
#include "tests/support/Input.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace test {

inline std::string textOf(HWND window) {
    CString text;
    CWnd::FromHandle(window)->GetWindowText(text);
    return toUtf8(text);
}

/// Texts of a row, with bars between them.
inline std::string rowOf(const CListCtrl& list, int row, int columns) {
    std::string texts;
    for (int column = 0; column < columns; ++column)
        texts += (column == 0 ? "" : "|") + toUtf8(list.GetItemText(row, column));
    return texts;
}

inline std::vector<std::string> namesOf(const CListCtrl& list) {
    std::vector<std::string> names;
    for (int row = 0; row < list.GetItemCount(); ++row)
        names.push_back(toUtf8(list.GetItemText(row, 0)));
    return names;
}

inline std::vector<std::string> columnsOf(const CListCtrl& list) {
    std::vector<std::string> titles;
    LVCOLUMN column = {};
    TCHAR title[64] = {};
    column.mask = LVCF_TEXT;
    column.pszText = title;
    column.cchTextMax = 64;
    for (int i = 0; list.GetColumn(i, &column); ++i) {
        titles.push_back(toUtf8(title));
        column.pszText = title;
    }
    return titles;
}

inline int imageOf(const CListCtrl& list, int row) {
    LVITEM item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    return list.GetItem(&item) ? item.iImage : -1;
}

/// Clicks the name of a row with the real pointer, then puts the pointer away.
inline void clickRow(CListCtrl& list, int row) {
    list.EnsureVisible(row, FALSE);
    CRect rect;
    list.GetItemRect(row, rect, LVIR_LABEL);
    click(list.m_hWnd, CPoint(rect.left + 4, rect.CenterPoint().y));
    parkPointer();
}

inline void clickColumn(CListCtrl& list, int column) {
    CRect rect;
    Header_GetItemRect(list.GetHeaderCtrl()->m_hWnd, column, &rect);
    click(list.GetHeaderCtrl()->m_hWnd, CPoint(rect.left + 20, rect.CenterPoint().y));
    parkPointer();
}

/// The visible top-level window of this thread with a caption; null without one.
inline HWND findWindow(const std::string& caption) {
    struct Search {
        const std::string& caption;
        HWND found;
    } search{caption, nullptr};
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM data) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(data);
            if (!::IsWindowVisible(window) || textOf(window) != wanted.caption) return TRUE;
            wanted.found = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// Does something once a window with the caption is open, also inside the loop of a modal one.
class WhenOpen {
public:
    WhenOpen(std::string caption, std::function<void(HWND)> action)
        : m_caption(std::move(caption)), m_action(std::move(action)) {
        s_waiting = this;
        m_timer = ::SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
            if (s_waiting != nullptr) s_waiting->look();
        });
    }
    ~WhenOpen() {
        stop();
        EXPECT_TRUE(m_done) << m_caption << " did not open";
    }
    WhenOpen(const WhenOpen&) = delete;
    WhenOpen& operator=(const WhenOpen&) = delete;

private:
    void look() {
        const HWND window = findWindow(m_caption);
        if (window == nullptr) return;
        stop();
        m_done = true;
        m_action(window);
    }
    void stop() {
        if (m_timer != 0) ::KillTimer(nullptr, m_timer);
        m_timer = 0;
        if (s_waiting == this) s_waiting = nullptr;
    }

    inline static WhenOpen* s_waiting = nullptr;
    std::string m_caption;
    std::function<void(HWND)> m_action;
    UINT_PTR m_timer = 0;
    bool m_done = false;
};

/// Does something in the next loop that deals with messages, a modal one too: a host that works on
/// while a manager waits for its user. The message stands in the queue before any press of a button
/// in a dialog that opens later.
class InNextLoop : public CWnd {
public:
    explicit InNextLoop(std::function<void()> action) : m_action(std::move(action)) {
        CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 1, 1, nullptr, nullptr);
        PostMessage(WM_APP);
    }
    ~InNextLoop() override { EXPECT_TRUE(m_done) << "no loop has dealt with messages"; }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_APP) return CWnd::WindowProc(message, wParam, lParam);
        m_done = true;
        m_action();
        return 0;
    }

private:
    std::function<void()> m_action;
    bool m_done = false;
};

/// Stands before the procedure of a control: what `answer` gives for the message is the result,
/// without it the control answers.
class BeforeControl {
public:
    using Procedure = std::function<LRESULT(UINT, WPARAM, LPARAM)>;
    using Answer = std::function<std::optional<LRESULT>(const Procedure&)>;

    BeforeControl(HWND control, UINT message, Answer answer)
        : m_control(control), m_message(message), m_answer(std::move(answer)) {
        s_current = this;
        m_procedure = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtr(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
    }
    ~BeforeControl() {
        if (::IsWindow(m_control))
            ::SetWindowLongPtr(m_control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_procedure));
        s_current = nullptr;
    }
    BeforeControl(const BeforeControl&) = delete;
    BeforeControl& operator=(const BeforeControl&) = delete;

private:
    static LRESULT CALLBACK procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
        const Procedure before = [control](UINT m, WPARAM w, LPARAM l) {
            return ::CallWindowProc(s_current->m_procedure, control, m, w, l);
        };
        if (message == s_current->m_message) {
            if (const std::optional<LRESULT> given = s_current->m_answer(before)) return *given;
        }
        return before(message, wParam, lParam);
    }

    inline static BeforeControl* s_current = nullptr;
    HWND m_control;
    UINT m_message;
    WNDPROC m_procedure = nullptr;
    Answer m_answer;
};

/// A control that refuses.
inline std::optional<LRESULT> refuse(const BeforeControl::Procedure&) {
    return FALSE;
}

/// While it lives, the system makes no control for this thread, and so no dialog either.
class NoNewControls {
public:
    NoNewControls()
        : m_hook(::SetWindowsHookEx(WH_CBT, refuseControl, nullptr, ::GetCurrentThreadId())) {}
    ~NoNewControls() { ::UnhookWindowsHookEx(m_hook); }
    NoNewControls(const NoNewControls&) = delete;
    NoNewControls& operator=(const NoNewControls&) = delete;

private:
    static LRESULT CALLBACK refuseControl(int code, WPARAM wParam, LPARAM lParam) {
        const bool control =
            code == HCBT_CREATEWND &&
            (reinterpret_cast<const CBT_CREATEWND*>(lParam)->lpcs->style & WS_CHILD) != 0;
        return control ? 1 : ::CallNextHookEx(nullptr, code, wParam, lParam);
    }

    HHOOK m_hook;
};

/// Blocks of all heaps that have the size of a dataset: one more after a dataset was lost. The
/// system may have some of its own, which come and go.
inline int datasetBlocks() {
    HANDLE heaps[64] = {};
    const DWORD count = std::min<DWORD>(::GetProcessHeaps(64, heaps), 64);
    int blocks = 0;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry = {};
        ::HeapLock(heaps[i]);
        while (::HeapWalk(heaps[i], &entry)) {
            const bool used = (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
            if (used &&
                ::HeapSize(heaps[i], HEAP_NO_SERIALIZE, entry.lpData) == sizeof(CSnsCohDatazq))
                ++blocks;
        }
        ::HeapUnlock(heaps[i]);
    }
    return blocks;
}

/// Does something once a popup menu is open, and closes it when nothing else has. The action may
/// post keys, but must not deal with messages: the menu's own loop reads them.
class WhenMenuOpens {
public:
    explicit WhenMenuOpens(std::function<void(HMENU)> action) : m_action(std::move(action)) {
        s_waiting = this;
        m_timer = ::SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
            if (s_waiting != nullptr) s_waiting->look();
        });
    }
    ~WhenMenuOpens() {
        ::KillTimer(nullptr, m_timer);
        s_waiting = nullptr;
        EXPECT_GT(m_looks, 0) << "no menu opened";
        EXPECT_LT(m_looks, patience) << "the menu stayed open";
    }
    WhenMenuOpens(const WhenMenuOpens&) = delete;
    WhenMenuOpens& operator=(const WhenMenuOpens&) = delete;

private:
    void look() {
        constexpr UINT menuOfPopup = 0x01E1;  // MN_GETHMENU
        const HWND popup = ::FindWindow(_T("#32768"), nullptr);
        if (popup == nullptr || !::IsWindowVisible(popup)) return;
        ++m_looks;
        if (m_looks == 1)
            m_action(reinterpret_cast<HMENU>(::SendMessage(popup, menuOfPopup, 0, 0)));
        else if (m_looks >= patience)
            ::EndMenu();
    }

    static constexpr int patience = 300;
    inline static WhenMenuOpens* s_waiting = nullptr;
    std::function<void(HMENU)> m_action;
    UINT_PTR m_timer = 0;
    int m_looks = 0;
};

/// Clicks a popup of the window's menu bar and chooses in it: the item that `downs` presses of the
/// down key reach.
inline void chooseInMenuBar(CWnd& window, int popup, int downs) {
    MENUBARINFO info = {};
    info.cbSize = sizeof(info);
    ASSERT_TRUE(::GetMenuBarInfo(window.m_hWnd, OBJID_MENU, popup + 1, &info));
    CPoint point(info.rcBar.left + 5, (info.rcBar.top + info.rcBar.bottom) / 2);
    window.ScreenToClient(&point);
    const WhenMenuOpens user([&](HMENU) {
        for (int i = 0; i < downs; ++i)
            window.PostMessage(WM_KEYDOWN, VK_DOWN);
        window.PostMessage(WM_KEYDOWN, VK_RETURN);
    });
    click(window.m_hWnd, point);
    pump();
    parkPointer();
}

/// The host: a main window that owns the managers.
class HostApp : public TestApp {
public:
    HostApp() {
        m_main.CreateEx(0, AfxRegisterWndClass(0), _T("Host"), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                        700, 200, 100, nullptr, nullptr);
        m_pMainWnd = &m_main;
    }
    ~HostApp() override { m_pMainWnd = nullptr; }

    /// What the host does while a box stands, before its user answers.
    std::function<void()> whileBoxStands;
    int DoMessageBox(LPCTSTR prompt, UINT type, UINT id) override {
        if (whileBoxStands) whileBoxStands();
        return TestApp::DoMessageBox(prompt, type, id);
    }

    CWnd m_main;
};

/// An owner of a manager that ends before the manager does.
class ShortLivedOwner {
public:
    ShortLivedOwner() {
        EXPECT_TRUE(m_window->CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 9, 9,
                                       nullptr, nullptr));
    }
    CWnd* window() { return m_window.get(); }
    void end() { m_window.reset(); }

private:
    std::unique_ptr<CWnd> m_window = std::make_unique<CWnd>();
};

/// Pictures that the control of a list has now, large and small; -1 where it has no list of them.
inline std::pair<int, int> picturesOf(const CListCtrl& list) {
    const auto count = [&](int kind) {
        const CImageList* const images = list.GetImageList(kind);
        return images == nullptr ? -1 : images->GetImageCount();
    };
    return {count(LVSIL_NORMAL), count(LVSIL_SMALL)};
}

/// (message, code, id) of each entry of a message map.
using MapRow = std::tuple<UINT, UINT, UINT>;

inline std::vector<MapRow> rowsOf(const AFX_MSGMAP& map) {
    std::vector<MapRow> rows;
    for (const AFX_MSGMAP_ENTRY* entry = map.lpEntries; entry->nMessage != 0; ++entry)
        rows.emplace_back(entry->nMessage, entry->nCode, entry->nID);
    return rows;
}

}  // namespace test

#endif
