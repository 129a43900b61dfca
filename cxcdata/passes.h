// Passes over all values of a grid, eight vectors side by side: those of eight rows, where a row is
// summed as a whole, or neighbours of one row. Each is summed in its own order, so that results
// stay the same to the last bit.
#pragma once

#include "cxcdata/CSnsCohData.h"
#include "cxcdata/accumulators.h"
#include "cxcdata/grid.h"
#include "cxcdata/wide_passes.h"
#include "framework.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace cxc::pass {

/// Rows of a dataset that are counted and there: counters may exceed the grid, and the other way
/// round.
inline __int64 rowsThere(const CSnsCohData& dataset) {
    return std::min(dataset.m_snsRowTotal, grid::rows(dataset.m_mCC));
}

/// Columns that are counted and there.
inline __int64 colsThere(const CSnsCohData& dataset) {
    return std::min(dataset.m_snsColTotal, grid::cols(dataset.m_mCC));
}

template <template <class> class Accumulator>
Accumulator<double> nothingSeen() {
    Accumulator<double> accumulator;
    accumulator.field = Accumulator<double>::nothing;
    return accumulator;
}

/// Takes the extremes of a later accumulator into `range`.
template <class Extremes, class Later>
void widen(Extremes& range, const Later& later) {
    range.field[0] = lowered(range.field[0], later.field[0]);
    range.field[1] = raised(range.field[1], later.field[1]);
}

/// Elements [begin, end) of one vector; not visited where there is no vector. Without default
/// values, which would cost as much as a short vector.
struct Slice {
    const double* data;
    __int64 begin;
    __int64 end;
    bool visited;
};

/// The accumulators of eight vectors, field by field.
template <template <class> class Accumulator>
class Lanes {
public:
    static constexpr Kind kind = Accumulator<double>::kind;
    static constexpr int fields = Accumulator<double>::fields;
    using Indices = std::make_index_sequence<static_cast<std::size_t>(fields)>;

    void set(int k, const Accumulator<double>& accumulator) {
        for (int f = 0; f < fields; ++f)
            m_fields[f * laneCount + k] = accumulator.field[static_cast<std::size_t>(f)];
    }
    Accumulator<double> get(int k) const { return get(k, Indices()); }
    double* data() { return m_fields; }

private:
    // Without a loop over the fields, which would take them through memory.
    template <std::size_t... F>
    Accumulator<double> get(int k, std::index_sequence<F...>) const {
        Accumulator<double> accumulator;
        accumulator.field = {m_fields[static_cast<int>(F) * laneCount + k]...};
        return accumulator;
    }

    double m_fields[static_cast<std::size_t>(fields * laneCount)];
};

using Slices = std::array<Slice, laneCount>;

namespace detail {

/// Adds as many elements as the shortest slice has left; `some` has as many.
template <template <class> class Accumulator>
void addCommon(Width width, First first, Slices& slices, Lanes<Accumulator>& lanes,
               const Slice& some, __int64 common) {
    const double* vectors[laneCount];
    std::array<bool, laneCount> idle;
    std::array<Accumulator<double>, laneCount> kept;
    for (std::size_t k = 0; k < laneCount; ++k) {
        idle[k] = slices[k].begin >= slices[k].end;
        if (idle[k]) kept[k] = lanes.get(static_cast<int>(k));
        // A lane without values takes those of another, in vain.
        const Slice& source = idle[k] ? some : slices[k];
        vectors[k] = source.data + source.begin;
        slices[k].begin += idle[k] ? 0 : common;
    }
    addLanes(width, lanes.kind, first, vectors, common, lanes.data());
    for (std::size_t k = 0; k < laneCount; ++k) {
        if (idle[k]) lanes.set(static_cast<int>(k), kept[k]);
    }
}

/// walk for slices that are not all of one length.
template <template <class> class Accumulator>
void walkUneven(Width width, First first, Slices slices, Lanes<Accumulator>& lanes) {
    for (;; first = First::adds) {
        Slice some = {};
        for (const Slice& slice : slices) {
            const __int64 length = slice.end - slice.begin;
            const __int64 least = some.end - some.begin;
            if (length > 0 && (least == 0 || length < least)) some = slice;
        }
        const __int64 common = some.end - some.begin;
        if (common == 0) return;
        addCommon<Accumulator>(width, first, slices, lanes, some, common);
    }
}

}  // namespace detail

/// Adds slice k to accumulator k, or starts it; that of an empty slice stays.
template <template <class> class Accumulator>
void walk(Width width, First first, const Slices& slices, Lanes<Accumulator>& lanes) {
    const double* vectors[laneCount];
    const __int64 length = slices[0].end - slices[0].begin;
    bool even = length > 0;
    for (std::size_t k = 0; k < laneCount; ++k) {
        even = even && slices[k].end - slices[k].begin == length;
        vectors[k] = slices[k].data + slices[k].begin;
    }
    if (even)
        addLanes(width, lanes.kind, first, vectors, length, lanes.data());
    else
        detail::walkUneven<Accumulator>(width, first, slices, lanes);
}

