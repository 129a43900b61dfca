// CWnd over real windows.
#include "afx_wnd.h"

#include "afx_app.h"
#include "afx_exception.h"
#include "afx_module.h"

#include "afx/core/window_link.h"
#include "afx/win32/current_message.h"
#include "afx/win32/memory_exception.h"
#include "afx/win32/window_creation.h"

#include <set>
#include <string>

namespace {

MSG innermostMessage = {};

CWnd* windowInCreation = nullptr;
HHOOK creationHook = nullptr;

bool isInputMethodWindow(HWND handle) {
    TCHAR name[8] = {};
    ::GetClassName(handle, name, 8);
    return CString(name).CompareNoCase(_T("IME")) == 0;
}

// Meets the window before its first message, so that the object sees them all.
LRESULT CALLBACK meetNewWindow(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && windowInCreation != nullptr) {
        const HWND handle = reinterpret_cast<HWND>(wParam);
        // The system may make a window of its own for the input method first.
        if (!isInputMethodWindow(handle)) {
            CWnd* const wnd = windowInCreation;
            windowInCreation = nullptr;
            WindowLink::subclass(*wnd, handle);
        }
    }
    return ::CallNextHookEx(creationHook, code, wParam, lParam);
}

}  // namespace

namespace afx {

const MSG& currentMessage() {
    return innermostMessage;
}

void initCommonControls() {
    static const bool done = [] {
        const INITCOMMONCONTROLSEX classes = {sizeof(INITCOMMONCONTROLSEX),
                                              ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
        return ::InitCommonControlsEx(&classes) != FALSE;
    }();
    static_cast<void>(done);
}

}  // namespace afx

WindowCreation::WindowCreation(CWnd& wnd)
    : m_outerWindow(windowInCreation), m_outerHook(creationHook) {
    windowInCreation = &wnd;
    creationHook = ::SetWindowsHookEx(WH_CBT, meetNewWindow, nullptr, ::GetCurrentThreadId());
}

WindowCreation::~WindowCreation() {
    ::UnhookWindowsHookEx(creationHook);
    creationHook = m_outerHook;
    windowInCreation = m_outerWindow;
}

HWND WindowLink::unsubclass(CWnd& wnd) {
    const HWND handle = wnd.m_hWnd;
    const auto own = reinterpret_cast<LONG_PTR>(&WindowLink::procedure);
    // Somebody else may have subclassed the window since; then the chain has to stay.
    if (wnd.m_pfnSuper != nullptr && ::GetWindowLongPtr(handle, GWLP_WNDPROC) == own)
        ::SetWindowLongPtr(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(wnd.m_pfnSuper));
    wnd.m_pfnSuper = nullptr;
    return handle;
}

void WindowLink::subclass(CWnd& wnd, HWND handle) {
    attach(wnd, handle);
    wnd.PreSubclassWindow();
    wnd.m_pfnSuper = reinterpret_cast<WNDPROC>(::SetWindowLongPtr(
        handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowLink::procedure)));
}

BOOL WindowLink::reflect(HWND control, LRESULT* pResult) {
    CWnd* const sender = CWnd::FromHandlePermanent(control);
    if (sender == nullptr) return FALSE;
    const MSG& msg = afx::currentMessage();
    return sender->OnChildNotify(msg.message, msg.wParam, msg.lParam, pResult);
}

LRESULT WindowLink::guarded(CWnd& wnd, const MSG& msg) {
    try {
        return afx::withMemoryException(
            [&] { return wnd.WindowProc(msg.message, msg.wParam, msg.lParam); });
    } catch (CException* e) {
        CWinApp* const app = AfxGetApp();
        const LRESULT result = app != nullptr ? app->ProcessWndProcException(e, &msg) : 0;
        e->Delete();
        return result;
    }
}

LRESULT CALLBACK WindowLink::procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    CWnd* const wnd = CWnd::FromHandlePermanent(handle);
    if (wnd == nullptr) return ::DefWindowProc(handle, message, wParam, lParam);
    const MSG outer = innermostMessage;
    const MSG current = {handle, message, wParam, lParam, outer.time, outer.pt};
    innermostMessage = current;
    const LRESULT result = guarded(*wnd, current);
    innermostMessage = outer;
    // The last message of a window. The object may have detached itself while handling it.
    if (message == WM_NCDESTROY && CWnd::FromHandlePermanent(handle) == wnd) {
        unsubclass(*wnd);
        destroyed(*wnd);
    }
    return result;
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                    LPVOID lpParam) {
    if (m_hWnd != nullptr) return FALSE;
    const LPCTSTR className = lpszClassName != nullptr ? lpszClassName : AfxRegisterWndClass(0);
    const WindowCreation creation(*this);
    const HWND handle =
        ::CreateWindowEx(dwExStyle, className, lpszWindowName, dwStyle, x, y, nWidth, nHeight,
                         hWndParent, nIDorHMenu, AfxGetInstanceHandle(), lpParam);
    // A refused window has said goodbye to the object already, and the object may be gone.
    return handle != nullptr;
}

BOOL CWnd::SubclassWindow(HWND hWnd) {
    if (hWnd == nullptr || m_hWnd != nullptr || FromHandlePermanent(hWnd) != nullptr) return FALSE;
    WindowLink::subclass(*this, hWnd);
    return TRUE;
}

HWND CWnd::UnsubclassWindow() {
    if (m_hWnd == nullptr) return nullptr;
    WindowLink::unsubclass(*this);
    return Detach();
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (m_pfnSuper != nullptr) return ::CallWindowProc(m_pfnSuper, m_hWnd, message, wParam, lParam);
    return ::DefWindowProc(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const MSG& msg = afx::currentMessage();
    return DefWindowProc(msg.message, msg.wParam, msg.lParam);
}

void CWnd::PreSubclassWindow() {}

LPCTSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground, HICON hIcon) {
    // Names live in the set, and with them the pointers that were given out.
    static std::set<std::wstring>& names = *new std::set<std::wstring>;
    CString text;
    text.Format(_T("AfxWnd:%x:%I64x:%I64x:%I64x"), nClassStyle,
                static_cast<long long>(reinterpret_cast<INT_PTR>(hCursor)),
                static_cast<long long>(reinterpret_cast<INT_PTR>(hbrBackground)),
                static_cast<long long>(reinterpret_cast<INT_PTR>(hIcon)));
    const auto inserted = names.insert(text.GetString());
    const LPCTSTR name = inserted.first->c_str();
    if (!inserted.second) return name;

    WNDCLASS windowClass = {};
    windowClass.style = nClassStyle;
    windowClass.lpfnWndProc = ::DefWindowProc;
    windowClass.hInstance = AfxGetInstanceHandle();
    windowClass.hCursor = hCursor;
    windowClass.hbrBackground = hbrBackground;
    windowClass.hIcon = hIcon;
    windowClass.lpszClassName = name;
    if (::RegisterClass(&windowClass) == 0) AfxThrowResourceException();
    return name;
}
