// Values of many datasets taken together, cell by cell: mean and extremes.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "framework.h"

namespace cxc {

/// Every dataset of the list is added to `mean`, in list order, where both have a cell; then the
/// sums are divided by the number of datasets, all of them, if there are two or more. `mean` must
/// be all 0.0 and have its full shape. Null entries are skipped; a pair without an array of values
/// ends its row of that dataset.
void meanOf(const CPtrArray& datasets, CSnsCohDatazq& mean);

/// As meanOf; and the least and greatest values, which start as the first dataset's where it has a
/// cell, elsewhere as they are. All three must be all 0.0 and have the same full shape.
void summaryOf(const CPtrArray& datasets, CSnsCohDatazq& minimum, CSnsCohDatazq& mean,
               CSnsCohDatazq& maximum);

/// Gives the pairs of `to` the channel numbers of the pairs of `from`, as far as that has pairs.
void copyChannels(const CSnsCohDatazq& from, CSnsCohDatazq& to);

}  // namespace cxc
