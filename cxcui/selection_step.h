// The step of the buttons "<<<" and ">>>" through the time slices.
#pragma once

#include "cxcdata/index_math.h"
#include "framework.h"

#include <algorithm>

namespace cxc {

struct Slices {
    __int64 first;
    __int64 last;  // inclusive
};

/// Both ends moved by `step`, -1 or 1; a selection that would leave the slices 0 .. total - 1 wraps
/// to their other end with its width kept. Example: 0..2 of 10 slices, step -1, gives 7..9.
constexpr Slices stepped(Slices selection, __int64 total, int step) {
    const __int64 last = std::max(selection.first, selection.last);
    const __int64 width = wrapSub(last, selection.first);
    Slices moved{wrapAdd(selection.first, step), wrapAdd(last, step)};
    if (moved.first < 0) moved = {wrapSub(wrapSub(total, width), 1), wrapSub(total, 1)};
    if (moved.last >= total) moved = {0, width};
    moved.last = std::max(moved.first, moved.last);
    return moved;
}

}  // namespace cxc
