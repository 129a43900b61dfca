#include "afx/win32/module_state.h"

namespace afx {

ModuleState& moduleState() {
    // Never destroyed: extension DLLs leave the chain as late as they like.
    static ModuleState& state = *new ModuleState{::GetModuleHandle(nullptr), nullptr, {}};
    return state;
}

}  // namespace afx

namespace {

bool holds(HINSTANCE module, LPCTSTR name, LPCTSTR type) {
    return ::FindResource(module, name, type) != nullptr;
}

}  // namespace

HINSTANCE AfxGetInstanceHandle() {
    return afx::moduleState().instance;
}

HINSTANCE AfxGetResourceHandle() {
    const afx::ModuleState& state = afx::moduleState();
    return state.resources != nullptr ? state.resources : state.instance;
}

void AfxSetResourceHandle(HINSTANCE hInstResource) {
    afx::moduleState().resources = hInstResource;
}

HINSTANCE AfxFindResourceHandle(LPCTSTR lpszName, LPCTSTR lpszType) {
    const afx::ModuleState& state = afx::moduleState();
    const HINSTANCE first = AfxGetResourceHandle();
    if (holds(first, lpszName, lpszType)) return first;
    if (holds(state.instance, lpszName, lpszType)) return state.instance;
    for (auto library = state.extensions.rbegin(); library != state.extensions.rend(); ++library) {
        const HMODULE module = (*library)->m_hResource;
        if (module != nullptr && holds(module, lpszName, lpszType)) return module;
    }
    return first;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE hModule) {
    if (state.bInitialized) return TRUE;
    state.bInitialized = TRUE;
    state.hModule = hModule;
    state.hResource = hModule;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL bAll) {
    if (!state.bInitialized) return;
    // Each one takes itself out of the chain; the loop runs over a copy.
    const std::vector<CDynLinkLibrary*> libraries = afx::moduleState().extensions;
    for (CDynLinkLibrary* const library : libraries) {
        if (bAll || library->m_hModule == state.hModule) delete library;
    }
    state.bInitialized = FALSE;
}
