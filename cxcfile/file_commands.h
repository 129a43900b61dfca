// Saving and exporting for callers whose dataset may be released while the file dialog is open.
#pragma once

#include "cxcdata/CSnsCohData09File.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

#include <functional>

namespace cxc {

/// Asked once, after the file dialog: whether the dataset is still there. After a false the dataset
/// is not touched any more, no file is written, and the result is 0.
using StillThere = std::function<bool()>;

/// As CSnsCohData09File::saveCxcDataStd.
CXC_API int saveDataset(CSnsCohData09File& data, const StillThere& stillThere);

/// As CSnsCohData09File::exportCxc2txtFile.
CXC_API int exportDataset(CSnsCohData09File& data, const StillThere& stillThere);

}  // namespace cxc
