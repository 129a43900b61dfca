// Datasets as packages and groups own them: made, named and released in one place.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "framework.h"

#include <memory>

namespace cxc {

/// Releases the grid, then the dataset. Null is allowed.
void releaseDataset(CSnsCohDatazq* dataset);

struct DatasetReleaser {
    void operator()(CSnsCohDatazq* dataset) const { releaseDataset(dataset); }
};

/// A dataset that nobody has taken yet.
using DatasetOwner = std::unique_ptr<CSnsCohDatazq, DatasetReleaser>;

/// A new dataset without a grid, with the default name or the given one. None on failure.
DatasetOwner newDataset();
DatasetOwner newDataset(LPCTSTR name);

/// Names a dataset by a format with one %d. Returns whether there was memory for the name.
bool nameDataset(CSnsCohDatazq& dataset, LPCTSTR format, int number);

/// Inserts `count` null entries at `index`. Returns whether there was memory for them; without
/// it the list is as before.
bool makeRoom(CPtrArray& list, INT_PTR index, INT_PTR count);

/// Entry of a list of datasets; null outside the list.
CSnsCohDatazq* datasetAt(const CPtrArray& list, INT_PTR index);

/// Entries of a list of datasets that are not null.
int countDatasets(const CPtrArray& list);

/// Remembers a dataset that lost its owner, for the life of the process, so that a leak checker
/// sees a pointer to it. It is never touched again: a host may hold it, and may have deleted it.
void keepReachable(CSnsCohDatazq* dataset);

/// The dataset's accumulateTime1 where there is something to accumulate: 0 for null and for
/// fewer than two slices.
int accumulateSlices(CSnsCohDatazq* dataset);

/// Value range of a dataset over its whole time selection; lo and hi are 0.0, and the result 0,
/// for null.
int rangeOf(CSnsCohDatazq* dataset, double& lo, double& hi, bool useTime, int noDiag);

}  // namespace cxc
