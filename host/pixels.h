// Pictures in memory.
#pragma once

#include "framework.h"

#include <vector>

/// Pixels as bitmaps have them, 0x00RRGGBB, rows from above.
struct Pixels {
    int width;
    int height;
    std::vector<DWORD> colors;
};

DWORD pixelOf(COLORREF color);

/// The mean of each block of `factor` x `factor` pixels becomes one pixel; both sides must be
/// multiples of `factor`.
Pixels shrunk(const DWORD* colors, int width, int height, int factor);
