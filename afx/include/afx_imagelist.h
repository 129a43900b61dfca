// CImageList: pictures of one size for list views (Windows).
//
// Differences from MFC:
//  1. Icons only; no drawing, dragging or archiving.
#pragma once

#include "afx.h"
#include "afx_user.h"

#ifdef _WIN32

class AFX_API CImageList : public CObject {
    DECLARE_DYNAMIC(CImageList)

public:
    CImageList() = default;
    /// Destroys an attached list. A list view destroys the lists set on it too, unless it has the
    /// style LVS_SHAREIMAGELISTS.
    ~CImageList() override;

    HIMAGELIST GetSafeHandle() const { return m_hImageList; }
    /// The object of a handle: the permanent one, or a temporary one that lives until the program
    /// is idle. Null for a null handle.
    static CImageList* PASCAL FromHandle(HIMAGELIST hImageList);
    BOOL Attach(HIMAGELIST hImageList);
    HIMAGELIST Detach();

    /// cx, cy: pixels of an image; nFlags: ILC_ flags.
    BOOL Create(int cx, int cy, UINT nFlags, int nInitial, int nGrow);
    BOOL DeleteImageList();
    int GetImageCount() const;
    /// Appends a copy, scaled to the size of the list. Returns its index, -1 on failure.
    int Add(HICON hIcon);

    HIMAGELIST m_hImageList = nullptr;
};

#endif
