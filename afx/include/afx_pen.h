// CPen: a line's style, width and colour (Windows).
//
// Differences from MFC:
//  1. Only the constructions that are listed here.
#pragma once

#include "afx_gdiobject.h"

#ifdef _WIN32

class AFX_API CPen : public CGdiObject {
    DECLARE_DYNAMIC(CPen)

public:
    CPen() = default;
    /// Throws CResourceException. nWidth 0: one pixel.
    CPen(int nPenStyle, int nWidth, COLORREF crColor);

    BOOL CreatePen(int nPenStyle, int nWidth, COLORREF crColor);

    operator HPEN() const { return static_cast<HPEN>(m_hObject); }
};

#endif
