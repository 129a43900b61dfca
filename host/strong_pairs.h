// The pairs that are worth a line.
#pragma once

#include "host/shown_slice.h"

#include <vector>

struct StrongPair {
    int row;
    int col;
    double value;
    double strength;  // 0 to 1 of the largest magnitude in the range
};

/// The strongest pairs of two different sensors, at most `count`, the weakest first so that strong
/// lines lie on top. Values of 0 and NaN are never among them. Of a symmetric pair the stronger
/// direction counts.
std::vector<StrongPair> strongPairs(const ShownSlice& shown, std::size_t count);

/// `color` on white: as it is for strength 1, white for 0.
COLORREF paled(COLORREF color, double strength);
