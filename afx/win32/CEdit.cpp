#include "afx_edit.h"

IMPLEMENT_DYNAMIC(CEdit, CWnd)

BOOL CEdit::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(_T("EDIT"), nullptr, dwStyle, rect, pParentWnd, nID);
}

void CEdit::GetSel(int& nStartChar, int& nEndChar) const {
    DWORD first = 0;
    DWORD end = 0;
    SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&end));
    nStartChar = static_cast<int>(first);
    nEndChar = static_cast<int>(end);
}

void CEdit::SetSel(int nStartChar, int nEndChar, BOOL bNoScroll) {
    SendMessage(EM_SETSEL, static_cast<WPARAM>(nStartChar), nEndChar);
    if (!bNoScroll) SendMessage(EM_SCROLLCARET);
}

void CEdit::LimitText(int nChars) {
    SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(nChars));
}

BOOL CEdit::SetReadOnly(BOOL bReadOnly) {
    return SendMessage(EM_SETREADONLY, static_cast<WPARAM>(bReadOnly)) != 0;
}
