// A dialog that asks for one line of text (Windows).
#pragma once

#include "framework.h"
#include "siblings/commonui/commonui_api.h"

/// A dialog that asks for one line of text (Windows).
///
/// Modal: set m_text to the text to begin with, call DoModal; after IDOK m_text is what was
/// entered. Cancel and Escape leave it as it was.
class CXC_COMMONUI_API CDlgInputString : public CDialogEx {
    DECLARE_DYNAMIC(CDlgInputString)

public:
    /// Without a parent the main window is the owner.
    explicit CDlgInputString(CWnd* parent = nullptr);

    CString m_text;  ///< the line of text, before and after; empty

protected:
    /// Between m_text and the edit control.
    void DoDataExchange(CDataExchange* exchange) override;
    /// Selects the whole text, so that typing replaces it.
    BOOL OnInitDialog() override;
};
