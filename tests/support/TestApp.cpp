#include "tests/support/TestApp.h"

#ifdef _WIN32
#include "tests/support/DialogDriver.h"
#endif

#include <gtest/gtest.h>

namespace test {

std::unique_ptr<TestApp>& mainApp() {
    static std::unique_ptr<TestApp> app;
    return app;
}

TestApp::TestApp() : CWinApp(_T("Tests")) {
#ifdef _WIN32
    DialogDriver::instance().follow(&m_fileScript, &m_colorScript);
#endif
}

TestApp::~TestApp() {
#ifdef _WIN32
    DialogDriver::instance().leave(&m_fileScript);
#endif
    EXPECT_EQ(m_fileScript.unexpected(), 0) << "file dialogs came that no answer was given for";
    EXPECT_EQ(m_colorScript.unexpected(), 0) << "colour dialogs came that no answer was given for";
    EXPECT_EQ(m_waitBegins, m_waitEnds) << "wait cursors begun and ended";
}

void TestApp::clearMessages() {
    m_messages.clear();
    m_messageTypes.clear();
}

int TestApp::DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT) {
    m_messages.push_back(toUtf8(lpszPrompt));
    m_messageTypes.push_back(nType);
    if (!m_answers.empty()) {
        const int button = m_answers.front();
        m_answers.pop_front();
        return button;
    }
    const UINT buttons = nType & MB_TYPEMASK;
    return buttons == MB_YESNO || buttons == MB_YESNOCANCEL ? IDNO : IDOK;
}

void TestApp::DoWaitCursor(int nCode) {
    if (nCode > 0)
        ++m_waitBegins;
    else if (nCode < 0)
        ++m_waitEnds;
    else
        ++m_waitRestores;
    CWinApp::DoWaitCursor(nCode);
}

#ifndef _WIN32

namespace {

// The texts of a filter "text, zero, pattern, zero, ..., zero".
std::vector<std::string> filterTexts(LPCTSTR filter) {
    std::vector<std::string> texts;
    while (filter != nullptr && *filter != 0) {
        const CString text = filter;
        filter += text.GetLength() + 1;
        filter += CString(filter).GetLength() + 1;
        texts.push_back(toUtf8(text));
    }
    return texts;
}

}  // namespace

// Does what a dialog on a screen does with the name that a user types.
INT_PTR TestApp::AnswerFileDialog(CFileDialog& dialog, CString& path) {
    const OPENFILENAME& ofn = dialog.GetOFN();
    const FileDialogAnswer answer = m_fileScript.take();
    FileDialogFacts facts;
    facts.open = dialog.m_bOpenFileDialog != FALSE;
    facts.proposed = toUtf8(path);
    facts.filters = filterTexts(ofn.lpstrFilter);
    facts.filter = facts.filters.empty() ? -1 : static_cast<int>(ofn.nFilterIndex) - 1;

    bool accepted = answer.accept;
    if (accepted) {
        if (answer.path) path = fromPath(*answer.path);
        const std::filesystem::path file = toPath(path);
        const bool exists = std::filesystem::exists(file);
        if (!facts.open && exists && (ofn.Flags & OFN_OVERWRITEPROMPT) != 0) {
            facts.askedToReplace = true;
            accepted = answer.replace;
        } else if ((ofn.Flags & OFN_FILEMUSTEXIST) != 0 && !exists) {
            facts.refused = true;
            accepted = false;
        }
    }
    m_fileScript.report(facts);
    return accepted ? IDOK : IDCANCEL;
}

INT_PTR TestApp::AnswerColorDialog(CColorDialog& dialog, COLORREF& color) {
    const ColorDialogScript::Answer answer = m_colorScript.take();
    m_colorScript.report({color, (dialog.m_cc.Flags & CC_FULLOPEN) != 0});
    if (answer.color) color = *answer.color;
    return answer.accept ? IDOK : IDCANCEL;
}

#endif

}  // namespace test
