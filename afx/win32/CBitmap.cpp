#include "afx_bitmap.h"

#include "afx_dc.h"

IMPLEMENT_DYNAMIC(CBitmap, CGdiObject)

BOOL CBitmap::CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight) {
    return Attach(::CreateCompatibleBitmap(pDC->m_hDC, nWidth, nHeight));
}
