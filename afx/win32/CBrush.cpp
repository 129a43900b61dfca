#include "afx_brush.h"

#include "afx_exception.h"

IMPLEMENT_DYNAMIC(CBrush, CGdiObject)

CBrush::CBrush(COLORREF crColor) {
    if (!CreateSolidBrush(crColor)) AfxThrowResourceException();
}

BOOL CBrush::CreateSolidBrush(COLORREF crColor) {
    return Attach(::CreateSolidBrush(crColor));
}
