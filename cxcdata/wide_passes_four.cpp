// Compiled for machines with AVX2: what is instantiated here must not be shared with other
// sources, or they would be given it too. All of it is for FourDoubles alone.
#if defined(CXC_WIDE_PASSES)

#if defined(_MSC_VER)
#pragma fp_contract(off)  // the other compilers have an option for it
#endif

#include "cxcdata/element_wise.h"
#include "cxcdata/four_doubles.h"
#include "cxcdata/lane_kernel.h"
#include "cxcdata/several_arrays.h"

namespace cxc::pass::detail {

void addWithFour(Kind kind, First first, const double* const* vectors, long long length,
                 double* fields) {
    addLanesOf<FourDoubles>(kind, first, vectors, length, fields);
}

void meansWithFour(Kind kind, const double* sizes, double* fields) {
    takeMeansOf<FourDoubles>(kind, sizes, fields);
}

void addArrayWithFour(double* sums, const double* values, long long n) {
    elementWise<FourDoubles>(sums, values, n,
                             [](FourDoubles sum, FourDoubles value) { return plus(sum, value); });
}

void addArraysWithFour(double* sums, const double* const* arrays, int count, long long n) {
    addArraysOf<FourDoubles>(sums, arrays, count, n);
}

void summariseArraysWithFour(double* least, double* sums, double* most, const double* const* arrays,
                             int count, long long n) {
    summariseArraysOf<FourDoubles>(least, sums, most, arrays, count, n);
}

}  // namespace cxc::pass::detail

#endif
