// Four doubles that are worked on together, as two_doubles.h works on two. Needs AVX2: only for
// sources that are compiled for it.
#pragma once

#include <immintrin.h>
#include <array>

namespace cxc {

struct FourDoubles {
    static constexpr int lanes = 4;
    static constexpr int step = 4;
    __m256d all;

    FourDoubles() : all(_mm256_setzero_pd()) {}
    explicit FourDoubles(__m256d value) : all(value) {}

    static FourDoubles load(const double* source) { return FourDoubles(_mm256_loadu_pd(source)); }
    void store(double* target) const { _mm256_storeu_pd(target, all); }

    /// The first `count` of them, fewer than `lanes`; nothing behind those is touched.
    static FourDoubles loadFirst(const double* source, int count) {
        return FourDoubles(_mm256_maskload_pd(source, firstLanes(count)));
    }
    void storeFirst(double* target, int count) const {
        _mm256_maskstore_pd(target, firstLanes(count), all);
    }

    static FourDoubles slice(const double* const* vectors, long long t) {
        return FourDoubles(
            _mm256_set_pd(vectors[3][t], vectors[2][t], vectors[1][t], vectors[0][t]));
    }
    static std::array<FourDoubles, step> slices(const double* const* vectors, long long t) {
        const __m256d a = _mm256_loadu_pd(vectors[0] + t);
        const __m256d b = _mm256_loadu_pd(vectors[1] + t);
        const __m256d c = _mm256_loadu_pd(vectors[2] + t);
        const __m256d d = _mm256_loadu_pd(vectors[3] + t);
        const __m256d evenAB = _mm256_unpacklo_pd(a, b);
        const __m256d oddAB = _mm256_unpackhi_pd(a, b);
        const __m256d evenCD = _mm256_unpacklo_pd(c, d);
        const __m256d oddCD = _mm256_unpackhi_pd(c, d);
        return {FourDoubles(_mm256_permute2f128_pd(evenAB, evenCD, 0x20)),
                FourDoubles(_mm256_permute2f128_pd(oddAB, oddCD, 0x20)),
                FourDoubles(_mm256_permute2f128_pd(evenAB, evenCD, 0x31)),
                FourDoubles(_mm256_permute2f128_pd(oddAB, oddCD, 0x31))};
    }

private:
    static __m256i firstLanes(int count) {
        return _mm256_cmpgt_epi64(_mm256_set1_epi64x(count), _mm256_set_epi64x(3, 2, 1, 0));
    }
};

inline FourDoubles operator+(FourDoubles a, FourDoubles b) {
    return FourDoubles(_mm256_add_pd(a.all, b.all));
}
/// sum + value, where of two NaNs the older one stays, as pass::plus has it.
inline FourDoubles plus(FourDoubles sum, FourDoubles value) {
    const __m256d old = _mm256_cmp_pd(sum.all, sum.all, _CMP_UNORD_Q);
    return FourDoubles(_mm256_blendv_pd(_mm256_add_pd(sum.all, value.all), sum.all, old));
}
inline FourDoubles operator*(FourDoubles a, FourDoubles b) {
    return FourDoubles(_mm256_mul_pd(a.all, b.all));
}
inline FourDoubles operator/(FourDoubles a, FourDoubles b) {
    return FourDoubles(_mm256_div_pd(a.all, b.all));
}
inline FourDoubles squareRoot(FourDoubles a) {
    return FourDoubles(_mm256_sqrt_pd(a.all));
}
inline FourDoubles magnitude(FourDoubles a) {
    return FourDoubles(_mm256_andnot_pd(_mm256_set1_pd(-0.0), a.all));
}
// The instructions give the second operand for a NaN and for equal zeros: the older value stays.
inline FourDoubles lowered(FourDoubles least, FourDoubles value) {
    return FourDoubles(_mm256_min_pd(value.all, least.all));
}
inline FourDoubles raised(FourDoubles most, FourDoubles value) {
    return FourDoubles(_mm256_max_pd(value.all, most.all));
}

}  // namespace cxc
