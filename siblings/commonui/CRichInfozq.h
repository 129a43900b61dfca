// A window that shows a text to read, to select and to copy (Windows).
#pragma once

#include "framework.h"
#include "siblings/commonui/commonui_api.h"

class CRichInfoWindow;

/// Holds one information window, which is made when it is first shown. The object itself never
/// touches a window when it is made or destroyed, so it may live as long as a library is loaded.
class CXC_COMMONUI_API CRichInfozq {
public:
    CRichInfozq() = default;
    CRichInfozq(const CRichInfozq&) = delete;
    CRichInfozq& operator=(const CRichInfozq&) = delete;
    /// A window that is open stays until the user closes it.
    ~CRichInfozq();

    /// Shows `text` under `title`, in place of what was shown before. Returns 1, or 0 without a
    /// window.
    int showRichInfo02(const CString& text, const CString& title);

private:
    friend class CRichInfoWindow;
    bool makeWindow();

    CRichInfoWindow* m_window = nullptr;  // its own owner; clears this when it is destroyed
};
