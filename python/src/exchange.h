// Arrays of Python and the vectors of a dataset.
#pragma once

#include "cxc.h"

namespace binding {

/// values[t][r][c], C order, into the grid of a dataset that has been sized T x rows x cols.
void fillGrid(CSnsCohData& dataset, const double* values);

/// The grid into values[t][r][c]; 0.0 where a vector has no such value.
void copyGrid(const CSnsCohData& dataset, double* values);

}  // namespace binding
