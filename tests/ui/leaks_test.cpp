// A manager that is opened and closed all day: what each opening takes, its closing gives back.
#ifdef _WIN32

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "res/resource.h"
#include "tests/ui/ui_fixture.h"

#include <ostream>

namespace {

/// What the process holds now: handles by kind, and blocks of all its heaps.
struct Held {
    int drawing = 0;  // bitmaps, brushes, fonts, regions, device contexts
    int windows = 0;
    int menus = 0;
    int icons = 0;  // and cursors
    int blocks = 0;

    auto handles() const { return std::tie(drawing, windows, menus, icons); }
};

std::ostream& operator<<(std::ostream& out, const Held& held) {
    return out << held.drawing << " drawing objects, " << held.windows << " windows, " << held.menus
               << " menus, " << held.icons << " icons, " << held.blocks << " blocks";
}

// GetGuiResources answers 0 under Wine. There a handle's lower half alone names its object, so that
// all handles there can be are asked what they are; those of windows, menus and icons are even.
constexpr UINT_PTR handleEnd = 0x10000;

int drawingObjects() {
    int count = 0;
    for (UINT_PTR handle = 1; handle < handleEnd; ++handle)
        count += ::GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0 ? 1 : 0;
    return count;
}

template <class Handle>
int handlesThat(bool (*count)(Handle)) {
    int counted = 0;
    for (UINT_PTR handle = 2; handle < handleEnd; handle += 2)
        counted += count(reinterpret_cast<Handle>(handle)) ? 1 : 0;
    return counted;
}

bool isOwnWindow(HWND window) {
    DWORD process = 0;
    return ::GetWindowThreadProcessId(window, &process) != 0 && process == ::GetCurrentProcessId();
}

bool isMenu(HMENU menu) {
    return ::IsMenu(menu) != FALSE;
}

bool isIcon(HICON icon) {
    ICONINFO info = {};
    if (!::GetIconInfo(icon, &info)) return false;
    ::DeleteObject(info.hbmMask);
    if (info.hbmColor != nullptr) ::DeleteObject(info.hbmColor);
    return true;
}

int heapBlocks() {
    HANDLE heaps[64] = {};
    const DWORD count = ::GetProcessHeaps(64, heaps);
    EXPECT_LE(count, 64u);
    int blocks = 0;
    for (DWORD i = 0; i < count && i < 64; ++i) {
        PROCESS_HEAP_ENTRY entry = {};
        ::HeapLock(heaps[i]);
        while (::HeapWalk(heaps[i], &entry))
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? 1 : 0;
        ::HeapUnlock(heaps[i]);
    }
    return blocks;
}

Held heldNow() {
    const HANDLE process = ::GetCurrentProcess();
    Held held;
    held.drawing = static_cast<int>(::GetGuiResources(process, GR_GDIOBJECTS));
    if (held.drawing == 0) {
        held.drawing = drawingObjects();
        held.menus = handlesThat<HMENU>(isMenu);
        held.icons = handlesThat<HICON>(isIcon);
        held.windows = handlesThat<HWND>(isOwnWindow);
    } else {
        held.windows = static_cast<int>(::GetGuiResources(process, GR_USEROBJECTS));
    }
    held.blocks = heapBlocks();
    return held;
}

// A window of the template alone, without anything of the managers in it.
void openBareWindow(UINT dialog, HWND owner) {
    const LPCTSTR name = MAKEINTRESOURCE(dialog);
    const auto leaveAll = [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; };
    const HWND window =
        ::CreateDialogParam(AfxFindResourceHandle(name, RT_DIALOG), name, owner, leaveAll, 0);
    ASSERT_NE(window, nullptr);
    ::ShowWindow(window, SW_SHOW);
    test::pump();
    ::DestroyWindow(window);
}

class ManagerLeaks : public testing::Test {
protected:
    struct Growth {
        Held before;
        Held after;
    };

    void press(CWnd& dialog, int id) {
        test::click(::GetDlgItem(dialog.m_hWnd, id));
        test::parkPointer();
    }

    // The lists deliberately leave the objects of their pictures behind; the pictures themselves
    // end with the controls.
    static void takeAway(const std::vector<CImageList*>& left) {
        for (CImageList* const images : left) {
            images->Detach();
            delete images;
        }
    }

    // A round opens and closes two windows.
    Growth growthBy(const std::function<void()>& round) {
        constexpr int first = 10;  // what is made once is made in these
        constexpr int rounds = 50;
        const auto repeat = [&](int count) {
            for (int i = 0; i < count && !HasFailure(); ++i) {
                round();
                test::pump();
                app.OnIdle(0);  // the framework's temporary objects
            }
        };
        repeat(first);
        Growth growth = {heldNow(), {}};
        repeat(rounds);
        growth.after = heldNow();
        return growth;
    }

