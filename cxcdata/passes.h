// Passes over all values of a grid. A sum in a fixed order waits for the addition before it;
// sums that do not depend on each other, those of different rows, run side by side here, each in
// its own order, so that results stay the same to the last bit.
#pragma once

#include "cxcdata/grid.h"
#include "cxcdata/prefetch.h"
#include "cxcdata/two_doubles.h"
#include "cxcdata/wide_passes.h"
#include "framework.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

namespace cxc::pass {

inline double magnitude(double value) {
    return std::fabs(value);
}
inline double lowered(double least, double value) {
    return value < least ? value : least;
}
inline double raised(double most, double value) {
    return value > most ? value : most;
}

// Accumulators over a Number (double, or two doubles of neighbouring rows). Default-constructed,
// with Number double, they have seen nothing; start takes the first value: as such a NaN stays,
// while add passes over it in the extremes.

template <class Number>
struct Range {
    static constexpr Kind kind = Kind::narrow;
    std::array<Number, 2> field = {};  // least, greatest

    void start(Number value) { field = {value, value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
    }
    static constexpr std::array<double, 2> nothing = {std::numeric_limits<double>::infinity(),
                                                      -std::numeric_limits<double>::infinity()};
};

template <class Number>
struct MagnitudeRange : Range<Number> {
    static constexpr Kind kind = Kind::magnitudeRange;
    void start(Number value) { Range<Number>::start(magnitude(value)); }
    void add(Number value) { Range<Number>::add(magnitude(value)); }
};

template <class Number>
struct RangeSum {
    static constexpr Kind kind = Kind::narrow;
    std::array<Number, 3> field = {};  // least, greatest, sum

    void start(Number value) { field = {value, value, value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
        field[2] = field[2] + value;
    }
    static constexpr std::array<double, 3> nothing = {Range<double>::nothing[0],
                                                      Range<double>::nothing[1], 0.0};
};

template <class Number>
struct SquareSum {
    static constexpr Kind kind = Kind::narrow;
    std::array<Number, 1> field = {};

    void start(Number value) { field = {value * value}; }
    void add(Number value) { field[0] = field[0] + value * value; }
    static constexpr std::array<double, 1> nothing = {0.0};
};

template <class Number>
struct Statistic {
    static constexpr Kind kind = Kind::statistic;
    std::array<Number, 5> field = {};  // least, greatest, sum, sum of magnitudes, sum of squares

