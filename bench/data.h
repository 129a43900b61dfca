// Data that the benchmarks share.
#pragma once

#include "cxc.h"

#include <memory>
#include <vector>

namespace bench {

/// Values of separately allocated vectors, as the library holds them.
using Vectors = std::vector<std::unique_ptr<double[]>>;

/// A dataset of n x n pairs of nTim slices with values in (-1, 1), the same in every run.
std::unique_ptr<CSnsCohDatazq> makeDataset(__int64 n, __int64 nTim, unsigned seed = 1);

/// `count` vectors of nTim values each.
Vectors makeVectors(__int64 count, __int64 nTim, unsigned seed = 1);

/// Keeps the optimiser from dropping a result.
void keep(double value);

}  // namespace bench
