#include "siblings/commonui/CDlgInputString.h"

#include "siblings/commonui/resource.h"

IMPLEMENT_DYNAMIC(CDlgInputString, CDialogEx)

CDlgInputString::CDlgInputString(CWnd* parent) : CDialogEx(IDD_INPUT_STRING, parent) {}

void CDlgInputString::DoDataExchange(CDataExchange* exchange) {
    CDialogEx::DoDataExchange(exchange);
    DDX_Text(exchange, IDC_INPUT_STRING_TEXT, m_text);
}

// The whole text is selected: typing replaces it.
BOOL CDlgInputString::OnInitDialog() {
    CDialogEx::OnInitDialog();
    CWnd* const edit = GetDlgItem(IDC_INPUT_STRING_TEXT);
    if (edit == nullptr) return TRUE;
    edit->SetFocus();
    edit->SendMessage(EM_SETSEL, 0, -1);
    return FALSE;
}
