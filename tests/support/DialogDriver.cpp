#ifdef _WIN32

#include "tests/support/DialogDriver.h"

#include "tests/support/Text.h"

#include <colordlg.h>
#include <dlgs.h>

namespace test {
namespace {

constexpr DWORD interval = 5;        // milliseconds between two looks
constexpr UINT patience = 10000;     // milliseconds for one message or one press
constexpr int shellFileName = 1001;  // edit of the file name in the shell's dialog

std::wstring classOf(HWND window) {
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    return name;
}

std::string textOf(HWND window) {
    wchar_t text[2048] = {};
    DWORD_PTR length = 0;
    ::SendMessageTimeoutW(window, WM_GETTEXT, 2048, reinterpret_cast<LPARAM>(text), SMTO_NORMAL,
                          patience, &length);
    return toUtf8(CString(text, static_cast<int>(length)));
}

LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    ::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, patience, &result);
    return static_cast<LRESULT>(result);
}

// Posted, not sent: what it starts may last, and may ask a question of its own.
void press(HWND dialog, int button) {
    const HWND control = ::GetDlgItem(dialog, button);
    ::PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button),
                   reinterpret_cast<LPARAM>(control));
}

template <class Test>
HWND findChild(HWND parent, Test test) {
    struct Search {
        Test* test;
        HWND found;
    } search = {&test, nullptr};
    const auto look = [](HWND child, LPARAM context) -> BOOL {
        Search& s = *reinterpret_cast<Search*>(context);
        if ((*s.test)(child)) s.found = child;
        return s.found == nullptr;
    };
    ::EnumChildWindows(parent, static_cast<WNDENUMPROC>(look), reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<HWND> shownDialogs() {
    std::vector<HWND> dialogs;
    const auto collect = [](HWND window, LPARAM context) -> BOOL {
        DWORD process = 0;
        ::GetWindowThreadProcessId(window, &process);
        const bool own = process == ::GetCurrentProcessId();
        if (own && ::IsWindowVisible(window) && classOf(window) == L"#32770")
            reinterpret_cast<std::vector<HWND>*>(context)->push_back(window);
        return TRUE;
    };
    ::EnumWindows(static_cast<WNDENUMPROC>(collect), reinterpret_cast<LPARAM>(&dialogs));
    return dialogs;
}

bool isFileDialog(HWND dialog) {
    return findChild(dialog, [](HWND child) { return classOf(child) == L"SHELLDLL_DefView"; }) !=
           nullptr;
}

HWND fileNameEdit(HWND dialog) {
    return findChild(dialog, [](HWND child) {
        const int id = ::GetDlgCtrlID(child);
        return classOf(child) == L"Edit" && (id == edt1 || id == cmb13 || id == shellFileName);
    });
}

bool isColorDialog(HWND dialog) {
    return ::GetDlgItem(dialog, COLOR_RED) != nullptr && ::GetDlgItem(dialog, COLOR_MIX) != nullptr;
}

bool isMessageBox(HWND dialog) {
    const HWND text = ::GetDlgItem(dialog, 0xFFFF);
    return text != nullptr && classOf(text) == L"Static";
}

FileDialogFacts readFileDialog(HWND dialog) {
    FileDialogFacts facts;
    facts.open = textOf(::GetDlgItem(dialog, IDOK)).find("Open") != std::string::npos;
    facts.proposed = textOf(fileNameEdit(dialog));
    const HWND types = findChild(dialog, [](HWND child) {
        return classOf(child) == L"ComboBox" && ::GetDlgCtrlID(child) == cmb1;
    });
    if (types == nullptr || !::IsWindowVisible(types)) return facts;
    const LRESULT count = send(types, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t text[1024] = {};
        send(types, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        facts.filters.push_back(toUtf8(CString(text)));
    }
    facts.filter = static_cast<int>(send(types, CB_GETCURSEL, 0, 0));
    return facts;
}

BYTE readPart(HWND dialog, int edit) {
    return static_cast<BYTE>(std::stoi("0" + textOf(::GetDlgItem(dialog, edit))));
}

void typePart(HWND dialog, int edit, BYTE part) {
    const std::wstring text = std::to_wstring(part);
    send(::GetDlgItem(dialog, edit), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace

DialogDriver& DialogDriver::instance() {
    static DialogDriver driver;
    return driver;
}

DialogDriver::DialogDriver() : m_stop(::CreateEvent(nullptr, TRUE, FALSE, nullptr)) {
    m_thread = std::thread([this] { run(); });
}

DialogDriver::~DialogDriver() {
    ::SetEvent(m_stop);
    m_thread.join();
    ::CloseHandle(m_stop);
}

void DialogDriver::follow(FileDialogScript* files, ColorDialogScript* colors) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_scripts.push_back({files, colors});
}

void DialogDriver::leave(FileDialogScript* files) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_session && m_session->script == files) m_session.reset();
    for (auto scripts = m_scripts.begin(); scripts != m_scripts.end(); ++scripts) {
        if (scripts->files == files) {
            m_scripts.erase(scripts);
            return;
        }
    }
}

void DialogDriver::pressInNextBox(int button) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_boxButton = button;
}

std::vector<BoxFacts> DialogDriver::takeBoxes() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<BoxFacts> boxes;
    boxes.swap(m_boxes);
    return boxes;
}

