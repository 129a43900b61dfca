// The entries of message maps (Windows). They stand between BEGIN_MESSAGE_MAP and END_MESSAGE_MAP
// in the order in which they are looked at; the first that fits wins. Handlers are given as
// &Class::Handler.
#pragma once

#include "afx_cmdui.h"
#include "afx_dc.h"
#include "afx_menu.h"
#include "afx_wnd.h"

#ifdef _WIN32

/// Unpacks messages for a handler, one function per form of handler.
template <class Class, auto handler>
struct AfxHandler {
    template <class Result, class... Arguments>
    static Result call(CCmdTarget& target, Arguments... arguments) {
        constexpr Result (Class::*form)(Arguments...) = handler;
        return (static_cast<Class&>(target).*form)(arguments...);
    }

    static CPoint point(LPARAM lParam) {
        return CPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
    }
    static CWnd* window(WPARAM handle) { return CWnd::FromHandle(reinterpret_cast<HWND>(handle)); }

    static void command(CCmdTarget& target, AFX_MESSAGE&) { call<void>(target); }
    static void notify(CCmdTarget& target, AFX_MESSAGE& message) {
        const AFX_NOTIFY& notify = *static_cast<const AFX_NOTIFY*>(message.pExtra);
        call<void, NMHDR*, LRESULT*>(target, notify.pNMHDR, notify.pResult);
    }
    static void update(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, CCmdUI*>(target, static_cast<CCmdUI*>(message.pExtra));
    }
    static void plain(CCmdTarget& target, AFX_MESSAGE&) { call<void>(target); }
    static void raw(CCmdTarget& target, AFX_MESSAGE& message) {
        message.result = call<LRESULT, WPARAM, LPARAM>(target, message.wParam, message.lParam);
    }

    static void captureChanged(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, CWnd*>(target, window(static_cast<WPARAM>(message.lParam)));
    }
    static void contextMenu(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, CWnd*, CPoint>(target, window(message.wParam), point(message.lParam));
    }
    static void create(CCmdTarget& target, AFX_MESSAGE& message) {
        auto* const structure = reinterpret_cast<LPCREATESTRUCT>(message.lParam);
        message.result = call<int, LPCREATESTRUCT>(target, structure);
    }
    static void dropFiles(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, HDROP>(target, reinterpret_cast<HDROP>(message.wParam));
    }
    static void eraseBackground(CCmdTarget& target, AFX_MESSAGE& message) {
        CDC* const dc = CDC::FromHandle(reinterpret_cast<HDC>(message.wParam));
        message.result = call<BOOL, CDC*>(target, dc);
    }
    static void minMaxInfo(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, MINMAXINFO*>(target, reinterpret_cast<MINMAXINFO*>(message.lParam));
    }
    static void initMenuPopup(CCmdTarget& target, AFX_MESSAGE& message) {
        CMenu* const menu = CMenu::FromHandle(reinterpret_cast<HMENU>(message.wParam));
        call<void, CMenu*, UINT, BOOL>(target, menu, LOWORD(message.lParam),
                                       HIWORD(message.lParam));
    }
    static void key(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, UINT, UINT, UINT>(target, static_cast<UINT>(message.wParam),
                                     LOWORD(message.lParam), HIWORD(message.lParam));
    }
    static void mouse(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, UINT, CPoint>(target, static_cast<UINT>(message.wParam), point(message.lParam));
    }
    static void mouseWheel(CCmdTarget& target, AFX_MESSAGE& message) {
        message.result = call<BOOL, UINT, short, CPoint>(target, LOWORD(message.wParam),
                                                         static_cast<short>(HIWORD(message.wParam)),
                                                         point(message.lParam));
    }
    static void setCursor(CCmdTarget& target, AFX_MESSAGE& message) {
        message.result = call<BOOL, CWnd*, UINT, UINT>(
            target, window(message.wParam), LOWORD(message.lParam), HIWORD(message.lParam));
    }
    static void size(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, UINT, int, int>(target, static_cast<UINT>(message.wParam),
                                   LOWORD(message.lParam), HIWORD(message.lParam));
    }
    static void timer(CCmdTarget& target, AFX_MESSAGE& message) {
        call<void, UINT_PTR>(target, message.wParam);
    }
};

#define AFX_ENTRY(message, code, id, form, memberFxn)         \
    {message, static_cast<UINT>(code), static_cast<UINT>(id), \
     &AfxHandler<ThisClass, memberFxn>::form},

