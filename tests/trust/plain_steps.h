// Small steps that the plain objects share.
#pragma once

#include "tests/trust/PlainDataset.h"

#include <algorithm>
#include <cmath>

namespace plain {

inline Int clampTo(Int value, Int count) {
    return std::min(std::max<Int>(value, 0), count - 1);
}

inline void widen(double value, bool& any, double& low, double& high) {
    if (!any || low > value) low = value;
    if (!any || value > high) high = value;
    any = true;
}

// sum += value, where of two NaNs the older one stays. Which one an addition gives is otherwise the
// compiler's choice.
inline void addTo(double& sum, double value) {
    if (!std::isnan(sum)) sum += value;
}

}  // namespace plain
