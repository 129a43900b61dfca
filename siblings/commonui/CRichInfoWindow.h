// The window behind CRichInfozq.
#pragma once

#include "framework.h"

class CRichInfozq;

/// Modeless and resizable; closing hides it. Owned by the program's main window and destroyed with
/// it; the object deletes itself then.
class CRichInfoWindow : public CDialogEx {
    DECLARE_DYNAMIC(CRichInfoWindow)

public:
    explicit CRichInfoWindow(CRichInfozq& owner);

    /// Makes the window. FALSE on failure.
    BOOL make();

    void show(const CString& text, const CString& title);

    /// The owner is gone: closing destroys the window.
    void forgetOwner() { m_owner = nullptr; }

protected:
    BOOL OnInitDialog() override;
    void OnCancel() override;
    void PostNcDestroy() override;

    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnCopy();
    afx_msg void OnSelectAll();
    DECLARE_MESSAGE_MAP()

private:
    CRichInfozq* m_owner;  // null when it is gone
    CRichEditCtrl m_text;
};
