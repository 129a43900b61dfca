#include "afx_static.h"

IMPLEMENT_DYNAMIC(CStatic, CWnd)

BOOL CStatic::Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                     UINT nID) {
    return CWnd::Create(_T("STATIC"), lpszText, dwStyle, rect, pParentWnd, nID);
}
