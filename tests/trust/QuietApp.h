// An application object that takes no memory, for tests in which memory fails: it notes message
// boxes in a fixed place, answers them, and counts wait cursors.
#pragma once

#include "framework.h"

#include <string>
#include <vector>

namespace test {

class QuietApp : public CWinApp {
public:
    QuietApp() : CWinApp(_T("Quiet")) {}

    /// The texts since the last call, as far as there is room for them.
    std::vector<std::string> takeMessages() {
        std::vector<std::string> texts(m_texts, m_texts + (m_count < most ? m_count : most));
        m_count = 0;
        return texts;
    }
    /// Forgets the messages; takes no memory.
    void forget() { m_count = 0; }
    /// Wait cursors begun and not ended.
    int waiting() const { return m_waiting; }

    int question = IDYES;  // the button that answers questions
    CString path;          // the path that answers file dialogs; empty: they are cancelled

    int DoMessageBox(LPCTSTR text, UINT type, UINT) override {
        if (m_count < most) {
            int n = 0;
            for (; n < longest - 1 && text[n] != 0; ++n)
                m_texts[m_count][n] = static_cast<char>(text[n]);
            m_texts[m_count][n] = 0;
        }
        ++m_count;
        const UINT buttons = type & MB_TYPEMASK;
        return buttons == MB_YESNO || buttons == MB_YESNOCANCEL ? question : IDOK;
    }
    void DoWaitCursor(int code) override { m_waiting += code; }
#ifndef _WIN32
    INT_PTR AnswerFileDialog(CFileDialog&, CString& chosen) override {
        if (path.IsEmpty()) return IDCANCEL;
        chosen = path;
        return IDOK;
    }
#endif

private:
    static constexpr int most = 64;
    static constexpr int longest = 80;
    char m_texts[most][longest] = {};
    int m_count = 0;
    int m_waiting = 0;
};

}  // namespace test
