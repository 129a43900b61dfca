#include "cxcdata/exchange.h"

#include "cxcdata/grid.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <algorithm>

namespace cxc::exchange {
namespace {

constexpr __int64 tileSlices = 64;
constexpr __int64 tileColumns = 8;  // one cache line of a matrix row

/// The matrices of some successive slices.
struct Tile {
    __int64 begin = 0;  // first slice
    __int64 count = 0;  // slices
    double** rows[tileSlices];
    __int64 rowTotal[tileSlices];
    __int64 colTotal[tileSlices];
    double* line[tileSlices];  // the row at hand; null where a matrix has none
    bool allLines = false;
    __int64 leastCols = 0;
    __int64 mostCols = 0;
    __int64 mostRows = 0;

    void take(CMMatrix2Dzq& matrix);
    void openRow(__int64 r);
};

void Tile::take(CMMatrix2Dzq& matrix) {
    rows[count] = matrix.getDataPP();
    rowTotal[count] = matrix.getRow();
    colTotal[count] = matrix.getCol();
    leastCols = count == 0 ? colTotal[count] : std::min(leastCols, colTotal[count]);
    mostCols = std::max(mostCols, colTotal[count]);
    mostRows = std::max(mostRows, rowTotal[count]);
    ++count;
}

void Tile::openRow(__int64 r) {
    allLines = true;
    for (__int64 k = 0; k < count; ++k) {
        line[k] = r < rowTotal[k] ? rows[k][r] : nullptr;
        allLines = allLines && line[k] != nullptr;
    }
}

struct ToMatrix {
    static void move(double& value, double& element) { element = value; }
    static void absent(double& element) { element = 0.0; }
};

struct ToGrid {
    static void move(double& value, double& element) { value = element; }
    static void absent(double&) {}
};

template <class Direction>
void copyWhole(const Tile& tile, const grid::Values (&vectors)[tileColumns], __int64 c) {
    double* data[tileColumns];
    for (__int64 j = 0; j < tileColumns; ++j)
        data[j] = vectors[j].data + tile.begin;
    for (__int64 k = 0; k < tile.count; ++k) {
        double* const element = tile.line[k] + c;
        for (__int64 j = 0; j < tileColumns; ++j)
            Direction::move(data[j][k], element[j]);
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

}  // namespace

bool gridToMatrices(CWavChnlChnlDatazq* const* table, CMMatrix2Dzq* mats, __int64 count) {
    bool stored = true;
    for (__int64 t = 0; stored && t < count;) {
        Tile tile;
        tile.begin = t;
        for (; t < count && tile.count < tileSlices; ++t) {
            stored = mats[t].getDataPP() != nullptr;
            if (!stored) break;
            tile.take(mats[t]);
        }
        for (__int64 r = 0; r < tile.mostRows; ++r) {
            tile.openRow(r);
            copyRow<ToMatrix>(tile, table, r, tile.mostCols);
        }
    }
    return stored;
}

bool matricesToGrid(CMMatrix2Dzq* mats, __int64 count, CWavChnlChnlDatazq** table) {
    bool stored = true;
    for (__int64 t = 0; stored && t < count;) {
        Tile tile;
        tile.begin = t;
        for (; t < count && tile.count < tileSlices; ++t) {
            stored = mats[t].getDataPP() != nullptr && mats[t].getRow() > 0 && mats[t].getCol() > 0;
            if (!stored) break;
            tile.take(mats[t]);
        }
        const __int64 rows = std::min(tile.mostRows, grid::rows(table));
        const __int64 cols = std::min(tile.mostCols, grid::cols(table));
        for (__int64 r = 0; r < rows; ++r) {
            tile.openRow(r);
            copyRow<ToGrid>(tile, table, r, cols);
        }
    }
    return stored;
}

}  // namespace cxc::exchange
