#include "cxcdata/array_exchange.h"

#include "cxcdata/allocation.h"
#include "cxcdata/grid.h"
#include "cxcdata/prefetch.h"
#include "cxcdata/transpose.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <thread>

namespace cxc {
namespace {

// Filling fetches the tile beside the one it works on, which the machine does not do for so many
// slices.
constexpr __int64 fillColumns = 64;
constexpr __int64 fillSlices = 32;

// The part of the array that belongs to one row of pairs: slice t begins at first + t * stride.
template <class Element>
struct Row {
    Element* first;
    __int64 stride;  // elements from one slice to the next
};

void fillVectors(Row<const double> row, CWavChnlChnlDatazq* vectors, __int64 columns,
                 __int64 nTim) {
    double* data[fillColumns];
    for (__int64 k = 0; k < columns; ++k)
        data[k] = vectors[k].m_data;
    for (__int64 t = 0; t < nTim; t += fillSlices) {
        transpose::walkTile<fillColumns>(
            columns, t, std::min(t + fillSlices, nTim),
            [&](__int64 k, __int64 s) {
                const double* const line = row.first + s * row.stride + k;
                if (k % doublesPerCacheLine == 0) {
                    prefetch(line, fillColumns);
                    prefetch(line + row.stride, fillColumns);
                }
                transpose::square(line, line + row.stride, data[k] + s, data[k + 1] + s);
            },
            [&](__int64 k, __int64 s) { data[k][s] = row.first[s * row.stride + k]; });
    }
}

bool makeVectors(CWavChnlChnlDatazq* vectors, __int64 columns, __int64 nTim) {
    for (__int64 k = 0; k < columns; ++k) {
        // Not cleared: every element is written before anyone sees the vector.
        double* const values = newArray<double>(nTim);
        if (values == nullptr) return false;
        vectors[k].setData(values, nTim);
    }
    return true;
}

void fillRow(Row<const double> row, CWavChnlChnlDatazq* vectors, __int64 cols, __int64 nTim) {
    for (__int64 c = 0; c < cols; c += fillColumns) {
        const __int64 columns = std::min(fillColumns, cols - c);
        fillVectors({row.first + c, row.stride}, vectors + c, columns, nTim);
    }
}

// A grid under construction, filled by two threads: one makes the arrays of row after row, which
// the other fills behind it; then both fill what is left. Making an array for each pair takes as
// long as filling it.
class Filling {
public:
    Filling(CWavChnlChnlDatazq** table, const double* values, __int64 nTim)
        : m_table(table),
          m_values(values),
          m_rows(grid::rows(table)),
          m_cols(grid::cols(table)),
          m_nTim(nTim) {}

    /// Whether there was memory.
    bool run() {
        std::thread helper = isLarge() ? newHelper() : std::thread();
        const bool made = makeRows();
        if (made)
            fillRows();
        else
            m_failed = true;
        if (helper.joinable()) helper.join();
        return made;
    }

private:
    bool isLarge() const {
        // Fewer values are filled before a thread has started.
        constexpr double least = 1 << 20;
        return static_cast<double>(m_rows) * static_cast<double>(m_cols) *
                   static_cast<double>(m_nTim) >
               least;
    }

    // None where the system refuses one: then the work is done by this thread alone.
    std::thread newHelper() {
        try {
            return std::thread([this] { fillRows(); });
        } catch (const std::exception&) {
            return {};
        }
    }

    bool makeRows() {
        const grid::HeapReserve reserve(m_rows, m_cols, m_nTim);
        for (__int64 r = 0; r < m_rows; ++r) {
            reserve.beforeRow(r);
            if (!grid::newRow(m_table, r) || !makeVectors(m_table[r], m_cols, m_nTim)) return false;
            m_made.store(r + 1, std::memory_order_release);
        }
        return true;
    }

    // Fills rows that no thread has taken, waiting for those that are not made yet.
    void fillRows() {
        for (__int64 r = m_next++; r < m_rows; r = m_next++) {
            while (m_made.load(std::memory_order_acquire) <= r) {
                if (m_failed) return;
                std::this_thread::yield();
            }
            fillRow({m_values + r * m_cols, m_rows * m_cols}, m_table[r], m_cols, m_nTim);
        }
    }

