// Windows of the in-process table.
#include "afx_wnd.h"

#include "afx/core/window_link.h"

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                    LPVOID lpParam) {
    if (m_hWnd != nullptr) return FALSE;
    const HWND handle = ::CreateWindowEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, x, y,
                                         nWidth, nHeight, hWndParent, nIDorHMenu, nullptr, lpParam);
    if (handle == nullptr) return FALSE;
    WindowLink::attach(*this, handle);
    return TRUE;
}

LPCTSTR AfxRegisterWndClass(UINT) {
    return _T("AfxWnd");
}
