// Text between the framework's 16-bit units and the system's bytes.
#pragma once

#include "afx_string.h"

#include <string>

namespace afx {

/// UTF-8 for file names and terminals. A unit DC80 to DCFF without its partner stands for one raw
/// byte, so that file names that are no UTF-8 survive a round trip.
AFX_API std::string utf8(LPCTSTR text);
AFX_API CString utf16(const std::string& bytes);

}  // namespace afx
