#include "siblings/commonui/CRichInfozq.h"

#include "siblings/commonui/CRichInfoWindow.h"
#include "siblings/commonui/resource.h"

CRichInfozq::~CRichInfozq() {
    // After the application object, at the end of the process, the window system may be gone too:
    // what is left goes with the process.
    if (m_window == nullptr || AfxGetApp() == nullptr) return;
    m_window->DestroyWindow();
    delete m_window;
}

int CRichInfozq::showRichInfo02(const CString& text, const CString& title) {
    if (m_window == nullptr) m_window = new CRichInfoWindow;
    if (m_window->m_hWnd == nullptr && !m_window->Create(IDD_RICH_INFO)) return 0;
    m_window->show(text, title);
    return 1;
}
