// One double, worked on as two_doubles.h works on two, whose sums say which of two NaNs stays.
#pragma once

#include "cxcdata/accumulators.h"

#include <array>

namespace cxc {

struct OneDouble {
    static constexpr int lanes = 1;
    static constexpr int step = 1;
    double only = 0.0;

    static OneDouble load(const double* source) { return {source[0]}; }
    void store(double* target) const { target[0] = only; }

    static OneDouble slice(const double* const* vectors, long long t) { return {vectors[0][t]}; }
    static std::array<OneDouble, step> slices(const double* const* vectors, long long t) {
        return {slice(vectors, t)};
    }
};

inline OneDouble operator+(OneDouble a, OneDouble b) {
    return {pass::plus(a.only, b.only)};
}
inline OneDouble operator*(OneDouble a, OneDouble b) {
    return {a.only * b.only};
}
inline OneDouble magnitude(OneDouble a) {
    return {pass::magnitude(a.only)};
}
inline OneDouble lowered(OneDouble least, OneDouble value) {
    return {pass::lowered(least.only, value.only)};
}
inline OneDouble raised(OneDouble most, OneDouble value) {
    return {pass::raised(most.only, value.only)};
}

}  // namespace cxc
