// CStatic: text, icons and frames (Windows).
//
// Differences from MFC: none in what is here.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CStatic : public CWnd {
    DECLARE_DYNAMIC(CStatic)

public:
    BOOL Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                UINT nID = 0xFFFF);
};

#endif
