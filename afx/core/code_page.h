// Narrow text: the ANSI code page of Windows; code page 1252 elsewhere.
#pragma once

#include "afx_types.h"

namespace afx {

/// 16-bit units that `length` bytes of narrow text become.
int wideLength(const char* text, int length);

/// Writes wideLength() units to `target`.
void widen(const char* text, int length, TCHAR* target);

}  // namespace afx
