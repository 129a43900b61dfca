// The part of CFileDialog that is the same on every platform.
#include "afx_filedialog.h"

#include <algorithm>

namespace {

void copyBounded(TCHAR (&target)[MAX_PATH], LPCTSTR text) {
    int n = 0;
    for (; text != nullptr && text[n] != 0 && n < MAX_PATH - 1; ++n)
        target[n] = text[n];
    target[n] = 0;
}

bool isSeparator(TCHAR unit) {
#ifdef _WIN32
    return unit == _T('\\') || unit == _T('/') || unit == _T(':');
#else
    return unit == _T('/');
#endif
}

CString lastPart(const CString& path) {
    int begin = path.GetLength();
    while (begin > 0 && !isSeparator(path[begin - 1]))
        --begin;
    return path.Mid(begin);
}

}  // namespace

IMPLEMENT_DYNAMIC(CFileDialog, CCommonDialog)

CFileDialog::CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt, LPCTSTR lpszFileName,
                         DWORD dwFlags, LPCTSTR lpszFilter, CWnd* pParentWnd, DWORD,
                         BOOL bVistaStyle)
    : CCommonDialog(pParentWnd),
      m_ofn(),
      m_bOpenFileDialog(bOpenFileDialog),
      m_bVistaStyle(bVistaStyle),
      m_szFileTitle() {
    copyBounded(m_szFileName, lpszFileName);
    m_ofn.lStructSize = sizeof(m_ofn);
    m_ofn.lpstrFile = m_szFileName;
    m_ofn.nMaxFile = MAX_PATH;
    m_ofn.lpstrFileTitle = m_szFileTitle;
    m_ofn.nMaxFileTitle = MAX_PATH;
    m_ofn.Flags = dwFlags;
    if (lpszDefExt != nullptr) {
        m_strDefExt = lpszDefExt;
        m_ofn.lpstrDefExt = m_strDefExt;
    }
    if (lpszFilter != nullptr) {
        // Whatever the caller ends the text with, two zeros end the copy.
        m_strFilter = CString(lpszFilter) + _T("||");
        const int length = m_strFilter.GetLength();
        const LPTSTR text = m_strFilter.GetBuffer(length);
        std::replace(text, text + length, static_cast<TCHAR>(_T('|')), static_cast<TCHAR>(0));
        m_strFilter.ReleaseBuffer(length);
        m_ofn.lpstrFilter = m_strFilter;
    }
}

CString CFileDialog::GetPathName() const {
    return m_path;
}

CString CFileDialog::GetFileName() const {
    return lastPart(m_path);
}

// A longer path than the caller's buffer holds is had from GetPathName alone.
void CFileDialog::storePath(const CString& path) {
    m_path = path;
    copyBounded(m_szFileName, path);
    copyBounded(m_szFileTitle, lastPart(path));
}
