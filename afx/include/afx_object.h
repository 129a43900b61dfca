// CObject and run-time classes.
//
// Differences from MFC:
//  1. Objects are not created by name and not read from archives: DYNAMIC classes only.
//  2. No diagnostics (Dump, AssertValid).
#pragma once

#include "afx_types.h"

class CObject;
class CArchive;

/// What a class with run-time information knows of itself.
struct AFX_API CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;
    CObject*(PASCAL* m_pfnCreateObject)();
    const CRuntimeClass* m_pBaseClass;

    /// True for the class itself and for every class derived from pBaseClass.
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

class AFX_API CObject {
public:
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    virtual void Serialize(CArchive& ar);

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    BOOL IsKindOf(const CRuntimeClass* pClass) const;

    static CRuntimeClass classCObject;

protected:
    CObject() = default;
};

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)         \
public:                                     \
    static CRuntimeClass class##class_name; \
    CRuntimeClass* GetRuntimeClass() const override;

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                            \
    CRuntimeClass class_name::class##class_name = {#class_name, sizeof(class class_name), 0xFFFF, \
                                                   nullptr, RUNTIME_CLASS(base_class_name)};      \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                          \
        return RUNTIME_CLASS(class_name);                                                         \
    }
