#include "afx_gdiobject.h"

#include "afx/win32/gdi_objects.h"

IMPLEMENT_DYNAMIC(CGdiObject, CObject)

CGdiObject::~CGdiObject() {
    CGdiObject::DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ hObject) {
    if (hObject == nullptr) return FALSE;
    m_hObject = hObject;
    afx::GdiObjects::instance().attach(hObject, this);
    return TRUE;
}

HGDIOBJ CGdiObject::Detach() {
    const HGDIOBJ handle = m_hObject;
    afx::GdiObjects::instance().detach(handle, this);
    m_hObject = nullptr;
    return handle;
}

BOOL CGdiObject::DeleteObject() {
    return m_hObject != nullptr && ::DeleteObject(Detach());
}
