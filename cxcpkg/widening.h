// Widening a selection of time slices to a wanted width.
#pragma once

#include "framework.h"

namespace cxc {

/// An inclusive range of slices. The indices may be anything, also reversed.
struct Selection {
    __int64 first;
    __int64 last;
};

/// last - first, which needs 65 bits.
struct Width {
    explicit Width(const Selection& selection);

    bool negative;
    unsigned long long magnitude;
};

bool operator==(const Width& a, const Width& b);
bool operator<(const Width& a, const Width& b);

/// Widens `selection`, narrower than `wanted`, inside the slices 0 .. total - 1, in passes: the
/// first index moves down by one (not below 0), then the last one up by one (not above
/// total - 1), until the width is reached; that is tested after each move. Returns false when a
/// pass finds both ends at their bounds; the selection is then as wide as it can be.
/// Requires `wanted` positive. Takes as many steps as the width has bits, not as it has slices.
bool widen(Selection& selection, const Width& wanted, __int64 total);

}  // namespace cxc
