#include "siblings/matrix/CMMatrix2D.h"

#include <algorithm>
#include <cstdint>
#include <new>

CMMatrix2D::~CMMatrix2D() {
    release();
}

void CMMatrix2D::release() {
    delete[] m_values;
    delete[] m_rows;
    m_rows = nullptr;
    m_values = nullptr;
    m_rowCount = 0;
    m_colCount = 0;
}

double** CMMatrix2D::checkInit(__int64 rows, __int64 cols, bool zero) {
    if (m_rows != nullptr && rows == m_rowCount && cols == m_colCount) {
        if (zero) std::fill_n(m_values, rows * cols, 0.0);
        return m_rows;
    }
    release();
    constexpr __int64 most = PTRDIFF_MAX / static_cast<__int64>(sizeof(double));
    if (rows < 1 || cols < 1 || rows > most / cols) return nullptr;
    try {
        m_rows = new double*[static_cast<std::size_t>(rows)];
        m_values = new double[static_cast<std::size_t>(rows * cols)]();
    } catch (CMemoryException* e) {
        e->Delete();
        release();
        return nullptr;
    } catch (const std::bad_alloc&) {
        release();
        return nullptr;
    }
    for (__int64 r = 0; r < rows; ++r)
        m_rows[r] = m_values + r * cols;
    m_rowCount = rows;
    m_colCount = cols;
    return m_rows;
}
