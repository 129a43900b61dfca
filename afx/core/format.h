// The formatter behind CString::Format: one for every platform, because the C libraries differ in
// what %s and %I64d mean and in how they spell infinities.
#pragma once

#include "afx_types.h"

#include <cstdarg>
#include <string>

namespace afx {

std::basic_string<TCHAR> format(LPCTSTR format, va_list arguments);

}  // namespace afx
