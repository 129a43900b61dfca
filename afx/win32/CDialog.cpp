#include "afx_dialog.h"

#include "afx_app.h"
#include "afx_exception.h"
#include "afx_module.h"
#include "afxmsg_.h"

#include "afx/win32/current_message.h"
#include "afx/win32/memory_exception.h"
#include "afx/win32/window_creation.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

namespace {

// Commands that a dialog passes on; lower ids are those of controls.
constexpr UINT firstSharedCommand = 0x8000;
constexpr UINT firstSystemCommand = 0xF000;

struct DialogTemplate {
    HINSTANCE module;         // its menu comes from the same module
    const DLGTEMPLATE* data;  // null when the template is missing
};

DialogTemplate findTemplate(LPCTSTR name) {
    const HINSTANCE module = AfxFindResourceHandle(name, RT_DIALOG);
    const HRSRC resource = ::FindResource(module, name, RT_DIALOG);
    if (resource == nullptr) return {module, nullptr};
    const HGLOBAL loaded = ::LoadResource(module, resource);
    return {module, static_cast<const DLGTEMPLATE*>(::LockResource(loaded))};
}

// A dialog whose template names no place goes over its owner.
bool namesNoPlace(const DLGTEMPLATE* data) {
    const auto* const words = reinterpret_cast<const WORD*>(data);
    const bool extended = words[0] == 1 && words[1] == 0xFFFF;
    // Behind the version, the help id and both styles, and the number of controls.
    const short x = static_cast<short>(extended ? words[9] : words[5]);
    const short y = static_cast<short>(extended ? words[10] : words[6]);
    return x == 0 && y == 0;
}

bool staysHidden(const DLGTEMPLATE* data) {
    const auto* const words = reinterpret_cast<const WORD*>(data);
    const bool extended = words[0] == 1 && words[1] == 0xFFFF;
    const WORD* const style = extended ? words + 6 : words;
    const DWORD bits = static_cast<DWORD>(MAKELONG(style[0], style[1]));
    return (bits & (WS_VISIBLE | WS_CHILD)) == 0;
}

// Disables the owner of a modal dialog, and its outermost window, for its own lifetime.
class OwnerDisabled {
public:
    explicit OwnerDisabled(const CWnd* parent) {
        const CWnd* const given = parent != nullptr ? parent : AfxGetMainWnd();
        m_owner = given != nullptr ? given->m_hWnd : nullptr;
        // A child window owns nothing.
        while (m_owner != nullptr && (::GetWindowLongPtr(m_owner, GWL_STYLE) & WS_CHILD) != 0)
            m_owner = ::GetParent(m_owner);
        HWND outermost = m_owner;
        while (outermost != nullptr && ::GetParent(outermost) != nullptr)
            outermost = ::GetParent(outermost);
        if (parent == nullptr && m_owner != nullptr) m_owner = ::GetLastActivePopup(m_owner);
        m_disabledOwner = disable(m_owner);
        m_disabledOutermost = disable(outermost);
    }
    ~OwnerDisabled() { enable(); }
    OwnerDisabled(const OwnerDisabled&) = delete;
    OwnerDisabled& operator=(const OwnerDisabled&) = delete;

    HWND owner() const { return m_owner; }
    void enable() {
        enable(m_disabledOutermost);
        enable(m_disabledOwner);
    }

private:
    static void enable(HWND& window) {
        if (window != nullptr) ::EnableWindow(window, TRUE);
        window = nullptr;
    }
    static HWND disable(HWND window) {
        if (window == nullptr || !::IsWindowEnabled(window)) return nullptr;
        ::EnableWindow(window, FALSE);
        return window;
    }

    HWND m_owner = nullptr;
    HWND m_disabledOwner = nullptr;
    HWND m_disabledOutermost = nullptr;
};

bool preTranslate(CWinApp* app, MSG& msg) {
    return app != nullptr && app->PreTranslateMessage(&msg);
}

}  // namespace

CDialog::CDialog() = default;

CDialog::CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd)
    : m_lpszTemplateName(lpszTemplateName), m_pParentWnd(pParentWnd) {}

CDialog::CDialog(UINT nIDTemplate, CWnd* pParentWnd)
    : CDialog(MAKEINTRESOURCE(nIDTemplate), pParentWnd) {}

CDialog::~CDialog() {
    if (m_hWnd != nullptr) CWnd::DestroyWindow();
}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd) {
    return Create(MAKEINTRESOURCE(nIDTemplate), pParentWnd);
}

