// The window system's types, constants and functions. On Windows they are the system's own;
// the headless build declares here the few that code shared by both builds may name.
//
// Differences from the Windows headers (headless build):
//  1. Windows are entries of an in-process table (see afx_headless.h); nothing is drawn.
//  2. Only what is listed here exists. Structures hold only the members that are used.
//  3. Functions are not macros and have no A or W twin.
#pragma once

#include "afx_types.h"

#ifdef _WIN32

#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>

#else

#include <cstdint>

#ifndef CALLBACK
#define CALLBACK
#endif
#ifndef WINAPI
#define WINAPI
#endif

struct HWND__;
struct HMENU__;
struct HINSTANCE__;
using HWND = HWND__*;
using HMENU = HMENU__*;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using RECT = tagRECT;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

struct tagPOINT {
    LONG x;
    LONG y;
};
using POINT = tagPOINT;
using LPPOINT = POINT*;

#ifndef MAX_PATH
#define MAX_PATH 260
#endif

// Message boxes: buttons and icon.
#ifndef MB_OK
#define MB_OK 0x00000000
#endif
#define MB_OKCANCEL 0x00000001
#define MB_ABORTRETRYIGNORE 0x00000002
#define MB_YESNOCANCEL 0x00000003
#define MB_YESNO 0x00000004
#define MB_RETRYCANCEL 0x00000005
#define MB_ICONSTOP 0x00000010
#define MB_ICONQUESTION 0x00000020
#define MB_ICONEXCLAMATION 0x00000030
#define MB_ICONINFORMATION 0x00000040
#define MB_DEFBUTTON2 0x00000100
#define MB_TYPEMASK 0x0000000F
#define MB_ICONMASK 0x000000F0

#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7

// Windows: styles and show commands.
#define WS_OVERLAPPED 0x00000000
#define WS_OVERLAPPEDWINDOW 0x00CF0000
#define WS_POPUP 0x80000000
#define WS_CHILD 0x40000000
#define WS_VISIBLE 0x10000000
#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOW 5

// The file dialog.
#define OFN_READONLY 0x00000001
#define OFN_OVERWRITEPROMPT 0x00000002
#define OFN_HIDEREADONLY 0x00000004
#define OFN_NOCHANGEDIR 0x00000008
#define OFN_PATHMUSTEXIST 0x00000800
#define OFN_FILEMUSTEXIST 0x00001000
#define OFN_CREATEPROMPT 0x00002000

struct tagOFN {
    DWORD lStructSize;
    HWND hwndOwner;
    LPCTSTR lpstrFilter;  // "text\0pattern\0 ... \0\0"
    DWORD nFilterIndex;   // one-based; 0: none chosen
    LPTSTR lpstrFile;     // proposed name, later the chosen path
    DWORD nMaxFile;       // characters in lpstrFile
    LPTSTR lpstrFileTitle;
    DWORD nMaxFileTitle;
    LPCTSTR lpstrInitialDir;
    LPCTSTR lpstrTitle;
    DWORD Flags;
    LPCTSTR lpstrDefExt;
};
using OPENFILENAME = tagOFN;

// The colour dialog.
#define RGB(r, g, b)                                      \
    (static_cast<COLORREF>(static_cast<BYTE>(r)) |        \
     (static_cast<COLORREF>(static_cast<BYTE>(g)) << 8) | \
     (static_cast<COLORREF>(static_cast<BYTE>(b)) << 16))
#define GetRValue(rgb) (static_cast<BYTE>((rgb)&0xFF))
#define GetGValue(rgb) (static_cast<BYTE>((rgb) >> 8 & 0xFF))
#define GetBValue(rgb) (static_cast<BYTE>((rgb) >> 16 & 0xFF))
#define CC_RGBINIT 0x00000001
#define CC_FULLOPEN 0x00000002

struct tagCHOOSECOLOR {
    DWORD lStructSize;
    HWND hwndOwner;
    COLORREF rgbResult;
    COLORREF* lpCustColors;
    DWORD Flags;
};
using CHOOSECOLOR = tagCHOOSECOLOR;

AFX_API HWND CreateWindowEx(DWORD dwExStyle, LPCTSTR lpClassName, LPCTSTR lpWindowName,
                            DWORD dwStyle, int x, int y, int nWidth, int nHeight, HWND hWndParent,
                            HMENU hMenu, HINSTANCE hInstance, void* lpParam);
AFX_API BOOL DestroyWindow(HWND hWnd);
AFX_API BOOL IsWindow(HWND hWnd);
// The windows without a parent, and all below a parent; an owner is no parent. A callback returns
// FALSE to end the enumeration, and may destroy windows. There is one thread.
using WNDENUMPROC = BOOL(CALLBACK*)(HWND hWnd, LPARAM lParam);
AFX_API DWORD GetCurrentThreadId();
AFX_API BOOL EnumThreadWindows(DWORD dwThreadId, WNDENUMPROC lpfn, LPARAM lParam);
AFX_API BOOL EnumChildWindows(HWND hWndParent, WNDENUMPROC lpEnumFunc, LPARAM lParam);
AFX_API BOOL ShowWindow(HWND hWnd, int nCmdShow);
// TRUE when the window and all its parents are shown.
AFX_API BOOL IsWindowVisible(HWND hWnd);
AFX_API BOOL GetClientRect(HWND hWnd, LPRECT lpRect);
// Records a repaint request; a null rectangle stands for the whole client area.
AFX_API BOOL InvalidateRect(HWND hWnd, const RECT* lpRect, BOOL bErase);
AFX_API BOOL SetWindowText(HWND hWnd, LPCTSTR lpString);
AFX_API int GetWindowText(HWND hWnd, LPTSTR lpString, int nMaxCount);
AFX_API int GetWindowTextLength(HWND hWnd);

#endif
