#include "afx_commondialog.h"

#include "afx_app.h"

IMPLEMENT_DYNAMIC(CCommonDialog, CWnd)

CCommonDialog::CCommonDialog(CWnd* pParentWnd) : m_pParentWnd(pParentWnd) {}

HWND CCommonDialog::ownerWindow() const {
    const CWnd* const owner = m_pParentWnd != nullptr ? m_pParentWnd : AfxGetMainWnd();
    return owner != nullptr ? owner->m_hWnd : nullptr;
}
