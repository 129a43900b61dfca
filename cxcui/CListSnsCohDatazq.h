// The list of one dataset's channel pairs: the current row sensor with every column sensor.
#pragma once

#include "cxcdata/cxc_api.h"
#include "framework.h"

class CSnsCohDatazq;
class CSnsCohFace;

/// The list of one dataset's channel pairs: the current row sensor with every column sensor.
///
/// A view: holds no data of its own, shows what it was last filled with, and is filled on request.
/// A click on a column header fills it anew; there is no sorting, and a double click does nothing.
class CXC_API CListSnsCohDatazq : public CListCtrl {
    DECLARE_DYNAMIC(CListSnsCohDatazq)

public:
    /// Without a window and without a dataset.
    CListSnsCohDatazq() = default;

    /// Replaces all columns by the six of the list. Always 1.
    int setUpColumns();

    /// Pictures, columns and extended styles. Always 1.
    int setUpImages();

    /// Shows the dataset anew: deliberately one row per row sensor of the dataset, although rows
    /// stand for column sensors, so that a row may have no pair and shows zeros. At most 1,000
    /// more rows than the grid has rows or columns, those of a grid without columns not counted,
    /// and none without a grid.
    /// Returns 1; 0 without a dataset, and then the old rows stay.
    int refill();

    /// Inserts row i, the pair of the current row and column i (-1: the current column). Returns 1
    /// when every text was set, else 0.
    int fillRow(int i);

    /// The dataset that is shown; null also when m_owner does not hold it any more.
    CSnsCohDatazq* dataset() const;

    /// Whether rows are being inserted: what the control tells its dialog then is no choice.
    bool isFilling() const { return m_filling; }

    /// The dataset whose pairs are listed, not owned; may be released behind the list: use
    /// dataset().
    CSnsCohDatazq* m_dataset = nullptr;
    CImageList* m_imageLarge = nullptr;    ///< 32 x 32, made by the setup, never deleted
    CImageList* m_imageSmall = nullptr;    ///< 16 x 16, made by the setup, never deleted
    const CSnsCohFace* m_owner = nullptr;  ///< package of the dataset, not owned; null: none asked

protected:
    /// Fills the list anew.
    afx_msg void OnColumnClick(NMHDR* notification, LRESULT* result);
    /// Deliberately nothing.
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    int rowCount() const;

    bool m_filling = false;
};
