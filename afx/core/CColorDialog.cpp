// The part of CColorDialog that is the same on every platform.
#include "afx_colordialog.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CColorDialog, CCommonDialog)

CColorDialog::CColorDialog(COLORREF clrInit, DWORD dwFlags, CWnd* pParentWnd)
    : CCommonDialog(pParentWnd), m_cc() {
    m_cc.lStructSize = sizeof(m_cc);
    m_cc.rgbResult = clrInit;
    m_cc.lpCustColors = GetSavedCustomColors();
    m_cc.Flags = dwFlags;
}

COLORREF CColorDialog::GetColor() const {
    return m_cc.rgbResult;
}

COLORREF* PASCAL CColorDialog::GetSavedCustomColors() {
    struct CustomColors {
        CustomColors() { std::fill(values, values + 16, RGB(255, 255, 255)); }
        COLORREF values[16];
    };
    static CustomColors colors;
    return colors.values;
}
