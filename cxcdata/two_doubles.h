// Two doubles that are worked on together, with the results that each would have alone.
#pragma once

#include <array>

#if defined(__SSE2__) || defined(_M_X64)
#define CXC_TWO_DOUBLES_SSE2
#include <emmintrin.h>
#else
#include <cmath>
#endif

namespace cxc {

#if defined(CXC_TWO_DOUBLES_SSE2)

struct TwoDoubles {
    static constexpr int lanes = 2;
    static constexpr int step = 2;
    __m128d both;

    TwoDoubles() : both(_mm_setzero_pd()) {}
    explicit TwoDoubles(__m128d value) : both(value) {}
    TwoDoubles(double first, double second) : both(_mm_set_pd(second, first)) {}

    static TwoDoubles load(const double* source) { return TwoDoubles(_mm_loadu_pd(source)); }
    void store(double* target) const { _mm_storeu_pd(target, both); }

    /// The first of them alone, which stands in both places; nothing behind it is touched.
    static TwoDoubles loadFirst(const double* source, int) { return {source[0], source[0]}; }
    void storeFirst(double* target, int) const { _mm_store_sd(target, both); }

    /// Element t of each of two vectors.
    static TwoDoubles slice(const double* const* vectors, long long t) {
        return {vectors[0][t], vectors[1][t]};
    }
    /// Elements t .. t+step-1 of two vectors.
    static std::array<TwoDoubles, step> slices(const double* const* vectors, long long t);
};

inline TwoDoubles operator+(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_add_pd(a.both, b.both));
}
inline TwoDoubles operator-(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_sub_pd(a.both, b.both));
}
inline TwoDoubles operator*(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_mul_pd(a.both, b.both));
}
inline TwoDoubles operator/(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_div_pd(a.both, b.both));
}
inline TwoDoubles squareRoot(TwoDoubles a) {
    return TwoDoubles(_mm_sqrt_pd(a.both));
}
inline TwoDoubles magnitude(TwoDoubles a) {
    return TwoDoubles(_mm_andnot_pd(_mm_set1_pd(-0.0), a.both));
}
// The instructions give the second operand for a NaN and for equal zeros: the older value stays.
inline TwoDoubles lowered(TwoDoubles least, TwoDoubles value) {
    return TwoDoubles(_mm_min_pd(value.both, least.both));
}
inline TwoDoubles raised(TwoDoubles most, TwoDoubles value) {
    return TwoDoubles(_mm_max_pd(value.both, most.both));
}
/// sum + value, where of two NaNs the older one stays, as pass::plus has it.
inline TwoDoubles plus(TwoDoubles sum, TwoDoubles value) {
    const __m128d old = _mm_cmpunord_pd(sum.both, sum.both);
    const __m128d added = _mm_add_pd(sum.both, value.both);
    return TwoDoubles(_mm_or_pd(_mm_and_pd(old, sum.both), _mm_andnot_pd(old, added)));
}
inline TwoDoubles firsts(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_unpacklo_pd(a.both, b.both));
}
inline TwoDoubles seconds(TwoDoubles a, TwoDoubles b) {
    return TwoDoubles(_mm_unpackhi_pd(a.both, b.both));
}

#else

struct TwoDoubles {
    static constexpr int lanes = 2;
    static constexpr int step = 2;
    double one = 0.0;
    double two = 0.0;

    TwoDoubles() = default;
    TwoDoubles(double first, double second) : one(first), two(second) {}

    static TwoDoubles load(const double* source) { return {source[0], source[1]}; }
    void store(double* target) const {
        target[0] = one;
        target[1] = two;
    }

    /// The first of them alone, which stands in both places; nothing behind it is touched.
    static TwoDoubles loadFirst(const double* source, int) { return {source[0], source[0]}; }
    void storeFirst(double* target, int) const { target[0] = one; }

    /// Element t of each of two vectors.
    static TwoDoubles slice(const double* const* vectors, long long t) {
        return {vectors[0][t], vectors[1][t]};
    }
    /// Elements t .. t+step-1 of two vectors.
    static std::array<TwoDoubles, step> slices(const double* const* vectors, long long t);
};

inline TwoDoubles operator+(TwoDoubles a, TwoDoubles b) {
    return {a.one + b.one, a.two + b.two};
}
inline TwoDoubles operator-(TwoDoubles a, TwoDoubles b) {
    return {a.one - b.one, a.two - b.two};
}
inline TwoDoubles operator*(TwoDoubles a, TwoDoubles b) {
    return {a.one * b.one, a.two * b.two};
}
inline TwoDoubles operator/(TwoDoubles a, TwoDoubles b) {
    return {a.one / b.one, a.two / b.two};
}
inline TwoDoubles squareRoot(TwoDoubles a) {
    return {std::sqrt(a.one), std::sqrt(a.two)};
}
inline TwoDoubles magnitude(TwoDoubles a) {
    return {std::fabs(a.one), std::fabs(a.two)};
}
inline TwoDoubles lowered(TwoDoubles least, TwoDoubles value) {
    return {value.one < least.one ? value.one : least.one,
            value.two < least.two ? value.two : least.two};
}
inline TwoDoubles raised(TwoDoubles most, TwoDoubles value) {
    return {value.one > most.one ? value.one : most.one,
            value.two > most.two ? value.two : most.two};
}
inline TwoDoubles plus(TwoDoubles sum, TwoDoubles value) {
    return {std::isnan(sum.one) ? sum.one : sum.one + value.one,
            std::isnan(sum.two) ? sum.two : sum.two + value.two};
}
inline TwoDoubles firsts(TwoDoubles a, TwoDoubles b) {
    return {a.one, b.one};
}
inline TwoDoubles seconds(TwoDoubles a, TwoDoubles b) {
    return {a.two, b.two};
}

#endif

inline std::array<TwoDoubles, TwoDoubles::step> TwoDoubles::slices(const double* const* vectors,
                                                                   long long t) {
    const TwoDoubles a = load(vectors[0] + t);
    const TwoDoubles b = load(vectors[1] + t);
    return {firsts(a, b), seconds(a, b)};
}

}  // namespace cxc
