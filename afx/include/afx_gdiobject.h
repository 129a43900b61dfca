// CGdiObject: base of pens, brushes, fonts and bitmaps (Windows).
//
// Differences from MFC:
//  1. What SelectObject returns for an object that no C++ object owns is a temporary CGdiObject
//     of the right class, freed when the program is idle.
#pragma once

#include "afx.h"
#include "afx_user.h"

#ifdef _WIN32

class AFX_API CGdiObject : public CObject {
    DECLARE_DYNAMIC(CGdiObject)

public:
    CGdiObject() = default;
    /// Deletes the attached object; it must not be selected into a device context any more.
    ~CGdiObject() override;

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    BOOL Attach(HGDIOBJ hObject);
    HGDIOBJ Detach();
    BOOL DeleteObject();

    HGDIOBJ m_hObject = nullptr;
};

#endif
