// Compiled for machines with AVX-512F: what is instantiated here must not be shared with other
// sources, or they would be given it too. All of it is for EightDoubles alone.
#if defined(CXC_WIDE_PASSES)

#if defined(_MSC_VER)
#pragma fp_contract(off)  // the other compilers have an option for it
#endif

#include "cxcdata/eight_doubles.h"
#include "cxcdata/element_wise.h"
#include "cxcdata/lane_kernel.h"
#include "cxcdata/several_arrays.h"

namespace cxc::pass::detail {

void addWithEight(Kind kind, First first, const double* const* vectors, long long length,
                  double* fields) {
    addLanesOf<EightDoubles>(kind, first, vectors, length, fields);
}

void meansWithEight(Kind kind, const double* sizes, double* fields) {
    takeMeansOf<EightDoubles>(kind, sizes, fields);
}

void addArrayWithEight(double* sums, const double* values, long long n) {
    elementWise<EightDoubles>(
        sums, values, n, [](EightDoubles sum, EightDoubles value) { return plus(sum, value); });
}

void addArraysWithEight(double* sums, const double* const* arrays, int count, long long n) {
    addArraysOf<EightDoubles>(sums, arrays, count, n);
}

void summariseArraysWithEight(double* least, double* sums, double* most,
                              const double* const* arrays, int count, long long n) {
    summariseArraysOf<EightDoubles>(least, sums, most, arrays, count, n);
}

}  // namespace cxc::pass::detail

#endif
