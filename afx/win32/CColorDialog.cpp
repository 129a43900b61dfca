// The system's colour dialog.
#include "afx_colordialog.h"

INT_PTR CColorDialog::DoModal() {
    CHOOSECOLOR settings = m_cc;
    settings.hwndOwner = ownerWindow();
    // As documented; Wine starts at the colour that is there.
    if ((settings.Flags & CC_RGBINIT) == 0) settings.rgbResult = RGB(0, 0, 0);
    if (!::ChooseColor(&settings)) return IDCANCEL;
    m_cc.rgbResult = settings.rgbResult;
    return IDOK;
}
