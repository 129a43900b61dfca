// A window of a host that shows data and is asked to repaint.
#pragma once

#include "framework.h"

#ifndef _WIN32
#include "afx_headless.h"
#endif

namespace test {

struct Repaint {
    bool requested = false;
    bool whole = false;  // the whole client area
    bool erase = false;  // the background too
};

class Viewer : public CWnd {
public:
    explicit Viewer(bool visible = true) {
        CreateEx(0, AfxRegisterWndClass(0), _T("Viewer"),
                 WS_POPUP | (visible ? static_cast<DWORD>(WS_VISIBLE) : 0), 20, 30, 70, 50, nullptr,
                 nullptr);
        takeRepaint();
    }

    /// What was asked for since the last call; nothing is asked for afterwards.
    Repaint takeRepaint() {
        Repaint repaint;
#ifdef _WIN32
        RECT update = {};
        RECT client = {};
        repaint.requested = ::GetUpdateRect(m_hWnd, &update, FALSE) != FALSE;
        ::GetClientRect(m_hWnd, &client);
        repaint.whole = repaint.requested && ::EqualRect(&update, &client);
        // The class has no background brush, so that an asked-for erasure stays undone.
        PAINTSTRUCT paint = {};
        ::BeginPaint(m_hWnd, &paint);
        repaint.erase = repaint.requested && paint.fErase;
        ::EndPaint(m_hWnd, &paint);
#else
        const afx_headless::RepaintRequests requests = afx_headless::repaintRequests(m_hWnd);
        repaint.requested = requests.count > 0;
        repaint.whole = requests.whole;
        repaint.erase = requests.erase;
        afx_headless::validate(m_hWnd);
#endif
        return repaint;
    }
};

}  // namespace test
