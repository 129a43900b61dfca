#include "cxcdata/CSnsCohDatazq.h"

#include "cxcdata/accumulators.h"
#include "cxcdata/allocation.h"
#include "cxcdata/grid.h"
#include "cxcdata/wide_passes.h"

#include <algorithm>

namespace {

// Makes `target` the one-element vector of the mean of `source`, backed up.
bool collapse(const CWavChnlChnlDatazq* source, __int64 nTim, CWavChnlChnlDatazq& target) {
    if (target.checkInitData(1, true) == nullptr) return false;
    if (source != nullptr) {
        const cxc::grid::Values values = cxc::grid::values(source);
        const __int64 end = std::min(values.size, nTim);
        double sum = 0.0;
        for (__int64 t = 0; t < end; ++t)
            sum = cxc::pass::plus(sum, values.data[t]);
        target.m_data[0] = sum / static_cast<double>(nTim);
        target.m_chnlA = source->m_chnlA;
        target.m_chnlB = source->m_chnlB;
        target.m_pairFlag = source->m_pairFlag;
    }
    target.m_curIdx = 0;
    return target.bkDataIn() != 0;
}

// A grid of the real shape of `table`, collapsed over time; none where memory lacks.
cxc::grid::Owner collapsedGrid(CWavChnlChnlDatazq* const* table, __int64 nTim) {
    const __int64 rows = cxc::grid::rows(table);
    const __int64 cols = cxc::grid::cols(table);
    constexpr __int64 valueAndBackup = 2;
    if (!cxc::gridFitsMemory(rows, cols, valueAndBackup)) return nullptr;
    cxc::grid::Owner grid(cxc::grid::newTable(rows, cols));
    if (grid == nullptr) return nullptr;
    for (__int64 r = 0; r < rows; ++r) {
        if (!cxc::grid::newRow(grid.get(), r)) return nullptr;
        for (__int64 c = 0; c < cols; ++c) {
            if (!collapse(cxc::grid::cell(table, r, c), nTim, *cxc::grid::cell(grid.get(), r, c)))
                return nullptr;
        }
    }
    return grid;
}

}  // namespace

int CSnsCohDatazq::sumDatSetSns(const CSnsCohDatazq& other) {
    if (other.m_mCC == nullptr || other.m_snsRowTotal < 1 || m_mCC == nullptr || m_snsRowTotal < 1)
        return 0;
    if (m_cohTimTotal != other.m_cohTimTotal || m_snsRowTotal != other.m_snsRowTotal) return 0;
    const __int64 rows =
        std::min({m_snsRowTotal, cxc::grid::rows(m_mCC), cxc::grid::rows(other.m_mCC)});
    // Deliberately bounded by the row count: the dataset is taken as square.
    const __int64 cols =
        std::min({m_snsRowTotal, cxc::grid::cols(m_mCC), cxc::grid::cols(other.m_mCC)});
    const cxc::pass::Width width = cxc::pass::widest();
    for (__int64 r = 0; r < rows; ++r) {
        const CWavChnlChnlDatazq* const mine = cxc::grid::row(m_mCC, r);
        const CWavChnlChnlDatazq* const theirs = cxc::grid::row(other.m_mCC, r);
        for (__int64 c = 0; mine != nullptr && theirs != nullptr && c < cols; ++c) {
            const cxc::grid::Values values = cxc::grid::values(mine + c);
            const cxc::grid::Values others = cxc::grid::values(theirs + c);
            // No assumption that the two differ: a dataset may be added to itself.
            cxc::pass::addArray(width, values.data, others.data,
                                std::min(values.size, others.size));
        }
    }
    return 1;
}

int CSnsCohDatazq::accumulateTime1() {
    if (m_snsRowTotal < 1 || m_snsColTotal < 0 || m_cohTimTotal < 1 || m_mCC == nullptr) return 0;
    cxc::grid::Owner grid = collapsedGrid(m_mCC, m_cohTimTotal);
    if (grid == nullptr) return 0;
    cxc::grid::release(m_mCC);
    m_mCC = grid.release();
    m_cohTimTotal = 1;
    m_selectEnd = 0;
    m_selectBegin = 0;
    return 1;
}
