#include "tests/support/ArchiveFile.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace {

using test::fromPath;
using test::TempDir;
using test::TestApp;
using test::toPath;
using test::toUtf8;
using test::writeFile;

const LPCTSTR filter = _T("Channel cross channel(*.cxc)|*.cxc|All Files(*.*)|*.*||");
const std::vector<std::string> filterTexts = {"Channel cross channel(*.cxc)", "All Files(*.*)"};

// Both styles of the dialog obey the same rules.
class CFileDialogStyle : public ::testing::TestWithParam<bool> {
protected:
    std::unique_ptr<CFileDialog> saveDialog(LPCTSTR name, DWORD flags = OFN_OVERWRITEPROMPT,
                                            LPCTSTR extension = nullptr) {
        auto dialog = std::make_unique<CFileDialog>(FALSE, extension, name, flags, filter, nullptr,
                                                    0, GetParam());
        dialog->m_ofn.nFilterIndex = 1;
        return dialog;
    }
    std::unique_ptr<CFileDialog> openDialog(DWORD flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST) {
        auto dialog = std::make_unique<CFileDialog>(TRUE, nullptr, nullptr, flags, filter, nullptr,
                                                    0, GetParam());
        dialog->m_ofn.nFilterIndex = 1;
        return dialog;
    }

    TestApp app;
    TempDir folder;
};

TEST_P(CFileDialogStyle, SaveShowsNameAndFilter) {
    app.script().cancel();
    const auto dialog = saveDialog(_T("CxC Data"));
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_FALSE(app.script().last().open);
    EXPECT_EQ(app.script().lastProposed(), "CxC Data");
    EXPECT_EQ(app.script().last().filters, filterTexts);
    EXPECT_EQ(app.script().last().filter, 0);
}

TEST_P(CFileDialogStyle, FilterIndexCountsFromOne) {
    app.script().cancel();
    const auto dialog = saveDialog(_T("x"));
    dialog->GetOFN().nFilterIndex = 2;
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_EQ(app.script().last().filter, 1);
}

TEST_P(CFileDialogStyle, OpenShowsNoName) {
    app.script().cancel();
    const auto dialog = openDialog();
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_TRUE(app.script().last().open);
    EXPECT_EQ(app.script().lastProposed(), "");
    EXPECT_EQ(app.script().last().filters, filterTexts);
}

TEST_P(CFileDialogStyle, CancelLeavesNoPath) {
    app.script().cancel();
    const auto dialog = openDialog();
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_TRUE(dialog->GetPathName().IsEmpty());
    EXPECT_TRUE(dialog->GetFileName().IsEmpty());
}

TEST_P(CFileDialogStyle, WithoutADefaultExtensionTheTypedNameIsKept) {
    std::filesystem::create_directory(folder / "set.cxc");
    for (const std::string name :
         {"plain", "named.cxc", "capital.CXC", "other.txt", "set.cxc/plain"}) {
        const std::filesystem::path typed = (folder / name).make_preferred();
        app.script().choose(typed);
        const auto dialog = saveDialog(_T("CxC Data"));
        EXPECT_EQ(dialog->DoModal(), IDOK) << name;
        EXPECT_EQ(toPath(dialog->GetPathName()), typed);
        EXPECT_EQ(toPath(dialog->GetFileName()), typed.filename());
    }
}

TEST_P(CFileDialogStyle, DefaultExtensionIsAppendedToANameWithoutOne) {
    app.script().choose(folder / "plain");
    const auto dialog = saveDialog(nullptr, OFN_OVERWRITEPROMPT, _T("cxc"));
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_EQ(toPath(dialog->GetPathName()), folder / "plain.cxc");
}

TEST_P(CFileDialogStyle, NameOutsideTheCodePageSurvives) {
    const std::filesystem::path typed =
        folder.path() / std::filesystem::u8path("\xE8\x84\xB3 \xC3\xA4.cxc");
    app.script().choose(typed);
    const auto dialog = saveDialog(nullptr);
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_EQ(toPath(dialog->GetPathName()), typed);
}

TEST_P(CFileDialogStyle, OpenAcceptsAnExistingFile) {
    writeFile(folder / "here.cxc", "x");
    app.script().choose(folder / "here.cxc");
    const auto dialog = openDialog();
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_EQ(toPath(dialog->GetPathName()), folder / "here.cxc");
    EXPECT_FALSE(app.script().last().refused);
}

TEST_P(CFileDialogStyle, OpenRefusesAMissingFile) {
    app.script().choose(folder / "missing.cxc");
    const auto dialog = openDialog();
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_TRUE(app.script().last().refused);
}

TEST_P(CFileDialogStyle, ExistingFileIsReplacedAfterTheQuestion) {
    writeFile(folder / "here.cxc", "x");
    app.script().choose(folder / "here.cxc");
    const auto dialog = saveDialog(nullptr);
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_TRUE(app.script().last().askedToReplace);
    EXPECT_TRUE(app.messages().empty());
}

TEST_P(CFileDialogStyle, AnswerNoKeepsTheExistingFile) {
    writeFile(folder / "here.cxc", "x");
    app.script().chooseUnlessItExists(folder / "here.cxc");
    const auto dialog = saveDialog(nullptr);
    EXPECT_EQ(dialog->DoModal(), IDCANCEL);
    EXPECT_TRUE(app.script().last().askedToReplace);
}

