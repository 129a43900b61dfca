// Values of many datasets taken together, cell by cell: mean and extremes.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "framework.h"

namespace cxc {

/// What results over many datasets are made from.
struct Together {
    const CPtrArray& datasets;       // null entries are skipped
    const CSnsCohDatazq& reference;  // its channel numbers are copied as far as it has pairs
    __int64 rows;                    // shape of the results, at least 1 each
    __int64 cols;
    __int64 slices;
};

/// Gives `mean`, a new dataset, its grid. Every dataset is added, in list order, where both have a
/// cell; the sums start from 0.0 and are divided by the number of datasets, all of them, if there
/// are two or more. A pair without an array of values ends its row of that dataset.
/// Returns whether there was memory; without it the result stays without a grid.
bool meanOf(const Together& from, CSnsCohDatazq& mean);

/// As meanOf for three new datasets. The extremes start as the values of the first dataset, where
/// it has no cell from 0.0. An equal value and a NaN never replace one.
bool summaryOf(const Together& from, CSnsCohDatazq& minimum, CSnsCohDatazq& mean,
               CSnsCohDatazq& maximum);

}  // namespace cxc
