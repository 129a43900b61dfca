// CListCtrl: the list view (Windows).
//
// Differences from MFC:
//  1. Only reports with text and images; no sorting, searching, editing or groups.
//  2. GetItemText returns texts of any length.
#pragma once

#include "afx_headerctrl.h"
#include "afx_imagelist.h"

#ifdef _WIN32

class AFX_API CListCtrl : public CWnd {
    DECLARE_DYNAMIC(CListCtrl)

public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    /// Columns. Index of the new one, -1 on failure; a width or a sub-item of -1 is left unset.
    int InsertColumn(int nCol, const LVCOLUMN* pColumn);
    int InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat = LVCFMT_LEFT,
                     int nWidth = -1, int nSubItem = -1);
    BOOL DeleteColumn(int nCol);
    BOOL GetColumn(int nCol, LVCOLUMN* pColumn) const;
    int GetColumnWidth(int nCol) const;
    BOOL SetColumnWidth(int nCol, int cx);
    /// Null outside the report style; a temporary object.
    CHeaderCtrl* GetHeaderCtrl() const;

    /// Items. Index of the new one, -1 on failure; an index beyond the end appends.
    int InsertItem(const LVITEM* pItem);
    int InsertItem(int nItem, LPCTSTR lpszItem);
    int InsertItem(int nItem, LPCTSTR lpszItem, int nImage);
    int InsertItem(UINT nMask, int nItem, LPCTSTR lpszItem, UINT nState, UINT nStateMask,
                   int nImage, LPARAM lParam);
    BOOL DeleteItem(int nItem);
    /// TRUE also for an empty list.
    BOOL DeleteAllItems();
    int GetItemCount() const;
    /// Has the control make room for that many items at once.
    void SetItemCount(int nItems);

    BOOL GetItem(LVITEM* pItem) const;
    /// FALSE when there is no such item or column.
    BOOL SetItem(const LVITEM* pItem);
    BOOL SetItem(int nItem, int nSubItem, UINT nMask, LPCTSTR lpszItem, int nImage, UINT nState,
                 UINT nStateMask, LPARAM lParam);
    BOOL SetItemText(int nItem, int nSubItem, LPCTSTR lpszText);
    CString GetItemText(int nItem, int nSubItem) const;
    /// LVIS_ flags within the mask; 0 when there is no such item.
    UINT GetItemState(int nItem, UINT nMask) const;
    BOOL SetItemState(int nItem, UINT nState, UINT nMask);
    /// Next item behind nItem (-1: from the first on) with LVNI_ flags; -1: none.
    int GetNextItem(int nItem, int nFlags) const;
    BOOL EnsureVisible(int nItem, BOOL bPartialOK);
    /// Client coordinates; nCode is LVIR_BOUNDS, ...
    BOOL GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const;

    /// nImageListType: LVSIL_NORMAL or LVSIL_SMALL. Returns the earlier list, whose owner the
    /// caller is now. The control destroys its lists with itself, unless it shares them.
    CImageList* SetImageList(CImageList* pImageList, int nImageListType);
    CImageList* GetImageList(int nImageListType) const;
    /// Replaces all extended styles. Returns the earlier ones.
    DWORD SetExtendedStyle(DWORD dwNewStyle);
    DWORD GetExtendedStyle() const;
};

#endif
