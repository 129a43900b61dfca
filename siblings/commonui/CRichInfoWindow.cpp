#include "siblings/commonui/CRichInfoWindow.h"

#include "siblings/commonui/resource.h"

IMPLEMENT_DYNAMIC(CRichInfoWindow, CDialogEx)

BEGIN_MESSAGE_MAP(CRichInfoWindow, CDialogEx)
ON_WM_SIZE()
ON_WM_CONTEXTMENU()
ON_COMMAND(ID_RICH_INFO_COPY, &CRichInfoWindow::OnCopy)
ON_COMMAND(ID_RICH_INFO_SELECT_ALL, &CRichInfoWindow::OnSelectAll)
ON_COMMAND(ID_RICH_INFO_CLOSE, &CRichInfoWindow::OnCancel)
END_MESSAGE_MAP()

BOOL CRichInfoWindow::OnInitDialog() {
    CDialogEx::OnInitDialog();
    CRect area;
    GetClientRect(area);
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | ES_MULTILINE |
                            ES_AUTOVSCROLL | ES_READONLY | ES_NOHIDESEL;
    if (!m_text.Create(style, area, this, IDC_RICH_INFO_TEXT)) {
        EndDialog(IDCANCEL);
        return TRUE;
    }
    m_text.SetFont(GetFont());
    constexpr int margin = 6;  // pixels
    m_text.SendMessage(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
    constexpr long longestText = 1 << 24;  // characters
    m_text.LimitText(longestText);
    m_text.SetFocus();
    return FALSE;
}

void CRichInfoWindow::show(const CString& text, const CString& title) {
    SetWindowText(title);
    m_text.SetWindowText(text);
    ShowWindow(SW_SHOW);
    SetForegroundWindow();
    m_text.SetFocus();
}

void CRichInfoWindow::OnSize(UINT type, int cx, int cy) {
    CDialogEx::OnSize(type, cx, cy);
    if (m_text.m_hWnd != nullptr) m_text.MoveWindow(0, 0, cx, cy);
}

void CRichInfoWindow::OnContextMenu(CWnd*, CPoint point) {
    CMenu* const menu = GetMenu();
    constexpr int edit = 1;
    CMenu* const popup = menu == nullptr ? nullptr : menu->GetSubMenu(edit);
    if (popup == nullptr) return;
    if (point.x == -1 && point.y == -1) {  // by key
        point = CPoint(0, 0);
        ClientToScreen(&point);
    }
    popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, this);
}

void CRichInfoWindow::OnCopy() {
    m_text.Copy();
}

void CRichInfoWindow::OnSelectAll() {
    m_text.SetSel(0, -1);
}
