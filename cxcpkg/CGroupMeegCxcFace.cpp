#include "cxcpkg/CGroupMeegCxcFace.h"

#include "cxcpkg/dataset_owner.h"

#include <algorithm>
#include <functional>
#include <type_traits>

static_assert(!std::is_polymorphic_v<CGroupMeegCxcFace>,
              "the group chain has no virtual operations");

namespace {

using cxc::datasetAt;

int currentOr(const CGroupMeegCxcFace& group, int index) {
    return index == -1 ? group.m_curntCohDataSetID : index;
}

// Releases what the entries point to, also where a host has inserted a dataset twice. Sorts the
// list on the way: equal entries come together without further memory.
void releaseEntries(CPtrArray& list) {
    const INT_PTR n = list.GetSize();
    if (n == 0) return;
    void** const entries = &list.ElementAt(0);
    std::sort(entries, entries + n, std::less<void*>());
    void** const end = std::unique(entries, entries + n);
    for (void** entry = entries; entry != end; ++entry)
        cxc::releaseDataset(static_cast<CSnsCohDatazq*>(*entry));
}

// The extreme of a count over the datasets, `better` first; 0 without any.
template <class Better>
__int64 extreme(const CPtrArray& list, __int64 CSnsCohData::*count, Better better) {
    __int64 best = 0;
    bool any = false;
    for (INT_PTR i = 0; i < list.GetSize(); ++i) {
        const CSnsCohDatazq* const dataset = datasetAt(list, i);
        if (dataset == nullptr) continue;
        if (!any || better(dataset->*count, best)) best = dataset->*count;
        any = true;
    }
    return best;
}

}  // namespace

CGroupMeegCxcFace::CGroupMeegCxcFace()
    : m_pkgID(0),
      m_pkgName(_T("SnsCohFace")),
      m_pkgInfo(_T("Unknown")),
      m_pkgShow(false),
      m_actCtlOperation(0),
      m_curntCohDataSetID(-1) {}

__int64 CGroupMeegCxcFace::getTotalCohDataset() {
    return m_cohDatasets.GetSize();
}

int CGroupMeegCxcFace::getCohDatasetListID(int id) {
    const int n = static_cast<int>(m_cohDatasets.GetSize());
    return n == 0 ? -1 : std::clamp(id, 0, n - 1);
}

int CGroupMeegCxcFace::setCurrentCohDataset(int id) {
    const int clamped = getCohDatasetListID(id);
    m_curntCohDataSetID = std::max(clamped, 0);
    return clamped == -1 ? 0 : 1;
}

int CGroupMeegCxcFace::setCurntCohDataSetID(int id) {
    // Unlike a package, which takes -1 here.
    if (m_cohDatasets.IsEmpty()) return 0;
    m_curntCohDataSetID = getCohDatasetListID(id);
    return m_curntCohDataSetID;
}

int CGroupMeegCxcFace::getCurntCohDataSetID() {
    return m_curntCohDataSetID;
}

int CGroupMeegCxcFace::setCohData(CSnsCohDatazq* data, int index) {
    const INT_PTR wanted = std::max(currentOr(*this, index), 0);
    const INT_PTR at = std::min(wanted, m_cohDatasets.GetSize());
    if (!cxc::makeRoom(m_cohDatasets, at, 1)) return 0;
    m_cohDatasets.SetAt(at, data);
    return 1;
}

CSnsCohDatazq* CGroupMeegCxcFace::getCoherenceData(int index) {
    return datasetAt(m_cohDatasets, currentOr(*this, index));
}

CSnsCohDatazq* CGroupMeegCxcFace::getTrlCohDataAny() {
    return datasetAt(m_cohDatasets, getCohDatasetListID(m_curntCohDataSetID));
}

int CGroupMeegCxcFace::hasCohTimeData4Show() {
    return m_cohDatasets.IsEmpty() ? 0 : 1;
}

int CGroupMeegCxcFace::deleteCohDataset(int index) {
    if (m_cohDatasets.IsEmpty()) return 0;
    const int clamped = getCohDatasetListID(currentOr(*this, index));
    CSnsCohDatazq* const dataset = datasetAt(m_cohDatasets, clamped);
    m_cohDatasets.RemoveAt(clamped);
    for (INT_PTR i = 0; i < m_cohDatasets.GetSize(); ++i) {
        if (m_cohDatasets.GetAt(i) == dataset) m_cohDatasets.SetAt(i, nullptr);
    }
    cxc::releaseDataset(dataset);
    return 1;
}

int CGroupMeegCxcFace::checkInitSnsCohPkg(int nSns, __int64 nTime, bool flag) {
    if (nSns < 2 || nTime < 1) return 0;
    cxc::DatasetOwner dataset = cxc::newDataset();
    const INT_PTR n = m_cohDatasets.GetSize();
    if (dataset == nullptr || !cxc::nameDataset(*dataset, _T("CxcData%d"), static_cast<int>(n)) ||
        dataset->checkInitSnsCohData(nSns, nSns, nTime, flag) == 0 ||
        !cxc::makeRoom(m_cohDatasets, n, 1))
        return 0;
    m_cohDatasets.SetAt(n, dataset.release());
    return 1;
}

int CGroupMeegCxcFace::cleanSnsCohPkg() {
    releaseEntries(m_cohDatasets);
    m_cohDatasets.RemoveAll();
    m_curntCohDataSetID = -1;
    return 1;
}

CString CGroupMeegCxcFace::getCohDataPkgName() {
    return m_pkgName;
}

bool CGroupMeegCxcFace::getCohDataPkgShow() {
    return m_pkgShow;
}

__int64 CGroupMeegCxcFace::getTimeSliceMax() {
    return extreme(m_cohDatasets, &CSnsCohData::m_cohTimTotal, std::greater<__int64>());
}

__int64 CGroupMeegCxcFace::getTimeSliceMin() {
    return extreme(m_cohDatasets, &CSnsCohData::m_cohTimTotal, std::less<__int64>());
}

int CGroupMeegCxcFace::getCxcSizeMin(__int64& rows, __int64& cols) {
    rows = extreme(m_cohDatasets, &CSnsCohData::m_snsRowTotal, std::less<__int64>());
    cols = extreme(m_cohDatasets, &CSnsCohData::m_snsColTotal, std::less<__int64>());
    return cxc::countDatasets(m_cohDatasets);
}

int CGroupMeegCxcFace::getCxcSizeMax(__int64& rows, __int64& cols) {
    rows = extreme(m_cohDatasets, &CSnsCohData::m_snsRowTotal, std::greater<__int64>());
    cols = extreme(m_cohDatasets, &CSnsCohData::m_snsColTotal, std::greater<__int64>());
    return cxc::countDatasets(m_cohDatasets);
}
