// CEdit: fields to type in (Windows).
//
// Differences from MFC:
//  1. Only text limit, selection and write protection.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)

public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    /// First selected character and the one behind the last.
    void GetSel(int& nStartChar, int& nEndChar) const;
    /// 0, -1 selects everything.
    void SetSel(int nStartChar, int nEndChar, BOOL bNoScroll = FALSE);
    void LimitText(int nChars = 0);
    BOOL SetReadOnly(BOOL bReadOnly = TRUE);
};

#endif
