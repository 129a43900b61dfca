// CPaintDC: the part of a window that is to be painted; made while WM_PAINT is handled (Windows).
//
// Differences from MFC: none in what is here.
#pragma once

#include "afx_dc.h"

#ifdef _WIN32

class CWnd;

class AFX_API CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)

public:
    /// Begins the painting; the part counts as painted from now on. Throws CResourceException.
    explicit CPaintDC(CWnd* pWnd);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps;

protected:
    HWND m_hWnd;
};

#endif
