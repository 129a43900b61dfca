// CDataExchange: one exchange between the controls and the members of a dialog (Windows).
//
// Differences from MFC:
//  1. Only what the DDX_ functions of afxdd_.h need.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CDataExchange {
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate);

    /// Handle of a control, remembered for Fail. Throws CNotSupportedException when it is missing.
    HWND PrepareCtrl(int nIDC);
    /// The same for a control whose text Fail selects.
    HWND PrepareEditCtrl(int nIDC);
    /// Ends the exchange: focus to the remembered control when saving; throws CUserException.
    /// The user has been told before.
    [[noreturn]] void Fail();

    BOOL m_bSaveAndValidate;  // TRUE: from the controls to the members
    CWnd* m_pDlgWnd;          // not owned
    int m_idLastControl = 0;  // 0: none
    BOOL m_bEditLastControl = FALSE;
};

#endif
