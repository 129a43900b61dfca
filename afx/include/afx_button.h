// CButton: push buttons, check boxes and radio buttons (Windows).
//
// Differences from MFC:
//  1. No buttons that draw themselves, no images.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CButton : public CWnd {
    DECLARE_DYNAMIC(CButton)

public:
    BOOL Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    /// BST_UNCHECKED, BST_CHECKED or BST_INDETERMINATE. Setting sends no BN_CLICKED.
    int GetCheck() const;
    void SetCheck(int nCheck);
};

#endif
