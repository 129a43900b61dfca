// What a user does with windows: the pointer, the keyboard, and the messages that follow (Windows).
#pragma once

#ifdef _WIN32

#include "framework.h"

#include <functional>

namespace test {

/// Deals with every message that is waiting, as the program's loop does.
void pump();
/// Deals with messages until the condition holds. False when ten seconds were not enough.
bool pumpUntil(const std::function<bool()>& condition);

/// Moves the real pointer to a place of a window's client area, and deals with what follows.
void movePointer(HWND window, CPoint client);
/// The pointer at rest where no window of the tests is.
void parkPointer();
/// For drags.
void pressButton();
void releaseButton();
/// Moves, presses and releases, all at once: some controls wait for the release in a loop of their
/// own.
void click(HWND window, CPoint client);
void rightClick(HWND window, CPoint client);
/// In the middle of the window.
void click(HWND window);

/// Keys, to the window with the focus. The window's dialog must be the active one.
void pressKey(WORD virtualKey);
void typeText(const wchar_t* text);

}  // namespace test

#endif
