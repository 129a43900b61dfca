#include "afx_paintdc.h"

#include "afx_exception.h"
#include "afx_wnd.h"

IMPLEMENT_DYNAMIC(CPaintDC, CDC)

CPaintDC::CPaintDC(CWnd* pWnd) : m_ps(), m_hWnd(pWnd->m_hWnd) {
    if (!Attach(::BeginPaint(m_hWnd, &m_ps))) AfxThrowResourceException();
}

CPaintDC::~CPaintDC() {
    Detach();
    ::EndPaint(m_hWnd, &m_ps);
}
