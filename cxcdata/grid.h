// The grid of a dataset: a table of row pointers, each to an array of channel-pair vectors. The
// real row and column counts stand in front of the table, inside the same allocation, so that
// the grid can always be measured and released although the public counters of a dataset may
// say anything (a file or a host may have set them).
#pragma once

#include "cxcdata/CWavChnlChnlDatazq.h"
#include "framework.h"

#include <memory>

namespace cxc::grid {

/// The values that a vector really holds: null and 0 for a vector without values.
struct Values {
    double* data = nullptr;  // element t is time slice t
    __int64 size = 0;        // elements, never negative
};

/// A table of `rows` empty rows for a grid of rows x cols vectors. Null on failure, negative
/// counts included. Only such a table may be given to the other operations.
CWavChnlChnlDatazq** newTable(__int64 rows, __int64 cols);

/// Makes row r: an array of cols default-constructed vectors; a row that is there already stays.
/// Returns whether the row is there now; false outside the table.
bool newRow(CWavChnlChnlDatazq** table, __int64 r);

/// The real counts; 0 for a null table.
__int64 rows(CWavChnlChnlDatazq* const* table);
__int64 cols(CWavChnlChnlDatazq* const* table);

/// Row r; null outside the table or where the row was never made.
CWavChnlChnlDatazq* row(CWavChnlChnlDatazq* const* table, __int64 r);

/// Vector (r, c); null outside the real grid or where the row was never made.
CWavChnlChnlDatazq* cell(CWavChnlChnlDatazq* const* table, __int64 r, __int64 c);

/// The values of a vector (which may be null).
inline Values values(const CWavChnlChnlDatazq* vector) {
    if (vector == nullptr || vector->m_data == nullptr || vector->m_size < 1) return {};
    return {vector->m_data, vector->m_size};
}

/// The values of vector (r, c); none where there is no such vector.
inline Values values(CWavChnlChnlDatazq* const* table, __int64 r, __int64 c) {
    return values(cell(table, r, c));
}

/// Whether some vector holds at least nTim values.
bool reaches(CWavChnlChnlDatazq* const* table, __int64 nTim);

/// Whether the grid really is rows x cols with every row made.
bool hasShape(CWavChnlChnlDatazq* const* table, __int64 rows, __int64 cols);

/// Destroys every row and the table. Null is allowed.
void release(CWavChnlChnlDatazq** table);

/// Prepares the heap for the rows of a grid of rows x cols vectors of nTim values that are made in
/// order, some rows at a time. Changes nothing but speed.
class HeapReserve {
public:
    HeapReserve(__int64 rows, __int64 cols, __int64 nTim);

    /// Called before row r and its vectors' arrays are made.
    void beforeRow(__int64 r) const;

private:
    __int64 m_rows;
    __int64 m_batch = 1;         // rows that are reserved together
    double m_bytesPerRow = 0.0;  // 0: rows too large for a reserve
};

struct Releaser {
    void operator()(CWavChnlChnlDatazq** table) const { release(table); }
};

/// A grid under construction: released when it goes out of scope, unless release() of the owner
/// handed it on.
using Owner = std::unique_ptr<CWavChnlChnlDatazq*[], Releaser>;

}  // namespace cxc::grid
