// CDialogEx (Windows).
//
// Differences from MFC:
//  1. No background colour or image: it is a CDialog with another name.
#pragma once

#include "afx_dialog.h"

#ifdef _WIN32

class AFX_API CDialogEx : public CDialog {
    DECLARE_DYNAMIC(CDialogEx)

public:
    CDialogEx();
    explicit CDialogEx(LPCTSTR lpszTemplateName, CWnd* pParent = nullptr);
    explicit CDialogEx(UINT nIDTemplate, CWnd* pParent = nullptr);
};

#endif
