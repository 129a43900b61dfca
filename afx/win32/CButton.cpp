#include "afx_button.h"

IMPLEMENT_DYNAMIC(CButton, CWnd)

BOOL CButton::Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                     UINT nID) {
    return CWnd::Create(_T("BUTTON"), lpszCaption, dwStyle, rect, pParentWnd, nID);
}

int CButton::GetCheck() const {
    return static_cast<int>(SendMessage(BM_GETCHECK));
}

void CButton::SetCheck(int nCheck) {
    SendMessage(BM_SETCHECK, static_cast<WPARAM>(nCheck));
}
