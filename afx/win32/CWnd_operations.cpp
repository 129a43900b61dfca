// The window system's functions as members.
#include "afx_wnd.h"

#include "afx_dc.h"
#include "afx_font.h"
#include "afx_menu.h"

namespace {

BOOL modifyStyle(HWND window, int index, DWORD remove, DWORD add, UINT flags) {
    const DWORD before = static_cast<DWORD>(::GetWindowLongPtr(window, index));
    const DWORD after = (before & ~remove) | add;
    if (after == before) return FALSE;
    ::SetWindowLongPtr(window, index, static_cast<LONG_PTR>(after));
    if (flags != 0) {
        ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    }
    return TRUE;
}

// The area of the monitor that a window, or with null the main one, is on.
CRect workArea(HWND window) {
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    ::GetMonitorInfo(::MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcWork;
}

int between(int value, int low, int high) {
    return value > high ? (high > low ? high : low) : value < low ? low : value;
}

}  // namespace

BOOL CWnd::SubclassDlgItem(UINT nID, CWnd* pParent) {
    return SubclassWindow(::GetDlgItem(pParent->m_hWnd, static_cast<int>(nID)));
}

DWORD CWnd::GetStyle() const {
    return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_STYLE));
}

DWORD CWnd::GetExStyle() const {
    return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_EXSTYLE));
}

BOOL CWnd::ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags) {
    return modifyStyle(m_hWnd, GWL_STYLE, dwRemove, dwAdd, nFlags);
}

BOOL CWnd::ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags) {
    return modifyStyle(m_hWnd, GWL_EXSTYLE, dwRemove, dwAdd, nFlags);
}

int CWnd::GetDlgCtrlID() const {
    return ::GetDlgCtrlID(m_hWnd);
}

CWnd* CWnd::GetDlgItem(int nID) const {
    return FromHandle(::GetDlgItem(m_hWnd, nID));
}

CWnd* CWnd::GetParent() const {
    return FromHandle(::GetParent(m_hWnd));
}

CMenu* CWnd::GetMenu() const {
    return CMenu::FromHandle(::GetMenu(m_hWnd));
}

BOOL CWnd::SetMenu(CMenu* pMenu) {
    return ::SetMenu(m_hWnd, pMenu != nullptr ? pMenu->m_hMenu : nullptr);
}

HICON CWnd::SetIcon(HICON hIcon, BOOL bBigIcon) {
    return reinterpret_cast<HICON>(
        SendMessage(WM_SETICON, bBigIcon ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(hIcon)));
}

HICON CWnd::GetIcon(BOOL bBigIcon) const {
    return reinterpret_cast<HICON>(SendMessage(WM_GETICON, bBigIcon ? ICON_BIG : ICON_SMALL));
}

CFont* CWnd::GetFont() const {
    const auto font = reinterpret_cast<HFONT>(SendMessage(WM_GETFONT));
    return CFont::FromHandle(font);
}

void CWnd::SetFont(CFont* pFont, BOOL bRedraw) {
    const HGDIOBJ font = pFont != nullptr ? pFont->GetSafeHandle() : nullptr;
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), bRedraw);
}

void CWnd::GetWindowRect(LPRECT lpRect) const {
    ::GetWindowRect(m_hWnd, lpRect);
}

void CWnd::MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint) {
    ::MoveWindow(m_hWnd, x, y, nWidth, nHeight, bRepaint);
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint) {
    const CRect rect = *lpRect;
    MoveWindow(rect.left, rect.top, rect.Width(), rect.Height(), bRepaint);
}

BOOL CWnd::SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags) {
    const HWND after = pWndInsertAfter != nullptr ? pWndInsertAfter->m_hWnd : nullptr;
    return ::SetWindowPos(m_hWnd, after, x, y, cx, cy, nFlags);
}

BOOL CWnd::GetWindowPlacement(WINDOWPLACEMENT* lpwndpl) const {
    lpwndpl->length = sizeof(WINDOWPLACEMENT);
    return ::GetWindowPlacement(m_hWnd, lpwndpl);
}

BOOL CWnd::SetWindowPlacement(const WINDOWPLACEMENT* lpwndpl) {
    WINDOWPLACEMENT placement = *lpwndpl;
    placement.length = sizeof(placement);
    return ::SetWindowPlacement(m_hWnd, &placement);
}

void CWnd::CenterWindow() {
    const HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
    const CRect area = workArea(owner);
    CRect around = area;
    if (owner != nullptr && ::IsWindowVisible(owner) && !::IsIconic(owner))
        ::GetWindowRect(owner, around);
    CRect window;
    GetWindowRect(window);
    const CPoint center = around.CenterPoint();
    const int x = between(center.x - window.Width() / 2, area.left, area.right - window.Width());
    const int y = between(center.y - window.Height() / 2, area.top, area.bottom - window.Height());
    SetWindowPos(nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CWnd::ClientToScreen(LPPOINT lpPoint) const {
    ::ClientToScreen(m_hWnd, lpPoint);
}

void CWnd::ClientToScreen(LPRECT lpRect) const {
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(lpRect), 2);
}

void CWnd::ScreenToClient(LPPOINT lpPoint) const {
    ::ScreenToClient(m_hWnd, lpPoint);
}

void CWnd::ScreenToClient(LPRECT lpRect) const {
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(lpRect), 2);
}

CWnd* CWnd::ChildWindowFromPoint(POINT point) const {
    return FromHandle(::ChildWindowFromPoint(m_hWnd, point));
}

CWnd* CWnd::ChildWindowFromPoint(POINT point, UINT nFlags) const {
    return FromHandle(::ChildWindowFromPointEx(m_hWnd, point, nFlags));
}

BOOL CWnd::IsWindowEnabled() const {
    return ::IsWindowEnabled(m_hWnd);
}

BOOL CWnd::EnableWindow(BOOL bEnable) {
    return ::EnableWindow(m_hWnd, bEnable);
}

CWnd* PASCAL CWnd::GetFocus() {
    return FromHandle(::GetFocus());
}

CWnd* CWnd::SetFocus() {
    return FromHandle(::SetFocus(m_hWnd));
}

CWnd* PASCAL CWnd::GetCapture() {
    return FromHandle(::GetCapture());
}

CWnd* CWnd::SetCapture() {
    return FromHandle(::SetCapture(m_hWnd));
}

BOOL CWnd::SetForegroundWindow() {
    return ::SetForegroundWindow(m_hWnd);
}

void CWnd::DragAcceptFiles(BOOL bAccept) {
    ::DragAcceptFiles(m_hWnd, bAccept);
}

UINT_PTR CWnd::SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer) {
    return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
}

BOOL CWnd::KillTimer(UINT_PTR nIDEvent) {
    return ::KillTimer(m_hWnd, nIDEvent);
}

CDC* CWnd::GetDC() {
    return CDC::FromHandle(::GetDC(m_hWnd));
}

int CWnd::ReleaseDC(CDC* pDC) {
    return ::ReleaseDC(m_hWnd, pDC->m_hDC);
}

void CWnd::UpdateWindow() {
    ::UpdateWindow(m_hWnd);
}

void CWnd::SetRedraw(BOOL bRedraw) {
    SendMessage(WM_SETREDRAW, static_cast<WPARAM>(bRedraw));
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const {
    return ::SendMessage(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostMessage(m_hWnd, message, wParam, lParam);
}
