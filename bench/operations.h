// The operations of the library that are measured: timed by cxc_bench, counted by
// cxc_instructions.
#pragma once

#include "bench/shape.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Everything that an operation needs is there before it runs the first time.
struct Operation {
    std::string name;
    std::function<void()> run;              // what is measured
    std::function<void()> after = nullptr;  // puts things back, where `run` leaves any
};

/// The operations on a dataset, or on a group.
std::vector<Operation> operations(const Shape& shape);

/// Bytes of the dataset, or of all datasets of the group, without what the allocator adds.
std::size_t datasetBytes(const Shape& shape);

}  // namespace bench
