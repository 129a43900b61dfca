// The system's colour dialog.
#include "afx_colordialog.h"

INT_PTR CColorDialog::DoModal() {
    m_cc.hwndOwner = ownerWindow();
    return ::ChooseColor(&m_cc) ? IDOK : IDCANCEL;
}
