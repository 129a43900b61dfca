#include "exchange.h"

#include <algorithm>
#include <cstddef>

namespace binding {
namespace {

// One cache line of a matrix row, and a stretch of slices that stays in the cache beside it.
constexpr __int64 columnsOfTile = 8;
constexpr __int64 slicesOfTile = 128;

// Calls tile(row, first column, columns, first slice, slices) for all tiles of a grid.
template <class Tile>
void eachTile(__int64 rows, __int64 cols, __int64 nTim, Tile tile) {
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 t = 0; t < nTim; t += slicesOfTile) {
            const __int64 slices = std::min(slicesOfTile, nTim - t);
            for (__int64 c = 0; c < cols; c += columnsOfTile)
                tile(r, c, std::min(columnsOfTile, cols - c), t, slices);
        }
    }
}

}  // namespace

void fillGrid(CSnsCohData& dataset, const double* values) {
    const __int64 rows = dataset.m_snsRowTotal;
    const __int64 cols = dataset.m_snsColTotal;
    eachTile(rows, cols, dataset.m_cohTimTotal,
             [&](__int64 r, __int64 c, __int64 columns, __int64 t, __int64 slices) {
                 double* vectors[columnsOfTile];
                 for (__int64 k = 0; k < columns; ++k)
                     vectors[k] = dataset.m_mCC[r][c + k].m_data;
                 for (__int64 s = t; s < t + slices; ++s) {
                     const double* const line = values + (s * rows + r) * cols + c;
                     for (__int64 k = 0; k < columns; ++k)
                         vectors[k][s] = line[k];
                 }
             });
}

void copyGrid(const CSnsCohData& dataset, double* values) {
    const __int64 rows = dataset.m_snsRowTotal;
    const __int64 cols = dataset.m_snsColTotal;
    eachTile(rows, cols, dataset.m_cohTimTotal,
             [&](__int64 r, __int64 c, __int64 columns, __int64 t, __int64 slices) {
                 const double* vectors[columnsOfTile];
                 __int64 lengths[columnsOfTile];
                 __int64 common = t + slices;
                 for (__int64 k = 0; k < columns; ++k) {
                     const CWavChnlChnlDatazq& pair = dataset.m_mCC[r][c + k];
                     vectors[k] = pair.m_data;
                     lengths[k] = pair.m_data == nullptr ? 0 : pair.m_size;
                     common = std::min(common, lengths[k]);
                 }
                 __int64 s = t;
                 for (; s < common; ++s) {
                     double* const line = values + (s * rows + r) * cols + c;
                     for (__int64 k = 0; k < columns; ++k)
                         line[k] = vectors[k][s];
                 }
                 for (; s < t + slices; ++s) {
                     double* const line = values + (s * rows + r) * cols + c;
                     for (__int64 k = 0; k < columns; ++k)
                         line[k] = s < lengths[k] ? vectors[k][s] : 0.0;
                 }
             });
}

}  // namespace binding
