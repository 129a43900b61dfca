#include "cxcpkg/across_datasets.h"

#include "cxcdata/allocation.h"
#include "cxcdata/element_wise.h"
#include "cxcdata/grid.h"
#include "cxcdata/two_doubles.h"
#include "cxcdata/wide_passes.h"
#include "cxcpkg/dataset_owner.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace cxc {
namespace {

RowWatcher& rowWatcher() {
    thread_local RowWatcher watcher;
    return watcher;
}

bool goesOn(__int64 done, __int64 rows) {
    const RowWatcher& watcher = rowWatcher();
    return !watcher || watcher(done, rows);
}

// Arrays of the same length from datasets that follow one another in the list. Several are taken
// at once, each cell still in list order, so that the result is loaded and stored less often.
template <std::size_t Arrays>
using Several = std::array<const double*, Arrays>;

void divide(double* values, __int64 n, double divisor) {
    const TwoDoubles divisors(divisor, divisor);
    elementWise(values, values, n,
                [divisors](TwoDoubles, TwoDoubles both) { return both / divisors; });
}

// Minimum, sum and maximum in one pass. Where these are the first values of all, the extremes start
// as those of the first array.
template <std::size_t Arrays>
void summarise(double* least, double* sums, double* most, const Several<Arrays>& arrays, __int64 n,
               bool first) {
    if (first && n > 0) {
        std::copy_n(arrays[0], n, least);
        std::copy_n(arrays[0], n, most);
    }
    pass::summariseArrays(pass::widest(), least, sums, most, arrays.data(),
                          static_cast<int>(Arrays), n);
}

// Some datasets of the list, by one row: as many as fit on the stack.
class Members {
public:
    static constexpr INT_PTR most = 64;

    // From entry `begin` of the list on, as far as row r of the results needs.
    Members(const Together& from, INT_PTR begin, __int64 r) {
        const INT_PTR end = std::min(begin + most, from.datasets.GetSize());
        for (INT_PTR i = begin; i < end; ++i) {
            const CSnsCohDatazq* const dataset = datasetAt(from.datasets, i);
            if (dataset == nullptr) continue;
            Member& member = m_members[m_count++];
            member.row = r < dataset->m_snsRowTotal ? grid::row(dataset->m_mCC, r) : nullptr;
            member.cols = member.row == nullptr
                              ? 0
                              : std::min(dataset->m_snsColTotal, grid::cols(dataset->m_mCC));
            member.slices = std::min(dataset->m_cohTimTotal, from.slices);
        }
    }

    int count() const { return m_count; }

    // Calls take(m, c, arrays, n) for the columns [begin, end) of the members, m being the first of
    // those that the arrays belong to. A member's first pair without an array ends its row.
    template <class Take>
    void visit(__int64 begin, __int64 end, Take take) {
        int m = 0;
        for (; m + 4 <= m_count; m += 4)
            visitSeveral<4>(m, begin, end, take);
        if (m + 2 <= m_count) {
            visitSeveral<2>(m, begin, end, take);
            m += 2;
        }
        if (m < m_count) visitSeveral<1>(m, begin, end, take);
    }

private:
    struct Member {
        const CWavChnlChnlDatazq* row;
        __int64 cols;
        __int64 slices;
    };

    template <std::size_t Arrays, class Take>
    void visitSeveral(int m, __int64 begin, __int64 end, Take take) {
        for (__int64 c = begin; c < end; ++c) {
            Several<Arrays> arrays;
            __int64 n = 0;
            if (alike(m_members + m, c, arrays, n)) {
                take(m, c, arrays, n);
                continue;
            }
            for (int k = 0; k < static_cast<int>(Arrays); ++k)
                visitOne(m + k, c, take);
        }
    }

    // Whether all members from `member` on have an array in column c, of one length.
    template <std::size_t Arrays>
    static bool alike(const Member* member, __int64 c, Several<Arrays>& arrays, __int64& n) {
        bool all = true;
        for (std::size_t k = 0; k < Arrays; ++k) {
            if (c >= member[k].cols) return false;
            const CWavChnlChnlDatazq& pair = member[k].row[c];
            const __int64 length = std::min(member[k].slices, pair.m_size);
            if (k == 0) n = length;
            arrays[k] = pair.m_data;
            all = all && pair.m_data != nullptr && length == n;
        }
        return all;
    }

