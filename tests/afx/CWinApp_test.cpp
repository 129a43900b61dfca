#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#ifdef _WIN32
#include "tests/support/DialogDriver.h"
#endif

namespace {

using test::TestApp;

TEST(CWinApp, TheApplicationObjectIsTheLastOneMade) {
    TestApp* const outer = test::mainApp().get();
    EXPECT_EQ(AfxGetApp(), outer);
    {
        TestApp inner;
        EXPECT_EQ(AfxGetApp(), &inner);
    }
    EXPECT_EQ(AfxGetApp(), outer);
}

TEST(CWinApp, ApplicationObjectsMayEndInAnyOrder) {
    auto first = std::make_unique<TestApp>();
    auto second = std::make_unique<TestApp>();
    first.reset();
    EXPECT_EQ(AfxGetApp(), second.get());
    second.reset();
    EXPECT_EQ(AfxGetApp(), test::mainApp().get());
}

TEST(CWinApp, HasTheGivenNameOrTheProgramsOwn) {
    const CWinApp named(_T("Coherence"));
    EXPECT_EQ(test::toUtf8(named.m_pszAppName), "Coherence");
    const CWinApp unnamed;
    EXPECT_EQ(test::toUtf8(unnamed.m_pszAppName), "afx_tests");
}

TEST(CWinApp, MainWindowIsTheOneOfTheApplication) {
    TestApp app;
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
    CWnd window;
    app.m_pMainWnd = &window;
    EXPECT_EQ(AfxGetMainWnd(), &window);
}

TEST(CWinApp, StartsAndEndsWithoutWork) {
    CWinApp app;
    EXPECT_TRUE(app.InitInstance());
    EXPECT_EQ(app.ExitInstance(), 0);
}

TEST(CWinApp, HasRunTimeInformation) {
    const CWinApp app;
    EXPECT_STREQ(app.GetRuntimeClass()->m_lpszClassName, "CWinApp");
    EXPECT_TRUE(app.IsKindOf(RUNTIME_CLASS(CCmdTarget)));
    EXPECT_FALSE(app.IsKindOf(RUNTIME_CLASS(CWnd)));
}

TEST(AfxMessageBox, GoesThroughTheApplicationObject) {
    TestApp app;
    app.answer(IDYES);
    EXPECT_EQ(AfxMessageBox(_T("Delete \x00E4ll?"), MB_YESNO | MB_ICONQUESTION), IDYES);
    EXPECT_EQ(AfxMessageBox(_T("Done")), IDOK);
    EXPECT_EQ(app.messages(), (std::vector<std::string>{"Delete \xC3\xA4ll?", "Done"}));
    EXPECT_EQ(app.messageTypes(), (std::vector<UINT>{MB_YESNO | MB_ICONQUESTION, MB_OK}));
}

TEST(AfxMessageBox, NullTextIsEmpty) {
    TestApp app;
    EXPECT_EQ(AfxMessageBox(static_cast<LPCTSTR>(nullptr)), IDOK);
    EXPECT_EQ(app.messages(), std::vector<std::string>{""});
}

TEST(AfxMessageBox, ReportOfAnExceptionGoesThere) {
    TestApp app;
    try {
        AfxThrowMemoryException();
    } catch (CException* e) {
        e->ReportError();
        e->Delete();
    }
    EXPECT_EQ(app.messages().size(), 1u);
}

TEST(CWaitCursor, BeginsAndEndsWithItsLife) {
    TestApp app;
    {
        CWaitCursor wait;
        EXPECT_TRUE(app.waiting());
        wait.Restore();
        EXPECT_EQ(app.waitRestores(), 1);
    }
    EXPECT_FALSE(app.waiting());
    EXPECT_EQ(app.waitBegins(), 1);
    EXPECT_EQ(app.waitEnds(), 1);
}

TEST(CWaitCursor, EndsWhenAnExceptionPasses) {
    TestApp app;
    try {
        const CWaitCursor wait;
        throw std::runtime_error("out of here");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(app.waitEnds(), 1);
}

TEST(CCmdTarget, WaitCursorCallsReachTheApplicationWithTheirCodes) {
    TestApp app;
    CWnd window;
    window.BeginWaitCursor();
    app.BeginWaitCursor();
    window.RestoreWaitCursor();
    app.EndWaitCursor();
    EXPECT_TRUE(app.waiting());
    window.EndWaitCursor();
    EXPECT_EQ(app.waitBegins(), 2);
    EXPECT_EQ(app.waitRestores(), 1);
    EXPECT_EQ(app.waitEnds(), 2);
}

// Shows the count of the base class.
class CountingApp : public CWinApp {
public:
    int count() const { return m_nWaitCursorCount; }
};

TEST(CWinApp, WaitCursorsNestAndTheCountIsNeverNegative) {
    CountingApp app;
    app.DoWaitCursor(-1);
    EXPECT_EQ(app.count(), 0);
    app.DoWaitCursor(1);
    app.DoWaitCursor(1);
    app.DoWaitCursor(0);
    EXPECT_EQ(app.count(), 2);
    app.DoWaitCursor(-1);
    EXPECT_EQ(app.count(), 1);
    app.DoWaitCursor(-1);
    app.DoWaitCursor(-1);
    EXPECT_EQ(app.count(), 0);
}

#ifdef _WIN32

TEST(CWinApp, HourglassShowsUntilTheLastEnd) {
    const HCURSOR wait = ::LoadCursor(nullptr, IDC_WAIT);
    const HCURSOR arrow = ::LoadCursor(nullptr, IDC_ARROW);
    ::SetCursor(arrow);
    CWinApp app;
    app.DoWaitCursor(1);
    app.DoWaitCursor(1);
    EXPECT_EQ(::GetCursor(), wait);
    ::SetCursor(arrow);
    app.DoWaitCursor(0);
    EXPECT_EQ(::GetCursor(), wait);
    app.DoWaitCursor(-1);
    EXPECT_EQ(::GetCursor(), wait);
    app.DoWaitCursor(-1);
    EXPECT_EQ(::GetCursor(), arrow);
}

// One real box: the button that is pressed and what the box has shown.
struct RealBox {
    int result;
    test::BoxFacts facts;
};

RealBox showRealBox(LPCTSTR text, UINT type, int button) {
    TestApp follower;  // its scripts keep the driver at work
    test::DialogDriver::instance().pressInNextBox(button);
    int result = 0;
    {
        CWinApp app(_T("Coherence"));
        result = AfxMessageBox(text, type);
    }
    const std::vector<test::BoxFacts> boxes = test::DialogDriver::instance().takeBoxes();
    EXPECT_EQ(boxes.size(), 1u);
    return {result, boxes.empty() ? test::BoxFacts() : boxes.front()};
}

TEST(CWinApp, DefaultMessageBoxIsARealOne) {
    const RealBox box = showRealBox(_T("This is no data!"), MB_OK, IDOK);
    EXPECT_EQ(box.result, IDOK);
    EXPECT_EQ(box.facts.title, "Coherence");
    EXPECT_EQ(box.facts.text, "This is no data!");
    EXPECT_TRUE(box.facts.icon);
}

TEST(CWinApp, RealQuestionBringsBackYesAndNo) {
    const RealBox yes = showRealBox(_T("Delete?"), MB_YESNO, IDYES);
    EXPECT_EQ(yes.result, IDYES);
    EXPECT_EQ(yes.facts.buttons, (std::vector<int>{IDYES, IDNO}));
    EXPECT_EQ(showRealBox(_T("Delete?"), MB_YESNO, IDNO).result, IDNO);
}

TEST(CWinApp, MessageLoopEndsWithTheCodeOfTheQuitMessage) {
    CWinApp app;
    ::PostQuitMessage(7);
    EXPECT_EQ(app.Run(), 7);
}

class FilteringApp : public TestApp {
public:
    BOOL PreTranslateMessage(MSG* pMsg) override {
        if (pMsg->message == WM_APP + 1) {
            ++filtered;
            return TRUE;
        }
        return TestApp::PreTranslateMessage(pMsg);
    }
    BOOL OnIdle(LONG lCount) override {
        ++idle;
        if (lCount == 1) ::PostQuitMessage(0);
        return TestApp::OnIdle(lCount) || lCount == 0;
    }
    int filtered = 0;
    int idle = 0;
};

class CountingWindow : public CWnd {
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message > WM_APP) ++received;
        return CWnd::WindowProc(message, wParam, lParam);
    }
    int received = 0;
};