    void start(Number value) { field = {value, value, value, magnitude(value), value * value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
        field[2] = field[2] + value;
        field[3] = field[3] + magnitude(value);
        field[4] = field[4] + value * value;
    }
    static constexpr std::array<double, 5> nothing = {Range<double>::nothing[0],
                                                      Range<double>::nothing[1], 0.0, 0.0, 0.0};
};

template <template <class> class Accumulator>
Accumulator<double> nothingSeen() {
    Accumulator<double> accumulator;
    accumulator.field = Accumulator<double>::nothing;
    return accumulator;
}

/// Takes the extremes of a later accumulator into `range`.
template <class Later>
void widen(Range<double>& range, const Later& later) {
    range.field[0] = lowered(range.field[0], later.field[0]);
    range.field[1] = raised(range.field[1], later.field[1]);
}

/// Elements [begin, end) of one vector; not visited where there is no vector.
struct Slice {
    const double* data = nullptr;
    __int64 begin = 0;
    __int64 end = 0;
    bool visited = false;
};

// The vectors of a row were usually made one behind the other. Several rows side by side are more
// streams than the machine follows by itself.
inline void prefetchLater(const Slice& slice) {
    constexpr __int64 vectorsAhead = 2;
    constexpr __int64 longVector = 1024;
    const __int64 length = slice.end - slice.begin;
    if (slice.data == nullptr || length > longVector) return;
    for (__int64 t = 0; t <= length; t += doublesPerCacheLine)
        prefetch(slice.data + slice.begin, vectorsAhead * length + t);
}

template <class Accumulator>
void walk(const Slice& slice, Accumulator& accumulator) {
    Accumulator local = accumulator;
    for (__int64 t = slice.begin; t < slice.end; ++t)
        local.add(slice.data[t]);
    accumulator = local;
}

namespace detail {

template <template <class> class Accumulator>
Accumulator<TwoDoubles> pack(const Accumulator<double>& a, const Accumulator<double>& b) {
    Accumulator<TwoDoubles> both;
    for (std::size_t i = 0; i < both.field.size(); ++i)
        both.field[i] = TwoDoubles(a.field[i], b.field[i]);
    return both;
}

template <template <class> class Accumulator>
void unpack(const Accumulator<TwoDoubles>& both, Accumulator<double>& a, Accumulator<double>& b) {
    for (std::size_t i = 0; i < both.field.size(); ++i) {
        a.field[i] = both.field[i].first();
        b.field[i] = both.field[i].second();
    }
}

template <class Accumulator>
void addTwice(Accumulator& accumulator, const double* a, const double* b) {
    const TwoDoubles fromA = TwoDoubles::load(a);
    const TwoDoubles fromB = TwoDoubles::load(b);
    accumulator.add(firsts(fromA, fromB));
    accumulator.add(seconds(fromA, fromB));
}

template <template <class> class Accumulator, std::size_t Lanes, std::size_t... K>
void together(const std::array<const double*, Lanes>& data,
              std::array<Accumulator<double>, Lanes>& accumulators, __int64 length,
              std::index_sequence<K...>) {
    std::array<Accumulator<TwoDoubles>, sizeof...(K)> local = {
        pack<Accumulator>(accumulators[2 * K], accumulators[2 * K + 1])...};
    __int64 t = 0;
    for (; t + 2 <= length; t += 2)
        (addTwice(local[K], data[2 * K] + t, data[2 * K + 1] + t), ...);
    if (t < length) (local[K].add(TwoDoubles(data[2 * K][t], data[2 * K + 1][t])), ...);
    (unpack<Accumulator>(local[K], accumulators[2 * K], accumulators[2 * K + 1]), ...);
}

template <template <class> class Accumulator>
void together(const std::array<const double*, wideRows>& data,
              std::array<Accumulator<double>, wideRows>& accumulators, __int64 length) {
    constexpr std::size_t count = std::tuple_size<decltype(accumulators[0].field)>::value;
    std::array<double, count * wideRows> fields;
    for (std::size_t f = 0; f < count; ++f) {
        for (std::size_t r = 0; r < wideRows; ++r)
            fields[f * wideRows + r] = accumulators[r].field[f];
    }
    addWide(Accumulator<double>::kind, data.data(), length, fields.data());
    for (std::size_t f = 0; f < count; ++f) {
        for (std::size_t r = 0; r < wideRows; ++r)
            accumulators[r].field[f] = fields[f * wideRows + r];
    }
}

}  // namespace detail

/// Adds slice k to accumulator k, side by side as far as all slices reach.
template <template <class> class Accumulator, std::size_t Lanes>
void walk(std::array<Slice, Lanes>& slices, std::array<Accumulator<double>, Lanes>& accumulators) {
    if constexpr (Lanes > 1) {
        __int64 common = slices[0].end - slices[0].begin;
        for (const Slice& slice : slices)
            common = std::min(common, slice.end - slice.begin);
        if (common > 0) {
            std::array<const double*, Lanes> data;
            for (std::size_t k = 0; k < Lanes; ++k) {
                data[k] = slices[k].data + slices[k].begin;
                slices[k].begin += common;
            }
            if constexpr (Lanes == wideRows && Accumulator<double>::kind != Kind::narrow) {
                if (canGoWide()) {
                    detail::together<Accumulator>(data, accumulators, common);
                    common = 0;
                }
            }
            if (common > 0)
                detail::together<Accumulator>(data, accumulators, common,
                                              std::make_index_sequence<Lanes / 2>());
        }
    }
    for (std::size_t k = 0; k < Lanes; ++k)
        walk(slices[k], accumulators[k]);
}

namespace detail {

template <template <class> class Accumulator, std::size_t Lanes, class SliceOf, class Take>
void rowGroups(__int64& row, __int64 rows, __int64 cols, SliceOf sliceOf, Take take) {
    constexpr __int64 lanes = static_cast<__int64>(Lanes);
    for (; row + lanes <= rows; row += lanes) {
        std::array<Accumulator<double>, Lanes> accumulators;
        accumulators.fill(nothingSeen<Accumulator>());
        for (__int64 c = 0; c < cols; ++c) {
            std::array<Slice, Lanes> slices;
            for (std::size_t k = 0; k < Lanes; ++k) {
                slices[k] = sliceOf(row + static_cast<__int64>(k), c);
                prefetchLater(slices[k]);
            }
            walk<Accumulator>(slices, accumulators);
        }
        for (const Accumulator<double>& accumulator : accumulators)
            take(accumulator);
    }
}

template <template <class> class Accumulator, class Row, std::size_t Lanes, class SliceOf,
          class Take>
void vectorGroups(__int64& row, __int64 rows, __int64 cols, SliceOf sliceOf, Take take) {
    constexpr __int64 lanes = static_cast<__int64>(Lanes);
    for (; row + lanes <= rows; row += lanes) {
        std::array<Row, Lanes> results = {};
        for (__int64 c = 0; c < cols; ++c) {
            std::array<Slice, Lanes> slices;
            std::array<Accumulator<double>, Lanes> accumulators;
            std::array<__int64, Lanes> sizes;
            for (std::size_t k = 0; k < Lanes; ++k) {
                slices[k] = sliceOf(row + static_cast<__int64>(k), c);
                prefetchLater(slices[k]);
                sizes[k] = slices[k].visited ? slices[k].end - slices[k].begin : -1;
                accumulators[k].start(sizes[k] > 0 ? slices[k].data[slices[k].begin++] : 0.0);
            }
            walk<Accumulator>(slices, accumulators);
            for (std::size_t k = 0; k < Lanes; ++k) {
                if (sizes[k] >= 0) results[k].take(accumulators[k], sizes[k]);
            }
        }
        for (const Row& result : results)
            take(result);
    }
}

}  // namespace detail

/// Accumulates each row over its columns and the elements of sliceOf(r, c), and calls `take` with
/// the accumulator of every row, in row order.
template <template <class> class Accumulator, class SliceOf, class Take>
void eachRow(__int64 rows, __int64 cols, SliceOf sliceOf, Take take) {
    __int64 row = 0;
    detail::rowGroups<Accumulator, 8>(row, rows, cols, sliceOf, take);
    detail::rowGroups<Accumulator, 4>(row, rows, cols, sliceOf, take);
    detail::rowGroups<Accumulator, 1>(row, rows, cols, sliceOf, take);
}

/// Accumulates each vector over the elements of sliceOf(r, c), started by the first of them or by
/// 0.0, and calls take(accumulator, size) of a Row for every visited one, in column order; then
/// `take` with every Row, in row order.
template <template <class> class Accumulator, class Row, class SliceOf, class Take>
void eachVector(__int64 rows, __int64 cols, SliceOf sliceOf, Take take) {
    // As many rows as there are registers for.
    constexpr bool few = sizeof(Accumulator<double>) > 4 * sizeof(double);
    __int64 row = 0;
    if (!few || canGoWide())
        detail::vectorGroups<Accumulator, Row, wideRows>(row, rows, cols, sliceOf, take);
    detail::vectorGroups<Accumulator, Row, 4>(row, rows, cols, sliceOf, take);
    detail::vectorGroups<Accumulator, Row, 1>(row, rows, cols, sliceOf, take);
}

}  // namespace cxc::pass
