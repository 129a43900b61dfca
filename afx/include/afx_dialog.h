// CDialog: a window made from a template (Windows).
//
// Differences from MFC:
//  1. Templates come from resources only.
//  2. No help, no ActiveX controls, no initial data of controls in the resource.
//  3. DoModal shows the dialog before its loop, not when the program is idle.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)

public:
    /// For DoModal. A null parent stands for the main window.
    explicit CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    ~CDialog() override;

    /// Modeless; returns at once. The template is looked for in the resource chain. Hidden unless
    /// the template has WS_VISIBLE. FALSE without template or window, and when OnInitDialog has
    /// ended the dialog.
    virtual BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    /// Returns the value given to EndDialog; -1 when the dialog could not be made.
    virtual INT_PTR DoModal();
    /// Hides the dialog. A modal one ends with nResult after the current handler; one made by
    /// Create stays and may be shown again.
    void EndDialog(int nResult);

    /// The window and its controls exist. TRUE: the system sets the focus. The base class
    /// exchanges the data to the controls; when that fails it ends the dialog.
    virtual BOOL OnInitDialog();

    BOOL PreTranslateMessage(MSG* pMsg) override;
    /// Command ids from 0x8000 on go to the owner and the application too.
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

protected:
    CDialog();

    /// Exchanges the data from the controls; only when that succeeds the dialog ends with IDOK.
    virtual void OnOK();
    virtual void OnCancel();

    LPCTSTR m_lpszTemplateName = nullptr;
    CWnd* m_pParentWnd = nullptr;  // not owned

    DECLARE_MESSAGE_MAP()

private:
    static INT_PTR CALLBACK dialogProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
    BOOL createWindow(LPCTSTR templateName, HWND owner);
    void runModalLoop();

    bool m_running = false;  // from the creation until EndDialog
    INT_PTR m_modalResult = -1;
};

#endif
