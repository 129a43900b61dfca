#include "cxcdata/grid.h"

#include "cxcdata/allocation.h"

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
    for (__int64 r = 0; r < rowCount; ++r)
        delete[] table[r];
    delete[](reinterpret_cast<unsigned char*>(table) - sizeof(Shape));
}

}  // namespace cxc::grid
