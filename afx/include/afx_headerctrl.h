// CHeaderCtrl: the column headers of a list view (Windows).
//
// Differences from MFC:
//  1. Only asked for its columns. The object that CListCtrl::GetHeaderCtrl returns is a real
//     CHeaderCtrl, though a temporary one.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CHeaderCtrl : public CWnd {
    DECLARE_DYNAMIC(CHeaderCtrl)

public:
    /// -1 on failure.
    int GetItemCount() const;
    /// Client coordinates of the header.
    BOOL GetItemRect(int nIndex, LPRECT lpRect) const;
};

#endif
