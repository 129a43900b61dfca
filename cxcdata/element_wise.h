// Operations that take a vector element by element.
#pragma once

#include "cxcdata/prefetch.h"
#include "cxcdata/two_doubles.h"
#include "framework.h"

namespace cxc {

/// result[t] = operation(result[t], values[t]) for t from 0 to n-1. The operation is given
/// TwoDoubles, two elements each, and returns them. Both arrays may be the same.
///
/// A cache line at a time, and asks for what comes 8 lines on: for short vectors, that is the next
/// ones, whose arrays follow each other as a rule.
template <class Operation>
void elementWise(double* result, const double* values, __int64 n, Operation operation) {
    constexpr __int64 ahead = 8LL * doublesPerCacheLine;
    const auto pair = [&](__int64 t) {
        operation(TwoDoubles::load(result + t), TwoDoubles::load(values + t)).store(result + t);
    };
    __int64 t = 0;
    for (; t + doublesPerCacheLine <= n; t += doublesPerCacheLine) {
        prefetch(result + t, ahead);
        prefetch(values + t, ahead);
        for (__int64 k = 0; k < doublesPerCacheLine; k += TwoDoubles::lanes)
            pair(t + k);
    }
    for (; t + TwoDoubles::lanes <= n; t += TwoDoubles::lanes)
        pair(t);
    if (t >= n) return;
    double last[TwoDoubles::lanes];
    operation(TwoDoubles(result[t], result[t]), TwoDoubles(values[t], values[t])).store(last);
    result[t] = last[0];
}

}  // namespace cxc
