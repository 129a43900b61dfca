// Straight passes over the values of several vectors at once. A sum in a fixed order waits for
// the addition before it; sums that do not depend on each other run side by side here, each in
// its own order, so that results stay the same to the last bit.
#pragma once

#include "cxcdata/grid.h"
#include "framework.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace cxc::pass {

/// Running extremes. Default-constructed it has seen nothing; a NaN as first value stays, a later
/// one is passed over.
struct Range {
    double min = std::numeric_limits<double>::infinity();
    double max = -std::numeric_limits<double>::infinity();

    void start(double value) { min = max = value; }
    void add(double value) {
        min = min > value ? value : min;
        max = value > max ? value : max;
    }
    void add(const Range& later) {
        min = min > later.min ? later.min : min;
        max = later.max > max ? later.max : max;
    }
};

/// Running extremes of the absolute values.
struct MagnitudeRange : Range {
    void start(double value) { Range::start(std::fabs(value)); }
    void add(double value) { Range::add(std::fabs(value)); }
};

struct RangeSum : Range {
    double sum = 0.0;

    void start(double value) {
        Range::start(value);
        sum = value;
    }
    void add(double value) {
        Range::add(value);
        sum += value;
    }
};

struct SquareSum {
    double sum = 0.0;

    void add(double value) { sum += value * value; }
};

struct Statistic : RangeSum {
    double absSum = 0.0;
    double squareSum = 0.0;

    void start(double value) {
        RangeSum::start(value);
        absSum = std::fabs(value);
        squareSum = value * value;
    }
    void add(double value) {
        RangeSum::add(value);
        absSum += std::fabs(value);
        squareSum += value * value;
    }
};

/// Elements [begin, end) of one vector.
struct Slice {
    const double* data = nullptr;
    __int64 begin = 0;
    __int64 end = 0;
};

template <class Accumulator>
void walk(const Slice& slice, Accumulator& accumulator) {
    Accumulator local = accumulator;
    for (__int64 t = slice.begin; t < slice.end; ++t)
        local.add(slice.data[t]);
    accumulator = local;
}

namespace detail {

template <class Accumulator, std::size_t... K>
void together(const std::array<Slice, sizeof...(K)>& slices,
              std::array<Accumulator, sizeof...(K)>& accumulators, __int64 length,
              std::index_sequence<K...>) {
    const std::array<const double*, sizeof...(K)> data = {(slices[K].data + slices[K].begin)...};
    std::array<Accumulator, sizeof...(K)> local = {accumulators[K]...};
    for (__int64 t = 0; t < length; ++t)
        (local[K].add(data[K][t]), ...);
    accumulators = local;
}

}  // namespace detail

/// Adds slice k to accumulator k, side by side as far as all slices reach.
template <class Accumulator, std::size_t Lanes>
void walk(std::array<Slice, Lanes>& slices, std::array<Accumulator, Lanes>& accumulators) {
    __int64 common = slices[0].end - slices[0].begin;
    for (const Slice& slice : slices)
        common = std::min(common, slice.end - slice.begin);
    if (common > 0) {
        detail::together(slices, accumulators, common, std::make_index_sequence<Lanes>());
        for (Slice& slice : slices)
            slice.begin += common;
    }
    for (std::size_t k = 0; k < Lanes; ++k)
        walk(slices[k], accumulators[k]);
}

/// Whether the first element of each vector starts its accumulator (and stays if it is a NaN), or
/// is added like the rest.
enum class FirstElement { starts, adds };

/// Collects vectors, walks Lanes of them together and hands each result on in the order in which
/// the vectors came. Call flush() after the last one.
template <class Accumulator, FirstElement first, std::size_t Lanes, class Take>
class VectorBatch {
public:
    explicit VectorBatch(Take take) : m_take(take) {}

    /// A slice of a vector; an empty one reaches `take` with length 0.
    void add(const Slice& slice) {
        m_slices[m_count++] = slice;
        if (m_count == Lanes) flush();
    }

    void flush() {
        std::array<Accumulator, Lanes> accumulators = {};
        std::array<Slice, Lanes> rest = {};
        for (std::size_t k = 0; k < m_count; ++k) {
            rest[k] = m_slices[k];
            if constexpr (first == FirstElement::starts) {
                if (rest[k].begin < rest[k].end)
                    accumulators[k].start(rest[k].data[rest[k].begin++]);
            }
        }
        if (m_count == Lanes) {
            walk(rest, accumulators);
        } else {
            for (std::size_t k = 0; k < m_count; ++k)
                walk(rest[k], accumulators[k]);
        }
        for (std::size_t k = 0; k < m_count; ++k)
            m_take(accumulators[k], m_slices[k].end - m_slices[k].begin);
        m_count = 0;
    }

private:
    Take m_take;
    std::array<Slice, Lanes> m_slices = {};
    std::size_t m_count = 0;
};

template <class Accumulator, FirstElement first, std::size_t Lanes, class Take>
VectorBatch<Accumulator, first, Lanes, Take> makeBatch(Take take) {
    return VectorBatch<Accumulator, first, Lanes, Take>(take);
}

}  // namespace cxc::pass
