#include "cxcdata/wide_passes.h"

#include "cxcdata/element_wise.h"
#include "cxcdata/lane_kernel.h"
#include "cxcdata/one_double.h"
#include "cxcdata/several_arrays.h"
#include "cxcdata/two_doubles.h"

#include <algorithm>

#if defined(CXC_WIDE_PASSES) && defined(_MSC_VER)
#include <immintrin.h>
#include <intrin.h>
#endif

namespace cxc::pass {
namespace {

struct Machine {
    bool four = false;
    bool eight = false;
};

#if !defined(CXC_WIDE_PASSES)

Machine inspect() {
    return {};
}

#elif defined(_MSC_VER)

// The processor must have the instructions, and the system must keep the registers.
Machine inspect() {
    int info[4] = {};
    __cpuid(info, 0);
    const int lastLeaf = info[0];
    __cpuid(info, 1);
    const int savesAndAvx = 1 << 27 | 1 << 28;
    if (lastLeaf < 7 || (info[2] & savesAndAvx) != savesAndAvx) return {};
    const unsigned long long kept = _xgetbv(0);
    __cpuidex(info, 7, 0);
    const bool avx2 = (info[1] & 1 << 5) != 0;
    const bool avx512 = (info[1] & 1 << 16) != 0;
    return {avx2 && (kept & 0x06) == 0x06, avx512 && (kept & 0xe6) == 0xe6};
}

#else

Machine inspect() {
    return {__builtin_cpu_supports("avx2") != 0, __builtin_cpu_supports("avx512f") != 0};
}

#endif

const Machine& machine() {
    static const Machine found = inspect();
    return found;
}

void addWith(Width width, Kind kind, First first, const double* const* vectors, long long length,
             double* fields) {
#if defined(CXC_WIDE_PASSES)
    if (width == Width::eight) return detail::addWithEight(kind, first, vectors, length, fields);
    if (width == Width::four) return detail::addWithFour(kind, first, vectors, length, fields);
#endif
    static_cast<void>(width);
    addLanesOf<TwoDoubles>(kind, first, vectors, length, fields);
}

bool anyNaN(const double* lanes) {
    bool any = false;
    for (int k = 0; k < laneCount; ++k)
        any |= std::isnan(lanes[k]);
    return any;
}

// NaNs are rare: where there is one, the sums are made again with care for which one stays.
template <template <class> class Accumulator>
void addAnyValues(Width width, First first, const double* const* vectors, long long length,
                  double* fields) {
    using Plain = Accumulator<double>;
    constexpr std::size_t count = Plain::fields * laneCount;
    double before[count];
    if (first == First::adds) std::copy(fields, fields + count, before);
    addWith(width, Plain::kind, first, vectors, length, fields);
    if (!anyNaN(fields + Plain::sum * laneCount)) return;
    if (first == First::adds) std::copy(before, before + count, fields);
    addLanesOf<Accumulator, OneDouble>(first, vectors, length, fields);
}

}  // namespace

bool has(Width width) {
    if (width == Width::four) return machine().four;
    if (width == Width::eight) return machine().eight;
    return true;
}

Width widest() {
    if (machine().eight) return Width::eight;
    return machine().four ? Width::four : Width::two;
}

void addLanes(Width width, Kind kind, First first, const double* const* vectors, long long length,
              double* fields) {
    switch (kind) {
        case Kind::range:
        case Kind::magnitudeRange:
            return addWith(width, kind, first, vectors, length, fields);
        case Kind::rangeSum:
            return addAnyValues<RangeSum>(width, first, vectors, length, fields);
        case Kind::squareSum:
            return addAnyValues<SquareSum>(width, first, vectors, length, fields);
        case Kind::statistic:
            return addAnyValues<Statistic>(width, first, vectors, length, fields);
    }
}

void takeMeans(Width width, Kind kind, const double* sizes, double* fields) {
#if defined(CXC_WIDE_PASSES)
    if (width == Width::eight) return detail::meansWithEight(kind, sizes, fields);
    if (width == Width::four) return detail::meansWithFour(kind, sizes, fields);
#endif
    static_cast<void>(width);
    takeMeansOf<TwoDoubles>(kind, sizes, fields);
}

void addArray(Width width, double* sums, const double* values, long long n) {
    // A few are not worth another call.
    const bool many = n >= laneCount;
#if defined(CXC_WIDE_PASSES)
    if (many && width == Width::eight) return detail::addArrayWithEight(sums, values, n);
    if (many && width == Width::four) return detail::addArrayWithFour(sums, values, n);
#endif
    static_cast<void>(width);
    static_cast<void>(many);
    elementWise(sums, values, n, [](TwoDoubles sum, TwoDoubles value) { return plus(sum, value); });
}

void addArrays(Width width, double* sums, const double* const* arrays, int count, long long n) {
#if defined(CXC_WIDE_PASSES)
    if (width == Width::eight) return detail::addArraysWithEight(sums, arrays, count, n);
    if (width == Width::four) return detail::addArraysWithFour(sums, arrays, count, n);
#endif
    static_cast<void>(width);
    addArraysOf<TwoDoubles>(sums, arrays, count, n);
}

void summariseArrays(Width width, double* least, double* sums, double* most,
                     const double* const* arrays, int count, long long n) {
#if defined(CXC_WIDE_PASSES)
    if (width == Width::eight)
        return detail::summariseArraysWithEight(least, sums, most, arrays, count, n);
    if (width == Width::four)
        return detail::summariseArraysWithFour(least, sums, most, arrays, count, n);
#endif
    static_cast<void>(width);
    summariseArraysOf<TwoDoubles>(least, sums, most, arrays, count, n);
}

}  // namespace cxc::pass
