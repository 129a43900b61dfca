#include "afx_combobox.h"

IMPLEMENT_DYNAMIC(CComboBox, CWnd)

BOOL CComboBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(_T("COMBOBOX"), nullptr, dwStyle, rect, pParentWnd, nID);
}

int CComboBox::GetCount() const {
    return static_cast<int>(SendMessage(CB_GETCOUNT));
}

int CComboBox::GetCurSel() const {
    return static_cast<int>(SendMessage(CB_GETCURSEL));
}

int CComboBox::SetCurSel(int nSelect) {
    return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(nSelect)));
}

int CComboBox::AddString(LPCTSTR lpszString) {
    return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszString)));
}

void CComboBox::ResetContent() {
    SendMessage(CB_RESETCONTENT);
}

void CComboBox::GetLBText(int nIndex, CString& rString) const {
    const WPARAM index = static_cast<WPARAM>(nIndex);
    const int length = static_cast<int>(SendMessage(CB_GETLBTEXTLEN, index));
    if (length < 0) AfxThrowInvalidArgException();
    SendMessage(CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(rString.GetBuffer(length)));
    rString.ReleaseBuffer();
}
