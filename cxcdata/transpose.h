// Walks through a tile of slices x columns, two by two: on one side a vector over time per column,
// on the other a line of columns per slice.
#pragma once

#include "cxcdata/grid.h"
#include "cxcdata/prefetch.h"
#include "cxcdata/two_doubles.h"
#include "framework.h"

#include <algorithm>
#include <type_traits>

namespace cxc::transpose {

/// Slices and columns of a tile. Few slices, because the lines of matrices may lie a power of two
/// apart, where the caches hold only some at a time; so many columns that lines are long.
constexpr __int64 tileSlices = 4;
constexpr __int64 tileColumns = 128;

/// Slices after which the next columns have their turn, so that a vector is read in one go.
constexpr __int64 blockSlices = 128;

/// Two elements each of two vectors become two elements each of two lines, and the other way round.
inline void square(const double* from0, const double* from1, double* to0, double* to1) {
    const TwoDoubles a = TwoDoubles::load(from0);
    const TwoDoubles b = TwoDoubles::load(from1);
    firsts(a, b).store(to0);
    seconds(a, b).store(to1);
}

/// Calls square(column, slice) over full squares and single(column, slice) over the rest of
/// `columns` x slices begin..end-1.
template <class Columns, class Square, class Single>
void walkColumns(Columns columns, __int64 begin, __int64 end, Square square, Single single) {
    const __int64 pairs = columns / 2 * 2;
    __int64 t = begin;
    for (; t + 2 <= end; t += 2) {
        for (__int64 k = 0; k < pairs; k += 2)
            square(k, t);
        if (pairs < columns) {
            single(pairs, t);
            single(pairs, t + 1);
        }
    }
    for (; t < end; ++t) {
        for (__int64 k = 0; k < columns; ++k)
            single(k, t);
    }
}

/// The same for a tile of at most `Most` columns. A whole one has a number of columns that the
/// compiler knows.
template <__int64 Most, class Square, class Single>
void walkTile(__int64 columns, __int64 begin, __int64 end, Square square, Single single) {
    if (columns == Most)
        walkColumns(std::integral_constant<__int64, Most>(), begin, end, square, single);
    else
        walkColumns(columns, begin, end, square, single);
}

/// Fetches slices begin..end-1 of the vectors: the machine follows few streams by itself, and the
/// vectors of a block are many.
inline void prefetchBlock(const grid::Values* vectors, __int64 columns, __int64 begin,
                          __int64 end) {
    for (__int64 k = 0; k < columns; ++k) {
        const __int64 here = std::min(end, vectors[k].size);
        for (__int64 s = begin; s < here; s += doublesPerCacheLine)
            prefetch(vectors[k].data, s);
    }
}

}  // namespace cxc::transpose
