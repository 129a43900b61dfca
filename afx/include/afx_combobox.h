// CComboBox: a list to choose from that drops down (Windows).
//
// Differences from MFC:
//  1. Only the list and its choice; none of these calls sends CBN_SELCHANGE.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CComboBox : public CWnd {
    DECLARE_DYNAMIC(CComboBox)

public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    int GetCount() const;
    /// CB_ERR when nothing is chosen.
    int GetCurSel() const;
    /// -1 chooses nothing. CB_ERR also for an index outside the list.
    int SetCurSel(int nSelect);
    /// Returns the index; CB_ERR or CB_ERRSPACE on failure.
    int AddString(LPCTSTR lpszString);
    void ResetContent();
    /// Throws CInvalidArgException for an index outside the list.
    void GetLBText(int nIndex, CString& rString) const;
};

#endif
