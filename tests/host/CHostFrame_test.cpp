#ifdef _WIN32

#include "host/CHostFrame.h"

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "host/resource.h"
#include "tests/cxcpkg/package_fixture.h"
#include "tests/support/Input.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>
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
        return stored(std::string(name) + ".cxc", data);
    }
    template <class Record>
    std::filesystem::path stored(const std::string& name, Record& record) {
        const std::filesystem::path path = dir.path() / name;
        CFile file(test::fromPath(path), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        record.serialize(archive);
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
    const std::filesystem::path packageFile = stored("p.cxcpkg", package);
    const std::filesystem::path groupFile = stored("g.cxcgrp", group);
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

TEST_F(CHostFrameTest, RecordsBringWhatTheySayOfTheirHolders) {
    const auto prepare = [&](auto& record) {
        record.m_pkgID = 5;
        record.m_pkgName = _T("patient");
        record.m_pkgInfo = _T("rest");
        record.m_actCtlOperation = 3;
    };
    CSnsCohFacezq package;
    package.setCohData(test::newFilled(4, 4, 2), 0);
    prepare(package);
    test::CleanGroup group;
    prepare(group);
    frame->package().m_actCtlOperation = 2;
    open(stored("p.cxcpkg", package));
    open(stored("g.cxcgrp", group));
    EXPECT_EQ(frame->package().m_pkgID, 5);
    EXPECT_EQ(test::toUtf8(frame->package().m_pkgName), "patient");
    EXPECT_EQ(test::toUtf8(frame->package().m_pkgInfo), "rest");
    EXPECT_EQ(frame->package().m_actCtlOperation, 2);  // not in the file
    EXPECT_EQ(test::toUtf8(frame->group().m_pkgName), "patient");
    EXPECT_EQ(frame->group().m_actCtlOperation, 3);
}

TEST_F(CHostFrameTest, OpenManagersListWhatIsOpenedLater) {
    open(saved("a", 5));
    test::pressKey(VK_F2);
    open(saved("b", 5));
    EXPECT_EQ(frame->package().m_dlgSnsCohManager->m_listFace.GetItemCount(), 2);
    EXPECT_EQ(shown(), "b");
    open(saved("c", 5));
    EXPECT_EQ(shown(), "c");
    test::pressKey(VK_F3);
    EXPECT_EQ(frame->group().m_dlgGroupCxcManager->m_list.GetItemCount(), 0);
    open(saved("d", 5));
    EXPECT_EQ(frame->group().m_dlgGroupCxcManager->m_list.GetItemCount(), 1);
    EXPECT_EQ(shown(), "d");
    EXPECT_TRUE(app.messages().empty());
}

// A host that changes a dataset and asks for a repaint, as the library's own users do.
TEST_F(CHostFrameTest, InvalidatedViewsShowWhatThereIsThen) {
    open(saved("a", 5));
    test::pump();
    frame->package().m_cohActive->zeroDiagonal();
    EXPECT_EQ(frame->package().viewerInvalidate(false, nullptr, true), 2);
    ::UpdateWindow(::GetDlgItem(frame->m_hWnd, 1));
    EXPECT_EQ(frame->shown().at(1, 1), 0.0);
    // The other view is asked too, and the status line follows.
    EXPECT_TRUE(::GetUpdateRect(::GetDlgItem(frame->m_hWnd, 2), nullptr, FALSE));
    EXPECT_FALSE(::GetUpdateRect(::GetDlgItem(frame->m_hWnd, 1), nullptr, FALSE));
}

TEST_F(CHostFrameTest, TitleAndStatusLineTellWhatIsShown) {
    const auto title = [&] {
        CString text;
        frame->GetWindowText(text);
        return test::toUtf8(text);
    };
    const auto status = [&] {
        wchar_t text[300] = L"";
        ::GetWindowTextW(::GetDlgItem(frame->m_hWnd, 3), text, 300);
        return test::toUtf8(CString(text));
    };
    EXPECT_EQ(title(), "CxC Host");
    EXPECT_NE(status().find("No dataset"), std::string::npos);
    open(saved("a", 5));
    EXPECT_EQ(title(), "a - CxC Host");
    test::pressKey(VK_RIGHT);
    EXPECT_NE(status().find("slice 2 of 12"), std::string::npos) << status();
    EXPECT_NE(status().find("5 x 5 sensors"), std::string::npos) << status();
    EXPECT_NE(status().find("range "), std::string::npos) << status();
}

TEST_F(CHostFrameTest, GroupWithoutACurrentDatasetShowsOne) {
    test::CleanGroup group;
    group.append(test::newFilled(6, 6, 2));
    group.at(0).m_cxcName = _T("in group");
    group.m_curntCohDataSetID = -1;
    open(stored("g.cxcgrp", group));
    EXPECT_EQ(shown(), "in group");
}

TEST_F(CHostFrameTest, SliceCommandsAreDisabledWithoutSlices) {
    const auto stateOf = [&](UINT id) {
        const HMENU menu = ::GetSubMenu(::GetMenu(frame->m_hWnd), 2);
        frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(2, 0));
        return ::GetMenuState(menu, id, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED);
    };
    for (UINT id = ID_HOST_SLICE_BACK; id <= ID_HOST_SLICE_LAST; ++id)
        EXPECT_NE(stateOf(id), 0u) << id;
    open(saved("a", 5));
    for (UINT id = ID_HOST_SLICE_BACK; id <= ID_HOST_SLICE_LAST; ++id)
        EXPECT_EQ(stateOf(id), 0u) << id;
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
