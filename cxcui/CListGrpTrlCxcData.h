// The list of a group's datasets.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcui/still_there.h"
#include "framework.h"

class CDlgGroupTrlCxcDataManager;
class CGroupMeegCxcFacezq;
class CSnsCohDatazq;

/// The list of a group's datasets in its manager.
///
/// A view of the group: filled on request, row i is dataset i. A right click goes to the dialog.
class CXC_API CListGrpTrlCxcData : public CListCtrl {
    DECLARE_DYNAMIC(CListGrpTrlCxcData)

public:
    /// Without a window and without a group.
    CListGrpTrlCxcData() = default;

    /// Pictures, the seven columns and extended styles. Always 1.
    int setUp();

    /// Shows the group anew. Returns 1; 0 without a group, and at the first row that fails, a null
    /// entry for example: the rows behind it are missing then. Where the old rows cannot be deleted
    /// the user is told and the new ones are added; the host may end the list meanwhile, and 0 is
    /// the result.
    int refill();

    /// Inserts row i (-1: the current index) and stores its index in the dataset. Returns 1 when
    /// every text was set, else 0.
    int fillRow(int i);

    /// Whether the row of the dataset is selected, by the index that the last filling stored in it.
    bool isSelected(const CSnsCohDatazq& dataset) const;

    /// Whether rows are being inserted: what the control tells its dialog then is no choice.
    bool isFilling() const { return m_filling; }

    CGroupMeegCxcFacezq* m_group = nullptr;         ///< whose datasets are listed, not owned
    CImageList* m_imageLarge = nullptr;             ///< 32 x 32, made by the setup, never deleted
    CImageList* m_imageSmall = nullptr;             ///< 16 x 16, made by the setup, never deleted
    CDlgGroupTrlCxcDataManager* m_owner = nullptr;  ///< the dialog

protected:
    /// Hands the right click on to the dialog.
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    bool deleteRows();
    bool tellThatRowsStay();
    bool insertRows();

    bool m_filling = false;
    cxc::Life m_life;
};
