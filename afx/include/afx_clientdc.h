// CClientDC: the client area of a window (Windows).
//
// Differences from MFC: none in what is here.
#pragma once

#include "afx_dc.h"

#ifdef _WIN32

class CWnd;

class AFX_API CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)

public:
    /// Of the whole screen when pWnd is null. Throws CResourceException.
    explicit CClientDC(CWnd* pWnd);
    /// Gives the device context back to the window.
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

#endif
