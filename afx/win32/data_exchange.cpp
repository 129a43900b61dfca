// The DDX_ functions.
#include "afxdd_.h"

#include "afx_app.h"
#include "afx_exception.h"

#include <algorithm>
#include <cwctype>
#include <limits>

namespace {

CString textOf(HWND control) {
    const int length = ::GetWindowTextLength(control);
    CString text;
    const int copied = ::GetWindowText(control, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer(copied);
    return text;
}

void showText(HWND control, const CString& text) {
    if (textOf(control) != text) ::SetWindowText(control, text);
}

bool isDigit(TCHAR character) {
    return character >= _T('0') && character <= _T('9');
}

// Blanks, a sign and digits at the beginning of the text; the nearest value beyond the range.
bool parseInteger(LPCTSTR text, LONGLONG& value) {
    constexpr LONGLONG highest = std::numeric_limits<LONGLONG>::max();
    constexpr LONGLONG lowest = std::numeric_limits<LONGLONG>::min();
    while (std::iswspace(*text) != 0)
        ++text;
    const bool negative = *text == _T('-');
    if (negative || *text == _T('+')) ++text;
    if (!isDigit(*text)) return false;
    // Below zero there is room for one more.
    LONGLONG parsed = 0;
    for (; isDigit(*text); ++text) {
        const int digit = *text - _T('0');
        const bool fits = parsed >= (lowest + digit) / 10;
        parsed = fits ? parsed * 10 - digit : lowest;
        if (!fits) break;
    }
    value = negative ? parsed : parsed == lowest ? highest : -parsed;
    return true;
}

LONGLONG enteredInteger(CDataExchange& exchange, HWND control) {
    LONGLONG value = 0;
    if (!parseInteger(textOf(control), value)) {
        AfxMessageBox(_T("Enter an integer."));
        exchange.Fail();
    }
    return value;
}

}  // namespace

void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl) {
    if (rControl.m_hWnd != nullptr) return;
    if (!rControl.SubclassWindow(pDX->PrepareCtrl(nIDC))) AfxThrowNotSupportedException();
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value) {
    const HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        const LONGLONG lowest = std::numeric_limits<int>::min();
        const LONGLONG highest = std::numeric_limits<int>::max();
        value = static_cast<int>(std::clamp(enteredInteger(*pDX, control), lowest, highest));
    } else {
        CString text;
        text.Format(_T("%d"), value);
        showText(control, text);
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, LONGLONG& value) {
    const HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = enteredInteger(*pDX, control);
    } else {
        CString text;
        text.Format(_T("%I64d"), value);
        showText(control, text);
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value) {
    const HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate)
        value = textOf(control);
    else
        showText(control, value);
}

void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value) {
    const HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = static_cast<int>(::SendMessage(control, BM_GETCHECK, 0, 0));
    } else {
        const bool valid = value >= BST_UNCHECKED && value <= BST_INDETERMINATE;
        const int shown = valid ? value : BST_UNCHECKED;
        ::SendMessage(control, BM_SETCHECK, static_cast<WPARAM>(shown), 0);
    }
}
