// CMMatrix2D: a rows x columns matrix of doubles behind a table of row pointers. Stand-in for the
// host's matrix library, with exactly what the coherence library asks of it.
#pragma once

#include "framework.h"
#include "siblings/matrix/matrix_api.h"

/// A matrix of doubles behind a table of row pointers.
///
/// Element (r, c) is at getDataPP()[r][c]. A matrix has storage of at least 1 x 1 or none. Not to
/// be copied. No virtual operations: arrays of the final type are made and released with array new
/// and delete.
class CXC_MATRIX_API CMMatrix2D {
public:
    /// Without storage.
    CMMatrix2D() = default;
    /// Releases the storage.
    ~CMMatrix2D();
    /// Not to be copied.
    CMMatrix2D(const CMMatrix2D&) = delete;
    /// Not to be assigned.
    CMMatrix2D& operator=(const CMMatrix2D&) = delete;

    /// Gives the matrix the shape rows x cols and returns its row table; element (r, c) is at
    /// table[r][c]. Storage of that shape is kept with its values, new storage is all 0.0;
    /// `zero` clears kept values as well. Null when a count is below 1 or memory is refused; the
    /// matrix is then without storage.
    double** checkInit(__int64 rows, __int64 cols, bool zero);

    /// Row table, owned by the matrix; null without storage. Valid until the shape changes.
    double** getDataPP() { return m_rows; }
    /// Number of rows; 0 without storage.
    __int64 getRow() const { return m_rowCount; }
    /// Number of columns; 0 without storage.
    __int64 getCol() const { return m_colCount; }

private:
    void release();

    double** m_rows = nullptr;   // rowCount pointers into m_values
    double* m_values = nullptr;  // rowCount x colCount, row after row
    __int64 m_rowCount = 0;
    __int64 m_colCount = 0;
};
