#include "afx_cmdui.h"

#include "afx_menu.h"

void CCmdUI::Enable(BOOL bOn) {
    m_bEnableChanged = TRUE;
    if (m_pMenu == nullptr) return;
    const UINT state = bOn ? MF_ENABLED : MF_DISABLED | MF_GRAYED;
    m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | state);
}

void CCmdUI::SetCheck(int nCheck) {
    if (m_pMenu == nullptr) return;
    m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (nCheck != 0 ? MF_CHECKED : MF_UNCHECKED));
}

void CCmdUI::SetRadio(BOOL bOn) {
    SetCheck(bOn ? 1 : 0);
    if (m_pMenu == nullptr || !bOn) return;
    ::CheckMenuRadioItem(m_pMenu->m_hMenu, m_nIndex, m_nIndex, m_nIndex, MF_BYPOSITION);
}

void CCmdUI::SetText(LPCTSTR lpszText) {
    if (m_pMenu == nullptr) return;
    MENUITEMINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_STRING;
    info.dwTypeData = const_cast<LPTSTR>(lpszText);
    ::SetMenuItemInfo(m_pMenu->m_hMenu, m_nIndex, TRUE, &info);
}

BOOL CCmdUI::DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler) {
    m_bEnableChanged = FALSE;
    const BOOL updated = pTarget->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
    if (bDisableIfNoHndler && !m_bEnableChanged) {
        AFX_CMDHANDLERINFO info = {};
        Enable(pTarget->OnCmdMsg(m_nID, CN_COMMAND, nullptr, &info));
    }
    return updated;
}
