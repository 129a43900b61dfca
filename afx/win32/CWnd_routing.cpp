// The way of a message through the maps, and the exchange of a dialog's data.
#include "afx_wnd.h"

#include "afx_dataexchange.h"
#include "afx_exception.h"
#include "afxmsg_.h"

#include "afx/core/window_link.h"

namespace {

// The window whose UpdateData runs; its controls are not heard meanwhile.
HWND lockedOut = nullptr;

class Lockout {
public:
    explicit Lockout(HWND window) : m_outer(lockedOut) { lockedOut = window; }
    ~Lockout() { lockedOut = m_outer; }
    Lockout(const Lockout&) = delete;
    Lockout& operator=(const Lockout&) = delete;

private:
    HWND m_outer;
};

// Asks the update handler whether a command may run.
class CommandTest : public CCmdUI {
public:
    void Enable(BOOL bOn) override { enabled = bOn; }
    void SetCheck(int) override {}
    void SetRadio(BOOL) override {}
    void SetText(LPCTSTR) override {}

    BOOL enabled = TRUE;
};

bool isDisabled(CCmdTarget& target, UINT command) {
    CommandTest test;
    test.m_nID = command;
    target.OnCmdMsg(command, CN_UPDATE_COMMAND_UI, &test, nullptr);
    return !test.enabled;
}

int codeOf(UINT notification, UINT message) {
    return static_cast<int>(MAKELONG(LOWORD(notification), message));
}

const AFX_MSGMAP_ENTRY* findMessage(const AFX_MSGMAP* map, UINT message) {
    for (; map->pfnGetBaseMap != nullptr; map = map->pfnGetBaseMap()) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage != 0; ++entry) {
            if (entry->nMessage == message) return entry;
        }
    }
    return nullptr;
}

}  // namespace

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    if (OnWndMsg(message, wParam, lParam, &result)) return result;
    return DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) return FALSE;
        *pResult = 1;
        return TRUE;
    }
    if (message == WM_NOTIFY) {
        const auto* const header = reinterpret_cast<const NMHDR*>(lParam);
        return header->hwndFrom != nullptr && OnNotify(wParam, lParam, pResult);
    }
    const AFX_MSGMAP_ENTRY* const entry = findMessage(GetMessageMap(), message);
    if (entry == nullptr) return FALSE;
    AFX_MESSAGE unpacked = {wParam, lParam, nullptr, 0};
    entry->pfn(*this, unpacked);
    *pResult = unpacked.result;
    return TRUE;
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    const UINT id = LOWORD(wParam);
    const HWND control = reinterpret_cast<HWND>(lParam);
    if (control == nullptr) {
        if (id == 0) return FALSE;
        if (isDisabled(*this, id)) return TRUE;
        return OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
    }
    if (lockedOut != nullptr && lockedOut == m_hWnd) return TRUE;
    LRESULT unused = 0;
    if (WindowLink::reflect(control, &unused)) return TRUE;
    if (id == 0) return FALSE;
    return OnCmdMsg(id, HIWORD(wParam), nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lParam, LRESULT* pResult) {
    auto* const header = reinterpret_cast<NMHDR*>(lParam);
    if (lockedOut != nullptr && lockedOut == m_hWnd) return TRUE;
    if (WindowLink::reflect(header->hwndFrom, pResult)) return TRUE;
    AFX_NOTIFY notify = {pResult, header};
    const UINT id = static_cast<UINT>(::GetDlgCtrlID(header->hwndFrom));
    return OnCmdMsg(id, codeOf(header->code, WM_NOTIFY), &notify, nullptr);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    if (message == WM_COMMAND)
        return OnCmdMsg(0, codeOf(HIWORD(wParam), WM_COMMAND + WM_REFLECT_BASE), nullptr, nullptr);
    if (message != WM_NOTIFY) return FALSE;
    auto* const header = reinterpret_cast<NMHDR*>(lParam);
    AFX_NOTIFY notify = {pResult, header};
    return OnCmdMsg(0, codeOf(header->code, WM_NOTIFY + WM_REFLECT_BASE), &notify, nullptr);
}

void CWnd::DoDataExchange(CDataExchange*) {}

BOOL CWnd::UpdateData(BOOL bSaveAndValidate) {
    CDataExchange exchange(this, bSaveAndValidate);
    const Lockout lockout(m_hWnd);
    try {
        DoDataExchange(&exchange);
        return TRUE;
    } catch (CUserException* e) {
        e->Delete();
    } catch (CException* e) {
        e->ReportError(MB_ICONEXCLAMATION);
        e->Delete();
    }
    return FALSE;
}

void CWnd::OnCaptureChanged(CWnd*) {
    Default();
}
void CWnd::OnClose() {
    Default();
}
void CWnd::OnContextMenu(CWnd*, CPoint) {
    Default();
}
int CWnd::OnCreate(LPCREATESTRUCT) {
    return static_cast<int>(Default());
}
void CWnd::OnDestroy() {
    Default();
}
void CWnd::OnDropFiles(HDROP) {
    Default();
}
BOOL CWnd::OnEraseBkgnd(CDC*) {
    return Default() != 0;
}
void CWnd::OnGetMinMaxInfo(MINMAXINFO*) {
    Default();
}
void CWnd::OnKeyDown(UINT, UINT, UINT) {
    Default();
}
void CWnd::OnLButtonDblClk(UINT, CPoint) {
    Default();
}
void CWnd::OnLButtonDown(UINT, CPoint) {
    Default();
}
void CWnd::OnLButtonUp(UINT, CPoint) {
    Default();
}
void CWnd::OnMouseMove(UINT, CPoint) {
    Default();
}
BOOL CWnd::OnMouseWheel(UINT, short, CPoint) {
    return Default() != 0;
}
void CWnd::OnPaint() {
    Default();
}
BOOL CWnd::OnSetCursor(CWnd*, UINT, UINT) {
    return Default() != 0;
}
void CWnd::OnSize(UINT, int, int) {
    Default();
}
void CWnd::OnTimer(UINT_PTR) {
    Default();
}
