// Headless build only, no counterpart in MFC: what a program or a test may ask about the windows
// of the in-process table.
#pragma once

#include "afx_user.h"

#ifndef _WIN32

namespace afx_headless {

/// Repaint requests that a window has received since it was made or last validated.
struct RepaintRequests {
    int count = 0;       // calls of InvalidateRect
    bool whole = false;  // at least one covered the whole client area
    bool erase = false;  // at least one asked to erase the background
};

/// Returns the requests of a window; none for a handle that is no window.
AFX_API RepaintRequests repaintRequests(HWND window);

/// Forgets the requests, as painting does on Windows.
AFX_API void validate(HWND window);

}  // namespace afx_headless

#endif
