// Takes a few arrays into one, element by element, for any Number: the same result to the last bit,
// however many doubles the machine works on together.
#pragma once

#include <type_traits>

namespace cxc::pass {

/// A number of arrays that the compiler knows, so that what they are taken into stays in registers.
template <int Count>
using Arrays = std::integral_constant<int, Count>;

/// Calls work(t, all) for the elements from t on of arrays of n elements, a Number of them at a
/// time, and work(t, rest) for the last ones, fewer than a Number: `rest` of them.
template <class Number, class Work>
inline void eachNumber(long long n, Work work) {
    long long t = 0;
    for (; t + Number::lanes <= n; t += Number::lanes)
        work(t, 0);
    for (; t < n; t += Number::lanes)
        work(t, static_cast<int>(n - t));
}

/// Those of `source` that eachNumber means.
template <class Number>
inline Number loadSome(const double* source, int rest) {
    return rest == 0 ? Number::load(source) : Number::loadFirst(source, rest);
}
template <class Number>
inline void storeSome(Number value, double* target, int rest) {
    if (rest == 0)
        value.store(target);
    else
        value.storeFirst(target, rest);
}

template <class Number, int Count>
void addArraysOf(Arrays<Count>, double* sums, const double* const* arrays, long long n) {
    eachNumber<Number>(n, [=](long long t, int rest) {
        Number sum = loadSome<Number>(sums + t, rest);
        for (int k = 0; k < Count; ++k)
            sum = plus(sum, loadSome<Number>(arrays[k] + t, rest));
        storeSome(sum, sums + t, rest);
    });
}

template <class Number, int Count>
void summariseArraysOf(Arrays<Count>, double* least, double* sums, double* most,
                       const double* const* arrays, long long n) {
    eachNumber<Number>(n, [=](long long t, int rest) {
        Number low = loadSome<Number>(least + t, rest);
        Number sum = loadSome<Number>(sums + t, rest);
        Number high = loadSome<Number>(most + t, rest);
        for (int k = 0; k < Count; ++k) {
            const Number values = loadSome<Number>(arrays[k] + t, rest);
            low = lowered(low, values);
            sum = plus(sum, values);
            high = raised(high, values);
        }
        storeSome(low, least + t, rest);
        storeSome(sum, sums + t, rest);
        storeSome(high, most + t, rest);
    });
}

/// addArrays of wide_passes.h.
template <class Number>
void addArraysOf(double* sums, const double* const* arrays, int count, long long n) {
    for (; count >= 4; count -= 4, arrays += 4)
        addArraysOf<Number>(Arrays<4>(), sums, arrays, n);
    for (; count >= 2; count -= 2, arrays += 2)
        addArraysOf<Number>(Arrays<2>(), sums, arrays, n);
    if (count > 0) addArraysOf<Number>(Arrays<1>(), sums, arrays, n);
}

/// summariseArrays of wide_passes.h.
template <class Number>
void summariseArraysOf(double* least, double* sums, double* most, const double* const* arrays,
                       int count, long long n) {
    for (; count >= 4; count -= 4, arrays += 4)
        summariseArraysOf<Number>(Arrays<4>(), least, sums, most, arrays, n);
    for (; count >= 2; count -= 2, arrays += 2)
        summariseArraysOf<Number>(Arrays<2>(), least, sums, most, arrays, n);
    if (count > 0) summariseArraysOf<Number>(Arrays<1>(), least, sums, most, arrays, n);
}

}  // namespace cxc::pass