    template <class Take>
    void visitOne(int m, __int64 c, Take take) {
        Member& member = m_members[m];
        if (c >= member.cols) return;
        const CWavChnlChnlDatazq& pair = member.row[c];
        if (pair.m_data == nullptr)
            member.cols = 0;
        else
            take(m, c, Several<1>{pair.m_data}, std::min(member.slices, pair.m_size));
    }

    Member m_members[most] = {};
    int m_count = 0;
};

// The grids of Count results under construction, the one at MeanAt being divided at the end. They
// are made piece by piece just before the datasets are taken into them, so that a piece is worked
// on while it is in the cache.
template <std::size_t Count, std::size_t MeanAt>
class Results {
public:
    using Row = std::array<CWavChnlChnlDatazq*, Count>;

    explicit Results(const Together& from) : m_from(from) {}

    // Calls take(row, c, arrays, n, first) for the pairs of the datasets that are taken into the
    // pairs row[...][c] of the results, for each pair in list order; `first` is set when the first
    // array is that of the first dataset. Returns whether there was memory and nobody gave it up.
    template <class Take>
    bool make(Take take) {
        if (!makeTables()) return false;
        for (__int64 r = 0; r < m_from.rows; ++r) {
            Row row;
            if (!makeRow(r, row) || !fillRow(r, row, take)) return false;
            finishRow(r, row);
            if (!goesOn(r + 1, m_from.rows)) return false;
        }
        return true;
    }

    // To datasets that are new.
    void handOver(const std::array<CSnsCohDatazq*, Count>& datasets) {
        for (std::size_t k = 0; k < Count; ++k) {
            datasets[k]->m_mCC = m_grids[k].release();
            datasets[k]->m_snsRowTotal = m_from.rows;
            datasets[k]->m_snsColTotal = m_from.cols;
            datasets[k]->m_cohTimTotal = m_from.slices;
        }
    }

private:
    bool makeTables() {
        constexpr __int64 count = static_cast<__int64>(Count);
        // Each alone first: the product is small then.
        if (m_from.slices < 1 || !gridFitsMemory(m_from.rows, m_from.cols, m_from.slices) ||
            !gridFitsMemory(count * m_from.rows, m_from.cols, m_from.slices))
            return false;
        for (grid::Owner& grid : m_grids) {
            grid.reset(grid::newTable(m_from.rows, m_from.cols));
            if (grid == nullptr) return false;
        }
        return true;
    }

    bool makeRow(__int64 r, Row& row) {
        for (std::size_t k = 0; k < Count; ++k) {
            if (!grid::newRow(m_grids[k].get(), r)) return false;
            row[k] = grid::row(m_grids[k].get(), r);
        }
        return true;
    }

    bool makePairs(const Row& row, __int64 begin, __int64 end) const {
        for (CWavChnlChnlDatazq* const pairs : row) {
            for (__int64 c = begin; c < end; ++c) {
                if (pairs[c].checkInitData(m_from.slices, true) == nullptr) return false;
            }
        }
        return true;
    }

    // Columns of all results that stay in the fastest cache together.
    __int64 columnsAtOnce() const {
        constexpr __int64 cacheBytes = 24 << 10;
        constexpr __int64 pairBytes = static_cast<__int64>(sizeof(CWavChnlChnlDatazq));
        constexpr __int64 valueBytes = static_cast<__int64>(sizeof(double));
        const __int64 bytes = pairBytes + valueBytes * std::min(m_from.slices, cacheBytes);
        return std::max<__int64>(cacheBytes / (static_cast<__int64>(Count) * bytes), 1);
    }

    template <class Take>
    bool fillRow(__int64 r, const Row& row, Take take) const {
        const __int64 step = columnsAtOnce();
        bool any = false;  // a dataset came in an earlier round
        for (INT_PTR i = 0; i < m_from.datasets.GetSize(); i += Members::most) {
            Members members(m_from, i, r);
            for (__int64 c = 0; c < m_from.cols; c += step) {
                const __int64 end = std::min(c + step, m_from.cols);
                if (i == 0 && !makePairs(row, c, end)) return false;
                members.visit(c, end, [&](int m, __int64 at, const auto& arrays, __int64 n) {
                    take(row, at, arrays, n, m == 0 && !any);
                });
            }
            any = any || members.count() > 0;
        }
        return true;
    }

