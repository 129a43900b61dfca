#include "cxcpkg/dataset_owner.h"

#include "cxcdata/allocation.h"

#include <vector>

namespace cxc {
namespace {

// Never destroyed, so that the pointers stay where a leak checker looks.
std::vector<CSnsCohDatazq*>& orphans() {
    static auto& list = *new std::vector<CSnsCohDatazq*>;
    return list;
}

}  // namespace

void releaseDataset(CSnsCohDatazq* dataset) {
    if (dataset == nullptr) return;
    dataset->cleanSnsCohData();
    delete dataset;
}

DatasetOwner newDataset() {
    return DatasetOwner(newObject<CSnsCohDatazq>());
}

DatasetOwner newDataset(LPCTSTR name) {
    return DatasetOwner(allocateOrNull(sizeof(CSnsCohDatazq), [name] {
        auto dataset = std::make_unique<CSnsCohDatazq>();
        dataset->m_cxcName = name;
        return dataset.release();
    }));
}

bool nameDataset(CSnsCohDatazq& dataset, LPCTSTR format, int number) {
    constexpr std::size_t longestName = 64;
    return allocateOrNull(longestName, [&] {
               dataset.m_cxcName.Format(format, number);
               return &dataset;
           }) != nullptr;
}

bool makeRoom(CPtrArray& list, INT_PTR index, INT_PTR count) {
    return allocateOrNull(static_cast<std::size_t>(count) * sizeof(void*), [&] {
               list.InsertAt(index, nullptr, count);
               return &list;
           }) != nullptr;
}

CSnsCohDatazq* datasetAt(const CPtrArray& list, INT_PTR index) {
    if (index < 0 || index >= list.GetSize()) return nullptr;
    return static_cast<CSnsCohDatazq*>(list.GetAt(index));
}

int countDatasets(const CPtrArray& list) {
    int n = 0;
    for (INT_PTR i = 0; i < list.GetSize(); ++i)
        n += datasetAt(list, i) == nullptr ? 0 : 1;
    return n;
}

void keepReachable(CSnsCohDatazq* dataset) {
    try {
        orphans().push_back(dataset);
    } catch (const std::bad_alloc&) {
        // Then a leak checker may report it; nothing else depends on the list.
    }
}

int accumulateSlices(CSnsCohDatazq* dataset) {
    if (dataset == nullptr || dataset->getSnsCohTimTotal() < 2) return 0;
    return dataset->accumulateTime1();
}

int rangeOf(CSnsCohDatazq* dataset, double& lo, double& hi, bool useTime, int noDiag) {
    lo = 0.0;
    hi = 0.0;
    return dataset == nullptr ? 0 : dataset->getSnsCohRange(lo, hi, useTime, -1, -1, noDiag);
}

}  // namespace cxc
