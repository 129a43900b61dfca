#include "cxcdata/exchange.h"

#include "cxcdata/grid.h"
#include "cxcdata/transpose.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <algorithm>

namespace cxc::exchange {
namespace {

/// One row of the matrices of some successive slices.
struct Block {
    __int64 begin = 0;                         // first slice
    __int64 count = 0;                         // slices
    double* line[transpose::blockSlices];      // null where a matrix has no such row
    __int64 colTotal[transpose::blockSlices];  // elements of the line
    bool allLines = true;
    __int64 leastCols = 0;

    void take(CMMatrix2Dzq& matrix, __int64 r) {
        line[count] = r < matrix.getRow() ? matrix.getDataPP()[r] : nullptr;
        colTotal[count] = matrix.getCol();
        allLines = allLines && line[count] != nullptr;
        leastCols = count == 0 ? colTotal[count] : std::min(leastCols, colTotal[count]);
        ++count;
    }
};

struct ToMatrix {
    static void square(double* vector0, double* vector1, double* line0, double* line1) {
        transpose::square(vector0, vector1, line0, line1);
    }
    static void move(const double& value, double& element) { element = value; }
    static void absent(double& element) { element = 0.0; }
};

struct ToGrid {
    static void square(double* vector0, double* vector1, double* line0, double* line1) {
        transpose::square(line0, line1, vector0, vector1);
    }
    static void move(double& value, const double& element) { value = element; }
    static void absent(const double&) {}
};

// Two lines that come with the next tile: the machine does not follow so many by itself. Called
// between squares, as it takes only some requests at a time: all of a line at once is slower.
void fetch(const Block& block, __int64 s, __int64 c) {
    if (s + 1 >= block.count) return;
    prefetch(block.line[s], c);
    prefetch(block.line[s + 1], c);
}

// All columns and slices are there.
template <class Direction>
void copyWhole(const Block& block, const grid::Values* vectors, __int64 c, __int64 width) {
    double* data[transpose::tileColumns];
    for (__int64 j = 0; j < width; ++j)
        data[j] = vectors[j].data + block.begin;
    transpose::prefetchBlock(vectors, width, block.begin, block.begin + block.count);
    for (__int64 k = 0; k < block.count; k += transpose::tileSlices) {
        transpose::walkTile<transpose::tileColumns>(
            width, k, std::min(k + transpose::tileSlices, block.count),
            [&](__int64 j, __int64 s) {
                if (j % doublesPerCacheLine == 0) fetch(block, s + transpose::tileSlices, c + j);
                Direction::square(data[j] + s, data[j + 1] + s, block.line[s] + c + j,
                                  block.line[s + 1] + c + j);
            },
            [&](__int64 j, __int64 s) { Direction::move(data[j][s], block.line[s][c + j]); });
    }
}

template <class Direction>
void copyChecked(const Block& block, const grid::Values& vector, __int64 c) {
    for (__int64 k = 0; k < block.count; ++k) {
        if (block.line[k] == nullptr || c >= block.colTotal[k]) continue;
        if (block.begin + k < vector.size)
            Direction::move(vector.data[block.begin + k], block.line[k][c]);
        else
            Direction::absent(block.line[k][c]);
    }
}

template <class Direction>
void copyRow(const Block& block, CWavChnlChnlDatazq* const* table, __int64 r, __int64 cols) {
    for (__int64 c = 0; c < cols; c += transpose::tileColumns) {
        const __int64 width = std::min(transpose::tileColumns, cols - c);
        grid::Values vectors[transpose::tileColumns];
        bool whole = block.allLines && c + width <= block.leastCols;
        for (__int64 j = 0; j < width; ++j) {
            vectors[j] = grid::values(table, r, c + j);
            whole = whole && block.begin + block.count <= vectors[j].size;
        }
        if (whole) {
            copyWhole<Direction>(block, vectors, c, width);
            continue;
        }
        for (__int64 j = 0; j < width; ++j)
            copyChecked<Direction>(block, vectors[j], c + j);
    }
}

// The matrices that can take part, from the first on.
struct Span {
    __int64 count = 0;
    __int64 rows = 0;  // of the one with the most
    __int64 cols = 0;
};

template <class Usable>
Span measure(CMMatrix2Dzq* mats, __int64 count, Usable usable) {
    Span span;
    for (; span.count < count && usable(mats[span.count]); ++span.count) {
        span.rows = std::max(span.rows, mats[span.count].getRow());
        span.cols = std::max(span.cols, mats[span.count].getCol());
    }
    return span;
}

// The matrices of a block are done with before the next ones have their turn.
template <class Direction>
void copySpan(CMMatrix2Dzq* mats, const Span& span, CWavChnlChnlDatazq* const* table) {
    for (__int64 t = 0; t < span.count; t += transpose::blockSlices) {
        const __int64 end = std::min(t + transpose::blockSlices, span.count);
        for (__int64 r = 0; r < span.rows; ++r) {
            Block block;
            block.begin = t;
            for (__int64 k = t; k < end; ++k)
                block.take(mats[k], r);
            copyRow<Direction>(block, table, r, span.cols);
        }
    }
}

}  // namespace

bool gridToMatrices(CWavChnlChnlDatazq* const* table, CMMatrix2Dzq* mats, __int64 count) {
    const auto stored = [](CMMatrix2Dzq& matrix) { return matrix.getDataPP() != nullptr; };
    const Span span = measure(mats, count, stored);
    copySpan<ToMatrix>(mats, span, table);
    return span.count >= count;
}

bool matricesToGrid(CMMatrix2Dzq* mats, __int64 count, CWavChnlChnlDatazq** table) {
    const auto filled = [](CMMatrix2Dzq& matrix) {
        return matrix.getDataPP() != nullptr && matrix.getRow() > 0 && matrix.getCol() > 0;
    };
    Span span = measure(mats, count, filled);
    span.rows = std::min(span.rows, grid::rows(table));
    span.cols = std::min(span.cols, grid::cols(table));
    copySpan<ToGrid>(mats, span, table);
    return span.count >= count;
}

}  // namespace cxc::exchange
