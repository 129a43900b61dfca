// What the machine itself needs for as many bytes, in the same layout: the limits of operations.
#pragma once

#include "bench/operations.h"

#include <vector>

namespace bench {

/// The limits of the operations on a dataset, or on a group. Requires that operations(shape) was
/// called: the files have as many bytes as its dataset.
std::vector<Operation> limits(const Shape& shape);

}  // namespace bench
