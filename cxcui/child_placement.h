// Places of the controls inside a manager.
#pragma once

#include "framework.h"

#include <algorithm>

namespace cxc {

/// Changes the place of a control [client pixels of its dialog], never to less than nothing.
/// Nothing for a window that does not exist (yet).
template <class Change>
void changePlacement(CWnd& window, Change change) {
    WINDOWPLACEMENT placement = {};
    if (window.m_hWnd == nullptr || !window.GetWindowPlacement(&placement)) return;
    RECT& place = placement.rcNormalPosition;
    change(place);
    place.right = std::max(place.left, place.right);
    place.bottom = std::max(place.top, place.bottom);
    window.SetWindowPlacement(&placement);
}

}  // namespace cxc
