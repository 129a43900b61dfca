// Adds the values of vectors to accumulators, every vector in a lane of its own, for any Number:
// the same result to the last bit, however many doubles the machine works on together.
#pragma once

#include "cxcdata/accumulators.h"
#include "cxcdata/wide_passes.h"

#include <array>
#include <cstddef>
#include <utility>

namespace cxc::pass {

// Everything stays in registers only where the compiler sees all of it together: `inline`, and no
// loops over the parts.

template <class Accumulator, class Number, std::size_t... S>
inline void addSlices(First first, const std::array<Number, Number::step>& slices,
                      Accumulator& accumulator, std::index_sequence<0, S...>) {
    if (first == First::starts)
        accumulator.start(slices[0]);
    else
        accumulator.add(slices[0]);
    (accumulator.add(slices[S]), ...);
}

template <class Accumulator, class Number>
inline void addStep(First first, const std::array<Number, Number::step>& slices,
                    Accumulator& accumulator) {
    addSlices<Accumulator, Number>(first, slices, accumulator,
                                   std::make_index_sequence<Number::step>());
}

template <class Accumulator, class Number, std::size_t... F>
inline void load(const double* fields, Accumulator& accumulator, std::index_sequence<F...>) {
    ((accumulator.field[F] = Number::load(fields + F * laneCount)), ...);
}

template <class Accumulator, std::size_t... F>
inline void store(const Accumulator& accumulator, double* fields, std::index_sequence<F...>) {
    (accumulator.field[F].store(fields + F * laneCount), ...);
}

template <class Accumulator, class Number, std::size_t... G>
void addGroups(First first, const double* const* vectors, long long length, double* fields,
               std::index_sequence<G...>) {
    constexpr int lanes = Number::lanes;
    constexpr auto eachField = std::make_index_sequence<Accumulator::fields>();
    Accumulator group[sizeof...(G)];
    long long t = 0;
    if (first == First::adds) {
        (load<Accumulator, Number>(fields + G * lanes, group[G], eachField), ...);
    } else if (length < Number::step) {
        (group[G].start(Number::slice(vectors + G * lanes, t)), ...);
        t = 1;
    } else {
        (addStep<Accumulator, Number>(First::starts, Number::slices(vectors + G * lanes, t),
                                      group[G]),
         ...);
        t = Number::step;
    }
    for (; t + Number::step <= length; t += Number::step)
        (addStep<Accumulator, Number>(First::adds, Number::slices(vectors + G * lanes, t),
                                      group[G]),
         ...);
    for (; t < length; ++t)
        (group[G].add(Number::slice(vectors + G * lanes, t)), ...);
    (store(group[G], fields + G * lanes, eachField), ...);
}

/// addLanes of wide_passes.h for one accumulator.
template <template <class> class Accumulator, class Number>
void addLanesOf(First first, const double* const* vectors, long long length, double* fields) {
    // As many groups at a time as there are registers for.
    constexpr int all = laneCount / Number::lanes;
    constexpr int groups = all * Accumulator<Number>::fields <= 12 ? all : all / 2;
    for (int k = 0; k < laneCount; k += groups * Number::lanes) {
        addGroups<Accumulator<Number>, Number>(
            first, vectors + k, length, fields + k,
            std::make_index_sequence<static_cast<std::size_t>(groups)>());
    }
}

template <class Number>
void addLanesOf(Kind kind, First first, const double* const* vectors, long long length,
                double* fields) {
    switch (kind) {
        case Kind::range:
            return addLanesOf<Range, Number>(first, vectors, length, fields);
        case Kind::magnitudeRange:
            return addLanesOf<MagnitudeRange, Number>(first, vectors, length, fields);
        case Kind::rangeSum:
            return addLanesOf<RangeSum, Number>(first, vectors, length, fields);
        case Kind::squareSum:
            return addLanesOf<SquareSum, Number>(first, vectors, length, fields);
        case Kind::statistic:
            return addLanesOf<Statistic, Number>(first, vectors, length, fields);
    }
}

template <class Accumulator, class Number>
void takeMeansOf(const double* sizes, double* fields) {
    constexpr auto eachField = std::make_index_sequence<Accumulator::fields>();
    for (int k = 0; k < laneCount; k += Number::lanes) {
        Accumulator accumulator;
        load<Accumulator, Number>(fields + k, accumulator, eachField);
        accumulator.toMeans(Number::load(sizes + k));
        store(accumulator, fields + k, eachField);
    }
}

template <class Number>
void takeMeansOf(Kind kind, const double* sizes, double* fields) {
    if (kind == Kind::rangeSum) takeMeansOf<RangeSum<Number>, Number>(sizes, fields);
    if (kind == Kind::statistic) takeMeansOf<Statistic<Number>, Number>(sizes, fields);
}

}  // namespace cxc::pass
