#include "afx_listctrl.h"

#include "afx/win32/handle_map.h"
#include "afx/win32/window_creation.h"

IMPLEMENT_DYNAMIC(CListCtrl, CWnd)

namespace {

template <class T>
LPARAM pointer(const T* object) {
    return reinterpret_cast<LPARAM>(object);
}

LVITEM item(UINT mask, int index, int subItem, LPCTSTR text) {
    LVITEM made = {};
    made.mask = mask;
    made.iItem = index;
    made.iSubItem = subItem;
    made.pszText = const_cast<LPTSTR>(text);
    return made;
}

}  // namespace

BOOL CListCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    afx::initCommonControls();
    return CWnd::Create(WC_LISTVIEW, nullptr, dwStyle, rect, pParentWnd, nID);
}

int CListCtrl::InsertColumn(int nCol, const LVCOLUMN* pColumn) {
    const WPARAM column = static_cast<WPARAM>(nCol);
    return static_cast<int>(SendMessage(LVM_INSERTCOLUMN, column, pointer(pColumn)));
}

int CListCtrl::InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat, int nWidth,
                            int nSubItem) {
    LVCOLUMN column = {};
    column.mask = LVCF_TEXT | LVCF_FMT;
    column.pszText = const_cast<LPTSTR>(lpszColumnHeading);
    column.fmt = nFormat;
    if (nWidth != -1) {
        column.mask |= LVCF_WIDTH;
        column.cx = nWidth;
    }
    if (nSubItem != -1) {
        column.mask |= LVCF_SUBITEM;
        column.iSubItem = nSubItem;
    }
    return InsertColumn(nCol, &column);
}

BOOL CListCtrl::DeleteColumn(int nCol) {
    return SendMessage(LVM_DELETECOLUMN, static_cast<WPARAM>(nCol)) != 0;
}

BOOL CListCtrl::GetColumn(int nCol, LVCOLUMN* pColumn) const {
    return SendMessage(LVM_GETCOLUMN, static_cast<WPARAM>(nCol), pointer(pColumn)) != 0;
}

int CListCtrl::GetColumnWidth(int nCol) const {
    return static_cast<int>(SendMessage(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(nCol)));
}