TEST(CWinApp, MessageLoopFiltersDispatchesAndIdles) {
    FilteringApp app;
    CountingWindow window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, _T(""), WS_POPUP, 0, 0, 10, 10, nullptr, nullptr));
    ::PostMessage(window.m_hWnd, WM_APP + 1, 0, 0);
    ::PostMessage(window.m_hWnd, WM_APP + 2, 0, 0);
    EXPECT_EQ(app.Run(), 0);
    EXPECT_EQ(app.filtered, 1);
    EXPECT_EQ(window.received, 1);
    EXPECT_EQ(app.idle, 2);
}

TEST(CWinApp, MissingIconsAndCursorsAreNull) {
    const CWinApp app;
    EXPECT_EQ(app.LoadIcon(4003u), nullptr);
    EXPECT_EQ(app.LoadCursor(4008u), nullptr);
}

// Number of some dialog template of a module; 0 when there is none.
WORD anyDialog(HMODULE module) {
    WORD id = 0;
    const auto keepFirst = [](HMODULE, LPCTSTR, LPTSTR name, LONG_PTR context) -> BOOL {
        if (!IS_INTRESOURCE(name)) return TRUE;
        *reinterpret_cast<WORD*>(context) = static_cast<WORD>(reinterpret_cast<ULONG_PTR>(name));
        return FALSE;
    };
    ::EnumResourceNames(module, RT_DIALOG, static_cast<ENUMRESNAMEPROC>(keepFirst),
                        reinterpret_cast<LONG_PTR>(&id));
    return id;
}

