// A guided tour: works the sample host and both managers with real clicks and keys, as a user
// would, and leaves a picture of every window.
//   cxc_tour FOLDER ACTIVE.cxc CONTROL.cxc
#include "cxc.h"
#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "host/CHostFrame.h"
#include "res/resource.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/Input.h"
#include "tests/support/Text.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

class TourApp : public CWinApp {
public:
    TourApp() : CWinApp(_T("CxC Tour")) {}
    // The user of the tour agrees to everything.
    int DoMessageBox(LPCTSTR text, UINT type, UINT) override {
        std::printf("tour: \"%s\"\n", test::toUtf8(text).c_str());
        return (type & MB_TYPEMASK) == MB_YESNO ? IDYES : IDOK;
    }
};

void require(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(what);
}

HWND windowNamed(const std::string& caption) {
    const HWND window = ::FindWindow(nullptr, CString(caption.c_str()));
    require(window != nullptr, caption.c_str());
    return window;
}

// The window as it is seen on the screen, as a bitmap file.
void takePicture(HWND window, const std::filesystem::path& path) {
    ::SetForegroundWindow(window);
    test::parkPointer();
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    test::pump();
    CRect place;
    ::GetWindowRect(window, place);
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, place.Width(), place.Height());
    const HGDIOBJ before = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, place.Width(), place.Height(), screen, place.left, place.top, SRCCOPY);
    ::SelectObject(memory, before);
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof(header);
    header.biWidth = place.Width();
    header.biHeight = place.Height();
    header.biPlanes = 1;
    header.biBitCount = 32;
    std::vector<DWORD> pixels(static_cast<std::size_t>(place.Width() * place.Height()));
    BITMAPINFO info = {};
    info.bmiHeader = header;
    ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(place.Height()), pixels.data(), &info,
                DIB_RGB_COLORS);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(file) + sizeof(header);
    file.bfSize = static_cast<DWORD>(file.bfOffBits + pixels.size() * sizeof(DWORD));
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof(file));
    out.write(reinterpret_cast<const char*>(&header), sizeof(header));
    out.write(reinterpret_cast<const char*>(pixels.data()),
              static_cast<std::streamsize>(pixels.size() * sizeof(DWORD)));
    require(out.good(), "a picture could not be written");
    std::printf("tour: %s\n", path.filename().u8string().c_str());
}

class Tour {
public:
    Tour(std::filesystem::path folder, std::vector<CString> files)
        : m_folder(std::move(folder)), m_files(std::move(files)) {}

    void run() {
        openHost();
        test::DialogDriver::instance().follow(&m_fileAnswers, &m_colorAnswers);
        combine();
        statistics();
        rename();
        save();
        manageGroup();
        accumulate();
        test::DialogDriver::instance().leave(&m_fileAnswers);
        m_frame->DestroyWindow();
    }

private:
    void picture(HWND window, const char* name) { takePicture(window, m_folder / name); }

    // What the program does when it is idle.
    void settle() {
        test::pump();
        m_frame->lookForChanges();
        test::pump();
    }

    void openHost() {
        m_frame = new CHostFrame;
        AfxGetApp()->m_pMainWnd = m_frame;
        require(m_frame->create() != FALSE, "the host has no window");
        m_frame->SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        m_frame->ShowWindow(SW_SHOW);
        m_frame->SetForegroundWindow();
        for (const CString& file : m_files)
            m_frame->openFile(file);
        require(package().m_cohActive != nullptr && package().m_cohControl != nullptr,
                "the files could not be opened");
        for (int i = 0; i < 4; ++i)
            test::pressKey(VK_RIGHT);
        settle();
        picture(m_frame->m_hWnd, "host.bmp");
    }

