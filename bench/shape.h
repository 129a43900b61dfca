// What is measured on: a dataset of n x n pairs of nTim slices, or a group of such datasets.
#pragma once

#include "framework.h"

#include <cstddef>
#include <string>

namespace bench {

struct Shape {
    int members = 0;  // datasets of the group; 0 for a dataset by itself
    __int64 n = 0;
    __int64 nTim = 0;

    __int64 pairs() const { return n * n; }
    std::size_t values() const { return static_cast<std::size_t>(n * n * nTim); }
};

/// Of a text as 64x64x100 (a dataset) or 10x64x64x100 (a group of ten).
/// Throws std::invalid_argument for any other text.
Shape shapeOf(const std::string& text);

}  // namespace bench
