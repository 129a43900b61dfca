// The bond between window handles and the C++ objects of windows.
#pragma once

#include "afx_wnd.h"

class WindowLink {
public:
    /// Enters the object as the permanent one of a handle.
    static void attach(CWnd& wnd, HWND handle);
    static HWND detach(CWnd& wnd);
    /// The window is gone: frees the object from it and tells it so. The object may delete itself.
    static void destroyed(CWnd& wnd);
    /// Frees the temporary object of a handle, or all of them.
    static void freeTemporary(HWND handle);
    static void freeTemporaries();

#ifdef _WIN32
    /// Attaches and puts the common procedure before the window's own.
    static void subclass(CWnd& wnd, HWND handle);
    static HWND unsubclass(CWnd& wnd);
    /// The procedure of all windows with a C++ object.
    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
    /// Offers the notification that is being handled to the control that sent it.
    static BOOL reflect(HWND control, LRESULT* pResult);

private:
    static LRESULT guarded(CWnd& wnd, const MSG& msg);
#endif
};
