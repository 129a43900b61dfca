// The library as an extension DLL: hosts find its templates, menus and pictures through the
// framework's chain of modules.
#include "framework.h"

#include <afxdllx.h>

namespace {

AFX_EXTENSION_MODULE module = {};

}  // namespace

extern "C" int APIENTRY DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        if (!AfxInitExtensionModule(module, instance)) return 0;
        new CDynLinkLibrary(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        AfxTermExtensionModule(module);
    }
    return 1;
}
