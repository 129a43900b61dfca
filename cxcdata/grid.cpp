#include "cxcdata/grid.h"

#include "cxcdata/allocation.h"
#include "cxcdata/prefetch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace cxc::grid {
namespace {

struct Shape {
    __int64 rows;
    __int64 cols;
};

static_assert(sizeof(Shape) % alignof(CWavChnlChnlDatazq*) == 0,
              "the row table follows the shape without a gap");

const Shape& shapeOf(CWavChnlChnlDatazq* const* table) {
    return *(reinterpret_cast<const Shape*>(table) - 1);
}

// An allocator keeps its notes on an array in front of it: one cache miss for each array released,
// unless they are asked for together.
void prefetchAllocatorWords(const CWavChnlChnlDatazq* vectors, __int64 count) {
    if (vectors == nullptr) return;
    for (__int64 c = 0; c < count; ++c)
        prefetch(vectors[c].m_data, -1);
}

}  // namespace

CWavChnlChnlDatazq** newTable(__int64 rowCount, __int64 colCount) {
    constexpr __int64 most = (PTRDIFF_MAX - static_cast<__int64>(sizeof(Shape))) /
                             static_cast<__int64>(sizeof(CWavChnlChnlDatazq*));
    if (rowCount < 0 || colCount < 0 || rowCount > most) return nullptr;
    const __int64 bytes = static_cast<__int64>(sizeof(Shape)) +
                          rowCount * static_cast<__int64>(sizeof(CWavChnlChnlDatazq*));
    unsigned char* block = newArray<unsigned char>(bytes);
    if (block == nullptr) return nullptr;
    new (block) Shape{rowCount, colCount};
    auto** table = reinterpret_cast<CWavChnlChnlDatazq**>(block + sizeof(Shape));
    for (__int64 r = 0; r < rowCount; ++r)
        table[r] = nullptr;
    return table;
}

bool newRow(CWavChnlChnlDatazq** table, __int64 r) {
    if (r < 0 || r >= rows(table)) return false;
    if (table[r] == nullptr) table[r] = newArray<CWavChnlChnlDatazq>(cols(table));
    return table[r] != nullptr;
}

__int64 rows(CWavChnlChnlDatazq* const* table) {
    return table == nullptr ? 0 : shapeOf(table).rows;
}

__int64 cols(CWavChnlChnlDatazq* const* table) {
    return table == nullptr ? 0 : shapeOf(table).cols;
}

CWavChnlChnlDatazq* row(CWavChnlChnlDatazq* const* table, __int64 r) {
    return r < 0 || r >= rows(table) ? nullptr : table[r];
}

CWavChnlChnlDatazq* cell(CWavChnlChnlDatazq* const* table, __int64 r, __int64 c) {
    CWavChnlChnlDatazq* const vectors = row(table, r);
    return vectors == nullptr || c < 0 || c >= cols(table) ? nullptr : vectors + c;
}

bool reaches(CWavChnlChnlDatazq* const* table, __int64 nTim) {
    for (__int64 r = 0; r < rows(table); ++r) {
        for (__int64 c = 0; c < cols(table); ++c) {
            if (values(table, r, c).size >= nTim) return true;
        }
    }
    return nTim < 1;
}

bool hasShape(CWavChnlChnlDatazq* const* table, __int64 rowCount, __int64 colCount) {
    if (table == nullptr || rows(table) != rowCount || cols(table) != colCount) return false;
    for (__int64 r = 0; r < rowCount; ++r) {
        if (table[r] == nullptr) return false;
    }
    return true;
}

void release(CWavChnlChnlDatazq** table) {
    if (table == nullptr) return;
    const __int64 rowCount = rows(table);
    for (__int64 r = 0; r < rowCount; ++r) {
        prefetchAllocatorWords(table[r], cols(table));
        delete[] table[r];
    }
    delete[](reinterpret_cast<unsigned char*>(table) - sizeof(Shape));
}

HeapReserve::HeapReserve(__int64 rowCount, __int64 colCount, __int64 nTim) : m_rows(rowCount) {
    // In doubles, which cannot overflow; an allocator adds two words to each array.
    const double perPair =
        sizeof(CWavChnlChnlDatazq) + static_cast<double>(nTim) * sizeof(double) + 16.0;
    const double perRow = static_cast<double>(colCount) * perPair;
    if (colCount < 1 || nTim < 1 || perRow > largestReserve) return;
    m_batch = static_cast<__int64>(largestReserve / perRow);
    m_bytesPerRow = perRow;
}

void HeapReserve::beforeRow(__int64 r) const {
    if (r % m_batch != 0) return;
    const auto batch = static_cast<double>(std::min(m_batch, m_rows - r));
    reserveHeap(static_cast<std::size_t>(batch * m_bytesPerRow));
}

}  // namespace cxc::grid
