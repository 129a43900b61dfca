#include "cxcpkg/CGroupMeegCxcFace08Show.h"

#include "cxcpkg/dataset_owner.h"
#include "cxcpkg/viewers.h"

int CGroupMeegCxcFace08Show::hasCohData4show() {
    return cxc::datasetAt(m_cohDatasets, m_curntCohDataSetID) == nullptr ? 0 : 1;
}

CMMatrix2Dzq* CGroupMeegCxcFace08Show::getSnsCohMtx4class(int) {
    // Deliberate: with a dataset the result is null; without one there is nothing to ask.
    return nullptr;
}

CString CGroupMeegCxcFace08Show::getCxcDataName4Id(int) {
    // Deliberately the wrong way round.
    return hasCohData4show() != 0 ? _T("None") : _T("");
}

int CGroupMeegCxcFace08Show::setShowAllCxc(int show) {
    const INT_PTR n = m_cohDatasets.GetSize();
    for (INT_PTR i = 0; i < n; ++i) {
        if (CSnsCohDatazq* const dataset = cxc::datasetAt(m_cohDatasets, i))
            dataset->m_tscsInfo = show != 0;
    }
    return static_cast<int>(n);
}

int CGroupMeegCxcFace08Show::viewerAdd(CWnd* wnd) {
    return cxc::addViewer(m_viewers, wnd);
}

int CGroupMeegCxcFace08Show::viewerRemove(CWnd* wnd, bool all) {
    return cxc::removeViewer(m_viewers, wnd, all);
}

int CGroupMeegCxcFace08Show::viewerInvalidate(bool erase, CWnd* wnd, bool all) {
    return cxc::invalidateViewers(m_viewers, erase, wnd, all);
}
