#include "afx/win32/module_state.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CDynLinkLibrary, CCmdTarget)

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL)
    : CDynLinkLibrary(state.hModule, state.hResource) {}

CDynLinkLibrary::CDynLinkLibrary(HINSTANCE hModule, HINSTANCE hResource)
    : m_hModule(hModule), m_hResource(hResource) {
    afx::moduleState().extensions.push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    auto& extensions = afx::moduleState().extensions;
    extensions.erase(std::remove(extensions.begin(), extensions.end(), this), extensions.end());
}
