// The application object of the tests: answers and records message boxes, counts wait cursors, and
// carries the scripts of the dialogs. One made by a test takes the place of the program's own for
// its lifetime.
//
// Its end fails the test when a dialog came that no answer was given for, or when wait cursors were
// not ended as often as begun.
#pragma once

#include "framework.h"
#include "tests/support/DialogScript.h"
#include "tests/support/Text.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace test {

class TestApp : public CWinApp {
public:
    TestApp();
    ~TestApp() override;

    /// Texts of the message boxes in their order, UTF-8, and their types.
    const std::vector<std::string>& messages() const { return m_messages; }
    const std::vector<UINT>& messageTypes() const { return m_messageTypes; }
    /// Forgets the recorded boxes.
    void clearMessages();
    /// The button that answers the next box; without one IDNO answers a question, IDOK the rest.
    void answer(int button) { m_answers.push_back(button); }

    int waitBegins() const { return m_waitBegins; }
    int waitEnds() const { return m_waitEnds; }
    int waitRestores() const { return m_waitRestores; }
    /// Whether the wait cursor is on now.
    bool waiting() const { return m_waitBegins > m_waitEnds; }

    /// Answers of the next file dialogs.
    FileDialogScript& script() { return m_fileScript; }
    ColorDialogScript& colorScript() { return m_colorScript; }

    int DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT nIDPrompt) override;
    void DoWaitCursor(int nCode) override;
#ifndef _WIN32
    INT_PTR AnswerFileDialog(CFileDialog& dialog, CString& path) override;
    INT_PTR AnswerColorDialog(CColorDialog& dialog, COLORREF& color) override;
#endif

private:
    std::vector<std::string> m_messages;
    std::vector<UINT> m_messageTypes;
    std::deque<int> m_answers;
    int m_waitBegins = 0;
    int m_waitEnds = 0;
    int m_waitRestores = 0;
    FileDialogScript m_fileScript;
    ColorDialogScript m_colorScript;
};

/// The program's own application object, made by main.
std::unique_ptr<TestApp>& mainApp();

}  // namespace test
