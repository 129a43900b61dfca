// CColorDialog: asks for a colour.
//
// Differences from MFC:
//  1. The constructor adds no flags: without CC_RGBINIT the dialog starts at black.
//  2. Headless: the application's AnswerColorDialog decides.
#pragma once

#include "afx_commondialog.h"

class AFX_API CColorDialog : public CCommonDialog {
    DECLARE_DYNAMIC(CColorDialog)

public:
    explicit CColorDialog(COLORREF clrInit = 0, DWORD dwFlags = 0, CWnd* pParentWnd = nullptr);

    INT_PTR DoModal() override;

    /// The chosen colour; valid after IDOK.
    COLORREF GetColor() const;
    /// The 16 custom colours of all colour dialogs of the process, white at first.
    static COLORREF* PASCAL GetSavedCustomColors();

    /// Settings that DoModal uses; flags are or-ed in before it.
    CHOOSECOLOR m_cc;
};