    // Handles: none more. Blocks: no more than a hundred bare windows leave, because Wine leaves
    // one for each dialog; the few beside them are the heaps' own, which under checks give released
    // blocks back late. A block for each manager would be fifty, one for each window a hundred.
    void expectNoGrowth(UINT dialog, const std::function<void()>& round) {
        constexpr int heapsOwn = 10;
        const Growth bare = growthBy([&] {
            openBareWindow(dialog, app.m_main.m_hWnd);
            openBareWindow(dialog, app.m_main.m_hWnd);
        });
        const Growth managers = growthBy(round);
        EXPECT_EQ(managers.after.handles(), managers.before.handles())
            << managers.before << " before, " << managers.after << " after";
        EXPECT_LE(managers.after.blocks - managers.before.blocks,
                  bare.after.blocks - bare.before.blocks + heapsOwn)
            << managers.before << " before, " << managers.after << " after";
    }

    test::HostApp app;
};

TEST_F(ManagerLeaks, HundredWaveformManagersLeaveNothing) {
    const auto work = [&](CSnsCohFacezq& package, CWnd& owner) {
        package.showDlgSnsCohManager(&owner);
        CDlgSnsCohManager& dialog = *package.m_dlgSnsCohManager;
        dialog.SetForegroundWindow();
        test::pump();
        test::clickRow(dialog.m_listFace, 1);
        press(dialog, IDC_WAVEFORM_UPDATE);
        test::chooseInMenuBar(dialog, 1, 2);  // Edit, Zero Diagonal
        press(dialog, IDOK);
        ASSERT_FALSE(dialog.IsWindowVisible());
    };
    expectNoGrowth(IDD_WAVEFORM_MANAGER, [&] {
        auto package = std::make_unique<test::FullPackage>();
        package->m_curntCohDataSetID = test::active;
        test::ShortLivedOwner owner;
        work(*package, *owner.window());
        owner.end();
        work(*package, app.m_main);
        const CDlgSnsCohManager& dialog = *package->m_dlgSnsCohManager;
        const std::vector<CImageList*> left = {
            dialog.m_listFace.m_imageLarge, dialog.m_listFace.m_imageSmall,
            dialog.m_listData.m_imageLarge, dialog.m_listData.m_imageSmall};
        package.reset();
        takeAway(left);
    });
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(ManagerLeaks, HundredGroupManagersLeaveNothing) {
    const auto work = [&](CGroupMeegCxcFacezq& group, CWnd& owner) {
        group.showDlgGroupCxcManager(&owner);
        CDlgGroupTrlCxcDataManager& dialog = *group.m_dlgGroupCxcManager;
        test::pump();
        test::clickRow(dialog.m_list, 1);
        press(dialog, IDC_GROUP_APPLY);
        test::chooseInMenuBar(dialog, 2, 1);  // View, Show
        {
            const test::WhenMenuOpens user(
                [&](HMENU) { dialog.PostMessage(WM_KEYDOWN, VK_ESCAPE); });
            test::rightClick(dialog.m_list.m_hWnd, CPoint(4, 60));
            test::parkPointer();
        }
        dialog.SendMessage(WM_COMMAND, ID_GROUP_EXIT);
        ASSERT_FALSE(dialog.IsWindowVisible());
    };
    expectNoGrowth(IDD_GROUP_MANAGER, [&] {
        auto group = std::make_unique<test::CleanGroup>();
        group->append(test::newFilled(3, 3, 4));
        group->append(test::newFilled(3, 3, 5));
        test::ShortLivedOwner owner;
        work(*group, *owner.window());
        owner.end();
        work(*group, app.m_main);
        const CDlgGroupTrlCxcDataManager& dialog = *group->m_dlgGroupCxcManager;
        const std::vector<CImageList*> left = {dialog.m_list.m_imageLarge,
                                               dialog.m_list.m_imageSmall};
        group.reset();
        takeAway(left);
    });
    EXPECT_TRUE(app.messages().empty());
}

TEST(DatasetBlocks, EveryDatasetOnTheHeapIsCounted) {
    const int held = test::datasetBlocks();
    const std::unique_ptr<CSnsCohDatazq> datasets[] = {std::make_unique<CSnsCohDatazq>(),
                                                       std::make_unique<CSnsCohDatazq>(),
                                                       std::make_unique<CSnsCohDatazq>()};
    EXPECT_GE(test::datasetBlocks(), held + 2);
}

TEST_F(ManagerLeaks, PaintingTheColorOfTheActiveDatasetLeavesNothing) {
    test::CleanGroup group;
    group.append(test::newFilled(3, 3, 4));
    group.m_curntCohDataSetID = 0;
    group.showDlgGroupCxcManager(&app.m_main);
    const Growth painted =
        growthBy([&] { group.m_dlgGroupCxcManager->SendMessage(WM_COMMAND, ID_GROUP_SHOW); });
    EXPECT_EQ(painted.after.handles(), painted.before.handles())
        << painted.before << "; " << painted.after;
}

}  // namespace

#endif