    void combine() {
        test::pressKey(VK_F2);
        settle();
        require(package().m_dlgSnsCohManager != nullptr, "the waveform manager did not open");
        waveform().SetWindowPos(nullptr, 120, 560, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        press(waveform(), IDC_WAVEFORM_COMBINE);
        require(package().m_cohActCtl != nullptr, "Active and Control were not combined");
        pressRow(waveform().m_listFace, 2);
        settle();
    }

    void statistics() {
        press(waveform(), IDC_WAVEFORM_STATISTIC);
        const HWND window = windowNamed(test::toUtf8(package().m_cohActCtl->m_cxcName));
        picture(window, "statistics.bmp");
        ::SendMessage(window, WM_CLOSE, 0, 0);
        test::pump();
    }

    // The dialog runs a loop of its own, in which a timer does the typing.
    void rename() {
        s_tour = this;
        const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR id, DWORD) {
            const HWND dialog = ::FindWindow(nullptr, _T("Enter Text"));
            if (dialog == nullptr || !::IsWindowVisible(dialog)) return;
            ::KillTimer(nullptr, id);
            s_tour->typeName(dialog);
        });
        waveform().SetForegroundWindow();
        waveform().SendMessage(WM_COMMAND, ID_WAVEFORM_SET_NAME);
        ::KillTimer(nullptr, timer);
        require(test::toUtf8(package().m_cohActCtl->m_cxcName) == "Against the mean",
                "the dataset has not got its name");
        pressRow(waveform().m_listFace, 2);
        settle();
        picture(waveform().m_hWnd, "waveform-manager.bmp");
        picture(m_frame->m_hWnd, "host-act-ctl.bmp");
    }

    void typeName(HWND dialog) {
        ::SetForegroundWindow(dialog);
        test::typeText(L"Against the mean");
        picture(dialog, "set-name.bmp");
        test::pressKey(VK_RETURN);
    }

    void save() {
        const std::filesystem::path path = m_folder / "against-the-mean.cxc";
        m_fileAnswers.choose(path);
        waveform().SendMessage(WM_COMMAND, ID_WAVEFORM_SAVE);
        require(std::filesystem::file_size(path) > 1000, "the dataset was not saved");
    }

    // All classes are taken by now, so further files go to the group.
    void manageGroup() {
        for (const CString& file : m_files)
            m_frame->openFile(file);
        m_frame->SetForegroundWindow();
        test::pressKey(VK_F3);
        settle();
        require(group().m_dlgGroupCxcManager != nullptr, "the group manager did not open");
        CDlgGroupTrlCxcDataManager& manager = *group().m_dlgGroupCxcManager;
        manager.SetWindowPos(nullptr, 200, 640, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        manager.SendMessage(WM_COMMAND, ID_GROUP_AVERAGE_ALL);
        require(group().getTotalCohDataset() == 3, "the group was not averaged");
        press(manager, IDC_GROUP_SHOW_ALL);
        pressRow(manager.m_list, 2);
        settle();
        picture(manager.m_hWnd, "group-manager.bmp");
        picture(m_frame->m_hWnd, "host-group.bmp");
        manager.SendMessage(WM_COMMAND, ID_GROUP_EXIT);
    }

    void accumulate() {
        pressRow(waveform().m_listFace, 0);
        press(waveform(), IDC_WAVEFORM_ACCUMULATE);
        require(
            package().m_cohActCtl->m_cohTimTotal == 1 || package().m_cohActive->m_cohTimTotal == 1,
            "time was not accumulated");
        settle();
    }

    void press(CWnd& dialog, int button) {
        dialog.SetForegroundWindow();
        test::pump();
        test::click(::GetDlgItem(dialog.m_hWnd, button));
        test::parkPointer();
    }

    void pressRow(CListCtrl& list, int row) {
        list.GetParent()->SetForegroundWindow();
        test::pump();
        CRect rect;
        require(list.GetItemRect(row, rect, LVIR_LABEL) != FALSE, "a list lacks a row");
        test::click(list.m_hWnd, CPoint(rect.left + 4, rect.CenterPoint().y));
        test::parkPointer();
    }

    CSnsCohFacezq& package() { return m_frame->package(); }
    CGroupMeegCxcFacezq& group() { return m_frame->group(); }
    CDlgSnsCohManager& waveform() { return *package().m_dlgSnsCohManager; }

    inline static Tour* s_tour = nullptr;
    std::filesystem::path m_folder;
    std::vector<CString> m_files;
    CHostFrame* m_frame = nullptr;  // deletes itself with its window
    test::FileDialogScript m_fileAnswers;
    test::ColorDialogScript m_colorAnswers;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 4) {
        std::fprintf(stderr, "usage: cxc_tour FOLDER ACTIVE.cxc CONTROL.cxc\n");
        return 2;
    }
    AfxWinInit(nullptr, nullptr, nullptr, 0);
    TourApp app;
    try {
        Tour(std::filesystem::absolute(arguments[1]),
             {CString(arguments[2]), CString(arguments[3])})
            .run();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tour: stopped: %s\n", e.what());
        return 1;
    }
    std::printf("tour: done\n");
    return 0;
}
