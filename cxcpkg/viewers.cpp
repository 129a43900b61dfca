#include "cxcpkg/viewers.h"

namespace cxc {
namespace {

constexpr INT_PTR notListed = -1;

// Null is never found.
INT_PTR indexOf(const CPtrArray& viewers, const CWnd* wnd) {
    for (INT_PTR i = 0; wnd != nullptr && i < viewers.GetSize(); ++i) {
        if (viewers.GetAt(i) == wnd) return i;
    }
    return notListed;
}

struct Request {
    const CPtrArray& viewers;
    bool erase;
};

BOOL CALLBACK repaintViewer(HWND handle, LPARAM lParam) {
    const auto& request = *reinterpret_cast<const Request*>(lParam);
    const CWnd* const wnd = CWnd::FromHandlePermanent(handle);
    if (indexOf(request.viewers, wnd) != notListed && ::IsWindowVisible(handle))
        ::InvalidateRect(handle, nullptr, request.erase);
    return TRUE;
}

BOOL CALLBACK repaintViewersIn(HWND handle, LPARAM lParam) {
    repaintViewer(handle, lParam);
    ::EnumChildWindows(handle, repaintViewer, lParam);
    return TRUE;
}

// From the windows that there are to the list: an entry whose window object a host has destroyed
// without removing it is never looked into.
void repaintVisible(const CPtrArray& viewers, bool erase) {
    const Request request = {viewers, erase};
    ::EnumThreadWindows(::GetCurrentThreadId(), repaintViewersIn,
                        reinterpret_cast<LPARAM>(&request));
}

}  // namespace

int addViewer(CPtrArray& viewers, CWnd* wnd) {
    if (indexOf(viewers, wnd) != notListed) return 0;
    return static_cast<int>(viewers.Add(wnd)) + 1;
}

int removeViewer(CPtrArray& viewers, CWnd* wnd, bool all) {
    if (all) {
        viewers.RemoveAll();
        return 0;
    }
    const INT_PTR index = indexOf(viewers, wnd);
    if (index == notListed) return -1;
    viewers.RemoveAt(index);
    return static_cast<int>(viewers.GetSize());
}

int invalidateViewers(CPtrArray& viewers, bool erase, CWnd* wnd, bool all) {
    if (wnd != nullptr) addViewer(viewers, wnd);
    if (all) {
        repaintVisible(viewers, erase);
        return static_cast<int>(viewers.GetSize());
    }
    if (wnd == nullptr) return 0;
    // A null handle would stand for every window of the desktop.
    if (const HWND handle = wnd->GetSafeHwnd()) ::InvalidateRect(handle, nullptr, erase);
    return 1;
}

}  // namespace cxc
