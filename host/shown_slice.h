// One slice of a dataset, copied out for painting.
#pragma once

#include "framework.h"

#include <vector>

class CSnsCohDatazq;

/// What the views paint: a copy, because a host must not rely on a dataset from one message to the
/// next.
struct ShownSlice {
    CString name;
    int rows = 0;
    int cols = 0;
    __int64 slice = 0;
    __int64 slices = 0;
    double latency = 0.0;  // of the slice [s]; 0 without a sampling rate
    double least = 0.0;    // range of all slices without the diagonal
    double most = 0.0;
    std::vector<double> values;  // rows x cols
    COLORREF basic = 0;
    COLORREF active = 0;
    COLORREF suppressive = 0;
    bool fromDataset = false;  // there is a dataset, maybe without values

    double at(int row, int col) const {
        return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) +
                      static_cast<std::size_t>(col)];
    }
    bool empty() const { return values.empty(); }

    /// A number that differs when anything that is painted differs.
    std::size_t fingerprint() const;
};

/// Empty for null and for a dataset without a grid. Leaves the dataset as it is.
ShownSlice readSlice(CSnsCohDatazq* dataset);

/// Where the views get their slice from, each time they paint.
class SliceSource {
public:
    virtual ~SliceSource() = default;
    /// As it is now; lives until the next call.
    virtual const ShownSlice& current() = 0;
};
