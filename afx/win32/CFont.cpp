#include "afx_font.h"

#include "afx/win32/gdi_objects.h"

#include <cwchar>

IMPLEMENT_DYNAMIC(CFont, CGdiObject)

CFont* PASCAL CFont::FromHandle(HFONT hFont) {
    return afx::gdiObject<CFont>(hFont);
}

BOOL CFont::CreatePointFont(int nPointSize, LPCTSTR lpszFaceName) {
    const HDC screen = ::GetDC(nullptr);
    LOGFONT font = {};
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfHeight = -::MulDiv(nPointSize, ::GetDeviceCaps(screen, LOGPIXELSY), 720);
    ::ReleaseDC(nullptr, screen);
    std::wcsncpy(font.lfFaceName, lpszFaceName, LF_FACESIZE - 1);
    return Attach(::CreateFontIndirect(&font));
}
