#include "cxcpkg/CSnsCohFace08Show.h"

#include "cxcpkg/class_slots.h"
#include "cxcpkg/viewers.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

namespace {

// A class that exists becomes the current one.
const cxc::CohClass* choose(CSnsCohFace& package, int cls) {
    const int id = cxc::currentOr(package, cls);
    const cxc::CohClass* const chosen = cxc::cohClass(id);
    if (chosen != nullptr) package.m_curntCohDataSetID = id;
    return chosen;
}

}  // namespace

int CSnsCohFace08Show::hasCohData4show() {
    if (getTotalCohDataset() == 0) return 0;
    if (m_curntCohDataSetID == -1) {
        AfxMessageBox(_T("This is no data!"));
        return 0;
    }
    const cxc::CohClass* const current = cxc::cohClass(m_curntCohDataSetID);
    return current != nullptr && this->*current->slot != nullptr ? 1 : 0;
}

CMMatrix2Dzq* CSnsCohFace08Show::getSnsCohMtx4class(int cls) {
    const cxc::CohClass* const chosen = choose(*this, cls);
    if (chosen == nullptr || this->*chosen->slot == nullptr) return nullptr;
    CMMatrix2Dzq* matrices = nullptr;
    __int64 count = 0;
    if ((this->*chosen->slot)->getData2MCohTimSnsSns(matrices, count) == 0) {
        delete[] matrices;
        return nullptr;
    }
    return matrices;
}

CString CSnsCohFace08Show::getCxcDataName4Class(int cls) {
    const cxc::CohClass* const chosen = choose(*this, cls);
    return chosen == nullptr ? _T("Unknown") : chosen->displayName;
}

int CSnsCohFace08Show::viewerAdd(CWnd* wnd) {
    return cxc::addViewer(m_viewers, wnd);
}

int CSnsCohFace08Show::viewerRemove(CWnd* wnd, bool all) {
    return cxc::removeViewer(m_viewers, wnd, all);
}

int CSnsCohFace08Show::viewerInvalidate(bool erase, CWnd* wnd, bool all) {
    return cxc::invalidateViewers(m_viewers, erase, wnd, all);
}
