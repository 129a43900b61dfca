// CCmdTarget, CWaitCursor: what application and windows share.
//
// Differences from MFC:
//  1. CCmdTarget has no message map of its own yet and no automation.
//  2. Without an application object the wait cursor calls do nothing.
#pragma once

#include "afx.h"
#include "afx_user.h"

class AFX_API CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// The application object counts: the hourglass shows until each begin has its end.
    void BeginWaitCursor();
    void EndWaitCursor();
    /// Shows the hourglass again when a message box or a dialog has changed the cursor.
    void RestoreWaitCursor();

protected:
    CCmdTarget();
};

/// The hourglass for the lifetime of the object, exceptions included.
class AFX_API CWaitCursor {
public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;

    void Restore();
};
