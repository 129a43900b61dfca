// Passes with as many doubles together as the machine can work on: the accumulators for eight
// vectors side by side, and arrays that are taken into others element by element. A sum in a fixed
// order waits for the addition before it; sums of different vectors need not wait for each other.
#pragma once

#include "cxcdata/accumulators.h"
#include "cxcdata/cxc_api.h"

namespace cxc::pass {

constexpr int laneCount = 8;

/// How many doubles are worked on together. Two is there on every machine.
enum class Width { two, four, eight };

/// What becomes of element 0 of each vector.
enum class First { adds, starts };

/// Whether this machine, and this build, has the width.
CXC_API bool has(Width width);
/// The greatest width there is, found out once.
CXC_API Width widest();

/// Adds elements 0 .. length-1 of eight vectors to their accumulators: fields[f * laneCount + k] is
/// field f of the accumulator of vector k, only written where the first elements start them.
/// Results are the same to the last bit for every width. Requires has(width) and length > 0.
CXC_API void addLanes(Width width, Kind kind, First first, const double* const* vectors,
                      long long length, double* fields);

/// Turns the sums of eight vectors into means over sizes[k] elements, and the mean of squares into
/// its root. For the kinds with a sum of values.
CXC_API void takeMeans(Width width, Kind kind, const double* sizes, double* fields);

/// sums[t] += values[t] for t from 0 to n-1; nothing for n below 1. Both arrays may be the same.
/// Results are the same to the last bit for every width; of two NaNs the one in `sums` stays.
/// Requires has(width).
CXC_API void addArray(Width width, double* sums, const double* values, long long n);

/// The same for `count` arrays, one after the other, none of which may be `sums`.
CXC_API void addArrays(Width width, double* sums, const double* const* arrays, int count,
                       long long n);

/// addArrays, and in the same way least[t] and most[t] become the least and the greatest value of
/// themselves and those of the arrays; the older one stays for equal values and for a NaN on either
/// side. The results are three arrays, none of which is among the others.
CXC_API void summariseArrays(Width width, double* least, double* sums, double* most,
                             const double* const* arrays, int count, long long n);

namespace detail {

// Compiled for the machines that have them.
void addWithFour(Kind kind, First first, const double* const* vectors, long long length,
                 double* fields);
void meansWithFour(Kind kind, const double* sizes, double* fields);
void addArrayWithFour(double* sums, const double* values, long long n);
void addArraysWithFour(double* sums, const double* const* arrays, int count, long long n);
void summariseArraysWithFour(double* least, double* sums, double* most, const double* const* arrays,
                             int count, long long n);
void addWithEight(Kind kind, First first, const double* const* vectors, long long length,
                  double* fields);
void meansWithEight(Kind kind, const double* sizes, double* fields);
void addArrayWithEight(double* sums, const double* values, long long n);
void addArraysWithEight(double* sums, const double* const* arrays, int count, long long n);
void summariseArraysWithEight(double* least, double* sums, double* most,
                              const double* const* arrays, int count, long long n);

}  // namespace detail

}  // namespace cxc::pass
