#include "host/CHostApp.h"

#include "host/CHostFrame.h"

#include <shellapi.h>

BOOL CHostApp::InitInstance() {
    m_frame = new CHostFrame;
    m_pMainWnd = m_frame;
    if (!m_frame->create()) return FALSE;
    m_frame->ShowWindow(SW_SHOW);
    int count = 0;
    LPWSTR* const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        m_frame->openFile(CString(arguments[i]));
    ::LocalFree(arguments);
    return TRUE;
}

BOOL CHostApp::OnIdle(LONG count) {
    if (count == 0 && m_pMainWnd != nullptr) m_frame->lookForChanges();
    return CWinApp::OnIdle(count);
}
