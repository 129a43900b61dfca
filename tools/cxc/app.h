// The application object of the command line: nobody sits here, so the library's messages become
// lines and its questions are answered Yes.
#pragma once

#include "framework.h"

#include <string>

namespace tool {

class App : public CWinApp {
public:
    App() : CWinApp(_T("cxc")) {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT prompt) override;
};

/// The library's last message on this thread since the last call, or `otherwise` when there was
/// none.
std::string lastMessage(const std::string& otherwise);

/// Text of the library, as UTF-8.
std::string utf8(const CString& text);
CString utf16(const std::string& bytes);

}  // namespace tool