BOOL CDialog::Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd) {
    m_lpszTemplateName = lpszTemplateName;
    m_pParentWnd = pParentWnd != nullptr ? pParentWnd : AfxGetMainWnd();
    return createWindow(lpszTemplateName, m_pParentWnd != nullptr ? m_pParentWnd->m_hWnd : nullptr);
}

BOOL CDialog::createWindow(LPCTSTR templateName, HWND owner) {
    const DialogTemplate found = findTemplate(templateName);
    if (m_hWnd != nullptr || found.data == nullptr) return FALSE;
    afx::initCommonControls();
    m_running = true;
    HWND handle = nullptr;
    {
        const WindowCreation creation(*this);
        handle =
            ::CreateDialogIndirectParam(found.module, found.data, owner, &CDialog::dialogProc, 0);
    }
    if (handle == nullptr) return FALSE;
    if (!m_running) {
        ::DestroyWindow(handle);
        return FALSE;
    }
    const HWND realOwner = ::GetWindow(handle, GW_OWNER);
    const bool ownerActive = realOwner != nullptr && ::IsWindowEnabled(realOwner);
    if (!ownerActive && namesNoPlace(found.data) && staysHidden(found.data) && !IsWindowVisible())
        CenterWindow();
    return TRUE;
}

INT_PTR CALLBACK CDialog::dialogProc(HWND handle, UINT message, WPARAM, LPARAM) {
    // Everything else has come through the object's WindowProc before.
    if (message != WM_INITDIALOG) return FALSE;
    auto* const dialog = dynamic_cast<CDialog*>(FromHandlePermanent(handle));
    if (dialog == nullptr) return TRUE;
    // Between here and the object's procedure lies code of the system, which no exception may pass.
    try {
        return afx::withMemoryException([&] { return dialog->OnInitDialog(); });
    } catch (CException* e) {
        if (CWinApp* const app = AfxGetApp())
            app->ProcessWndProcException(e, &afx::currentMessage());
        e->Delete();
        return FALSE;
    }
}

INT_PTR CDialog::DoModal() {
    OwnerDisabled disabled(m_pParentWnd);
    m_modalResult = -1;
    try {
        if (createWindow(m_lpszTemplateName, disabled.owner())) runModalLoop();
    } catch (CException* e) {
        e->Delete();
        m_modalResult = -1;
    }
    // Hidden first and the owner enabled next, so that the owner becomes the active window.
    if (m_hWnd != nullptr) ::ShowWindow(m_hWnd, SW_HIDE);
    disabled.enable();
    if (disabled.owner() != nullptr && ::GetActiveWindow() == m_hWnd)
        ::SetActiveWindow(disabled.owner());
    DestroyWindow();
    return m_modalResult;
}

void CDialog::runModalLoop() {
    const HWND handle = m_hWnd;
    if (!IsWindowVisible()) {
        ShowWindow(SW_SHOWNORMAL);
        UpdateWindow();
    }
    while (m_running && ::IsWindow(handle)) {
        MSG msg = {};
        if (::GetMessage(&msg, nullptr, 0, 0) <= 0) {
            // The end of the program is for the outer loop to see.
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            return;
        }
        if (preTranslate(AfxGetApp(), msg)) continue;
        ::TranslateMessage(&msg);
        ::DispatchMessage(&msg);
    }
}

void CDialog::EndDialog(int nResult) {
    if (m_running) {
        m_running = false;
        m_modalResult = nResult;
        // The loop may be waiting while a sent message has come here.
        PostMessage(WM_NULL);
    }
    ::EndDialog(m_hWnd, nResult);
}

BOOL CDialog::OnInitDialog() {
    if (UpdateData(FALSE)) return TRUE;
    EndDialog(-1);
    return FALSE;
}

void CDialog::OnOK() {
    if (UpdateData(TRUE)) EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

BOOL CDialog::PreTranslateMessage(MSG* pMsg) {
    if (CWnd::PreTranslateMessage(pMsg)) return TRUE;
    const bool key = pMsg->message >= WM_KEYFIRST && pMsg->message <= WM_KEYLAST;
    const bool mouse = pMsg->message >= WM_MOUSEFIRST && pMsg->message <= WM_MOUSELAST;
    return (key || mouse) && m_hWnd != nullptr && ::IsDialogMessage(m_hWnd, pMsg);
}

BOOL CDialog::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) {
    if (CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo)) return TRUE;
    const bool command = nCode == CN_COMMAND || nCode == CN_UPDATE_COMMAND_UI;
    if (!command || nID < firstSharedCommand || nID >= firstSystemCommand) return FALSE;
    CWnd* const owner = GetParent();
    if (owner != nullptr && owner->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo)) return TRUE;
    CWinApp* const app = AfxGetApp();
    return app != nullptr && app->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}
