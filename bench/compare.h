// Pairs of benchmarks: an operation of the library and the limit that the machine sets for it,
// measured in the same run. The report is the ratio of their medians, beside a target.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace bench {

/// One repetition: does the work once and returns the seconds that count.
using Work = std::function<double()>;

/// Registers `ours` and `limit`; the report's row says median(ours) / median(limit) <= target.
void compare(const std::string& name, double target, Work ours, const std::string& limitName,
             Work limit);

/// A figure that is not a time, e.g. bytes; reported as measured <= target.
void figure(const std::string& name, double target, const std::string& unit,
            std::function<double()> measure);

/// Seconds that `f` takes.
double seconds(const std::function<void()>& f);

}  // namespace bench
