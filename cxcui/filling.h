// What holds while a list is filled, and ends with the filling however that ends.
#pragma once

#include "framework.h"

namespace cxc {

/// Sets the flag by which a list knows that it is being filled: what the control tells its dialog
/// then is no choice. The list has to outlive it.
class Filling {
public:
    explicit Filling(bool& flag) : m_flag(flag), m_before(flag) { flag = true; }
    ~Filling() { m_flag = m_before; }
    Filling(const Filling&) = delete;
    Filling& operator=(const Filling&) = delete;

private:
    bool& m_flag;
    const bool m_before;
};

/// Keeps a control from painting itself; afterwards it is painted anew.
class PaintingStopped {
public:
    explicit PaintingStopped(CWnd& control) : m_control(control) { control.SetRedraw(FALSE); }
    ~PaintingStopped() {
        m_control.SetRedraw(TRUE);
        m_control.Invalidate();
    }
    PaintingStopped(const PaintingStopped&) = delete;
    PaintingStopped& operator=(const PaintingStopped&) = delete;

private:
    CWnd& m_control;
};

}  // namespace cxc
