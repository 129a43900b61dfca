#include "afx_app.h"

CWaitCursor::CWaitCursor() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(1);
}

CWaitCursor::~CWaitCursor() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(-1);
}

void CWaitCursor::Restore() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(0);
}
