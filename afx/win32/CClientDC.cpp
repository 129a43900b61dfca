#include "afx_clientdc.h"

#include "afx_exception.h"
#include "afx_wnd.h"

IMPLEMENT_DYNAMIC(CClientDC, CDC)

CClientDC::CClientDC(CWnd* pWnd) : m_hWnd(pWnd != nullptr ? pWnd->m_hWnd : nullptr) {
    // The screen's device context is for those who ask for it, not for a window that is missing.
    const bool missing = pWnd != nullptr && m_hWnd == nullptr;
    if (missing || !Attach(::GetDC(m_hWnd))) AfxThrowResourceException();
}

CClientDC::~CClientDC() {
    ::ReleaseDC(m_hWnd, Detach());
}
