// The accumulators of passes.h for eight rows at once, on machines that work on four doubles
// together. Results are those of passes.h to the last bit: every row has a lane of its own.
#pragma once

#include "cxcdata/cxc_api.h"

namespace cxc::pass {

/// Sums alone gain nothing: they wait for the addition before, however wide it is.
enum class Kind { narrow, magnitudeRange, statistic };

constexpr int wideRows = 8;

/// Whether this machine, and this build, can.
CXC_API bool canGoWide();

/// Adds elements 0 .. length-1 of the eight rows to their accumulators. fields[f * wideRows + r] is
/// field f of row r, as passes.h lists the fields. Requires canGoWide(), and a kind that is not
/// narrow.
CXC_API void addWide(Kind kind, const double* const* rows, long long length, double* fields);

}  // namespace cxc::pass
