#include "cxcui/CListSnsCohFacezq.h"

#include "cxcpkg/CSnsCohFacezq.h"
#include "cxcui/filling.h"
#include "cxcui/list_setup.h"

IMPLEMENT_DYNAMIC(CListSnsCohFacezq, CListCtrl)

BEGIN_MESSAGE_MAP(CListSnsCohFacezq, CListCtrl)
END_MESSAGE_MAP()

int CListSnsCohFacezq::setUpImages() {
    cxc::setUpImages(*this, m_imageLarge, m_imageSmall);
    SetExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_TRACKSELECT | LVS_EX_FULLROWSELECT |
                     LVS_EX_ONECLICKACTIVATE);
    return 1;
}

void CListSnsCohFacezq::refill() {
    if (m_package == nullptr) return;
    const cxc::Filling filling(m_filling);
    DeleteAllItems();
    for (int cls = 0; cls < 3; ++cls)
        fillRow(cls);
}

int CListSnsCohFacezq::fillRow(int k) {
    if (m_package == nullptr || k < -1 || k > 2) return 0;
    CSnsCohDatazq* const data = m_package->getCoherenceData(k);
    if (data == nullptr) return 0;
    const int item = k == -1 ? m_package->getCurntCohDataSetID() : k;
    const int row = InsertItem(item, data->m_cxcName, cxc::imageOf(data->m_tscsInfo));
    if (row < 0) return 0;
    data->m_headerInt9 = row;
    double begin = 0.0;
    double end = 0.0;
    data->getAnaLatency(begin, end);
    // Counts are shown as 32-bit numbers, deliberately.
    const CString texts[] = {
        data->getCxcCmptInfo(),
        cxc::formatted(_T("%f"), begin),
        cxc::formatted(_T("%f"), end),
        cxc::formatted(_T("%d"), static_cast<int>(data->m_snsRowTotal)),
        cxc::formatted(_T("%d"), static_cast<int>(data->m_rowCrt)),
        cxc::formatted(_T("%d"), static_cast<int>(data->m_columnCrt)),
    };
    return cxc::setTexts(*this, row, texts) ? 1 : 0;
}