    void finishRow(__int64 r, const Row& row) const {
        if (m_count >= 2) {
            for (__int64 c = 0; c < m_from.cols; ++c)
                divide(row[MeanAt][c].m_data, m_from.slices, static_cast<double>(m_count));
        }
        const CWavChnlChnlDatazq* const source = grid::row(m_from.reference.m_mCC, r);
        if (source == nullptr) return;
        const __int64 cols = std::min(m_from.cols, grid::cols(m_from.reference.m_mCC));
        for (CWavChnlChnlDatazq* const target : row) {
            for (__int64 c = 0; c < cols; ++c) {
                target[c].m_chnlA = source[c].m_chnlA;
                target[c].m_chnlB = source[c].m_chnlB;
            }
        }
    }

    const Together& m_from;
    const int m_count = countDatasets(m_from.datasets);
    std::array<grid::Owner, Count> m_grids;
};

}  // namespace

void watchRows(RowWatcher watcher) {
    rowWatcher() = std::move(watcher);
}

bool meanOf(const Together& from, CSnsCohDatazq& mean) {
    Results<1, 0> results(from);
    const bool made =
        results.make([](const auto& row, __int64 c, const auto& arrays, __int64 n, bool) {
            pass::addArrays(pass::widest(), row[0][c].m_data, arrays.data(),
                            static_cast<int>(arrays.size()), n);
        });
    if (made) results.handOver({&mean});
    return made;
}

bool summaryOf(const Together& from, CSnsCohDatazq& minimum, CSnsCohDatazq& mean,
               CSnsCohDatazq& maximum) {
    Results<3, 1> results(from);
    const bool made =
        results.make([](const auto& row, __int64 c, const auto& arrays, __int64 n, bool first) {
            summarise(row[0][c].m_data, row[1][c].m_data, row[2][c].m_data, arrays, n, first);
        });
    if (made) results.handOver({&minimum, &mean, &maximum});
    return made;
}

Accumulation::Accumulation(CSnsCohDatazq& sums) : m_sums(sums) {}

Accumulation::Accumulation(CSnsCohDatazq& minimum, CSnsCohDatazq& sums, CSnsCohDatazq& maximum,
                           bool first)
    : m_sums(sums), m_minimum(&minimum), m_maximum(&maximum), m_first(first) {}

void Accumulation::take(const CSnsCohDatazq& dataset) {
    const __int64 rows =
        std::min({dataset.m_snsRowTotal, grid::rows(dataset.m_mCC), m_sums.m_snsRowTotal});
    const __int64 cols =
        std::min({dataset.m_snsColTotal, grid::cols(dataset.m_mCC), m_sums.m_snsColTotal});
    for (__int64 r = 0; r < rows; ++r) {
        const CWavChnlChnlDatazq* const row = grid::row(dataset.m_mCC, r);
        if (row == nullptr) continue;
        for (__int64 c = 0; c < cols; ++c)
            takePair(r, c, row[c], dataset.m_cohTimTotal);
    }
}

void Accumulation::takePair(__int64 r, __int64 c, const CWavChnlChnlDatazq& pair, __int64 slices) {
    // The first pair without an array ends the row, as in Members.
    m_rowEnded = (m_rowEnded && c > 0) || pair.m_data == nullptr;
    if (m_rowEnded || r >= m_sums.m_snsRowTotal || c >= m_sums.m_snsColTotal) return;
    const __int64 n = std::min({slices, pair.m_size, m_sums.m_cohTimTotal});
    double* const sums = m_sums.m_mCC[r][c].m_data;
    if (m_minimum == nullptr) {
        pass::addArray(pass::widest(), sums, pair.m_data, n);
        return;
    }
    summarise(m_minimum->m_mCC[r][c].m_data, sums, m_maximum->m_mCC[r][c].m_data,
              Several<1>{pair.m_data}, n, m_first);
}

void sumsToMeans(CSnsCohDatazq& sums, int datasets) {
    if (datasets < 2) return;
    for (__int64 r = 0; r < sums.m_snsRowTotal; ++r) {
        for (__int64 c = 0; c < sums.m_snsColTotal; ++c)
            divide(sums.m_mCC[r][c].m_data, sums.m_cohTimTotal, static_cast<double>(datasets));
    }
}

}  // namespace cxc
