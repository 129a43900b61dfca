// How much a manager lists of what a file only claims.
#pragma once

#include "cxcdata/grid.h"

namespace cxc {

/// The count of rows is a field that a file may set to anything, and a grid may have a million rows
/// without a column. Rows that have no pair show zeros, and so many of them are shown in no time
/// that a user would notice.
constexpr __int64 mostRowsWithoutPairs = 1000;

/// Rows of the grid; 0 where they have no columns.
inline __int64 rowsWithPairs(CWavChnlChnlDatazq* const* table) {
    return grid::cols(table) < 1 ? 0 : grid::rows(table);
}

}  // namespace cxc