/// Commands of menus and accelerators: void Handler().
#define ON_COMMAND(id, memberFxn) AFX_ENTRY(WM_COMMAND, CN_COMMAND, id, command, memberFxn)
/// Before a menu item shows: void Handler(CCmdUI*).
#define ON_UPDATE_COMMAND_UI(id, memberFxn) \
    AFX_ENTRY(WM_COMMAND, CN_UPDATE_COMMAND_UI, id, update, memberFxn)

/// Notifications of controls: void Handler().
#define ON_CONTROL(code, id, memberFxn) AFX_ENTRY(WM_COMMAND, code, id, command, memberFxn)
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)

/// Notifications of common controls: void Handler(NMHDR*, LRESULT*). Reflected ones are the
/// control's own business and do not reach its parent any more.
#define ON_NOTIFY(code, id, memberFxn) \
    AFX_ENTRY(WM_NOTIFY, static_cast<WORD>(code), id, notify, memberFxn)
#define ON_NOTIFY_REFLECT(code, memberFxn) \
    AFX_ENTRY(WM_NOTIFY + WM_REFLECT_BASE, static_cast<WORD>(code), 0, notify, memberFxn)

/// Any message: LRESULT Handler(WPARAM, LPARAM).
#define ON_MESSAGE(message, memberFxn) AFX_ENTRY(message, 0, 0, raw, memberFxn)

/// Messages of the system, for the handlers that CWnd names.
#define ON_WM_CAPTURECHANGED() \
    AFX_ENTRY(WM_CAPTURECHANGED, 0, 0, captureChanged, &ThisClass::OnCaptureChanged)
#define ON_WM_CLOSE() AFX_ENTRY(WM_CLOSE, 0, 0, plain, &ThisClass::OnClose)
#define ON_WM_CONTEXTMENU() AFX_ENTRY(WM_CONTEXTMENU, 0, 0, contextMenu, &ThisClass::OnContextMenu)
#define ON_WM_CREATE() AFX_ENTRY(WM_CREATE, 0, 0, create, &ThisClass::OnCreate)
#define ON_WM_DESTROY() AFX_ENTRY(WM_DESTROY, 0, 0, plain, &ThisClass::OnDestroy)
#define ON_WM_DROPFILES() AFX_ENTRY(WM_DROPFILES, 0, 0, dropFiles, &ThisClass::OnDropFiles)
#define ON_WM_ERASEBKGND() AFX_ENTRY(WM_ERASEBKGND, 0, 0, eraseBackground, &ThisClass::OnEraseBkgnd)
#define ON_WM_GETMINMAXINFO() \
    AFX_ENTRY(WM_GETMINMAXINFO, 0, 0, minMaxInfo, &ThisClass::OnGetMinMaxInfo)
#define ON_WM_INITMENUPOPUP() \
    AFX_ENTRY(WM_INITMENUPOPUP, 0, 0, initMenuPopup, &ThisClass::OnInitMenuPopup)
#define ON_WM_KEYDOWN() AFX_ENTRY(WM_KEYDOWN, 0, 0, key, &ThisClass::OnKeyDown)
#define ON_WM_LBUTTONDBLCLK() AFX_ENTRY(WM_LBUTTONDBLCLK, 0, 0, mouse, &ThisClass::OnLButtonDblClk)
#define ON_WM_LBUTTONDOWN() AFX_ENTRY(WM_LBUTTONDOWN, 0, 0, mouse, &ThisClass::OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_ENTRY(WM_LBUTTONUP, 0, 0, mouse, &ThisClass::OnLButtonUp)
#define ON_WM_MOUSEMOVE() AFX_ENTRY(WM_MOUSEMOVE, 0, 0, mouse, &ThisClass::OnMouseMove)
#define ON_WM_MOUSEWHEEL() AFX_ENTRY(WM_MOUSEWHEEL, 0, 0, mouseWheel, &ThisClass::OnMouseWheel)
#define ON_WM_PAINT() AFX_ENTRY(WM_PAINT, 0, 0, plain, &ThisClass::OnPaint)
#define ON_WM_SETCURSOR() AFX_ENTRY(WM_SETCURSOR, 0, 0, setCursor, &ThisClass::OnSetCursor)
#define ON_WM_SIZE() AFX_ENTRY(WM_SIZE, 0, 0, size, &ThisClass::OnSize)
#define ON_WM_TIMER() AFX_ENTRY(WM_TIMER, 0, 0, timer, &ThisClass::OnTimer)

#endif
