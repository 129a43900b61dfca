#include "afx_app.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

CCmdTarget::CCmdTarget() = default;

void CCmdTarget::BeginWaitCursor() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(1);
}

void CCmdTarget::EndWaitCursor() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(-1);
}

void CCmdTarget::RestoreWaitCursor() {
    if (CWinApp* const app = AfxGetApp()) app->DoWaitCursor(0);
}