void DialogDriver::run() {
    while (::WaitForSingleObject(m_stop, interval) == WAIT_TIMEOUT)
        step();
}

void DialogDriver::step() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_scripts.empty()) return;
    const std::vector<HWND> dialogs = shownDialogs();
    if (m_done != nullptr && !::IsWindow(m_done)) m_done = nullptr;
    if (m_session && !::IsWindow(m_session->dialog)) m_session.reset();
    if (m_session) {
        continueFileDialog(dialogs);
        return;
    }
    for (const HWND dialog : dialogs) {
        if (dialog == m_done) continue;
        if (isColorDialog(dialog)) {
            doColorDialog(dialog);
        } else if (isFileDialog(dialog) && fileNameEdit(dialog) != nullptr) {
            beginFileDialog(dialog);
            return;
        } else if (m_boxButton && isMessageBox(dialog)) {
            doMessageBox(dialog);
        }
    }
}

void DialogDriver::beginFileDialog(HWND dialog) {
    FileDialogScript& script = *m_scripts.back().files;
    m_session = Session{dialog, &script, script.take(), readFileDialog(dialog), Clock::now()};
    script.report(m_session->facts);
    if (!m_session->answer.accept) {
        cancelSession();
        return;
    }
    if (m_session->answer.path) {
        const std::wstring name = m_session->answer.path->wstring();
        send(fileNameEdit(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    press(dialog, IDOK);
}

void DialogDriver::cancelSession() {
    m_session->cancelled = true;
    press(m_session->dialog, IDCANCEL);
}

void DialogDriver::continueFileDialog(const std::vector<HWND>& dialogs) {
    for (const HWND prompt : dialogs) {
        if (::GetWindow(prompt, GW_OWNER) != m_session->dialog) continue;
        if (prompt != m_session->answeredPrompt) answerPrompt(prompt);
        return;
    }
    if (m_session->cancelled) return;
    const bool declined = m_session->facts.askedToReplace && !m_session->answer.replace;
    if (declined || m_session->facts.refused) {
        cancelSession();
    } else if (Clock::now() - m_session->pressed > std::chrono::milliseconds(patience)) {
        // It neither closes nor says why.
        m_session->facts.refused = true;
        m_session->script->amendLast(m_session->facts);
        cancelSession();
    }
}

void DialogDriver::answerPrompt(HWND prompt) {
    const bool question = ::GetDlgItem(prompt, IDYES) != nullptr;
    if (!question && ::GetDlgItem(prompt, IDOK) == nullptr) return;
    m_session->answeredPrompt = prompt;
    if (question) {
        m_session->facts.askedToReplace = true;
    } else {
        m_session->facts.refused = true;
    }
    m_session->script->amendLast(m_session->facts);
    press(prompt, !question ? IDOK : m_session->answer.replace ? IDYES : IDNO);
}

void DialogDriver::doColorDialog(HWND dialog) {
    ColorDialogScript& script = *m_scripts.back().colors;
    const ColorDialogScript::Answer answer = script.take();
    ColorDialogFacts facts;
    facts.initial = RGB(readPart(dialog, COLOR_RED), readPart(dialog, COLOR_GREEN),
                        readPart(dialog, COLOR_BLUE));
    // The edits stay in the dialog all the time; closed, they lie outside its frame.
    RECT frame = {};
    RECT edit = {};
    RECT common = {};
    ::GetWindowRect(dialog, &frame);
    ::GetWindowRect(::GetDlgItem(dialog, COLOR_RED), &edit);
    facts.fullOpen = ::IntersectRect(&common, &frame, &edit) && ::EqualRect(&common, &edit);
    script.report(facts);
    if (answer.color) {
        typePart(dialog, COLOR_RED, GetRValue(*answer.color));
        typePart(dialog, COLOR_GREEN, GetGValue(*answer.color));
        typePart(dialog, COLOR_BLUE, GetBValue(*answer.color));
    }
    m_done = dialog;
    press(dialog, answer.accept ? IDOK : IDCANCEL);
}

void DialogDriver::doMessageBox(HWND box) {
    BoxFacts facts;
    facts.title = textOf(box);
    facts.text = textOf(::GetDlgItem(box, 0xFFFF));
    for (int id = IDOK; id <= IDNO; ++id) {
        const HWND button = ::GetDlgItem(box, id);
        if (button != nullptr && ::IsWindowVisible(button)) facts.buttons.push_back(id);
    }
    const HWND icon = findChild(box, [](HWND child) {
        return classOf(child) == L"Static" && ::GetDlgCtrlID(child) != 0xFFFF &&
               (::GetWindowLongPtrW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON;
    });
    facts.icon = icon != nullptr && send(icon, STM_GETICON, 0, 0) != 0;
    m_boxes.push_back(facts);
    m_done = box;
    press(box, *m_boxButton);
    m_boxButton.reset();
}

}  // namespace test

#endif
