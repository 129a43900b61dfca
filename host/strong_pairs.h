// The pairs that are worth a line, and the colours of lines.
#pragma once

#include "host/shown_slice.h"

#include <vector>

struct StrongPair {
    int first;  // the lower sensor
    int second;
    double value;
    double strength;  // 0 to 1 of the largest magnitude in the range
};

/// The strongest pairs of two different sensors, at most `count`, the weakest first so that strong
/// lines lie on top. Values of 0 and NaN are never among them. Where a pair has a value in both
/// directions the stronger one counts.
std::vector<StrongPair> strongPairs(const ShownSlice& shown, std::size_t count);

/// The colour of a line on white: the dataset's basic colour for the weakest, from a third of the
/// range on its active colour for positive and its suppressive one for negative values; the weaker
/// the paler. `strength` is 0 to 1.
COLORREF lineColor(const ShownSlice& shown, bool negative, double strength);
