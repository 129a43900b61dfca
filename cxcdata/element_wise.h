// Operations that take a vector element by element.
#pragma once

#include "cxcdata/prefetch.h"
#include "cxcdata/two_doubles.h"

namespace cxc {

/// result[t] = operation(result[t], values[t]) for t from 0 to n-1. The operation is given two
/// Numbers, which hold some elements each, and returns one. Both arrays may be the same.
///
/// A cache line at a time, and asks for what comes 8 lines on: for short vectors, that is the next
/// ones, whose arrays follow each other as a rule.
template <class Number = TwoDoubles, class Operation>
void elementWise(double* result, const double* values, long long n, Operation operation) {
    constexpr int line = doublesPerCacheLine;
    constexpr long long ahead = 8LL * line;
    const auto work = [&](long long t) {
        operation(Number::load(result + t), Number::load(values + t)).store(result + t);
    };
    long long t = 0;
    for (; t + line <= n; t += line) {
        prefetch<Number>(result + t, ahead);
        prefetch<Number>(values + t, ahead);
        for (int k = 0; k < line; k += Number::lanes)
            work(t + k);
    }
    for (; t + Number::lanes <= n; t += Number::lanes)
        work(t);
    if (t >= n) return;
    const int rest = static_cast<int>(n - t);
    operation(Number::loadFirst(result + t, rest), Number::loadFirst(values + t, rest))
        .storeFirst(result + t, rest);
}

}  // namespace cxc
