#ifdef _WIN32

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "res/resource.h"
#include "tests/ui/ui_fixture.h"

#include <algorithm>
#include <cstring>

namespace {

struct Control {
    int id;
    const char* windowClass;
    const char* text;
    int x, y, w, h;  // dialog units
    DWORD style;     // bits that must be set
    DWORD without;   // bits that must not
};

std::string classOf(HWND window) {
    TCHAR name[64] = {};
    ::GetClassName(window, name, 64);
    return test::toUtf8(name);
}

void expectControls(CDialog& dialog, const std::vector<Control>& controls) {
    int children = 0;
    for (HWND child = ::GetWindow(dialog.m_hWnd, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT))
        ++children;
    EXPECT_EQ(children, static_cast<int>(controls.size()));
    for (const Control& control : controls) {
        SCOPED_TRACE(control.id);
        const HWND window = ::GetDlgItem(dialog.m_hWnd, control.id);
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(classOf(window), control.windowClass);
        if (control.text != nullptr) {
            EXPECT_EQ(test::textOf(window), control.text);
        }
        // Place and size are converted each by itself.
        CRect corner(control.x, control.y, 0, 0);
        CRect size(0, 0, control.w, control.h);
        ::MapDialogRect(dialog.m_hWnd, corner);
        ::MapDialogRect(dialog.m_hWnd, size);
        CRect place;
        ::GetWindowRect(window, place);
        dialog.ScreenToClient(place);
        EXPECT_EQ(place.left, corner.left);
        EXPECT_EQ(place.top, corner.top);
        EXPECT_EQ(place.Width(), size.right);
        const DWORD style = static_cast<DWORD>(::GetWindowLong(window, GWL_STYLE));
        // A combo box is as high as its field; the template's height is that of its open list.
        if (std::string(control.windowClass) != "ComboBox") {
            EXPECT_EQ(place.Height(), size.bottom);
        }
        EXPECT_EQ(style & control.style, control.style);
        EXPECT_EQ(style & control.without, 0u);
    }
}

// The styles that the template itself asks for; the system adds some of its own.
void expectStyles(UINT id, DWORD style, DWORD exStyle) {
    const LPCTSTR name = MAKEINTRESOURCE(id);
    const HINSTANCE module = AfxFindResourceHandle(name, RT_DIALOG);
    const HRSRC resource = ::FindResource(module, name, RT_DIALOG);
    ASSERT_NE(resource, nullptr);
    const auto* const bytes =
        static_cast<const BYTE*>(::LockResource(::LoadResource(module, resource)));
    DWORD stored[2] = {};
    std::memcpy(stored, bytes + 8, sizeof(stored));  // behind version, signature and help id
    EXPECT_EQ(stored[0], exStyle);
    EXPECT_EQ(stored[1], style);
}

void expectSize(CDialog& dialog, int width, int height) {
    CRect expected(0, 0, width, height);
    ::MapDialogRect(dialog.m_hWnd, expected);
    CRect client;
    dialog.GetClientRect(client);
    EXPECT_EQ(client.Width(), expected.Width());
    EXPECT_EQ(client.Height(), expected.Height());
}

// Lines of a menu: popups by name, items by text and id, "-" for separators.
std::vector<std::string> linesOf(CMenu& menu) {
    std::vector<std::string> lines;
    for (int i = 0; i < static_cast<int>(menu.GetMenuItemCount()); ++i) {
        CString text;
        menu.GetMenuString(static_cast<UINT>(i), text, MF_BYPOSITION);
        CMenu* const popup = menu.GetSubMenu(i);
        const UINT id = menu.GetMenuItemID(i);
        if (popup != nullptr) {
            lines.push_back("[" + test::toUtf8(text) + "]");
            const std::vector<std::string> inner = linesOf(*popup);
            lines.insert(lines.end(), inner.begin(), inner.end());
        } else if (id == 0) {
            lines.push_back("-");
        } else {
            lines.push_back(test::toUtf8(text) + " " + std::to_string(id));
        }
    }
    return lines;
}

std::vector<std::string> menuLines(UINT id) {
    CMenu menu;
    EXPECT_TRUE(menu.LoadMenu(id));
    return linesOf(menu);
}

std::vector<std::string> withoutSeparators(std::vector<std::string> lines) {
    lines.erase(std::remove(lines.begin(), lines.end(), "-"), lines.end());
    return lines;
}

class Resources : public testing::Test {
protected:
    test::HostApp app;
};

TEST_F(Resources, WaveformManagerHasTheStatedControls) {
    CDlgSnsCohManager dialog;
    ASSERT_TRUE(dialog.Create(4401));
    EXPECT_EQ(test::textOf(dialog.m_hWnd), "Waveform CxC Manager");
    expectStyles(4401, 0x80CC0048, 0);
    expectSize(dialog, 593, 175);
    constexpr DWORD list = LVS_REPORT;
    expectControls(dialog,
                   {{4004, "ComboBox", nullptr, 7, 1, 43, 127, CBS_DROPDOWNLIST, 0},
                    {4018, "Button", "A-C=X", 52, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4019, "Button", "Accum Time", 96, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4011, "Button", "Delete", 139, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4002, "ComboBox", nullptr, 185, 0, 65, 127, CBS_DROPDOWNLIST, 0},
                    {4016, "Button", "<<<", 259, 0, 29, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4006, "Edit", nullptr, 292, 0, 36, 14, ES_READONLY, 0},
                    {4000, "Edit", nullptr, 334, 0, 36, 14, 0, ES_READONLY},
                    {4017, "Button", ">>>", 374, 0, 29, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4020, "Button", "Statistic", 408, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4012, "Button", "Apply", 455, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {4014, "Button", "Update", 499, 0, 42, 14, BS_PUSHBUTTON, BS_DEFPUSHBUTTON},
                    {1, "Button", "Exit", 543, 0, 42, 14, BS_DEFPUSHBUTTON, 0},
                    {4010, "SysListView32", "", 7, 21, 216, 147, list, LVS_SINGLESEL},
                    {4015, "Static", "", 230, 21, 8, 147, 0, SS_NOTIFY},
                    {4009, "SysListView32", "", 244, 21, 342, 147, list, LVS_SINGLESEL}});
    // Which style draws the border is the system's choice.
    CRect outside;
    CRect inside;
    dialog.m_splitter.GetWindowRect(outside);
    dialog.m_splitter.GetClientRect(inside);
    EXPECT_LT(inside.Width(), outside.Width());
}

TEST_F(Resources, GroupManagerHasTheStatedControls) {
    CDlgGroupTrlCxcDataManager dialog;
    ASSERT_TRUE(dialog.Create(4416));
    EXPECT_EQ(test::textOf(dialog.m_hWnd), "Source Coherence Image Manager");
    expectStyles(4416, 0x80CC0040, 0x20080);
    expectSize(dialog, 445, 111);
    expectControls(dialog,
                   {{4032, "Static", "S", 4, 0, 20, 12, 0, 0},
                    {4025, "Button", "All", 28, 2, 23, 10, BS_AUTOCHECKBOX, 0},
                    {4026, "Button", "Select", 60, 2, 38, 10, BS_AUTOCHECKBOX, 0},
                    {4021, "Button", "Hide All ", 105, 0, 37, 14, BS_PUSHBUTTON, 0},
                    {4022, "Button", "Show  All ", 152, 0, 37, 14, BS_PUSHBUTTON, 0},
                    {4023, "Button", "Statistics", 198, 0, 37, 14, BS_PUSHBUTTON, 0},
                    {4024, "Button", "Apply", 247, 1, 37, 14, BS_PUSHBUTTON, 0},
                    {4027, "SysListView32", "List1", 4, 14, 434, 90, LVS_REPORT, LVS_SINGLESEL}});
    EXPECT_EQ(::IsDlgButtonChecked(dialog.m_hWnd, 4025), static_cast<UINT>(BST_CHECKED));
    EXPECT_EQ(::IsDlgButtonChecked(dialog.m_hWnd, 4026), static_cast<UINT>(BST_UNCHECKED));
}

TEST_F(Resources, SettingsTemplateCanBeOpened) {
    struct Settings : CDialogEx {
        ~Settings() override { DestroyWindow(); }
    } dialog;
    ASSERT_TRUE(dialog.Create(4415));
    EXPECT_EQ(test::textOf(dialog.m_hWnd), "Coherence Dataset Settings");
}

TEST_F(Resources, WaveformMenuHasTheStatedItems) {
    EXPECT_EQ(menuLines(4001), (test::Texts{"[File]", "Save CxC Data 4049", "Open CxC Data 4051",
                                            "-", "Export CxC Data to Text File 4055", "-", "Exit 1",
                                            "[Edit]", "Set Name 4039", "-", "Zero Diagonal 4040"}));
}

TEST_F(Resources, GroupMenuHasTheStatedItemsTwoPairsOfWhichShareAnId) {
    EXPECT_EQ(withoutSeparators(menuLines(4034)),
              (test::Texts{"[File]",
                           "Save CxC Data 4053",
                           "Open CxC Data 4054",
                           "Export CxC Data to Text File 4057",
                           "Exit 4035",
                           "[Edit]",
                           "Change Name 4028",
                           "Delete 4036",
                           "Source-Coherence Note 4033",
                           "Computing Information... 4031",
                           "Graph Theory (Small World) Threshold 4047",
                           "Graph Theory (Small World) Direction 4048",
                           "Graph Theory (Small World) Precise 4050",
                           "[View]",
                           "Show 4037",
                           "Active 4029",
                           "Select Hide 4038",
                           "Set Excit Color 4041",
                           "Set Inhibit Color 4042",
                           "SetBasic Color 4043",
                           "[Process]",
                           "Time-Frames to One (Average) 4041",
                           "Time-Frame to One (Best) 4042",
                           "Zero Diagonal (Same Points) 4045",
                           "Average All Network 4052",
                           "Summarize All Network 4058"}));
}

TEST_F(Resources, PopupMenuHasTheStatedItems) {
    EXPECT_EQ(menuLines(4030),
              (test::Texts{"[SAMPM]", "Delete 4036", "-", "Show 4037", "Active 4029",
                           "Select Hide 4038", "-", "Change Name 4028"}));
}

TEST_F(Resources, PicturesHaveTheirSizes) {
    for (const UINT id : {4003u, 4005u, 4007u}) {
        const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(id), RT_GROUP_ICON);
        for (const int size : {16, 32, 48}) {
            const auto icon = static_cast<HICON>(
                ::LoadImage(module, MAKEINTRESOURCE(id), IMAGE_ICON, size, size, LR_SHARED));
            EXPECT_NE(icon, nullptr) << id << " " << size;
        }
        EXPECT_NE(AfxGetApp()->LoadIcon(id), nullptr);
    }
    EXPECT_NE(AfxGetApp()->LoadCursor(4008u), nullptr);
}

}  // namespace

#endif
