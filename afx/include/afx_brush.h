// CBrush: what areas are filled with (Windows).
//
// Differences from MFC:
//  1. Only the constructions that are listed here.
#pragma once

#include "afx_gdiobject.h"

#ifdef _WIN32

class AFX_API CBrush : public CGdiObject {
    DECLARE_DYNAMIC(CBrush)

public:
    CBrush() = default;
    /// Throws CResourceException.
    explicit CBrush(COLORREF crColor);

    BOOL CreateSolidBrush(COLORREF crColor);

    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
};

#endif
