// CWnd: the C++ object of a window.
//
// Differences from MFC:
//  1. Only creation, attachment, visibility, text and repainting are here, and WindowProc as the
//     one way to handle messages.
//  2. The default class of CreateEx (null class name) has no background brush.
//  3. Headless: a window is an entry of the in-process table. It has no messages, and its client
//     area is as large as the window.
#pragma once

#include "afx_cmdtarget.h"

struct CCreateContext;

class AFX_API CWnd : public CCmdTarget {
    DECLARE_DYNAMIC(CWnd)

public:
    CWnd();
    /// Destroys an attached window; overrides of derived classes do not run any more.
    ~CWnd() override;

    HWND GetSafeHwnd() const { return m_hWnd; }

    /// The object of a handle: the permanent one, or a temporary one that lives until the program
    /// is idle. Null for a null handle.
    static CWnd* PASCAL FromHandle(HWND hWnd);
    /// The object that was attached to the handle or created its window; null without one.
    static CWnd* PASCAL FromHandlePermanent(HWND hWnd);
    /// Takes over a window without a look at its messages. FALSE for a null handle.
    BOOL Attach(HWND hWnd);
    /// Gives the window up. Returns its handle.
    HWND Detach();

    /// Child window; WS_CHILD is part of the style.
    virtual BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                        const RECT& rect, CWnd* pParentWnd, UINT nID,
                        CCreateContext* pContext = nullptr);
    /// Any window; FALSE when the system refuses. A null class name stands for a default class.
    virtual BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName,
                          DWORD dwStyle, int x, int y, int nWidth, int nHeight, HWND hWndParent,
                          HMENU nIDorHMenu, LPVOID lpParam = nullptr);
    virtual BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName,
                          DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID,
                          LPVOID lpParam = nullptr);
    /// Destroys the window, its children first; the object stays. FALSE without a window.
    virtual BOOL DestroyWindow();

    /// Returns whether the window was visible before.
    BOOL ShowWindow(int nCmdShow);
    BOOL IsWindowVisible() const;
    void GetClientRect(LPRECT lpRect) const;
    /// Asks for a repaint of a part, or with null of the whole client area.
    void InvalidateRect(LPCRECT lpRect, BOOL bErase = TRUE);
    void Invalidate(BOOL bErase = TRUE);
    void SetWindowText(LPCTSTR lpszString);
    /// Returns the number of characters copied, the terminator not counted.
    int GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const;
    void GetWindowText(CString& rString) const;

#ifdef _WIN32
    /// Attaches and passes the window's messages through WindowProc first.
    BOOL SubclassWindow(HWND hWnd);
    /// Ends SubclassWindow and restores the earlier procedure. Returns the handle.
    HWND UnsubclassWindow();
    /// Called for each message of the loop, from the target window up to its outermost parent.
    virtual BOOL PreTranslateMessage(MSG* pMsg);

    /// All messages of the window; an exception that leaves it is given to the application's
    /// ProcessWndProcException.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
#endif

    HWND m_hWnd = nullptr;  // null while no window is attached

protected:
#ifdef _WIN32
    /// Default processing of the current message with its original parameters.
    LRESULT Default();
    /// Called before the object's procedure replaces the window's own.
    virtual void PreSubclassWindow();
#endif
    /// Called last, when the window is gone and the object detached.
    virtual void PostNcDestroy();

private:
    friend class WindowLink;
#ifdef _WIN32
    WNDPROC m_pfnSuper = nullptr;  // procedure before subclassing
#endif
};

/// Registers a window class, or finds it again. Returns its name, which lives as long as the
/// process.
#ifdef _WIN32
AFX_API LPCTSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor = nullptr,
                                    HBRUSH hbrBackground = nullptr, HICON hIcon = nullptr);
#else
AFX_API LPCTSTR AfxRegisterWndClass(UINT nClassStyle);
#endif
