// CDC: what is drawn on (Windows).
//
// Differences from MFC:
//  1. One handle for output and attributes; no metafiles, printers and mapping modes.
//  2. Only the drawing operations that are listed here.
#pragma once

#include "afx_bitmap.h"
#include "afx_brush.h"
#include "afx_font.h"
#include "afx_pen.h"
#include "atltypes.h"

#ifdef _WIN32

class AFX_API CDC : public CObject {
    DECLARE_DYNAMIC(CDC)

public:
    CDC() = default;
    /// Deletes an attached device context.
    ~CDC() override;

    HDC GetSafeHdc() const { return m_hDC; }
    /// The object of a handle: the permanent one, or a temporary one that lives until the program
    /// is idle. Null for a null handle.
    static CDC* PASCAL FromHandle(HDC hDC);
    BOOL Attach(HDC hDC);
    HDC Detach();
    /// In memory, like pDC; like the screen when that is null.
    BOOL CreateCompatibleDC(CDC* pDC);
    BOOL DeleteDC();

    int SaveDC() const;
    BOOL RestoreDC(int nSavedDC);
    /// Each returns the object selected before, maybe a temporary one; null on failure.
    CPen* SelectObject(CPen* pPen);
    CBrush* SelectObject(CBrush* pBrush);
    CFont* SelectObject(CFont* pFont);
    CBitmap* SelectObject(CBitmap* pBitmap);
    CGdiObject* SelectStockObject(int nIndex);

    /// Each returns the earlier setting.
    COLORREF SetBkColor(COLORREF crColor);
    int SetBkMode(int nBkMode);
    COLORREF SetTextColor(COLORREF crColor);
    UINT SetTextAlign(UINT nFlags);

    /// Leaves the colour as background colour.
    void FillSolidRect(LPCRECT lpRect, COLORREF clr);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF clr);
    void FillRect(LPCRECT lpRect, CBrush* pBrush);
    CPoint MoveTo(int x, int y);
    BOOL LineTo(int x, int y);
    BOOL Rectangle(LPCRECT lpRect);
    BOOL Ellipse(LPCRECT lpRect);
    COLORREF GetPixel(int x, int y) const;
    BOOL BitBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                DWORD dwRop);

    BOOL TextOut(int x, int y, const CString& str);
    int DrawText(const CString& str, LPRECT lpRect, UINT nFormat);
    CSize GetTextExtent(const CString& str) const;

    HDC m_hDC = nullptr;
};

#endif
