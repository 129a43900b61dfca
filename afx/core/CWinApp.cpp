// The part of the application object that is the same on every platform.
#include "afx_app.h"

#include "afx/core/app_platform.h"

namespace {

CWinApp* currentApp = nullptr;

}  // namespace

IMPLEMENT_DYNAMIC(CWinApp, CCmdTarget)

CWinApp* AfxGetApp() {
    return currentApp;
}

CWnd* AfxGetMainWnd() {
    return currentApp != nullptr ? currentApp->m_pMainWnd : nullptr;
}

int AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT nIDHelp) {
    const LPCTSTR text = lpszText != nullptr ? lpszText : _T("");
    if (currentApp != nullptr) return currentApp->DoMessageBox(text, nType, nIDHelp);
    return afx::plainMessageBox(text, nType, afx::programName());
}

CWinApp::CWinApp(LPCTSTR lpszAppName)
    : m_pszAppName(nullptr),
      m_hInstance(afx::programModule()),
      m_appName(lpszAppName != nullptr ? CString(lpszAppName) : afx::programName()),
      m_previous(currentApp) {
    m_pszAppName = m_appName;
    currentApp = this;
}

CWinApp::~CWinApp() {
    CWinApp** link = &currentApp;
    while (*link != nullptr && *link != this)
        link = &(*link)->m_previous;
    if (*link == this) *link = m_previous;
}

BOOL CWinApp::InitInstance() {
    return TRUE;
}

int CWinApp::ExitInstance() {
    return m_nExitCode;
}

int CWinApp::DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT) {
    return afx::plainMessageBox(lpszPrompt, nType, m_pszAppName);
}

void CWinApp::DoWaitCursor(int nCode) {
    if (nCode > 0) {
        if (m_nWaitCursorCount++ == 0) afx::beginHourglass();
    } else if (nCode == 0) {
        if (m_nWaitCursorCount > 0) afx::showHourglass();
    } else if (m_nWaitCursorCount > 0 && --m_nWaitCursorCount == 0) {
        afx::endHourglass();
    }
}
