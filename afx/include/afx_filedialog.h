// CFileDialog: asks for the name of a file to open or to save.
//
// Differences from MFC:
//  1. One file per dialog; no customisation, hooks or templates.
//  2. Newer style: when the shell's dialog is not to be had, the older one appears.
//  3. Without a default extension none is appended, also where the system's own dialog would take
//     one from the filter.
//  4. Headless: the application's AnswerFileDialog decides. A file that must exist and does not
//     is a cancel, because nobody can be asked again. m_bOpenFileDialog is public, for the policy.
#pragma once

#include "afx_commondialog.h"

class AFX_API CFileDialog : public CCommonDialog {
    DECLARE_DYNAMIC(CFileDialog)

public:
    /// bOpenFileDialog: TRUE to open, FALSE to save. lpszDefExt: appended to a name without an
    /// extension; null: nothing is appended. lpszFileName: proposed name, at most MAX_PATH - 1
    /// characters of it are used. lpszFilter: "text|pattern|text|pattern||", copied.
    explicit CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt = nullptr,
                         LPCTSTR lpszFileName = nullptr,
                         DWORD dwFlags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT,
                         LPCTSTR lpszFilter = nullptr, CWnd* pParentWnd = nullptr, DWORD dwSize = 0,
                         BOOL bVistaStyle = TRUE);

    /// Once per object.
    INT_PTR DoModal() override;

    /// After IDOK: the full path, and its last part with the extension.
    CString GetPathName() const;
    CString GetFileName() const;

    OPENFILENAME& GetOFN() { return m_ofn; }
    const OPENFILENAME& GetOFN() const { return m_ofn; }

    /// Settings that DoModal uses; the filter index is one-based and holds the chosen one
    /// afterwards.
    OPENFILENAME m_ofn;

#ifdef _WIN32
protected:
#endif
    BOOL m_bOpenFileDialog;

private:
#ifdef _WIN32
    INT_PTR showShellDialog();
    INT_PTR showOlderDialog();
#endif
    void storePath(const CString& path);

    BOOL m_bVistaStyle;
    CString m_strFilter;  // with zeros between the parts
    CString m_strDefExt;
    CString m_path;                // the chosen path, of any length
    TCHAR m_szFileName[MAX_PATH];  // what m_ofn.lpstrFile points to
    TCHAR m_szFileTitle[MAX_PATH];
};
