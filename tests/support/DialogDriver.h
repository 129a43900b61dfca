// Works the system's real dialogs from a second thread, as the scripts say (Windows).
//
// The thread looks for dialogs of the program at short intervals until one is there. All
// facts are recorded before the button is pressed that ends a dialog, so that they are complete
// when DoModal returns.
#pragma once

#ifdef _WIN32

#include "tests/support/DialogScript.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace test {

struct BoxFacts {
    std::string title;
    std::string text;
    std::vector<int> buttons;  // ids in ascending order
    bool icon = false;
};

class DialogDriver {
public:
    /// The one of the program.
    static DialogDriver& instance();
    ~DialogDriver();
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    /// The scripts added last count. They must stay until `leave`.
    void follow(FileDialogScript* files, ColorDialogScript* colors);
    void leave(FileDialogScript* files);

    /// Presses a button in the next real message box.
    void pressInNextBox(int button);
    /// The boxes pressed since the last call.
    std::vector<BoxFacts> takeBoxes();

private:
    using Clock = std::chrono::steady_clock;

    struct Scripts {
        FileDialogScript* files;
        ColorDialogScript* colors;
    };

    // The file dialog at work.
    struct Session {
        HWND dialog;
        FileDialogScript* script;
        FileDialogAnswer answer;
        FileDialogFacts facts;
        Clock::time_point pressed;
        HWND answeredPrompt = nullptr;
        bool cancelled = false;
    };

    DialogDriver();
    void run();
    void step();
    void beginFileDialog(HWND dialog);
    void continueFileDialog(const std::vector<HWND>& dialogs);
    void answerPrompt(HWND prompt);
    void cancelSession();
    void doColorDialog(HWND dialog);
    void doMessageBox(HWND box);

    HANDLE m_stop;
    std::mutex m_mutex;
    std::vector<Scripts> m_scripts;
    std::optional<Session> m_session;
    std::optional<int> m_boxButton;
    std::vector<BoxFacts> m_boxes;
    HWND m_done = nullptr;  // a dialog that has been answered and may still be closing
    std::thread m_thread;
};

}  // namespace test

#endif
