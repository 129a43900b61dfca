// The sample host's application object.
#pragma once

#include "framework.h"

class CHostFrame;

class CHostApp : public CWinApp {
public:
    CHostApp() : CWinApp(_T("CxC Host")) {}

    /// Opens the main window, and the files of the command line.
    BOOL InitInstance() override;
    BOOL OnIdle(LONG count) override;

private:
    CHostFrame* m_frame = nullptr;  // deletes itself with its window; alive while m_pMainWnd is set
};
