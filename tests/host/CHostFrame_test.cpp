#ifdef _WIN32

#include "host/CHostFrame.h"

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "host/resource.h"
#include "tests/cxcpkg/package_fixture.h"
#include "tests/support/Input.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <fstream>

namespace {

class CHostFrameTest : public testing::Test {
protected:
    void SetUp() override {
        frame = new CHostFrame;
        app.m_pMainWnd = frame;
        ASSERT_TRUE(frame->create());
        frame->SetWindowPos(nullptr, 0, 0, 900, 520, SWP_NOZORDER);
        frame->ShowWindow(SW_SHOW);
        frame->SetForegroundWindow();
        test::pump();
    }
    void TearDown() override {
        app.m_pMainWnd = nullptr;
        frame->DestroyWindow();
    }
    // A dataset of n x n sensors in a file.
    std::filesystem::path saved(const char* name, int n, double sign = 1.0) {
        CSnsCohDatazq data;
        test::fill(data, n, n, 12);
        for (int r = 0; r < n; ++r)
            test::cell(data, 0, r, 0) *= sign;
        data.m_cxcName = CString(name);
        const std::filesystem::path path = dir.path() / (std::string(name) + ".cxc");
        CFile file(test::fromPath(path), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        data.serialize(archive);
        return path;
    }
    void open(const std::filesystem::path& path) { frame->openFile(test::fromPath(path)); }
    std::string shown() { return test::toUtf8(frame->shown().name); }
    // Different colours in the client area of a child: something is painted there.
    int colorsOf(int child) {
        const HWND window = ::GetDlgItem(frame->m_hWnd, child);
        ::UpdateWindow(window);
        CRect area;
        ::GetClientRect(window, area);
        const HDC dc = ::GetDC(window);
        std::vector<COLORREF> seen;
        for (int y = 5; y < area.bottom; y += 9) {
            for (int x = 5; x < area.right; x += 9)
                seen.push_back(::GetPixel(dc, x, y));
        }
        ::ReleaseDC(window, dc);
        std::sort(seen.begin(), seen.end());
        return static_cast<int>(std::unique(seen.begin(), seen.end()) - seen.begin());
    }

    const test::TempDir dir;
    test::TestApp app;
    CHostFrame* frame = nullptr;  // deletes itself with its window
};

TEST_F(CHostFrameTest, PaintsWithoutADataset) {
    EXPECT_TRUE(frame->shown().empty());
    EXPECT_GT(colorsOf(1), 1);
}

TEST_F(CHostFrameTest, DatasetsFillThePackageAndThenTheGroup) {
    open(saved("a", 5));
    EXPECT_EQ(shown(), "a");
    EXPECT_EQ(frame->package().m_curntCohDataSetID, 0);
    open(saved("b", 5));
    open(saved("c", 5));
    EXPECT_EQ(frame->package().getTotalCohDataset(), 3);
    EXPECT_EQ(shown(), "c");
    open(saved("d", 7));
    EXPECT_EQ(frame->group().getTotalCohDataset(), 1);
    EXPECT_EQ(shown(), "d");
    EXPECT_EQ(frame->shown().rows, 7);
    frame->SendMessage(WM_COMMAND, ID_HOST_SHOW_PACKAGE);
    EXPECT_EQ(shown(), "c");
    frame->SendMessage(WM_COMMAND, ID_HOST_SHOW_GROUP);
    EXPECT_EQ(shown(), "d");
    EXPECT_GT(colorsOf(1), 20);
    EXPECT_GT(colorsOf(2), 5);
}

TEST_F(CHostFrameTest, KeysStepThroughTheSlices) {
    open(saved("a", 5));
    test::pressKey(VK_RIGHT);
    EXPECT_EQ(frame->shown().slice, 1);
    test::pressKey(VK_NEXT);
    EXPECT_EQ(frame->shown().slice, 11);
    test::pressKey(VK_RIGHT);
    EXPECT_EQ(frame->shown().slice, 11);
    test::pressKey(VK_PRIOR);
    EXPECT_EQ(frame->shown().slice, 1);
    test::pressKey(VK_LEFT);
    test::pressKey(VK_LEFT);
    EXPECT_EQ(frame->shown().slice, 0);
    test::pressKey(VK_END);
    EXPECT_EQ(frame->shown().slice, 11);
    test::pressKey(VK_HOME);
    EXPECT_EQ(frame->shown().slice, 0);
}

TEST_F(CHostFrameTest, SteppingWithoutADatasetDoesNothing) {
    for (const WORD key : {VK_LEFT, VK_RIGHT, VK_HOME, VK_END, VK_NEXT, VK_PRIOR})
        test::pressKey(key);
    EXPECT_TRUE(frame->shown().empty());
}

TEST_F(CHostFrameTest, SteppingRepaintsOnlyTheViews) {
    open(saved("a", 5));
    test::pump();
    colorsOf(1);
    colorsOf(2);
    frame->SendMessage(WM_COMMAND, ID_HOST_SLICE_FORWARD);
    for (const int child : {1, 2})
        EXPECT_TRUE(::GetUpdateRect(::GetDlgItem(frame->m_hWnd, child), nullptr, FALSE));
    EXPECT_EQ(::SendMessage(::GetDlgItem(frame->m_hWnd, 1), WM_ERASEBKGND, 0, 0), 1);
}

TEST_F(CHostFrameTest, PackageAndGroupRecordsReplaceWhatThereIs) {
    CSnsCohFacezq package;
    package.setCohData(test::newFilled(4, 4, 2), 1);
    package.m_cohControl->m_cxcName = _T("in package");
    package.m_curntCohDataSetID = 1;
    test::CleanGroup group;
    group.append(test::newFilled(6, 6, 2));
    group.append(test::newFilled(6, 6, 2));
    group.at(1).m_cxcName = _T("in group");
    group.m_curntCohDataSetID = 1;
    const auto store = [&](const char* name, auto& record) {
        const std::filesystem::path path = dir.path() / name;
        CFile file(test::fromPath(path), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        record.serialize(archive);
        return path;
    };
    const std::filesystem::path packageFile = store("p.cxcpkg", package);
    const std::filesystem::path groupFile = store("g.cxcgrp", group);
    open(saved("a", 5));
    open(packageFile);
    EXPECT_EQ(frame->package().m_cohActive, nullptr);
    EXPECT_EQ(shown(), "in package");
    open(groupFile);
    EXPECT_EQ(frame->group().getTotalCohDataset(), 2);
    EXPECT_EQ(shown(), "in group");
    open(groupFile);
    EXPECT_EQ(frame->group().getTotalCohDataset(), 2);
}

TEST_F(CHostFrameTest, BadFilesAreToldAndNothingIsLost) {
    open(saved("a", 5));
    const auto write = [&](const char* name, const std::string& bytes) {
        std::ofstream(dir.path() / name, std::ios::binary) << bytes;
        return dir.path() / name;
    };
    std::ifstream whole(dir.path() / "a.cxc", std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(whole)), {});
    int told = 0;
    for (const std::filesystem::path& path :
         {write("empty.cxc", ""), write("text.cxc", "no coherence at all, just some text"),
          write("cut.cxc", bytes.substr(0, bytes.size() / 2)), dir.path() / "missing.cxc",
          dir.path()}) {
        open(path);
        EXPECT_EQ(app.messages().size(), static_cast<std::size_t>(++told)) << path;
        EXPECT_EQ(shown(), "a");
        EXPECT_EQ(frame->package().getTotalCohDataset(), 1);
    }
    EXPECT_FALSE(app.waiting());
}

TEST_F(CHostFrameTest, DroppedFilesAreOpened) {
    const std::wstring paths =
        saved("a", 5).wstring() + L'\0' + saved("b", 5).wstring() + L'\0' + L'\0';
    const HGLOBAL memory = ::GlobalAlloc(GHND, sizeof(DROPFILES) + paths.size() * sizeof(wchar_t));
    auto* const drop = static_cast<DROPFILES*>(::GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::memcpy(drop + 1, paths.data(), paths.size() * sizeof(wchar_t));
    ::GlobalUnlock(memory);
    // Over a view, as users drop them.
    ::SendMessage(::GetDlgItem(frame->m_hWnd, 1), WM_DROPFILES, reinterpret_cast<WPARAM>(memory),
                  0);
    EXPECT_EQ(frame->package().getTotalCohDataset(), 2);
    EXPECT_EQ(shown(), "b");
}

TEST_F(CHostFrameTest, MenuOpensAFileByTheRealDialog) {
    app.script().choose(saved("a", 5));
    frame->SendMessage(WM_COMMAND, ID_HOST_OPEN);
    EXPECT_EQ(shown(), "a");
    EXPECT_TRUE(app.script().last().open);
}

TEST_F(CHostFrameTest, GroupManagersCallbackShowsItsChanges) {
    for (const char* const name : {"a", "b", "c", "d", "e"})
        open(saved(name, 5));
    EXPECT_EQ(shown(), "e");
    test::pressKey(VK_F3);
    ASSERT_NE(frame->group().m_dlgGroupCxcManager, nullptr);
    frame->group().setCurntCohDataSetID(0);
    frame->group().m_dlgGroupCxcManager->SendMessage(WM_COMMAND, 4045);
    EXPECT_EQ(shown(), "d");
}

TEST_F(CHostFrameTest, ChangesOfTheWaveformManagerAreSeenWhenIdle) {
    open(saved("a", 5));
    test::pressKey(VK_F2);
    ASSERT_NE(frame->package().m_dlgSnsCohManager, nullptr);
    frame->package().m_cohActive->zeroDiagonal();
    EXPECT_NE(frame->shown().at(1, 1), 0.0);
    frame->lookForChanges();
    EXPECT_EQ(frame->shown().at(1, 1), 0.0);
}

TEST_F(CHostFrameTest, PaintsEverySizeAndEveryDataset) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        auto* const data = new CSnsCohDatazq;
        hostile.make(*data);
        frame->package().setCohData(data, 0);
        frame->package().m_curntCohDataSetID = 0;
        frame->lookForChanges();
        test::pump();
    }
    open(saved("large", 40, -1.0));
    for (const int width : {1, 120, 300, 900}) {
        frame->SetWindowPos(nullptr, 0, 0, width, width / 2, SWP_NOMOVE | SWP_NOZORDER);
        test::pump();
    }
    EXPECT_GT(colorsOf(1), 10);
}

}  // namespace

#endif