namespace detail {

/// Eight rows, as far as there are so many.
struct RowsTogether {
    const CWavChnlChnlDatazq* vectors[laneCount] = {};
    __int64 first;  // row
    int here;       // rows

    RowsTogether(CWavChnlChnlDatazq* const* table, __int64 row, __int64 rows)
        : first(row), here(static_cast<int>(std::min<__int64>(rows - row, laneCount))) {
        for (int k = 0; k < here; ++k)
            vectors[k] = grid::row(table, row + k);
    }
    template <class SliceOf>
    Slices slices(__int64 c, SliceOf sliceOf) const {
        Slices slices;
        for (int k = 0; k < laneCount; ++k) {
            Slice& slice = slices[static_cast<std::size_t>(k)];
            if (k < here)
                slice = sliceOf(vectors[k] == nullptr ? nullptr : vectors[k] + c, first + k, c);
            else
                slice = {};
        }
        return slices;
    }
};

}  // namespace detail

/// Accumulates each row over its columns and the elements of sliceOf(vector, r, c), and calls
/// `take` with the accumulator of every row, in row order. The table has rows x cols vectors; a row
/// that was never made has null ones.
template <template <class> class Accumulator, class SliceOf, class Take>
void eachRow(CWavChnlChnlDatazq* const* table, __int64 rows, __int64 cols, SliceOf sliceOf,
             Take take, Width width = widest()) {
    for (__int64 row = 0; row < rows; row += laneCount) {
        const detail::RowsTogether together(table, row, rows);
        Lanes<Accumulator> lanes;
        for (int k = 0; k < laneCount; ++k)
            lanes.set(k, nothingSeen<Accumulator>());
        for (__int64 c = 0; c < cols; ++c)
            walk<Accumulator>(width, First::adds, together.slices(c, sliceOf), lanes);
        for (int k = 0; k < together.here; ++k)
            take(lanes.get(k));
    }
}

/// The extremes of the elements of all slices, started by the first that is visited, or by 0.0
/// where none is. Slices and table are those of eachRow.
template <template <class> class Extremes, class SliceOf>
Extremes<double> extremes(CWavChnlChnlDatazq* const* table, __int64 rows, __int64 cols,
                          SliceOf sliceOf) {
    Extremes<double> result;
    result.start(0.0);
    bool any = false;
    for (__int64 r = 0; r < rows && !any; ++r) {
        for (__int64 c = 0; c < cols && !any; ++c) {
            const Slice slice = sliceOf(grid::cell(table, r, c), r, c);
            any = slice.visited;
            if (any) result.start(slice.data[slice.begin]);
        }
    }
    if (any) {
        eachRow<Extremes>(table, rows, cols, sliceOf,
                          [&](const Extremes<double>& row) { widen(result, row); });
    }
    return result;
}

/// Accumulates each vector over the elements of sliceOf(vector, r, c), started by the first of them
/// or by 0.0, and calls take(accumulator, size) of a Row for every visited one, in column order,
/// with means in the place of sums; then `take` with every Row, in row order. The table is that of
/// eachRow.
template <template <class> class Accumulator, class Row, class SliceOf, class Take>
void eachVector(CWavChnlChnlDatazq* const* table, __int64 rows, __int64 cols, SliceOf sliceOf,
                Take take, Width width = widest()) {
    Accumulator<double> empty;
    empty.start(0.0);
    for (__int64 row = 0; row < rows; row += laneCount) {
        const detail::RowsTogether together(table, row, rows);
        std::array<Row, laneCount> results = {};
        for (__int64 c = 0; c < cols; ++c) {
            const Slices slices = together.slices(c, sliceOf);
            Lanes<Accumulator> lanes;
            double sizes[laneCount];
            for (int k = 0; k < laneCount; ++k) {
                const Slice& slice = slices[static_cast<std::size_t>(k)];
                const __int64 size = slice.end - slice.begin;
                if (size < 1) lanes.set(k, empty);
                sizes[k] = static_cast<double>(std::max<__int64>(size, 1));
            }
            walk<Accumulator>(width, First::starts, slices, lanes);
            takeMeans(width, lanes.kind, sizes, lanes.data());
            for (int k = 0; k < together.here; ++k) {
                const Slice& slice = slices[static_cast<std::size_t>(k)];
                if (!slice.visited) continue;
                results[static_cast<std::size_t>(k)].take(lanes.get(k), slice.end - slice.begin);
            }
        }
        for (int k = 0; k < together.here; ++k)
            take(results[static_cast<std::size_t>(k)]);
    }
}

}  // namespace cxc::pass