BOOL CListCtrl::SetColumnWidth(int nCol, int cx) {
    return SendMessage(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(nCol), MAKELPARAM(cx, 0)) != 0;
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const {
    const auto header = reinterpret_cast<HWND>(SendMessage(LVM_GETHEADER));
    if (header == nullptr) return nullptr;
    if (auto* const own = dynamic_cast<CHeaderCtrl*>(FromHandlePermanent(header))) return own;
    return afx::HandleMap<CHeaderCtrl, HWND>::instance().object(
        header, [header](CHeaderCtrl& object) { object.m_hWnd = header; });
}

int CListCtrl::InsertItem(const LVITEM* pItem) {
    return static_cast<int>(SendMessage(LVM_INSERTITEM, 0, pointer(pItem)));
}

int CListCtrl::InsertItem(int nItem, LPCTSTR lpszItem) {
    const LVITEM made = item(LVIF_TEXT, nItem, 0, lpszItem);
    return InsertItem(&made);
}

int CListCtrl::InsertItem(int nItem, LPCTSTR lpszItem, int nImage) {
    LVITEM made = item(LVIF_TEXT | LVIF_IMAGE, nItem, 0, lpszItem);
    made.iImage = nImage;
    return InsertItem(&made);
}

int CListCtrl::InsertItem(UINT nMask, int nItem, LPCTSTR lpszItem, UINT nState, UINT nStateMask,
                          int nImage, LPARAM lParam) {
    LVITEM made = item(nMask, nItem, 0, lpszItem);
    made.state = nState;
    made.stateMask = nStateMask;
    made.iImage = nImage;
    made.lParam = lParam;
    return InsertItem(&made);
}

BOOL CListCtrl::DeleteItem(int nItem) {
    return SendMessage(LVM_DELETEITEM, static_cast<WPARAM>(nItem)) != 0;
}

BOOL CListCtrl::DeleteAllItems() {
    return SendMessage(LVM_DELETEALLITEMS) != 0;
}

int CListCtrl::GetItemCount() const {
    return static_cast<int>(SendMessage(LVM_GETITEMCOUNT));
}

void CListCtrl::SetItemCount(int nItems) {
    SendMessage(LVM_SETITEMCOUNT, static_cast<WPARAM>(nItems));
}

BOOL CListCtrl::GetItem(LVITEM* pItem) const {
    return SendMessage(LVM_GETITEM, 0, pointer(pItem)) != 0;
}

BOOL CListCtrl::SetItem(const LVITEM* pItem) {
    return SendMessage(LVM_SETITEM, 0, pointer(pItem)) != 0;
}

BOOL CListCtrl::SetItem(int nItem, int nSubItem, UINT nMask, LPCTSTR lpszItem, int nImage,
                        UINT nState, UINT nStateMask, LPARAM lParam) {
    LVITEM made = item(nMask, nItem, nSubItem, lpszItem);
    made.state = nState;
    made.stateMask = nStateMask;
    made.iImage = nImage;
    made.lParam = lParam;
    return SetItem(&made);
}

BOOL CListCtrl::SetItemText(int nItem, int nSubItem, LPCTSTR lpszText) {
    const LVITEM made = item(0, nItem, nSubItem, lpszText);
    return SendMessage(LVM_SETITEMTEXT, static_cast<WPARAM>(nItem), pointer(&made)) != 0;
}

CString CListCtrl::GetItemText(int nItem, int nSubItem) const {
    CString text;
    // A text that fills the buffer may have been cut.
    for (int room = 256;; room *= 2) {
        LVITEM wanted = item(0, nItem, nSubItem, text.GetBuffer(room));
        wanted.cchTextMax = room + 1;
        const auto length = static_cast<int>(
            SendMessage(LVM_GETITEMTEXT, static_cast<WPARAM>(nItem), pointer(&wanted)));
        text.ReleaseBuffer(length);
        if (length < room) return text;
    }
}

UINT CListCtrl::GetItemState(int nItem, UINT nMask) const {
    return static_cast<UINT>(SendMessage(LVM_GETITEMSTATE, static_cast<WPARAM>(nItem), nMask));
}

BOOL CListCtrl::SetItemState(int nItem, UINT nState, UINT nMask) {
    LVITEM made = item(LVIF_STATE, nItem, 0, nullptr);
    made.state = nState;
    made.stateMask = nMask;
    return SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(nItem), pointer(&made)) != 0;
}

int CListCtrl::GetNextItem(int nItem, int nFlags) const {
    const WPARAM start = static_cast<WPARAM>(nItem);
    return static_cast<int>(SendMessage(LVM_GETNEXTITEM, start, MAKELPARAM(nFlags, 0)));
}

BOOL CListCtrl::EnsureVisible(int nItem, BOOL bPartialOK) {
    const WPARAM index = static_cast<WPARAM>(nItem);
    return SendMessage(LVM_ENSUREVISIBLE, index, MAKELPARAM(bPartialOK, 0)) != 0;
}

BOOL CListCtrl::GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const {
    lpRect->left = static_cast<LONG>(nCode);
    return SendMessage(LVM_GETITEMRECT, static_cast<WPARAM>(nItem), pointer(lpRect)) != 0;
}

CImageList* CListCtrl::SetImageList(CImageList* pImageList, int nImageListType) {
    const HIMAGELIST handle = pImageList != nullptr ? pImageList->m_hImageList : nullptr;
    const LRESULT before = SendMessage(LVM_SETIMAGELIST, static_cast<WPARAM>(nImageListType),
                                       reinterpret_cast<LPARAM>(handle));
    return CImageList::FromHandle(reinterpret_cast<HIMAGELIST>(before));
}

CImageList* CListCtrl::GetImageList(int nImageListType) const {
    const LRESULT list = SendMessage(LVM_GETIMAGELIST, static_cast<WPARAM>(nImageListType));
    return CImageList::FromHandle(reinterpret_cast<HIMAGELIST>(list));
}

DWORD CListCtrl::SetExtendedStyle(DWORD dwNewStyle) {
    return static_cast<DWORD>(
        SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(dwNewStyle)));
}

DWORD CListCtrl::GetExtendedStyle() const {
    return static_cast<DWORD>(SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE));
}
