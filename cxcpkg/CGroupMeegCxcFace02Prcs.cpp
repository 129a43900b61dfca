#include "cxcpkg/CGroupMeegCxcFace02Prcs.h"

#include "cxcpkg/across_datasets.h"
#include "cxcpkg/dataset_owner.h"

#include <initializer_list>

namespace {

struct Shape {
    int datasets;
    __int64 rows;
    __int64 cols;
    __int64 slices;
};

// A new dataset of the shape, all 0.0; none without memory.
cxc::DatasetOwner newResult(const Shape& shape, LPCTSTR nameFormat) {
    cxc::DatasetOwner result = cxc::newDataset();
    if (result == nullptr || !cxc::nameDataset(*result, nameFormat, shape.datasets) ||
        result->checkInitSnsCohData(shape.rows, shape.cols, shape.slices, true) == 0)
        return nullptr;
    return result;
}

// The shape of results over the whole list. Returns whether there is anything to work on.
bool resultShape(CGroupMeegCxcFace& group, Shape& shape) {
    shape.datasets = group.getCxcSizeMax(shape.rows, shape.cols);
    shape.slices = group.getTimeSliceMax();
    return shape.rows >= 1 && shape.cols >= 1;
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
    Shape shape = {};
    const CSnsCohDatazq* const reference = getTrlCohDataAny();
    if (!resultShape(*this, shape) || reference == nullptr) return 0;
    cxc::DatasetOwner mean = newResult(shape, _T("Average%d Result"));
    if (mean == nullptr) return 0;
    cxc::meanOf(m_cohDatasets, *mean);
    cxc::copyChannels(*reference, *mean);

    const INT_PTR n = m_cohDatasets.GetSize();
    if (!cxc::makeRoom(m_cohDatasets, n, 1)) return 0;
    m_cohDatasets.SetAt(n, mean.release());
    return static_cast<int>(n + 1);
}

int CGroupMeegCxcFace02Prcs::summaryAll() {
    Shape shape = {};
    const CSnsCohDatazq* const reference = getTrlCohDataAny();
    if (!resultShape(*this, shape) || reference == nullptr) return 0;
    cxc::DatasetOwner minimum = newResult(shape, _T("Cxc%d Minimum"));
    if (minimum == nullptr) return 0;
    cxc::DatasetOwner mean = newResult(shape, _T("Cxc%d Mean"));
    if (mean == nullptr) return 0;
    cxc::DatasetOwner maximum = newResult(shape, _T("Cxc%d Max"));
    if (maximum == nullptr) return 0;
    cxc::summaryOf(m_cohDatasets, *minimum, *mean, *maximum);
    for (const cxc::DatasetOwner* result : {&minimum, &mean, &maximum})
        cxc::copyChannels(*reference, **result);

    const INT_PTR n = m_cohDatasets.GetSize();
    if (!cxc::makeRoom(m_cohDatasets, n, 3)) return 0;
    m_cohDatasets.SetAt(n, minimum.release());
    m_cohDatasets.SetAt(n + 1, mean.release());
    m_cohDatasets.SetAt(n + 2, maximum.release());
    return static_cast<int>(n + 3);
}
