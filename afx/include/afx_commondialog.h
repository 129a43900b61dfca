// CCommonDialog: base of the system's dialogs.
//
// Differences from MFC:
//  1. It stands directly on CWnd; the dialog's window is the system's and is not attached.
//  2. Headless: the application object's policy answers.
#pragma once

#include "afx_wnd.h"

class AFX_API CCommonDialog : public CWnd {
    DECLARE_DYNAMIC(CCommonDialog)

public:
    /// A null parent stands for the application's main window.
    explicit CCommonDialog(CWnd* pParentWnd);

    /// Returns IDOK or IDCANCEL; an error looks like IDCANCEL.
    virtual INT_PTR DoModal() = 0;

protected:
    HWND ownerWindow() const;

    CWnd* m_pParentWnd;  // not owned
};
