// Modules and their resources (Windows).
//
// Differences from MFC:
//  1. One application, one module state: the functions serve the whole process.
//  2. An extension module shares resources only, no run-time classes and no object factories.
//  3. Headless: none of this exists; there are no resources.
#pragma once

#include "afx_cmdtarget.h"

#ifdef _WIN32

/// State of an extension DLL; a static object of that DLL.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
};

/// Enters an extension DLL into the resource chain, where AfxFindResourceHandle finds it. Made with
/// new in DllMain; AfxTermExtensionModule destroys it.
class AFX_API CDynLinkLibrary : public CCmdTarget {
    DECLARE_DYNAMIC(CDynLinkLibrary)

public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL bSystem = FALSE);
    CDynLinkLibrary(HINSTANCE hModule, HINSTANCE hResource);
    ~CDynLinkLibrary() override;

    HMODULE m_hModule;
    HMODULE m_hResource;
};

/// Process attach of an extension DLL; TRUE on success, also when called again.
AFX_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE hModule);
/// Process detach: takes the DLL out of the resource chain; bAll: every extension DLL.
AFX_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL bAll = FALSE);

/// Module of the program.
AFX_API HINSTANCE AfxGetInstanceHandle();
/// Module that is searched first for resources; the program's until another is set.
AFX_API HINSTANCE AfxGetResourceHandle();
AFX_API void AfxSetResourceHandle(HINSTANCE hInstResource);
/// Module that holds a resource: the current resource module, then the program, then every
/// extension DLL, the one loaded last first. When none does, the current resource module.
AFX_API HINSTANCE AfxFindResourceHandle(LPCTSTR lpszName, LPCTSTR lpszType);

#endif
