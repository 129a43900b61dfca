// CWinApp and the functions that reach the application object.
//
// Differences from MFC:
//  1. CWinThread is not a class of its own; its members stand in CWinApp, and there is one
//     user-interface thread.
//  2. There is no WinMain here: the program's main calls AfxWinInit, InitInstance and Run.
//  3. A second application object takes the place of the first for its lifetime instead of
//     asserting.
//  4. Headless: Run has no messages to wait for and returns ExitInstance(). The two virtual
//     operations at the end of the class are the program's policy for dialogs, the default
//     DoMessageBox writes to standard error, and there are no resources.
#pragma once

#include "afx_cmdtarget.h"

class CColorDialog;
class CException;
class CFileDialog;
class CWnd;

class AFX_API CWinApp : public CCmdTarget {
    DECLARE_DYNAMIC(CWinApp)

public:
    /// Registers the object as the application of the process. A null name stands for the name of
    /// the executable without its extension.
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    ~CWinApp() override;

    /// FALSE ends the program before Run.
    virtual BOOL InitInstance();
    /// Returns the program's exit code.
    virtual int ExitInstance();
    /// The message loop. Returns ExitInstance().
    virtual int Run();

    /// Shows the message boxes of the whole process; AfxMessageBox ends here. Override it to show,
    /// record or answer them. Returns the button: IDOK, IDYES, ...; 0 when no box can be shown.
    virtual int DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT nIDPrompt);
    /// 1 begins, -1 ends, 0 shows again.
    virtual void DoWaitCursor(int nCode);

#ifdef _WIN32
    /// TRUE: the message has been dealt with and is not dispatched.
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    /// Called while the queue is empty, lCount = 0, 1, ...; TRUE asks for another call. Frees the
    /// temporary window objects of CWnd::FromHandle.
    virtual BOOL OnIdle(LONG lCount);
    /// An exception left a window procedure. Returns the result of the message; the caller deletes
    /// the exception.
    virtual LRESULT ProcessWndProcException(CException* e, const MSG* pMsg);

    /// Shared resources, never destroyed by the caller; null when missing.
    HICON LoadIcon(LPCTSTR lpszResourceName) const;
    HICON LoadIcon(UINT nIDResource) const;
    HCURSOR LoadCursor(LPCTSTR lpszResourceName) const;
    HCURSOR LoadCursor(UINT nIDResource) const;
#else
    /// Policy: answers a file dialog. `path` enters as the proposed name. Returns IDOK with the
    /// chosen path, or IDCANCEL. An answer IDOK for an existing file includes the confirmation that
    /// OFN_OVERWRITEPROMPT asks for. Default: IDCANCEL.
    virtual INT_PTR AnswerFileDialog(CFileDialog& dialog, CString& path);
    /// Policy: answers a colour dialog. `color` enters as the colour at which the dialog starts.
    /// Default: IDCANCEL.
    virtual INT_PTR AnswerColorDialog(CColorDialog& dialog, COLORREF& color);
#endif

    CWnd* m_pMainWnd = nullptr;  // not owned; null until the program sets it
    LPCTSTR m_pszAppName;        // title of message boxes
    HINSTANCE m_hInstance;       // module of the program; null in the headless build

protected:
    int m_nWaitCursorCount = 0;  // begun and not yet ended, never negative
    int m_nExitCode = 0;         // of the message loop

private:
    CString m_appName;
    CWinApp* m_previous;  // application before this one; null as a rule
};

/// The application object; null before it exists.
AFX_API CWinApp* AfxGetApp();
/// The application's main window; null without one.
AFX_API CWnd* AfxGetMainWnd();

/// For programs with a main of their own: to be called once before windows are used.
AFX_API BOOL AfxWinInit(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPTSTR lpCmdLine,
                        int nCmdShow);

#ifndef AFX_MESSAGE_BOX_DECLARED
#define AFX_MESSAGE_BOX_DECLARED
/// Shows a modal message box through the application object; without one as its default would.
/// Returns the button.
AFX_API int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);
#endif
#ifdef _WIN32
/// The text is a string resource; an empty text when it is missing.
AFX_API int AfxMessageBox(UINT nIDPrompt, UINT nType = MB_OK, UINT nIDHelp = static_cast<UINT>(-1));
#endif
