// The colour dialog where nobody sits: the application's policy answers.
#include "afx_colordialog.h"

#include "afx_app.h"

INT_PTR CColorDialog::DoModal() {
    CWinApp* const app = AfxGetApp();
    COLORREF color = (m_cc.Flags & CC_RGBINIT) != 0 ? m_cc.rgbResult : RGB(0, 0, 0);
    if (app == nullptr || app->AnswerColorDialog(*this, color) != IDOK) return IDCANCEL;
    m_cc.rgbResult = color;
    return IDOK;
}
