// The application object where nobody sits.
#include "afx_app.h"

#include "afx/core/app_platform.h"
#include "afx/core/utf8.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace afx {

CString programName() {
    std::error_code failed;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failed);
    return failed ? CString() : utf16(program.stem().string());
}

HINSTANCE programModule() {
    return nullptr;
}

int plainMessageBox(LPCTSTR text, UINT type, LPCTSTR) {
    const std::string line = utf8(text) + "\n";
    // Where the error output is gone there is nobody to tell.
    static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
    static_cast<void>(std::fflush(stderr));
    switch (type & MB_TYPEMASK) {
        case MB_YESNO:
        case MB_YESNOCANCEL:
            return IDNO;
        case MB_ABORTRETRYIGNORE:
            return IDABORT;
        case MB_RETRYCANCEL:
            return IDCANCEL;
        default:
            return IDOK;
    }
}

void beginHourglass() {}
void showHourglass() {}
void endHourglass() {}

}  // namespace afx

BOOL AfxWinInit(HINSTANCE, HINSTANCE, LPTSTR, int) {
    return TRUE;
}

int CWinApp::Run() {
    return ExitInstance();
}

INT_PTR CWinApp::AnswerFileDialog(CFileDialog&, CString&) {
    return IDCANCEL;
}

INT_PTR CWinApp::AnswerColorDialog(CColorDialog&, COLORREF&) {
    return IDCANCEL;
}
