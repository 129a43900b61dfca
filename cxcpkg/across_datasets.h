// Values of many datasets taken together, cell by cell: mean and extremes.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

#include <functional>

namespace cxc {

/// @cond internal
/// What results over many datasets are made from.
struct Together {
    const CPtrArray& datasets;       // null entries are skipped
    const CSnsCohDatazq& reference;  // its channel numbers are copied as far as it has pairs
    __int64 rows;                    // shape of the results, at least 1 each
    __int64 cols;
    __int64 slices;
};

/// Gives `mean`, a new dataset, its grid. Every dataset is added, in list order, where both have a
/// cell; the sums start from 0.0 and are divided by the number of datasets, all of them, if there
/// are two or more. A pair without an array of values ends its row of that dataset.
/// Returns whether there was memory; without it the result stays without a grid.
bool meanOf(const Together& from, CSnsCohDatazq& mean);

/// As meanOf for three new datasets. The extremes start as the values of the first dataset, where
/// it has no cell from 0.0. An equal value and a NaN never replace one.
bool summaryOf(const Together& from, CSnsCohDatazq& minimum, CSnsCohDatazq& mean,
               CSnsCohDatazq& maximum);
/// @endcond

/// Asked after each row of the results of averageAll and summaryAll of a group how many rows are
/// done, of how many. The answer false gives the results up, as where memory lacks.
using RowWatcher = std::function<bool(__int64 done, __int64 rows)>;

/// Sets who is asked on this thread from now on; an empty function for nobody. It must not throw.
CXC_API void watchRows(RowWatcher watcher);

/// Takes one dataset into sums and, for a summary, into extremes, value by value where both have a
/// cell.
/// For datasets that come one after another: give the results the shape of the largest, all 0.0,
/// take every dataset in order, then make the sums means. The values are those of averageAll and
/// summaryAll of a group to the last bit.
class CXC_API Accumulation {
public:
    /// For sums alone, which have to outlive it.
    explicit Accumulation(CSnsCohDatazq& sums);

    /// For sums and extremes of one shape, which have to outlive it.
    /// `first` is set for the first dataset of all, whose values start the extremes. Values that it
    /// does not have start from 0.0.
    Accumulation(CSnsCohDatazq& minimum, CSnsCohDatazq& sums, CSnsCohDatazq& maximum, bool first);

    /// A dataset that is in memory. A pair without an array of values ends its row.
    void take(const CSnsCohDatazq& dataset);

    /// For a dataset that is never whole in memory: the pair of row r and column c, the pairs of a
    /// row being given in order. `slices` is the dataset's m_cohTimTotal.
    void takePair(__int64 r, __int64 c, const CWavChnlChnlDatazq& pair, __int64 slices);

private:
    CSnsCohDatazq& m_sums;
    CSnsCohDatazq* m_minimum = nullptr;
    CSnsCohDatazq* m_maximum = nullptr;
    bool m_first = false;
    bool m_rowEnded = false;
};

/// Divides by the number of datasets, if there are two or more.
CXC_API void sumsToMeans(CSnsCohDatazq& sums, int datasets);

}  // namespace cxc
