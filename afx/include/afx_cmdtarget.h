// CCmdTarget, CWaitCursor: what application and windows share.
//
// Differences from MFC:
//  1. No automation.
//  2. Without an application object the wait cursor calls do nothing.
//  3. Headless: there are no messages, and no message maps.
#pragma once

#include "afx.h"
#include "afx_msgmap.h"
#include "afx_user.h"

class AFX_API CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// The application object counts: the hourglass shows until each begin has its end.
    void BeginWaitCursor();
    void EndWaitCursor();
    /// Shows the hourglass again when a message box or a dialog has changed the cursor.
    void RestoreWaitCursor();

#ifdef _WIN32
    /// Runs the handler of a command or a notification: nCode is CN_COMMAND, CN_UPDATE_COMMAND_UI
    /// or a control's code, with the message in its high word unless that is WM_COMMAND. With
    /// pHandlerInfo only tells who would handle it. FALSE: there is no handler.
    virtual BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo);
#endif

protected:
    CCmdTarget();

#ifdef _WIN32
    static const AFX_MSGMAP* PASCAL GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
#endif
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
