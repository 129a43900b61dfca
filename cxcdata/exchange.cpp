#include "cxcdata/exchange.h"

#include "cxcdata/grid.h"
#include "cxcdata/two_doubles.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <algorithm>

namespace cxc::exchange {
namespace {

constexpr __int64 tileSlices = 64;
constexpr __int64 tileColumns = 8;  // one cache line of a matrix row

/// One row of the matrices of some successive slices.
struct Tile {
    __int64 begin = 0;             // first slice
    __int64 count = 0;             // slices
    double* line[tileSlices];      // null where a matrix has no such row
    __int64 colTotal[tileSlices];  // elements of the line
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

// A square is two slices of two vectors, which is two rows of two elements.
void transposeSquare(const double* from0, const double* from1, double* to0, double* to1) {
    const TwoDoubles a = TwoDoubles::load(from0);
    const TwoDoubles b = TwoDoubles::load(from1);
    firsts(a, b).store(to0);
    seconds(a, b).store(to1);
}

struct ToMatrix {
    static void square(double* vector0, double* vector1, double* line0, double* line1) {
        transposeSquare(vector0, vector1, line0, line1);
    }
    static void move(const double& value, double& element) { element = value; }
    static void absent(double& element) { element = 0.0; }
};

struct ToGrid {
    static void square(double* vector0, double* vector1, double* line0, double* line1) {
        transposeSquare(line0, line1, vector0, vector1);
    }
    static void move(double& value, const double& element) { value = element; }
    static void absent(const double&) {}
};

template <class Direction>
void copyWhole(const Tile& tile, const grid::Values (&vectors)[tileColumns], __int64 c) {
    double* data[tileColumns];
    for (__int64 j = 0; j < tileColumns; ++j)
        data[j] = vectors[j].data + tile.begin;
    __int64 k = 0;
    for (; k + 2 <= tile.count; k += 2) {
        double* const line0 = tile.line[k] + c;
        double* const line1 = tile.line[k + 1] + c;
        for (__int64 j = 0; j < tileColumns; j += 2)
            Direction::square(data[j] + k, data[j + 1] + k, line0 + j, line1 + j);
    }
    if (k < tile.count) {
        for (__int64 j = 0; j < tileColumns; ++j)
            Direction::move(data[j][k], tile.line[k][c + j]);
    }
}

template <class Direction>
void copyChecked(const Tile& tile, const grid::Values& vector, __int64 c) {
    for (__int64 k = 0; k < tile.count; ++k) {
        if (tile.line[k] == nullptr || c >= tile.colTotal[k]) continue;
        if (tile.begin + k < vector.size)
            Direction::move(vector.data[tile.begin + k], tile.line[k][c]);
        else
            Direction::absent(tile.line[k][c]);
    }
}

template <class Direction>
void copyRow(const Tile& tile, CWavChnlChnlDatazq* const* table, __int64 r, __int64 cols) {
    for (__int64 c = 0; c < cols; c += tileColumns) {
        const __int64 width = std::min(tileColumns, cols - c);
        grid::Values vectors[tileColumns];
        bool whole = tile.allLines && width == tileColumns && c + width <= tile.leastCols;
        for (__int64 j = 0; j < width; ++j) {
            vectors[j] = grid::values(table, r, c + j);
            whole = whole && tile.begin + tile.count <= vectors[j].size;
        }
        if (whole) {
            copyWhole<Direction>(tile, vectors, c);
            continue;
        }
        for (__int64 j = 0; j < width; ++j)
            copyChecked<Direction>(tile, vectors[j], c + j);
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

// Row by row: the vectors of one row and the same row of all matrices fit the cache together.
template <class Direction>
void copySpan(CMMatrix2Dzq* mats, const Span& span, CWavChnlChnlDatazq* const* table) {
    for (__int64 r = 0; r < span.rows; ++r) {
        for (__int64 t = 0; t < span.count; t += tileSlices) {
            Tile tile;
            tile.begin = t;
            const __int64 end = std::min(t + tileSlices, span.count);
            for (__int64 k = t; k < end; ++k)
                tile.take(mats[k], r);
            copyRow<Direction>(tile, table, r, span.cols);
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
