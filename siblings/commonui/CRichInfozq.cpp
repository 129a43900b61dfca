#include "siblings/commonui/CRichInfozq.h"

#include "siblings/commonui/CRichInfoWindow.h"

CRichInfozq::~CRichInfozq() {
    if (m_window != nullptr) m_window->forgetOwner();
}

bool CRichInfozq::makeWindow() {
    m_window = new CRichInfoWindow(*this);
    if (m_window->make()) return true;
    // An object whose window had begun to exist is gone with it.
    delete m_window;
    m_window = nullptr;
    return false;
}

int CRichInfozq::showRichInfo02(const CString& text, const CString& title) {
    if (m_window == nullptr && !makeWindow()) return 0;
    m_window->show(text, title);
    return 1;
}
