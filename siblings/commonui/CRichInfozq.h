// A window that shows a text to read, to select and to copy (Windows).
#pragma once

#include "framework.h"
#include "siblings/commonui/commonui_api.h"

class CRichInfoWindow;

/// A window that shows a text to read, to select and to copy (Windows).
///
/// Holds one such window, which is made when it is first shown. An object may live as long
/// as a library is loaded: making it touches no window, nor does its end once the program's
/// application object is gone.
class CXC_COMMONUI_API CRichInfozq {
public:
    /// Without a window.
    CRichInfozq() = default;
    /// Not to be copied.
    CRichInfozq(const CRichInfozq&) = delete;
    /// Not to be assigned.
    CRichInfozq& operator=(const CRichInfozq&) = delete;
    /// Closes the window.
    ~CRichInfozq();

    /// Shows `text` under `title`, in place of what was shown before, and brings the window to the
    /// front. The main window owns it. Returns 1, or 0 without a window.
    int showRichInfo02(const CString& text, const CString& title);

private:
    CRichInfoWindow* m_window = nullptr;  // owning; its window may have died with the main window
};