    CWavChnlChnlDatazq** const m_table;
    const double* const m_values;
    const __int64 m_rows;
    const __int64 m_cols;
    const __int64 m_nTim;
    std::atomic<__int64> m_made{0};  // rows whose arrays are there
    std::atomic<__int64> m_next{0};  // the first row that nobody has taken
    std::atomic<bool> m_failed{false};
};

// Slices begin..end-1 of `columns` vectors into the array; all of them hold that many.
void copyVectors(const grid::Values* vectors, Row<double> row, __int64 columns, __int64 begin,
                 __int64 end) {
    const double* data[transpose::tileColumns];
    for (__int64 k = 0; k < columns; ++k)
        data[k] = vectors[k].data;
    transpose::walkTile<transpose::tileColumns>(
        columns, begin, end,
        [&](__int64 k, __int64 s) {
            double* const line = row.first + s * row.stride + k;
            // The lines of the next tile: the machine does not follow so many that are written.
            if (k % doublesPerCacheLine == 0) {
                prefetch(line, transpose::tileSlices * row.stride);
                prefetch(line, (transpose::tileSlices + 1) * row.stride);
            }
            transpose::square(data[k] + s, data[k + 1] + s, line, line + row.stride);
        },
        [&](__int64 k, __int64 s) { row.first[s * row.stride + k] = data[k][s]; });
}

void copyShortVectors(const grid::Values* vectors, Row<double> row, __int64 columns, __int64 begin,
                      __int64 end) {
    for (__int64 s = begin; s < end; ++s) {
        for (__int64 k = 0; k < columns; ++k)
            row.first[s * row.stride + k] = s < vectors[k].size ? vectors[k].data[s] : 0.0;
    }
}

// Slices begin..end-1 of `columns` pairs, a few slices at a time.
void copyBlock(const grid::Values* vectors, Row<double> row, __int64 columns, __int64 begin,
               __int64 end) {
    transpose::prefetchBlock(vectors, columns, begin, end);
    __int64 shortest = end;
    for (__int64 k = 0; k < columns; ++k)
        shortest = std::min(shortest, vectors[k].size);
    for (__int64 t = begin; t < end; t += transpose::tileSlices) {
        const __int64 tileEnd = std::min(t + transpose::tileSlices, end);
        const __int64 common = std::clamp(shortest, t, tileEnd);
        copyVectors(vectors, row, columns, t, common);
        copyShortVectors(vectors, row, columns, common, tileEnd);
    }
}

void copyRow(const CSnsCohData& dataset, __int64 r, Row<double> row) {
    const __int64 cols = dataset.m_snsColTotal;
    for (__int64 t = 0; t < dataset.m_cohTimTotal; t += transpose::blockSlices) {
        const __int64 end = std::min(t + transpose::blockSlices, dataset.m_cohTimTotal);
        for (__int64 c = 0; c < cols; c += transpose::tileColumns) {
            const __int64 columns = std::min(transpose::tileColumns, cols - c);
            grid::Values vectors[transpose::tileColumns];
            for (__int64 k = 0; k < columns; ++k)
                vectors[k] = grid::values(dataset.m_mCC, r, c + k);
            copyBlock(vectors, {row.first + c, row.stride}, columns, t, end);
        }
    }
}

}  // namespace

int datasetFromArray(CSnsCohData& dataset, const double* values, __int64 nTim, __int64 rows,
                     __int64 cols) {
    dataset.cleanSnsCohData();
    if (values == nullptr || nTim < 1 || rows < 1 || cols < 1 || !gridFitsMemory(rows, cols, nTim))
        return 0;
    grid::Owner made(grid::newTable(rows, cols));
    if (made == nullptr || !Filling(made.get(), values, nTim).run()) return 0;
    dataset.m_mCC = made.release();
    dataset.m_snsRowTotal = rows;
    dataset.m_snsColTotal = cols;
    dataset.m_cohTimTotal = nTim;
    dataset.m_selectEnd = nTim - 1;
    return 1;
}

void arrayFromDataset(const CSnsCohData& dataset, double* values) {
    const __int64 rows = dataset.m_snsRowTotal;
    const __int64 cols = dataset.m_snsColTotal;
    for (__int64 r = 0; r < rows; ++r)
        copyRow(dataset, r, {values + r * cols, rows * cols});
}

}  // namespace cxc
