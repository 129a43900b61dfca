// CFont: a typeface at a size (Windows).
//
// Differences from MFC:
//  1. Only the constructions that are listed here.
#pragma once

#include "afx_gdiobject.h"

#ifdef _WIN32

class AFX_API CFont : public CGdiObject {
    DECLARE_DYNAMIC(CFont)

public:
    CFont() = default;

    /// Maybe a temporary object; null for a null handle.
    static CFont* PASCAL FromHandle(HFONT hFont);
    /// nPointSize in tenths of a point of the screen.
    BOOL CreatePointFont(int nPointSize, LPCTSTR lpszFaceName);

    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
};

#endif
