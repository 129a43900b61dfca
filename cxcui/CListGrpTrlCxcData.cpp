#include "cxcui/CListGrpTrlCxcData.h"

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/dataset_owner.h"
#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/filling.h"
#include "cxcui/list_setup.h"

IMPLEMENT_DYNAMIC(CListGrpTrlCxcData, CListCtrl)

BEGIN_MESSAGE_MAP(CListGrpTrlCxcData, CListCtrl)
ON_WM_CONTEXTMENU()
END_MESSAGE_MAP()

int CListGrpTrlCxcData::setUp() {
    cxc::setUpImages(*this, m_imageLarge, m_imageSmall);
    static constexpr LPCTSTR titles[] = {_T("Name"),  _T("Mode"),         _T("State"),
                                         _T("Frame"), _T("Latency (ms)"), _T("Frequency(Hz)"),
                                         _T("Notes")};
    cxc::setUpColumns(*this, titles);
    SetExtendedStyle(LVS_EX_ONECLICKACTIVATE | LVS_EX_TRACKSELECT);
    return 1;
}

int CListGrpTrlCxcData::refill() {
    if (m_group == nullptr) return 0;
    if (!deleteRows() && !tellThatRowsStay()) return 0;
    if (m_group == nullptr || !insertRows()) return 0;
    SetExtendedStyle(LVS_EX_TWOCLICKACTIVATE | LVS_EX_FULLROWSELECT | LVS_EX_TRACKSELECT);
    return 1;
}

bool CListGrpTrlCxcData::deleteRows() {
    const cxc::Filling filling(m_filling);
    return DeleteAllItems() != FALSE;
}

// Returns whether the list is still there: the host works on while the box stands.
bool CListGrpTrlCxcData::tellThatRowsStay() {
    const cxc::Life::Witness witness(m_life);
    CWnd& manager = m_owner == nullptr ? static_cast<CWnd&>(*this) : *m_owner;
    const cxc::ModalScope modal(manager, m_life);
    AfxMessageBox(_T("Clean all items error"));
    return !witness.ended();
}

bool CListGrpTrlCxcData::insertRows() {
    const cxc::Filling filling(m_filling);
    bool filled = true;
    const auto count = static_cast<int>(m_group->getTotalCohDataset());
    for (int i = 0; i < count && filled; ++i)
        filled = fillRow(i) != 0;
    return filled;
}

int CListGrpTrlCxcData::fillRow(int i) {
    if (m_group == nullptr) return 0;
    const int index = i == -1 ? m_group->m_curntCohDataSetID : i;
    CSnsCohDatazq* const data = cxc::datasetAt(m_group->m_cohDatasets, index);
    if (data == nullptr) return 0;
    const int row = InsertItem(index, data->m_cxcName, cxc::imageOf(data->m_tscsInfo));
    data->m_headerInt9 = row;
    CString frame;
    // Deliberately without the closing parenthesis.
    frame.Format(_T("%I64d: (%I64d->%I64d"), data->m_cohTimTotal, data->m_selectBegin,
                 data->m_selectEnd);
    CString latency;
    latency.Format(_T("%.3f->%.3f"), data->m_anaLatencyBegin, data->m_anaLatencyEnd);
    CString band;
    band.Format(_T("%.3f->%.3f"), data->m_headerReal0, data->m_headerReal1);
    const CString texts[] = {
        index == m_group->m_curntCohDataSetID ? _T("Active") : _T("Layer"),
        data->m_tscsInfo ? _T("Show") : _T("Hide"),
        frame,
        latency,
        band,
        data->getCxcCmptInfo(),
    };
    return cxc::setTexts(*this, row, texts) ? 1 : 0;
}

bool CListGrpTrlCxcData::isSelected(const CSnsCohDatazq& dataset) const {
    return GetItemState(dataset.m_headerInt9, LVIS_SELECTED) == LVIS_SELECTED;
}

void CListGrpTrlCxcData::OnContextMenu(CWnd*, CPoint) {
    Default();
}
