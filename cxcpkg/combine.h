// The arithmetic of Active against Control.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "framework.h"

namespace cxc {

/// result[t] = active[t] (operation) control for t below n. Operations: 0 minus, 1 plus, 2 times,
/// 3 divided by, which gives 0.0 where control is 0.0 of either sign; any other leaves the result
/// as it is. The two arrays may be the same one.
void combineValues(int operation, const double* active, double control, double* result, __int64 n);

/// Combines every pair of `active` with the first value of the pair of `control` into `result`.
/// Every value of the result is written: 0.0 where active or control has none.
void combineDatasets(int operation, const CSnsCohData& active, const CSnsCohData& control,
                     CSnsCohData& result);

}  // namespace cxc
