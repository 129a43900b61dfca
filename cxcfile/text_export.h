// The text export without its file dialog, for programs that nobody sits at.
#pragma once

#include "cxcdata/CSnsCohData.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

namespace cxc {

/// Writes the text of CSnsCohData09File::exportCxc2txtFile to an open file. False where the
/// counters of the dataset describe nothing that can be written (the file is untouched then) or
/// memory lacks. Throws the file's exceptions.
CXC_API bool writeText(CFile& file, const CSnsCohData& data);

}  // namespace cxc
