#include "afx_dataexchange.h"

#include "afx_exception.h"

CDataExchange::CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
    : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd) {}

HWND CDataExchange::PrepareCtrl(int nIDC) {
    const HWND control = ::GetDlgItem(m_pDlgWnd->m_hWnd, nIDC);
    if (control == nullptr) AfxThrowNotSupportedException();
    m_idLastControl = nIDC;
    m_bEditLastControl = FALSE;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int nIDC) {
    const HWND control = PrepareCtrl(nIDC);
    m_bEditLastControl = TRUE;
    return control;
}

void CDataExchange::Fail() {
    if (m_bSaveAndValidate && m_idLastControl != 0) {
        const HWND control = ::GetDlgItem(m_pDlgWnd->m_hWnd, m_idLastControl);
        ::SetFocus(control);
        if (m_bEditLastControl) ::SendMessage(control, EM_SETSEL, 0, -1);
    }
    AfxThrowUserException();
}
