// Parts of datasets.
#pragma once

#include "cxc.h"

#include <memory>
#include <vector>

namespace binding {

/// A dataset with some slices, rows and columns of `from`, in the order of the lists, and with
/// everything else that describes it; backups are left behind. All slices are selected, and the
/// cached range is that of the part. Raises IndexError where `from` has no such slice or sensor,
/// or a list is empty.
std::shared_ptr<CSnsCohDatazq> partOf(CSnsCohDatazq& from, const std::vector<__int64>& slices,
                                      const std::vector<__int64>& rows,
                                      const std::vector<__int64>& columns);

}  // namespace binding
