// Some slices and pairs of a dataset as a dataset of its own.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"

#include <vector>

namespace cxc {

/// Gives `made`, which must not be `from`, a grid of the named slices, rows and columns of `from`,
/// in the order of the lists, with the channel numbers and flags of the pairs, and everything else
/// that describes `from`. Values and pairs that are absent in `from` are 0.0; backups are left
/// behind. All slices are selected, pair (0, 0) is current, and the cached range is that of the
/// part. Latency and note are those of `from`, for the caller to adapt.
/// Returns 1; 0, with `made` without a grid, when a list is empty, an index lies outside the
/// counters of `from`, `from` has no grid, or memory is refused.
CXC_API int makePart(CSnsCohDatazq& made, const CSnsCohDatazq& from,
                     const std::vector<__int64>& slices, const std::vector<__int64>& rows,
                     const std::vector<__int64>& columns);

/// Whether there is something at all of these indices: whether 0 of makePart means memory.
CXC_API bool partIsThere(const CSnsCohDatazq& from, const std::vector<__int64>& slices,
                         const std::vector<__int64>& rows, const std::vector<__int64>& columns);

}  // namespace cxc
