#ifdef _WIN32

#include "tests/support/Input.h"

#include <chrono>
#include <vector>

namespace test {
namespace {

constexpr auto patience = std::chrono::seconds(10);

void dispatch(MSG& msg) {
    CWinApp* const app = AfxGetApp();
    if (app != nullptr && app->PreTranslateMessage(&msg)) return;
    ::TranslateMessage(&msg);
    ::DispatchMessage(&msg);
}

void sendMouse(DWORD flags, CPoint screen) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    // Absolute places are fractions of the screen; rounded so that they come back unchanged.
    const int width = ::GetSystemMetrics(SM_CXSCREEN);
    const int height = ::GetSystemMetrics(SM_CYSCREEN);
    input.mi.dx = (screen.x * 65536 + width - 1) / width;
    input.mi.dy = (screen.y * 65536 + height - 1) / height;
    ::SendInput(1, &input, sizeof(input));
    pump();
}

void sendButtons(const std::vector<DWORD>& flags) {
    std::vector<INPUT> inputs(flags.size());
    for (std::size_t i = 0; i < flags.size(); ++i) {
        inputs[i].type = INPUT_MOUSE;
        inputs[i].mi.dwFlags = flags[i];
    }
    ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    pump();
}

void sendKey(WORD key, WORD scan, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = scan;
    input.ki.dwFlags = flags;
    ::SendInput(1, &input, sizeof(input));
    pump();
}

}  // namespace

void pump() {
    MSG msg = {};
    while (::PeekMessage(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            return;
        }
        dispatch(msg);
    }
}

bool pumpUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        pump();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() > end) return false;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    }
}

void movePointer(HWND window, CPoint client) {
    ::ClientToScreen(window, &client);
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, client);
}

void parkPointer() {
    const CPoint corner(::GetSystemMetrics(SM_CXSCREEN) - 1, ::GetSystemMetrics(SM_CYSCREEN) - 1);
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, corner);
}

void pressButton() {
    sendButtons({MOUSEEVENTF_LEFTDOWN});
}

void releaseButton() {
    sendButtons({MOUSEEVENTF_LEFTUP});
}

void click(HWND window, CPoint client) {
    movePointer(window, client);
    sendButtons({MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
}

void rightClick(HWND window, CPoint client) {
    movePointer(window, client);
    sendButtons({MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
}

void click(HWND window) {
    CRect client;
    ::GetClientRect(window, client);
    click(window, client.CenterPoint());
}

void pressKey(WORD virtualKey) {
    sendKey(virtualKey, 0, 0);
    sendKey(virtualKey, 0, KEYEVENTF_KEYUP);
}

void typeText(const wchar_t* text) {
    for (; *text != 0; ++text) {
        sendKey(0, static_cast<WORD>(*text), KEYEVENTF_UNICODE);
        sendKey(0, static_cast<WORD>(*text), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
    }
}

}  // namespace test

#endif
