#include "cxcpkg/across_datasets.h"

#include "cxcdata/grid.h"
#include "cxcdata/passes.h"
#include "cxcdata/two_doubles.h"
#include "cxcpkg/dataset_owner.h"

#include <algorithm>

namespace cxc {
namespace {

void add(double* sums, const double* values, __int64 n) {
    __int64 t = 0;
    for (; t + 2 <= n; t += 2)
        (TwoDoubles::load(sums + t) + TwoDoubles::load(values + t)).store(sums + t);
    if (t < n) sums[t] += values[t];
}

void divide(double* values, __int64 n, double divisor) {
    const TwoDoubles divisors(divisor, divisor);
    __int64 t = 0;
    for (; t + 2 <= n; t += 2)
        (TwoDoubles::load(values + t) / divisors).store(values + t);
    if (t < n) values[t] /= divisor;
}

// The older value stays for equal ones and for a NaN on either side.
void lower(double* least, const double* values, __int64 n) {
    __int64 t = 0;
    for (; t + 2 <= n; t += 2)
        lowered(TwoDoubles::load(least + t), TwoDoubles::load(values + t)).store(least + t);
    if (t < n) least[t] = pass::lowered(least[t], values[t]);
}

void raise(double* most, const double* values, __int64 n) {
    __int64 t = 0;
    for (; t + 2 <= n; t += 2)
        raised(TwoDoubles::load(most + t), TwoDoubles::load(values + t)).store(most + t);
    if (t < n) most[t] = pass::raised(most[t], values[t]);
}

// Calls visit(c, values, n) for the pairs of row r of a dataset that a result of that shape takes
// values from, up to the first one without an array.
template <class Visit>
void eachPair(const CSnsCohDatazq& dataset, const CSnsCohDatazq& shape, __int64 r, Visit visit) {
    const CWavChnlChnlDatazq* const row = grid::row(dataset.m_mCC, r);
    if (row == nullptr || r >= dataset.m_snsRowTotal) return;
    const __int64 cols =
        std::min({dataset.m_snsColTotal, shape.m_snsColTotal, grid::cols(dataset.m_mCC)});
    const __int64 slices = std::min(dataset.m_cohTimTotal, shape.m_cohTimTotal);
    for (__int64 c = 0; c < cols && row[c].m_data != nullptr; ++c)
        visit(c, row[c].m_data, std::min(slices, row[c].m_size));
}

// Row by row over all datasets, so that the row of the results stays in the cache while the
// datasets stream past. Calls take(r, dataset, first) for each dataset and done(r, number of
// datasets) after the last one.
template <class Take, class Done>
void eachRow(const CPtrArray& datasets, __int64 rows, Take take, Done done) {
    for (__int64 r = 0; r < rows; ++r) {
        __int64 count = 0;
        for (INT_PTR i = 0; i < datasets.GetSize(); ++i) {
            const CSnsCohDatazq* const dataset = datasetAt(datasets, i);
            if (dataset == nullptr) continue;
            take(r, *dataset, count == 0);
            ++count;
        }
        done(r, count);
    }
}

void divideRow(CSnsCohDatazq& mean, __int64 r, __int64 count) {
    if (count < 2) return;
    CWavChnlChnlDatazq* const row = grid::row(mean.m_mCC, r);
    for (__int64 c = 0; c < mean.m_snsColTotal; ++c)
        divide(row[c].m_data, row[c].m_size, static_cast<double>(count));
}

}  // namespace

void meanOf(const CPtrArray& datasets, CSnsCohDatazq& mean) {
    eachRow(
        datasets, mean.m_snsRowTotal,
        [&](__int64 r, const CSnsCohDatazq& dataset, bool) {
            CWavChnlChnlDatazq* const sums = grid::row(mean.m_mCC, r);
            eachPair(dataset, mean, r, [sums](__int64 c, const double* values, __int64 n) {
                add(sums[c].m_data, values, n);
            });
        },
        [&](__int64 r, __int64 count) { divideRow(mean, r, count); });
}

void summaryOf(const CPtrArray& datasets, CSnsCohDatazq& minimum, CSnsCohDatazq& mean,
               CSnsCohDatazq& maximum) {
    eachRow(
        datasets, mean.m_snsRowTotal,
        [&](__int64 r, const CSnsCohDatazq& dataset, bool first) {
            CWavChnlChnlDatazq* const least = grid::row(minimum.m_mCC, r);
            CWavChnlChnlDatazq* const sums = grid::row(mean.m_mCC, r);
            CWavChnlChnlDatazq* const most = grid::row(maximum.m_mCC, r);
            eachPair(dataset, mean, r, [=](__int64 c, const double* values, __int64 n) {
                if (first) {
                    least[c].copy_(least[c].m_data, values, n);
                    most[c].copy_(most[c].m_data, values, n);
                } else {
                    lower(least[c].m_data, values, n);
                    raise(most[c].m_data, values, n);
                }
                add(sums[c].m_data, values, n);
            });
        },
        [&](__int64 r, __int64 count) { divideRow(mean, r, count); });
}

void copyChannels(const CSnsCohDatazq& from, CSnsCohDatazq& to) {
    const __int64 rows = std::min(grid::rows(from.m_mCC), grid::rows(to.m_mCC));
    const __int64 cols = std::min(grid::cols(from.m_mCC), grid::cols(to.m_mCC));
    for (__int64 r = 0; r < rows; ++r) {
        const CWavChnlChnlDatazq* const source = grid::row(from.m_mCC, r);
        CWavChnlChnlDatazq* const target = grid::row(to.m_mCC, r);
        for (__int64 c = 0; source != nullptr && c < cols; ++c) {
            target[c].m_chnlA = source[c].m_chnlA;
            target[c].m_chnlB = source[c].m_chnlB;
        }
    }
}

}  // namespace cxc
