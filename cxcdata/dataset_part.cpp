#include "cxcdata/dataset_part.h"

#include "cxcdata/grid.h"

#include <algorithm>

namespace cxc {
namespace {

using Indices = std::vector<__int64>;

bool within(const Indices& indices, __int64 count) {
    return !indices.empty() && std::all_of(indices.begin(), indices.end(),
                                           [&](__int64 i) { return i >= 0 && i < count; });
}

void copyPair(const CWavChnlChnlDatazq& from, const Indices& slices, CWavChnlChnlDatazq& made) {
    made.m_chnlA = from.m_chnlA;
    made.m_chnlB = from.m_chnlB;
    made.m_pairFlag = from.m_pairFlag;
    const grid::Values values = grid::values(&from);
    double* to = made.m_data;
    for (const __int64 t : slices)
        *to++ = t < values.size ? values.data[t] : 0.0;
}

// The fields without the values.
void describe(CSnsCohDatazq& made, const CSnsCohDatazq& from) {
    made.cleanSnsCohData();
    made = from;
    made.m_mCC = nullptr;  // it stays with `from`
    made.cleanSnsCohData();
}

}  // namespace

bool partIsThere(const CSnsCohDatazq& from, const Indices& slices, const Indices& rows,
                 const Indices& columns) {
    return from.m_mCC != nullptr && within(slices, from.m_cohTimTotal) &&
           within(rows, from.m_snsRowTotal) && within(columns, from.m_snsColTotal);
}

int makePart(CSnsCohDatazq& made, const CSnsCohDatazq& from, const Indices& slices,
             const Indices& rows, const Indices& columns) {
    describe(made, from);
    if (!partIsThere(from, slices, rows, columns)) return 0;
    if (made.checkInitSnsCohData(static_cast<__int64>(rows.size()),
                                 static_cast<__int64>(columns.size()),
                                 static_cast<__int64>(slices.size()), true) == 0)
        return 0;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (std::size_t c = 0; c < columns.size(); ++c) {
            if (const auto* const pair = grid::cell(from.m_mCC, rows[r], columns[c]))
                copyPair(*pair, slices, made.m_mCC[r][c]);
        }
    }
    made.m_headerLong2 = made.m_cohTimTotal;
    made.setSelect(0, made.m_cohTimTotal - 1);
    made.checkDataRange();
    return 1;
}

}  // namespace cxc
