#include "cxcpkg/CGroupMeegCxcFace02Prcs.h"

#include "cxcpkg/across_datasets.h"
#include "cxcpkg/dataset_owner.h"

#include <utility>

namespace {

// A new dataset without a grid, named after the number of datasets. None without memory.
cxc::DatasetOwner newResult(LPCTSTR nameFormat, int datasets) {
    cxc::DatasetOwner result = cxc::newDataset();
    const bool named = result != nullptr && cxc::nameDataset(*result, nameFormat, datasets);
    return named ? std::move(result) : nullptr;
}

}  // namespace

__int64 CGroupMeegCxcFace02Prcs::getCohTimSlcMax() {
    const CSnsCohDatazq* const dataset = getTrlCohDataAny();
    return dataset == nullptr ? 1 : dataset->m_headerLong2;
}

int CGroupMeegCxcFace02Prcs::getSnsCohRange(int index, double& lo, double& hi, bool flag,
                                            int mode) {
    return cxc::rangeOf(getCoherenceData(index), lo, hi, flag, mode);
}

int CGroupMeegCxcFace02Prcs::checkSelect4Class(__int64 first, __int64 last, int index) {
    CSnsCohDatazq* const dataset = getCoherenceData(index);
    return dataset == nullptr ? 0 : dataset->checkSelect(first, last);
}

int CGroupMeegCxcFace02Prcs::accumulateTrlCoh(CSnsCohDatazq* data) {
    return cxc::accumulateSlices(data);
}

double CGroupMeegCxcFace02Prcs::getLatency4PtSecond(__int64) {
    return 0.0;
}

int CGroupMeegCxcFace02Prcs::averageAll() {
    __int64 rows = 0;
    __int64 cols = 0;
    const int datasets = getCxcSizeMax(rows, cols);
    const CSnsCohDatazq* const reference = getTrlCohDataAny();
    if (rows < 1 || cols < 1 || reference == nullptr) return 0;
    cxc::DatasetOwner mean = newResult(_T("Average%d Result"), datasets);
    if (mean == nullptr ||
        !cxc::meanOf({m_cohDatasets, *reference, rows, cols, getTimeSliceMax()}, *mean))
        return 0;

    const INT_PTR n = m_cohDatasets.GetSize();
    if (!cxc::makeRoom(m_cohDatasets, n, 1)) return 0;
    m_cohDatasets.SetAt(n, mean.release());
    return static_cast<int>(n + 1);
}

int CGroupMeegCxcFace02Prcs::summaryAll() {
    __int64 rows = 0;
    __int64 cols = 0;
    const int datasets = getCxcSizeMax(rows, cols);
    const CSnsCohDatazq* const reference = getTrlCohDataAny();
    if (rows < 1 || cols < 1 || reference == nullptr) return 0;
    cxc::DatasetOwner minimum = newResult(_T("Cxc%d Minimum"), datasets);
    cxc::DatasetOwner mean = newResult(_T("Cxc%d Mean"), datasets);
    cxc::DatasetOwner maximum = newResult(_T("Cxc%d Max"), datasets);
    if (minimum == nullptr || mean == nullptr || maximum == nullptr ||
        !cxc::summaryOf({m_cohDatasets, *reference, rows, cols, getTimeSliceMax()}, *minimum, *mean,
                        *maximum))
        return 0;

    const INT_PTR n = m_cohDatasets.GetSize();
    if (!cxc::makeRoom(m_cohDatasets, n, 3)) return 0;
    m_cohDatasets.SetAt(n, minimum.release());
    m_cohDatasets.SetAt(n + 1, mean.release());
    m_cohDatasets.SetAt(n + 2, maximum.release());
    return static_cast<int>(n + 3);
}