TEST_P(CFileDialogStyle, WithoutTheFlagNobodyAsks) {
    writeFile(folder / "here.cxc", "x");
    app.script().choose(folder / "here.cxc");
    const auto dialog = saveDialog(nullptr, 0);
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_FALSE(app.script().last().askedToReplace);
}

TEST_P(CFileDialogStyle, QuestionIsAboutTheNameAsTyped) {
    writeFile(folder / "here.cxc", "x");
    app.script().choose(folder / "here");
    const auto dialog = saveDialog(nullptr);
    EXPECT_EQ(dialog->DoModal(), IDOK);
    EXPECT_FALSE(app.script().last().askedToReplace);
    EXPECT_EQ(toPath(dialog->GetPathName()), folder / "here");
}

TEST_P(CFileDialogStyle, MainWindowIsTheOwner) {
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, AfxRegisterWndClass(0), _T("Host"), WS_POPUP | WS_VISIBLE, 0, 0,
                                99, 99, nullptr, nullptr));
    app.m_pMainWnd = &window;
    app.script().choose(folder / "plain");
    const auto dialog = saveDialog(nullptr);
    EXPECT_EQ(dialog->DoModal(), IDOK);
    app.m_pMainWnd = nullptr;
}

INSTANTIATE_TEST_SUITE_P(Styles, CFileDialogStyle, ::testing::Values(true, false),
                         [](const auto& style) { return style.param ? "Newer" : "Older"; });

TEST(CFileDialog, ProposedNameIsBounded) {
    const CString name(_T('n'), 1000);
    const CFileDialog dialog(FALSE, nullptr, name);
    EXPECT_EQ(CString(dialog.GetOFN().lpstrFile).GetLength(), MAX_PATH - 1);
    EXPECT_EQ(dialog.GetOFN().nMaxFile, static_cast<DWORD>(MAX_PATH));
}

TEST(CFileDialog, SettingsArriveInTheStructure) {
    const CFileDialog plain(TRUE);
    EXPECT_EQ(plain.m_ofn.Flags, static_cast<DWORD>(OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT));
    EXPECT_EQ(plain.m_ofn.lpstrDefExt, nullptr);
    EXPECT_EQ(plain.m_ofn.lpstrFilter, nullptr);
    EXPECT_EQ(plain.m_ofn.lpstrFile[0], 0);
    EXPECT_EQ(plain.m_ofn.nFilterIndex, 0u);
    const CFileDialog full(FALSE, _T("cxc"), _T("name"), OFN_OVERWRITEPROMPT, filter);
    EXPECT_EQ(full.m_ofn.Flags, static_cast<DWORD>(OFN_OVERWRITEPROMPT));
    EXPECT_EQ(toUtf8(full.m_ofn.lpstrDefExt), "cxc");
    EXPECT_EQ(toUtf8(full.m_ofn.lpstrFile), "name");
}

TEST(CFileDialog, FilterIsCopiedWithZerosBetweenItsParts) {
    TCHAR text[] = _T("A|*.a|B|*.b||");
    const CFileDialog dialog(TRUE, nullptr, nullptr, 0, text);
    EXPECT_EQ(toUtf8(text), "A|*.a|B|*.b||");
    const TCHAR expected[] = _T("A\0*.a\0B\0*.b\0");
    EXPECT_TRUE(std::equal(expected, expected + sizeof(expected) / sizeof(TCHAR),
                           dialog.m_ofn.lpstrFilter));
}

#ifdef _WIN32

TEST(CFileDialog, ThreadWithAnApartmentOfAnotherKindGetsADialogToo) {
    TestApp app;
    const TempDir folder;
    app.script().choose(folder / "plain");
    std::thread([&] {
        ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        CFileDialog dialog(FALSE, nullptr, _T("x"), OFN_OVERWRITEPROMPT, filter);
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(toPath(dialog.GetPathName()), folder / "plain");
        ::CoUninitialize();
    }).join();
}

#else

// A program's policy that answers with a fixed name.
class FixedAnswer : public CWinApp {
public:
    INT_PTR AnswerFileDialog(CFileDialog&, CString& path) override {
        path = answer;
        return IDOK;
    }
    CString answer;
};

TEST(CFileDialog, PolicysRelativeNameBecomesAFullPath) {
    FixedAnswer app;
    app.answer = _T("some file");
    CFileDialog dialog(FALSE);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(toPath(dialog.GetPathName()), std::filesystem::current_path() / "some file");
}

TEST(CFileDialog, PolicysMissingFileOrFolderIsACancel) {
    FixedAnswer app;
    const TempDir folder;
    app.answer = folder.name("missing");
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, OFN_FILEMUSTEXIST).DoModal(), IDCANCEL);
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, OFN_PATHMUSTEXIST).DoModal(), IDOK);
    app.answer = folder.name("no folder/file");
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, OFN_PATHMUSTEXIST).DoModal(), IDCANCEL);
    app.answer = _T("");
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, 0).DoModal(), IDCANCEL);
}

#endif

}  // namespace
