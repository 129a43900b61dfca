// CFrameWnd: the main window of a program (Windows).
//
// Differences from MFC:
//  1. No documents, views, bars and help. Commands go to the frame, then to the application.
//  2. Update handlers run when a popup of the menu opens.
#pragma once

#include "afx_wnd.h"

#ifdef _WIN32

class AFX_API CFrameWnd : public CWnd {
    DECLARE_DYNAMIC(CFrameWnd)

public:
    static const CRect rectDefault;

    CFrameWnd();
    ~CFrameWnd() override;

    /// A null class name stands for a default class; lpszMenuName: a menu resource.
    virtual BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName,
                        DWORD dwStyle = WS_OVERLAPPEDWINDOW, const RECT& rect = rectDefault,
                        CWnd* pParentWnd = nullptr, LPCTSTR lpszMenuName = nullptr,
                        DWORD dwExStyle = 0, CCreateContext* pContext = nullptr);
    /// Window with the menu, the accelerators and the icon of one resource id.
    virtual BOOL LoadFrame(UINT nIDResource, DWORD dwDefaultStyle = WS_OVERLAPPEDWINDOW,
                           CWnd* pParentWnd = nullptr, CCreateContext* pContext = nullptr);
    /// Once per frame; FALSE when they are missing.
    BOOL LoadAccelTable(LPCTSTR lpszResourceName);

    BOOL PreTranslateMessage(MSG* pMsg) override;
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    BOOL m_bAutoMenuEnable = TRUE;  // items without a handler are disabled

protected:
    /// Deletes the object: a frame is made with new.
    void PostNcDestroy() override;

    afx_msg void OnInitMenuPopup(CMenu* pPopupMenu, UINT nIndex, BOOL bSysMenu);

    HACCEL m_hAccelTable = nullptr;

    DECLARE_MESSAGE_MAP()
};

#endif
