#include "tools/cxc/app.h"

#include "afx/core/utf8.h"

#include <utility>

namespace tool {
namespace {

std::string& message() {
    thread_local std::string text;
    return text;
}

}  // namespace

int App::DoMessageBox(LPCTSTR text, UINT type, UINT) {
    message() = afx::utf8(text);
    return (type & 0xF) == MB_YESNO ? IDYES : IDOK;
}

std::string lastMessage(const std::string& otherwise) {
    const std::string text = std::exchange(message(), std::string());
    return text.empty() ? otherwise : text;
}

std::string utf8(const CString& text) {
    return afx::utf8(text);
}

CString utf16(const std::string& bytes) {
    return afx::utf16(bytes);
}

}  // namespace tool
