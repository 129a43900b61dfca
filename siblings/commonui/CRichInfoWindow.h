// The window behind CRichInfozq.
#pragma once

#include "framework.h"

/// Modeless and resizable, from template IDD_RICH_INFO. Closing hides it.
class CRichInfoWindow : public CDialogEx {
    DECLARE_DYNAMIC(CRichInfoWindow)

public:
    void show(const CString& text, const CString& title);

protected:
    BOOL OnInitDialog() override;

    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnCopy();
    afx_msg void OnSelectAll();
    DECLARE_MESSAGE_MAP()

private:
    CRichEditCtrl m_text;
};
