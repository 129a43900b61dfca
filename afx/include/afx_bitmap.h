// CBitmap: a picture to draw on (Windows).
//
// Differences from MFC:
//  1. Only the constructions that are listed here.
#pragma once

#include "afx_gdiobject.h"

#ifdef _WIN32

class CDC;

class AFX_API CBitmap : public CGdiObject {
    DECLARE_DYNAMIC(CBitmap)

public:
    CBitmap() = default;

    BOOL CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight);

    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
};

#endif
