// CMenu: menus of windows and those that pop up (Windows).
//
// Differences from MFC:
//  1. No items that the owner draws.
#pragma once

#include "afx.h"
#include "afx_user.h"

#ifdef _WIN32

class CWnd;

class AFX_API CMenu : public CObject {
    DECLARE_DYNAMIC(CMenu)

public:
    CMenu() = default;
    /// Destroys an attached menu with its popups.
    ~CMenu() override;

    HMENU GetSafeHmenu() const { return m_hMenu; }
    /// The object of a handle: the permanent one, or a temporary one that lives until the program
    /// is idle. Null for a null handle.
    static CMenu* PASCAL FromHandle(HMENU hMenu);
    BOOL Attach(HMENU hMenu);
    HMENU Detach();

    BOOL CreatePopupMenu();
    /// Looks in the resource chain; FALSE when it is missing.
    BOOL LoadMenu(UINT nIDResource);
    BOOL LoadMenu(LPCTSTR lpszResourceName);
    BOOL DestroyMenu();

    BOOL AppendMenu(UINT nFlags, UINT_PTR nIDNewItem = 0, LPCTSTR lpszNewItem = nullptr);
    UINT GetMenuItemCount() const;
    /// The command at a position; -1 for a popup, 0 for a separator.
    UINT GetMenuItemID(int nPos) const;
    /// MF_ flags; -1 when there is no such item.
    UINT GetMenuState(UINT nID, UINT nFlags) const;
    int GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const;
    /// Null where there is no popup; otherwise maybe a temporary object.
    CMenu* GetSubMenu(int nPos) const;
    /// Commands are looked for in the popups of this menu too. Returns the earlier state, -1 when
    /// there is no such item.
    UINT CheckMenuItem(UINT nIDCheckItem, UINT nCheck);
    UINT EnableMenuItem(UINT nIDEnableItem, UINT nEnable);

    /// Screen coordinates. The owner receives the command after the return.
    BOOL TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect = nullptr);

    HMENU m_hMenu = nullptr;
};

#endif
