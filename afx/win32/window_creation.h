// The bond between an object and the window that is being made for it.
#pragma once

#include "afx_wnd.h"

/// While it lives, the next window that the thread makes is the object's, from its first message.
class WindowCreation {
public:
    explicit WindowCreation(CWnd& wnd);
    ~WindowCreation();
    WindowCreation(const WindowCreation&) = delete;
    WindowCreation& operator=(const WindowCreation&) = delete;

private:
    CWnd* m_outerWindow;
    HHOOK m_outerHook;
};

namespace afx {

/// Registers the classes of the common controls, once.
void initCommonControls();

}  // namespace afx
