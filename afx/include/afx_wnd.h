// CWnd: the C++ object of a window.
//
// Differences from MFC:
//  1. Only the operations that are listed here.
//  2. Of the messages that a parent gets of its controls, WM_COMMAND and WM_NOTIFY are reflected.
//  3. The default class of CreateEx (null class name) has no background brush.
//  4. Headless: a window is an entry of the in-process table. It has no messages, and its client
//     area is as large as the window.
#pragma once

#include "afx_cmdtarget.h"
#include "atltypes.h"

struct CCreateContext;
class CDataExchange;
class CDC;
class CFont;
class CMenu;

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
    /// Subclasses a control of a dialog.
    BOOL SubclassDlgItem(UINT nID, CWnd* pParent);

    // Styles and relatives. Objects that are returned may be temporary ones.
    DWORD GetStyle() const;
    DWORD GetExStyle() const;
    /// nFlags: SWP_ flags of a repositioning that shows the change; 0: none. FALSE when nothing
    /// changed.
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    int GetDlgCtrlID() const;
    /// Null when it is missing.
    CWnd* GetDlgItem(int nID) const;
    CWnd* GetParent() const;
    /// Null without a menu.
    CMenu* GetMenu() const;
    BOOL SetMenu(CMenu* pMenu);
    /// bBigIcon: the large one. Returns the earlier icon.
    HICON SetIcon(HICON hIcon, BOOL bBigIcon);
    HICON GetIcon(BOOL bBigIcon) const;
    CFont* GetFont() const;
    void SetFont(CFont* pFont, BOOL bRedraw = TRUE);

    // Place and state.
    void GetWindowRect(LPRECT lpRect) const;
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE);
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    /// A null pWndInsertAfter: at the top, unless nFlags has SWP_NOZORDER.
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags);
    /// Fills in the length itself.
    BOOL GetWindowPlacement(WINDOWPLACEMENT* lpwndpl) const;
    BOOL SetWindowPlacement(const WINDOWPLACEMENT* lpwndpl);
    /// Over its owner, or in the middle of the screen.
    void CenterWindow();
    void ClientToScreen(LPPOINT lpPoint) const;
    void ClientToScreen(LPRECT lpRect) const;
    void ScreenToClient(LPPOINT lpPoint) const;
    void ScreenToClient(LPRECT lpRect) const;
    /// Client coordinates. This window itself where there is no child, null outside.
    CWnd* ChildWindowFromPoint(POINT point) const;
    CWnd* ChildWindowFromPoint(POINT point, UINT nFlags) const;
    BOOL IsWindowEnabled() const;
    BOOL EnableWindow(BOOL bEnable = TRUE);

    // Input.
    static CWnd* PASCAL GetFocus();
    CWnd* SetFocus();
    static CWnd* PASCAL GetCapture();
    CWnd* SetCapture();
    BOOL SetForegroundWindow();
    void DragAcceptFiles(BOOL bAccept = TRUE);
    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer);
    BOOL KillTimer(UINT_PTR nIDEvent);

    // Painting.
    CDC* GetDC();
    int ReleaseDC(CDC* pDC);
    void UpdateWindow();
    void SetRedraw(BOOL bRedraw = TRUE);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

    /// Runs DoDataExchange. TRUE: from the controls to the members. FALSE when the exchange broke
    /// off; the user has been told. Notifications of the controls are dropped meanwhile.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    /// Called for each message of the loop, from the target window up to its outermost parent.
    virtual BOOL PreTranslateMessage(MSG* pMsg);
#endif

    HWND m_hWnd = nullptr;  // null while no window is attached

protected:
#ifdef _WIN32
    /// All messages of the window; an exception that leaves it is given to the application's
    /// ProcessWndProcException, a std::bad_alloc as a CMemoryException.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    /// A notification of this control has arrived at its parent. TRUE keeps it from the parent.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);

    /// Default processing of the current message with its original parameters.
    LRESULT Default();
    /// Called before the object's procedure replaces the window's own.
    virtual void PreSubclassWindow();

    /// Looks the message up. FALSE: nobody has handled it.
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    /// lParam 0: a menu or an accelerator; dropped when the update handler disables the command.
    /// Otherwise a control: dropped during UpdateData, then offered to the control.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    /// One line per control; calls the base class first.
    virtual void DoDataExchange(CDataExchange* pDX);

    // What a handler calls for the default processing; the message keeps its own parameters.
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnClose();
    afx_msg void OnContextMenu(CWnd* pWnd, CPoint pos);
    afx_msg int OnCreate(LPCREATESTRUCT lpCreateStruct);
    afx_msg void OnDestroy();
    afx_msg void OnDropFiles(HDROP hDropInfo);
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* lpMMI);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnLButtonDblClk(UINT nFlags, CPoint point);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt);
    afx_msg void OnPaint();
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message);
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnTimer(UINT_PTR nIDEvent);
#endif
    /// Called last, when the window is gone and the object detached.
    virtual void PostNcDestroy();

#ifdef _WIN32
    DECLARE_MESSAGE_MAP()
#endif

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
