// The C++ objects of drawing tools.
#pragma once

#include "afx_gdiobject.h"

#include "afx/win32/handle_map.h"

namespace afx {

/// Permanent objects of every class; temporary ones come from the maps of their own classes.
using GdiObjects = HandleMap<CGdiObject, HGDIOBJ>;

/// The object of a handle, permanent or temporary; null for a null handle.
template <class Tool>
Tool* gdiObject(HGDIOBJ handle) {
    if (handle == nullptr) return nullptr;
    if (auto* const own = dynamic_cast<Tool*>(GdiObjects::instance().permanent(handle))) return own;
    return HandleMap<Tool, HGDIOBJ>::instance().object(
        handle, [handle](Tool& tool) { tool.m_hObject = handle; });
}

}  // namespace afx
