#include "afx_dc.h"

#include "afx/win32/gdi_objects.h"

IMPLEMENT_DYNAMIC(CDC, CObject)

namespace {

using DeviceContexts = afx::HandleMap<CDC, HDC>;

template <class Tool>
Tool* select(HDC dc, const Tool* tool) {
    return tool != nullptr ? afx::gdiObject<Tool>(::SelectObject(dc, tool->m_hObject)) : nullptr;
}

}  // namespace

CDC::~CDC() {
    CDC::DeleteDC();
}

CDC* PASCAL CDC::FromHandle(HDC hDC) {
    if (hDC == nullptr) return nullptr;
    return DeviceContexts::instance().object(hDC, [hDC](CDC& dc) { dc.m_hDC = hDC; });
}

BOOL CDC::Attach(HDC hDC) {
    if (hDC == nullptr) return FALSE;
    m_hDC = hDC;
    DeviceContexts::instance().attach(hDC, this);
    return TRUE;
}

HDC CDC::Detach() {
    const HDC handle = m_hDC;
    DeviceContexts::instance().detach(handle, this);
    m_hDC = nullptr;
    return handle;
}

BOOL CDC::CreateCompatibleDC(CDC* pDC) {
    return Attach(::CreateCompatibleDC(pDC != nullptr ? pDC->m_hDC : nullptr));
}

BOOL CDC::DeleteDC() {
    return m_hDC != nullptr && ::DeleteDC(Detach());
}

int CDC::SaveDC() const {
    return ::SaveDC(m_hDC);
}

BOOL CDC::RestoreDC(int nSavedDC) {
    return ::RestoreDC(m_hDC, nSavedDC);
}

CPen* CDC::SelectObject(CPen* pPen) {
    return select(m_hDC, pPen);
}

CBrush* CDC::SelectObject(CBrush* pBrush) {
    return select(m_hDC, pBrush);
}

CFont* CDC::SelectObject(CFont* pFont) {
    return select(m_hDC, pFont);
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap) {
    return select(m_hDC, pBitmap);
}

CGdiObject* CDC::SelectStockObject(int nIndex) {
    const HGDIOBJ before = ::SelectObject(m_hDC, ::GetStockObject(nIndex));
    switch (::GetObjectType(before)) {
        case OBJ_PEN:
            return afx::gdiObject<CPen>(before);
        case OBJ_BRUSH:
            return afx::gdiObject<CBrush>(before);
        case OBJ_FONT:
            return afx::gdiObject<CFont>(before);
        default:
            return nullptr;
    }
}

COLORREF CDC::SetBkColor(COLORREF crColor) {
    return ::SetBkColor(m_hDC, crColor);
}

int CDC::SetBkMode(int nBkMode) {
    return ::SetBkMode(m_hDC, nBkMode);
}

COLORREF CDC::SetTextColor(COLORREF crColor) {
    return ::SetTextColor(m_hDC, crColor);
}

UINT CDC::SetTextAlign(UINT nFlags) {
    return ::SetTextAlign(m_hDC, nFlags);
}

void CDC::FillSolidRect(LPCRECT lpRect, COLORREF clr) {
    ::SetBkColor(m_hDC, clr);
    ::ExtTextOut(m_hDC, 0, 0, ETO_OPAQUE, lpRect, nullptr, 0, nullptr);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF clr) {
    const CRect rect(x, y, x + cx, y + cy);
    FillSolidRect(rect, clr);
}

void CDC::FillRect(LPCRECT lpRect, CBrush* pBrush) {
    ::FillRect(m_hDC, lpRect, *pBrush);
}

CPoint CDC::MoveTo(int x, int y) {
    CPoint before;
    ::MoveToEx(m_hDC, x, y, &before);
    return before;
}

BOOL CDC::LineTo(int x, int y) {
    return ::LineTo(m_hDC, x, y);
}

BOOL CDC::Rectangle(LPCRECT lpRect) {
    return ::Rectangle(m_hDC, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

BOOL CDC::Ellipse(LPCRECT lpRect) {
    return ::Ellipse(m_hDC, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

COLORREF CDC::GetPixel(int x, int y) const {
    return ::GetPixel(m_hDC, x, y);
}

BOOL CDC::BitBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                 DWORD dwRop) {
    return ::BitBlt(m_hDC, x, y, nWidth, nHeight, pSrcDC->m_hDC, xSrc, ySrc, dwRop);
}

BOOL CDC::TextOut(int x, int y, const CString& str) {
    return ::TextOut(m_hDC, x, y, str.GetString(), str.GetLength());
}

int CDC::DrawText(const CString& str, LPRECT lpRect, UINT nFormat) {
    return ::DrawText(m_hDC, str.GetString(), str.GetLength(), lpRect, nFormat);
}

CSize CDC::GetTextExtent(const CString& str) const {
    CSize size;
    ::GetTextExtentPoint32(m_hDC, str.GetString(), str.GetLength(), &size);
    return size;
}
