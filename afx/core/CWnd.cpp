// The part of CWnd that is the same on every platform.
#include "afx_wnd.h"

#include "afx_app.h"

#include "afx/core/window_link.h"

#include <map>

namespace {

using HandleMap = std::map<HWND, CWnd*>;

// Never destroyed: windows of static objects may outlive any order of destruction.
HandleMap& permanentMap() {
    static HandleMap& map = *new HandleMap;
    return map;
}

HandleMap& temporaryMap() {
    static HandleMap& map = *new HandleMap;
    return map;
}

CWnd* find(const HandleMap& map, HWND handle) {
    const auto entry = map.find(handle);
    return entry != map.end() ? entry->second : nullptr;
}

void freeTemporaryObject(CWnd* wnd) {
    wnd->m_hWnd = nullptr;  // the window is not its own
    delete wnd;
}

}  // namespace

void WindowLink::attach(CWnd& wnd, HWND handle) {
    permanentMap()[handle] = &wnd;
    wnd.m_hWnd = handle;
}

HWND WindowLink::detach(CWnd& wnd) {
    const HWND handle = wnd.m_hWnd;
    if (find(permanentMap(), handle) == &wnd) permanentMap().erase(handle);
    wnd.m_hWnd = nullptr;
    return handle;
}

void WindowLink::freeTemporary(HWND handle) {
    if (CWnd* const temporary = find(temporaryMap(), handle)) {
        temporaryMap().erase(handle);
        freeTemporaryObject(temporary);
    }
}

void WindowLink::freeTemporaries() {
    HandleMap objects;
    objects.swap(temporaryMap());
    for (const auto& entry : objects)
        freeTemporaryObject(entry.second);
}

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

CWnd::CWnd() = default;

CWnd::~CWnd() {
    if (m_hWnd != nullptr) CWnd::DestroyWindow();
}

CWnd* PASCAL CWnd::FromHandlePermanent(HWND hWnd) {
    return find(permanentMap(), hWnd);
}

CWnd* PASCAL CWnd::FromHandle(HWND hWnd) {
    if (hWnd == nullptr) return nullptr;
    if (CWnd* const permanent = FromHandlePermanent(hWnd)) return permanent;
    CWnd*& temporary = temporaryMap()[hWnd];
    if (temporary == nullptr) {
        temporary = new CWnd;
        temporary->m_hWnd = hWnd;
    }
    return temporary;
}

BOOL CWnd::Attach(HWND hWnd) {
    if (hWnd == nullptr) return FALSE;
    WindowLink::attach(*this, hWnd);
    return TRUE;
}

HWND CWnd::Detach() {
    return m_hWnd != nullptr ? WindowLink::detach(*this) : nullptr;
}

BOOL CWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                  CWnd* pParentWnd, UINT nID, CCreateContext* pContext) {
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle | WS_CHILD, rect, pParentWnd, nID,
                    pContext);
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    const RECT& rect, CWnd* pParentWnd, UINT nID, LPVOID lpParam) {
    const HWND parent = pParentWnd != nullptr ? pParentWnd->m_hWnd : nullptr;
    const HMENU id = reinterpret_cast<HMENU>(static_cast<UINT_PTR>(nID));
    return CreateEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, rect.left, rect.top,
                    rect.right - rect.left, rect.bottom - rect.top, parent, id, lpParam);
}

BOOL CWnd::DestroyWindow() {
    const HWND handle = m_hWnd;
    if (handle == nullptr) return FALSE;
    const BOOL result = ::DestroyWindow(handle);
    WindowLink::freeTemporary(handle);
    // An object that was only attached has not seen the end of its window. This object itself may
    // be gone by now.
    CWnd* const attached = FromHandlePermanent(handle);
    if (result && attached != nullptr) attached->Detach();
    return result;
}

BOOL CWnd::ShowWindow(int nCmdShow) {
    return ::ShowWindow(m_hWnd, nCmdShow);
}

BOOL CWnd::IsWindowVisible() const {
    return ::IsWindowVisible(m_hWnd);
}

void CWnd::GetClientRect(LPRECT lpRect) const {
    ::GetClientRect(m_hWnd, lpRect);
}

void CWnd::InvalidateRect(LPCRECT lpRect, BOOL bErase) {
    ::InvalidateRect(m_hWnd, lpRect, bErase);
}

void CWnd::Invalidate(BOOL bErase) {
    ::InvalidateRect(m_hWnd, nullptr, bErase);
}

void CWnd::SetWindowText(LPCTSTR lpszString) {
    ::SetWindowText(m_hWnd, lpszString);
}

int CWnd::GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const {
    return ::GetWindowText(m_hWnd, lpszStringBuf, nMaxCount);
}

void CWnd::GetWindowText(CString& rString) const {
    const int length = ::GetWindowTextLength(m_hWnd);
    const int copied = ::GetWindowText(m_hWnd, rString.GetBuffer(length), length + 1);
    rString.ReleaseBuffer(copied);
}

void CWnd::PostNcDestroy() {}

void WindowLink::destroyed(CWnd& wnd) {
    const HWND handle = detach(wnd);
    freeTemporary(handle);
    CWinApp* const app = AfxGetApp();
    if (app != nullptr && app->m_pMainWnd == &wnd) {
        app->m_pMainWnd = nullptr;
#ifdef _WIN32
        ::PostQuitMessage(0);
#endif
    }
    wnd.PostNcDestroy();
}
