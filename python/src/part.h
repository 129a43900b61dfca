// Parts of datasets.
#pragma once

#include "cxc.h"

#include <memory>
#include <vector>

namespace binding {

/// As cxc::makePart. Raises IndexError where `from` has no such slice or sensor, or a list is
/// empty.
std::shared_ptr<CSnsCohDatazq> partOf(CSnsCohDatazq& from, const std::vector<__int64>& slices,
                                      const std::vector<__int64>& rows,
                                      const std::vector<__int64>& columns);

}  // namespace binding
