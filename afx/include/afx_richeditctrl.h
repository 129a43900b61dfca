// CRichEditCtrl: text of any length, formatted (Windows).
//
// Differences from MFC:
//  1. Only showing, selecting and copying text.
//  2. Create loads the control's library itself; AfxInitRichEdit2 is for templates.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

#include <richedit.h>

class AFX_API CRichEditCtrl : public CWnd {
    DECLARE_DYNAMIC(CRichEditCtrl)

public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    /// First selected character and the one behind the last.
    void GetSel(long& nStartChar, long& nEndChar) const;
    /// 0, -1 selects everything.
    void SetSel(long nStartChar, long nEndChar);
    CString GetSelText() const;
    /// To the clipboard.
    void Copy();
    BOOL SetReadOnly(BOOL bReadOnly = TRUE);
    /// Characters that may be typed or set; 0 stands for 64 K.
    void LimitText(long nChars = 0);
};

/// Loads the rich edit control for templates that name it. FALSE when there is none.
AFX_API BOOL AFXAPI AfxInitRichEdit2();

#endif
