#include "afx_richeditctrl.h"

IMPLEMENT_DYNAMIC(CRichEditCtrl, CWnd)

BOOL AFXAPI AfxInitRichEdit2() {
    // Stays loaded: a control may live as long as the process.
    static const HMODULE library = ::LoadLibrary(_T("riched20.dll"));
    return library != nullptr;
}

BOOL CRichEditCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    if (!AfxInitRichEdit2()) return FALSE;
    return CWnd::Create(RICHEDIT_CLASS, nullptr, dwStyle, rect, pParentWnd, nID);
}

void CRichEditCtrl::GetSel(long& nStartChar, long& nEndChar) const {
    CHARRANGE range = {};
    SendMessage(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
    nStartChar = range.cpMin;
    nEndChar = range.cpMax;
}

void CRichEditCtrl::SetSel(long nStartChar, long nEndChar) {
    CHARRANGE range = {nStartChar, nEndChar};
    SendMessage(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

CString CRichEditCtrl::GetSelText() const {
    long first = 0;
    long end = 0;
    GetSel(first, end);
    CString text;
    // The end may lie one behind the text, which has a last paragraph mark of its own.
    const int length = static_cast<int>(end - first);
    SendMessage(EM_GETSELTEXT, 0, reinterpret_cast<LPARAM>(text.GetBuffer(length)));
    text.ReleaseBuffer();
    return text;
}

void CRichEditCtrl::Copy() {
    SendMessage(WM_COPY);
}

BOOL CRichEditCtrl::SetReadOnly(BOOL bReadOnly) {
    return SendMessage(EM_SETREADONLY, static_cast<WPARAM>(bReadOnly)) != 0;
}

void CRichEditCtrl::LimitText(long nChars) {
    SendMessage(EM_EXLIMITTEXT, 0, nChars);
}
