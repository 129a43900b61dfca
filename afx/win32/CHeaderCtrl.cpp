#include "afx_headerctrl.h"

IMPLEMENT_DYNAMIC(CHeaderCtrl, CWnd)

int CHeaderCtrl::GetItemCount() const {
    return static_cast<int>(SendMessage(HDM_GETITEMCOUNT));
}

BOOL CHeaderCtrl::GetItemRect(int nIndex, LPRECT lpRect) const {
    const WPARAM index = static_cast<WPARAM>(nIndex);
    return SendMessage(HDM_GETITEMRECT, index, reinterpret_cast<LPARAM>(lpRect)) != 0;
}
