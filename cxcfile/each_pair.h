// Reading a dataset whose values need not be in memory together.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

#include <functional>

namespace cxc {

/// Is given pair (row, column) of a dataset: all pairs, row by row. Of `dataset` what stands before
/// the values has been read, the sizes always. `pair` is used again for the next one. It may throw.
using PairTaker = std::function<void(const CSnsCohDatazq& dataset, __int64 row, __int64 column,
                                     const CWavChnlChnlDatazq& pair)>;

/// Loads the record of a dataset, as its serialize does, without keeping the values: `dataset` ends
/// up without a grid, its counters telling the sizes of the one in the record. A grid that it had
/// is released first. One pair is in memory at a time. Returns 1, or 0 after the messages of
/// serialize, when pairs may have been given already, and for an archive that stores. Throws the
/// framework's archive and file exceptions, and what `take` throws.
CXC_API int loadEachPair(CArchive& ar, CSnsCohDatazq& dataset, const PairTaker& take);

/// The same as a record for passRecord.
struct EachPair {
    CSnsCohDatazq& dataset;  ///< Ends up as loadEachPair leaves it; not owned.
    const PairTaker& take;   ///< Is given each pair; not owned.

    /// loadEachPair of them.
    int serialize(CArchive& ar) { return loadEachPair(ar, dataset, take); }
};

}  // namespace cxc
