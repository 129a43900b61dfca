#include "afx_menu.h"

#include "afx_module.h"
#include "afx_wnd.h"

#include "afx/win32/handle_map.h"

IMPLEMENT_DYNAMIC(CMenu, CObject)

namespace {

using Menus = afx::HandleMap<CMenu, HMENU>;

}  // namespace

CMenu::~CMenu() {
    CMenu::DestroyMenu();
}

CMenu* PASCAL CMenu::FromHandle(HMENU hMenu) {
    if (hMenu == nullptr) return nullptr;
    return Menus::instance().object(hMenu, [hMenu](CMenu& menu) { menu.m_hMenu = hMenu; });
}

BOOL CMenu::Attach(HMENU hMenu) {
    if (hMenu == nullptr) return FALSE;
    m_hMenu = hMenu;
    Menus::instance().attach(hMenu, this);
    return TRUE;
}

HMENU CMenu::Detach() {
    const HMENU handle = m_hMenu;
    Menus::instance().detach(handle, this);
    m_hMenu = nullptr;
    return handle;
}

BOOL CMenu::CreatePopupMenu() {
    return Attach(::CreatePopupMenu());
}

BOOL CMenu::LoadMenu(UINT nIDResource) {
    return LoadMenu(MAKEINTRESOURCE(nIDResource));
}

BOOL CMenu::LoadMenu(LPCTSTR lpszResourceName) {
    const HINSTANCE module = AfxFindResourceHandle(lpszResourceName, RT_MENU);
    return Attach(::LoadMenu(module, lpszResourceName));
}

BOOL CMenu::DestroyMenu() {
    return m_hMenu != nullptr && ::DestroyMenu(Detach());
}

BOOL CMenu::AppendMenu(UINT nFlags, UINT_PTR nIDNewItem, LPCTSTR lpszNewItem) {
    return ::AppendMenu(m_hMenu, nFlags, nIDNewItem, lpszNewItem);
}

UINT CMenu::GetMenuItemCount() const {
    return static_cast<UINT>(::GetMenuItemCount(m_hMenu));
}

UINT CMenu::GetMenuItemID(int nPos) const {
    return ::GetMenuItemID(m_hMenu, nPos);
}

UINT CMenu::GetMenuState(UINT nID, UINT nFlags) const {
    return ::GetMenuState(m_hMenu, nID, nFlags);
}

int CMenu::GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const {
    const int length = ::GetMenuString(m_hMenu, nIDItem, nullptr, 0, nFlags);
    const int copied =
        ::GetMenuString(m_hMenu, nIDItem, rString.GetBuffer(length), length + 1, nFlags);
    rString.ReleaseBuffer(copied);
    return copied;
}

CMenu* CMenu::GetSubMenu(int nPos) const {
    return FromHandle(::GetSubMenu(m_hMenu, nPos));
}

UINT CMenu::CheckMenuItem(UINT nIDCheckItem, UINT nCheck) {
    return ::CheckMenuItem(m_hMenu, nIDCheckItem, nCheck);
}

UINT CMenu::EnableMenuItem(UINT nIDEnableItem, UINT nEnable) {
    return static_cast<UINT>(::EnableMenuItem(m_hMenu, nIDEnableItem, nEnable));
}

BOOL CMenu::TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect) {
    const HWND owner = pWnd != nullptr ? pWnd->m_hWnd : nullptr;
    return ::TrackPopupMenu(m_hMenu, nFlags, x, y, 0, owner, lpRect);
}
