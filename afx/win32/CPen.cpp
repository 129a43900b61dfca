#include "afx_pen.h"

#include "afx_exception.h"

IMPLEMENT_DYNAMIC(CPen, CGdiObject)

CPen::CPen(int nPenStyle, int nWidth, COLORREF crColor) {
    if (!CreatePen(nPenStyle, nWidth, crColor)) AfxThrowResourceException();
}

BOOL CPen::CreatePen(int nPenStyle, int nWidth, COLORREF crColor) {
    return Attach(::CreatePen(nPenStyle, nWidth, crColor));
}
