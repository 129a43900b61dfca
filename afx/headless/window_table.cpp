// The table of windows that stands in for the window system.
#include "afx_headless.h"

#include "afx/core/window_link.h"

#include <algorithm>
#include <map>
#include <vector>

namespace {

struct Window {
    HWND parent = nullptr;  // of a child window; of any other its owner
    bool child = false;
    bool shown = false;
    CString text;
    LONG width = 0;
    LONG height = 0;
    afx_headless::RepaintRequests repaints;
};

// Never destroyed: windows of static objects may outlive any order of destruction.
std::map<HWND, Window>& table() {
    static auto& windows = *new std::map<HWND, Window>;
    return windows;
}

Window* find(HWND handle) {
    const auto entry = table().find(handle);
    return entry != table().end() ? &entry->second : nullptr;
}

// Handles are never used twice, so that a stale one is always found out.
HWND newHandle() {
    static std::uintptr_t last = 0x10000;
    last += 2;
    return reinterpret_cast<HWND>(last);
}

std::vector<HWND> childrenOf(HWND parent) {
    std::vector<HWND> children;
    for (const auto& entry : table()) {
        if (entry.second.parent == parent) children.push_back(entry.first);
    }
    return children;
}

BOOL enumerate(const std::vector<HWND>& windows, WNDENUMPROC callback, LPARAM lParam) {
    for (const HWND window : windows) {
        if (find(window) != nullptr && callback(window, lParam) == FALSE) return FALSE;
    }
    return TRUE;
}

}  // namespace

HWND CreateWindowEx(DWORD, LPCTSTR, LPCTSTR lpWindowName, DWORD dwStyle, int, int, int nWidth,
                    int nHeight, HWND hWndParent, HMENU, HINSTANCE, void*) {
    const bool child = (dwStyle & WS_CHILD) != 0;
    if (hWndParent != nullptr ? find(hWndParent) == nullptr : child) return nullptr;
    Window window;
    window.parent = hWndParent;
    window.child = child;
    window.shown = (dwStyle & WS_VISIBLE) != 0;
    window.text = lpWindowName != nullptr ? lpWindowName : _T("");
    window.width = std::max(nWidth, 0);
    window.height = std::max(nHeight, 0);
    const HWND handle = newHandle();
    table()[handle] = window;
    return handle;
}

BOOL DestroyWindow(HWND hWnd) {
    if (find(hWnd) == nullptr) return FALSE;
    for (const HWND child : childrenOf(hWnd))
        DestroyWindow(child);
    table().erase(hWnd);
    if (CWnd* const wnd = CWnd::FromHandlePermanent(hWnd)) WindowLink::destroyed(*wnd);
    return TRUE;
}

BOOL IsWindow(HWND hWnd) {
    return find(hWnd) != nullptr;
}

DWORD GetCurrentThreadId() {
    return 1;
}

BOOL EnumThreadWindows(DWORD, WNDENUMPROC lpfn, LPARAM lParam) {
    std::vector<HWND> windows;
    for (const auto& entry : table()) {
        if (!entry.second.child) windows.push_back(entry.first);
    }
    return enumerate(windows, lpfn, lParam);
}

BOOL EnumChildWindows(HWND hWndParent, WNDENUMPROC lpEnumFunc, LPARAM lParam) {
    std::vector<HWND> below = {hWndParent};
    for (std::size_t i = 0; i < below.size(); ++i) {
        for (const auto& entry : table()) {
            if (entry.second.child && entry.second.parent == below[i]) below.push_back(entry.first);
        }
    }
    below.erase(below.begin());
    return enumerate(below, lpEnumFunc, lParam);
}

BOOL ShowWindow(HWND hWnd, int nCmdShow) {
    Window* const window = find(hWnd);
    if (window == nullptr) return FALSE;
    const bool before = window->shown;
    window->shown = nCmdShow != SW_HIDE;
    return before;
}

BOOL IsWindowVisible(HWND hWnd) {
    const Window* window = find(hWnd);
    if (window == nullptr) return FALSE;
    for (; window != nullptr; window = find(window->parent)) {
        if (!window->shown) return FALSE;
    }
    return TRUE;
}

BOOL GetClientRect(HWND hWnd, LPRECT lpRect) {
    const Window* const window = find(hWnd);
    if (window == nullptr) return FALSE;
    *lpRect = RECT{0, 0, window->width, window->height};
    return TRUE;
}

BOOL InvalidateRect(HWND hWnd, const RECT* lpRect, BOOL bErase) {
    Window* const window = find(hWnd);
    if (window == nullptr) return FALSE;
    const bool whole =
        lpRect == nullptr || (lpRect->left <= 0 && lpRect->top <= 0 &&
                              lpRect->right >= window->width && lpRect->bottom >= window->height);
    ++window->repaints.count;
    window->repaints.whole |= whole;
    window->repaints.erase |= bErase != FALSE;
    return TRUE;
}

BOOL SetWindowText(HWND hWnd, LPCTSTR lpString) {
    Window* const window = find(hWnd);
    if (window == nullptr) return FALSE;
    window->text = lpString != nullptr ? lpString : _T("");
    return TRUE;
}

int GetWindowTextLength(HWND hWnd) {
    const Window* const window = find(hWnd);
    return window != nullptr ? window->text.GetLength() : 0;
}

int GetWindowText(HWND hWnd, LPTSTR lpString, int nMaxCount) {
    if (nMaxCount < 1) return 0;
    const Window* const window = find(hWnd);
    const int length = window != nullptr ? std::min(window->text.GetLength(), nMaxCount - 1) : 0;
    for (int i = 0; i < length; ++i)
        lpString[i] = window->text[i];
    lpString[length] = 0;
    return length;
}

namespace afx_headless {

RepaintRequests repaintRequests(HWND window) {
    const Window* const found = find(window);
    return found != nullptr ? found->repaints : RepaintRequests();
}

void validate(HWND window) {
    if (Window* const found = find(window)) found->repaints = RepaintRequests();
}

}  // namespace afx_headless