TEST(AfxFindResourceHandle, ExtensionModulesAreSearchedAfterTheCurrentOne) {
    // The common dialogs' library stands in for an extension DLL: it holds dialog templates.
    const HMODULE library = ::LoadLibrary(_T("comdlg32.dll"));
    ASSERT_NE(library, nullptr);
    ASSERT_NE(anyDialog(library), 0);
    const LPCTSTR name = MAKEINTRESOURCE(anyDialog(library));
    EXPECT_EQ(AfxFindResourceHandle(name, RT_DIALOG), AfxGetInstanceHandle());

    AFX_EXTENSION_MODULE state = {};
    EXPECT_TRUE(AfxInitExtensionModule(state, library));
    EXPECT_TRUE(AfxInitExtensionModule(state, library));
    new CDynLinkLibrary(state);
    EXPECT_EQ(AfxFindResourceHandle(name, RT_DIALOG), library);
    AfxTermExtensionModule(state);
    EXPECT_EQ(AfxFindResourceHandle(name, RT_DIALOG), AfxGetInstanceHandle());

    AfxSetResourceHandle(library);
    EXPECT_EQ(AfxGetResourceHandle(), library);
    EXPECT_EQ(AfxFindResourceHandle(name, RT_DIALOG), library);
    AfxSetResourceHandle(nullptr);
    EXPECT_EQ(AfxGetResourceHandle(), AfxGetInstanceHandle());
}

#else

TEST(CWinApp, DefaultMessageBoxWritesToStandardErrorAndAnswersNo) {
    CWinApp app;
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(AfxMessageBox(_T("This is n\x00F6 data!")), IDOK);
    EXPECT_EQ(AfxMessageBox(_T("Delete?"), MB_YESNO), IDNO);
    EXPECT_EQ(AfxMessageBox(_T("Delete?"), MB_YESNOCANCEL | MB_ICONQUESTION), IDNO);
    EXPECT_EQ(AfxMessageBox(_T("Sure?"), MB_OKCANCEL), IDOK);
    EXPECT_EQ(AfxMessageBox(_T("Again?"), MB_RETRYCANCEL), IDCANCEL);
    EXPECT_EQ(AfxMessageBox(_T("Again?"), MB_ABORTRETRYIGNORE), IDABORT);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "This is n\xC3\xB6 data!\nDelete?\nDelete?\nSure?\nAgain?\nAgain?\n");
}

TEST(CWinApp, WithoutAnApplicationObjectTheDefaultsHold) {
    std::unique_ptr<TestApp> outer = std::move(test::mainApp());
    outer.reset();
    ASSERT_EQ(AfxGetApp(), nullptr);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
    {
        CWaitCursor wait;
        wait.Restore();
    }
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(AfxMessageBox(_T("Nobody is here")), IDOK);
    EXPECT_EQ(AfxMessageBox(_T("Delete?"), MB_YESNO), IDNO);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Nobody is here\nDelete?\n");
    CFileDialog files(TRUE);
    EXPECT_EQ(files.DoModal(), IDCANCEL);
    CColorDialog colors;
    EXPECT_EQ(colors.DoModal(), IDCANCEL);
    test::mainApp() = std::make_unique<TestApp>();
}

TEST(CWinApp, DefaultPolicyCancelsDialogs) {
    CWinApp app;
    CFileDialog files(FALSE, nullptr, _T("name"));
    EXPECT_EQ(files.DoModal(), IDCANCEL);
    EXPECT_TRUE(files.GetPathName().IsEmpty());
    CColorDialog colors(RGB(1, 2, 3));
    EXPECT_EQ(colors.DoModal(), IDCANCEL);
    EXPECT_EQ(colors.GetColor(), RGB(1, 2, 3));
}

TEST(CWinApp, RunHasNoMessagesToWaitFor) {
    CWinApp app;
    EXPECT_EQ(app.Run(), 0);
}

#endif

}  // namespace
