#include "part.h"

#include "calls.h"

#include <algorithm>

namespace py = pybind11;

namespace binding {
namespace {

using Dataset = CSnsCohDatazq;
using Indices = std::vector<__int64>;

// What a dataset is, without its grid.
std::shared_ptr<Dataset> descriptionOf(const Dataset& from) {
    auto made = std::make_shared<Dataset>();
    *made = from;
    made->m_mCC = nullptr;  // it stays with `from`
    made->cleanSnsCohData();
    return made;
}

void copyPair(const CWavChnlChnlDatazq& from, const Indices& slices, CWavChnlChnlDatazq& made) {
    made.m_chnlA = from.m_chnlA;
    made.m_chnlB = from.m_chnlB;
    made.m_pairFlag = from.m_pairFlag;
    const __int64 have = from.m_data == nullptr ? 0 : from.m_size;
    double* to = made.m_data;
    for (const __int64 t : slices)
        *to++ = t < have ? from.m_data[t] : 0.0;
}

bool within(const Indices& indices, __int64 count) {
    return !indices.empty() && std::all_of(indices.begin(), indices.end(),
                                           [&](__int64 i) { return i >= 0 && i < count; });
}

enum class Made : int { noMemory = 0, yes = 1, outside = 2 };

Made copy(const Dataset& from, const Indices& slices, const Indices& rows, const Indices& columns,
          std::shared_ptr<Dataset>& made) {
    if (from.m_mCC == nullptr || !within(slices, from.m_cohTimTotal) ||
        !within(rows, from.m_snsRowTotal) || !within(columns, from.m_snsColTotal))
        return Made::outside;
    made = descriptionOf(from);
    if (made->checkInitSnsCohData(static_cast<__int64>(rows.size()),
                                  static_cast<__int64>(columns.size()),
                                  static_cast<__int64>(slices.size()), true) == 0)
        return Made::noMemory;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (std::size_t c = 0; c < columns.size(); ++c)
            copyPair(from.m_mCC[rows[r]][columns[c]], slices, made->m_mCC[r][c]);
    }
    made->m_headerLong2 = made->m_cohTimTotal;
    made->setSelect(0, made->m_cohTimTotal - 1);
    made->checkDataRange();
    return Made::yes;
}

}  // namespace

std::shared_ptr<Dataset> partOf(Dataset& from, const Indices& slices, const Indices& rows,
                                const Indices& columns) {
    std::shared_ptr<Dataset> made;
    const Outcome outcome =
        run([&] { return static_cast<int>(copy(from, slices, rows, columns, made)); });
    switch (static_cast<Made>(outcome.result)) {
        case Made::yes:
            return made;
        case Made::outside:
            throw py::index_error("no such slice or sensor, or none at all");
        case Made::noMemory:
            break;
    }
    PyErr_NoMemory();
    throw py::error_already_set();
}

}  // namespace binding
