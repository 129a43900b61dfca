// CCmdUI: a menu item whose state its update handler decides (Windows).
//
// Differences from MFC:
//  1. Menu items only, no bars; the handler that is found first decides.
#pragma once

#include "afx_cmdtarget.h"

#ifdef _WIN32

class CMenu;

class AFX_API CCmdUI {
public:
    CCmdUI() = default;
    virtual ~CCmdUI() = default;
    CCmdUI(const CCmdUI&) = delete;
    CCmdUI& operator=(const CCmdUI&) = delete;

    virtual void Enable(BOOL bOn = TRUE);
    /// 0 unchecked, 1 checked.
    virtual void SetCheck(int nCheck = 1);
    /// As SetCheck, with a dot for the mark.
    virtual void SetRadio(BOOL bOn = TRUE);
    virtual void SetText(LPCTSTR lpszText);

    /// Runs the update handler; bDisableIfNoHndler: an item that has neither an update handler
    /// that enables nor a command handler is disabled. Returns whether there was a handler.
    BOOL DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler);

    UINT m_nID = 0;            // command
    UINT m_nIndex = 0;         // position in the menu
    CMenu* m_pMenu = nullptr;  // not owned; null where no menu is concerned

protected:
    BOOL m_bEnableChanged = FALSE;  // Enable was called since DoUpdate began
};

#endif
