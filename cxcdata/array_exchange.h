// Datasets from and into one contiguous array, the form in which numerical environments hold
// them: element (t, r, c) stands at values[(t * rows + r) * cols + c].
#pragma once

#include "cxcdata/CSnsCohData.h"

/// Operations beside the classes, for programs that nobody sits at.
namespace cxc {

/// Replaces the grid of the dataset by one of rows x cols pairs with copies of the values, all
/// slices selected and pair (0, 0) current; everything else stays. Returns 1, or 0 when a count
/// is below 1 or memory is refused; the dataset is then as after cleanSnsCohData.
/// The array stays the caller's.
CXC_API int datasetFromArray(CSnsCohData& dataset, const double* values, __int64 nTim, __int64 rows,
                             __int64 cols);

/// Copies the values; 0.0 where a vector holds fewer than m_cohTimTotal, or where the counters
/// exceed the grid. Requires room for m_cohTimTotal x m_snsRowTotal x m_snsColTotal values.
CXC_API void arrayFromDataset(const CSnsCohData& dataset, double* values);

}  // namespace cxc
