#include "cxcui/CListSnsCohDatazq.h"

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/grid.h"
#include "cxcdata/index_math.h"
#include "cxcpkg/CSnsCohFace.h"
#include "cxcui/filling.h"
#include "cxcui/list_setup.h"
#include "cxcui/rows_with_pairs.h"
#include "cxcui/still_there.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CListSnsCohDatazq, CListCtrl)

BEGIN_MESSAGE_MAP(CListSnsCohDatazq, CListCtrl)
ON_NOTIFY_REFLECT(LVN_COLUMNCLICK, &CListSnsCohDatazq::OnColumnClick)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

int CListSnsCohDatazq::setUpColumns() {
    static constexpr LPCTSTR titles[] = {_T("Name"),  _T("Chn A"), _T("Chn B"),
                                         _T("Times"), _T("Slice"), _T("Value")};
    cxc::setUpColumns(*this, titles);
    return 1;
}

int CListSnsCohDatazq::setUpImages() {
    cxc::setUpImages(*this, m_imageLarge, m_imageSmall);
    setUpColumns();
    SetExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_TRACKSELECT | LVS_EX_FULLROWSELECT |
                     LVS_EX_ONECLICKACTIVATE);
    return 1;
}

CSnsCohDatazq* CListSnsCohDatazq::dataset() const {
    return m_owner == nullptr || cxc::isThere(*m_owner, m_dataset) ? m_dataset : nullptr;
}

int CListSnsCohDatazq::refill() {
    if (dataset() == nullptr) return 0;
    const CWaitCursor wait;
    const cxc::Filling filling(m_filling);
    const cxc::PaintingStopped stopped(*this);
    DeleteAllItems();
    const int rows = rowCount();
    SetItemCount(rows);
    for (int i = 0; i < rows; ++i)
        fillRow(i);
    return 1;
}

int CListSnsCohDatazq::rowCount() const {
    CWavChnlChnlDatazq* const* const table = m_dataset->m_mCC;
    // Without a grid every row would fail.
    if (table == nullptr) return 0;
    // Read as a 32-bit number, deliberately.
    const int wanted = std::max(static_cast<int>(m_dataset->m_snsRowTotal), 0);
    const __int64 most =
        std::max(cxc::rowsWithPairs(table), cxc::grid::cols(table)) + cxc::mostRowsWithoutPairs;
    return static_cast<int>(std::min<__int64>(wanted, most));
}

int CListSnsCohDatazq::fillRow(int i) {
    CSnsCohDatazq* const data = dataset();
    if (data == nullptr || data->m_mCC == nullptr) return 0;
    const int row = InsertItem(i, cxc::formatted(_T("CxC%I64d"), static_cast<__int64>(i) + 1),
                               cxc::imageOf(data->m_tscsInfo));
    if (row < 0) return 0;
    const __int64 column = i == -1 ? data->m_columnCrt : i;
    const CWavChnlChnlDatazq* const pair = cxc::grid::cell(data->m_mCC, data->m_rowCrt, column);
    const __int64 slices = std::max<__int64>(data->m_cohTimTotal, 1);
    const __int64 slice = cxc::clampIndex(data->m_selectBegin, slices);
    // Channel numbers are shown as 32-bit numbers, deliberately.
    const CString texts[] = {
        cxc::formatted(_T("%d"), static_cast<int>(pair == nullptr ? 0 : pair->m_chnlA)),
        cxc::formatted(_T("%d"), static_cast<int>(pair == nullptr ? 0 : pair->m_chnlB)),
        cxc::formatted(_T("%I64d"), data->m_cohTimTotal),
        cxc::formatted(_T("%I64d"), data->m_selectBegin),
        cxc::formatted(_T("%f"),
                       pair == nullptr ? 0.0 : data->getValue(slice, data->m_rowCrt, column)),
    };
    return cxc::setTexts(*this, row, texts) ? 1 : 0;
}

void CListSnsCohDatazq::OnColumnClick(NMHDR*, LRESULT* result) {
    refill();
    *result = 0;
}

// Deliberately nothing, not even what the control does by itself.
void CListSnsCohDatazq::OnLButtonDblClk(UINT, CPoint) {}
