#include "tools/cxc/app.h"

#include "afx/core/utf8.h"

namespace tool {

int App::DoMessageBox(LPCTSTR text, UINT type, UINT) {
    messages.push_back(afx::utf8(text));
    return (type & 0xF) == MB_YESNO ? IDYES : IDOK;
}

std::string lastMessage(const std::string& otherwise) {
    auto* const app = dynamic_cast<App*>(AfxGetApp());
    if (app == nullptr || app->messages.empty()) return otherwise;
    std::string message = app->messages.back();
    app->messages.clear();
    return message;
}

std::string utf8(const CString& text) {
    return afx::utf8(text);
}

CString utf16(const std::string& bytes) {
    return afx::utf16(bytes);
}

}  // namespace tool
