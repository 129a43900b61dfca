// The application object over the real window system.
#include "afx_app.h"

#include "afx_exception.h"
#include "afx_module.h"
#include "afx_wnd.h"

#include "afx/core/app_platform.h"
#include "afx/core/window_link.h"
#include "afx/win32/handle_map.h"
#include "afx/win32/module_state.h"

#include <vector>

namespace {

HCURSOR cursorBeforeHourglass = nullptr;

// The window that a message box belongs to: the main window or what lies over it.
HWND messageBoxOwner() {
    const CWnd* const mainWindow = AfxGetMainWnd();
    if (mainWindow == nullptr || mainWindow->m_hWnd == nullptr) return ::GetActiveWindow();
    return ::GetLastActivePopup(mainWindow->m_hWnd);
}

// A box without an icon of its own gets the exclamation mark, if it has no button that retries.
UINT withIcon(UINT type) {
    const UINT buttons = type & MB_TYPEMASK;
    const bool retries = buttons == MB_ABORTRETRYIGNORE || buttons == MB_RETRYCANCEL;
    return (type & MB_ICONMASK) != 0 || retries ? type : type | MB_ICONEXCLAMATION;
}

}  // namespace

namespace afx {

CString programName() {
    std::vector<TCHAR> path(MAX_PATH);
    for (;;) {
        const DWORD length =
            ::GetModuleFileName(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return CString();
        if (length < path.size()) break;
        path.resize(2 * path.size());
    }
    CString name(path.data());
    name = name.Mid(name.ReverseFind(_T('\\')) + 1);
    const int dot = name.ReverseFind(_T('.'));
    return dot > 0 ? name.Left(dot) : name;
}

HINSTANCE programModule() {
    return moduleState().instance;
}

int plainMessageBox(LPCTSTR text, UINT type, LPCTSTR title) {
    return ::MessageBox(messageBoxOwner(), text, title, withIcon(type));
}

void beginHourglass() {
    cursorBeforeHourglass = ::SetCursor(::LoadCursor(nullptr, IDC_WAIT));
}

void showHourglass() {
    ::SetCursor(::LoadCursor(nullptr, IDC_WAIT));
}

void endHourglass() {
    ::SetCursor(cursorBeforeHourglass);
}

}  // namespace afx

BOOL AfxWinInit(HINSTANCE hInstance, HINSTANCE, LPTSTR, int) {
    afx::ModuleState& state = afx::moduleState();
    if (hInstance != nullptr) state.instance = hInstance;
    if (CWinApp* const app = AfxGetApp()) app->m_hInstance = state.instance;
    return TRUE;
}

int AfxMessageBox(UINT nIDPrompt, UINT nType, UINT nIDHelp) {
    // String resources come in blocks of 16; the block's number is the resource's name.
    const HINSTANCE module =
        AfxFindResourceHandle(MAKEINTRESOURCE((nIDPrompt >> 4) + 1), RT_STRING);
    LPCTSTR resource = nullptr;
    const int length = ::LoadString(module, nIDPrompt, reinterpret_cast<LPTSTR>(&resource), 0);
    const CString text = length > 0 ? CString(resource, length) : CString();
    const UINT help = nIDHelp == static_cast<UINT>(-1) ? nIDPrompt : nIDHelp;
    return AfxMessageBox(text.GetString(), nType, help);
}

int CWinApp::Run() {
    MSG msg = {};
    for (;;) {
        LONG idle = 0;
        while (!::PeekMessage(&msg, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!OnIdle(idle++)) break;
        }
        do {
            if (::GetMessage(&msg, nullptr, 0, 0) <= 0) {
                m_nExitCode = static_cast<int>(msg.wParam);
                return ExitInstance();
            }
            if (!PreTranslateMessage(&msg)) {
                ::TranslateMessage(&msg);
                ::DispatchMessage(&msg);
            }
        } while (::PeekMessage(&msg, nullptr, 0, 0, PM_NOREMOVE));
    }
}

BOOL CWinApp::PreTranslateMessage(MSG* pMsg) {
    for (HWND handle = pMsg->hwnd; handle != nullptr; handle = ::GetParent(handle)) {
        CWnd* const wnd = CWnd::FromHandlePermanent(handle);
        if (wnd != nullptr && wnd->PreTranslateMessage(pMsg)) return TRUE;
        if (wnd != nullptr && wnd == m_pMainWnd) break;
    }
    return FALSE;
}

BOOL CWinApp::OnIdle(LONG) {
    WindowLink::freeTemporaries();
    afx::freeTemporaryObjects();
    return FALSE;
}

LRESULT CWinApp::ProcessWndProcException(CException* e, const MSG* pMsg) {
    if (pMsg->message == WM_CREATE) return -1;
    if (pMsg->message == WM_PAINT) {
        // Otherwise the same message, and the same exception, would come again and again.
        ::ValidateRect(pMsg->hwnd, nullptr);
        return 0;
    }
    e->ReportError(MB_ICONSTOP);
    return 0;
}

HICON CWinApp::LoadIcon(LPCTSTR lpszResourceName) const {
    return ::LoadIcon(AfxFindResourceHandle(lpszResourceName, RT_GROUP_ICON), lpszResourceName);
}

HICON CWinApp::LoadIcon(UINT nIDResource) const {
    return LoadIcon(MAKEINTRESOURCE(nIDResource));
}

HCURSOR CWinApp::LoadCursor(LPCTSTR lpszResourceName) const {
    return ::LoadCursor(AfxFindResourceHandle(lpszResourceName, RT_GROUP_CURSOR), lpszResourceName);
}

HCURSOR CWinApp::LoadCursor(UINT nIDResource) const {
    return LoadCursor(MAKEINTRESOURCE(nIDResource));
}
