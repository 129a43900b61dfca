// Eight doubles that are worked on together, as two_doubles.h works on two. Needs AVX-512F: only
// for sources that are compiled for it.
#pragma once

#include <immintrin.h>
#include <array>

namespace cxc {

struct EightDoubles {
    static constexpr int lanes = 8;
    static constexpr int step = 4;
    __m512d all;

    EightDoubles() : all(_mm512_setzero_pd()) {}
    explicit EightDoubles(__m512d value) : all(value) {}

    static EightDoubles load(const double* source) { return EightDoubles(_mm512_loadu_pd(source)); }
    void store(double* target) const { _mm512_storeu_pd(target, all); }

    /// The first `count` of them, fewer than `lanes`; nothing behind those is touched.
    static EightDoubles loadFirst(const double* source, int count) {
        return EightDoubles(_mm512_maskz_loadu_pd(firstLanes(count), source));
    }
    void storeFirst(double* target, int count) const {
        _mm512_mask_storeu_pd(target, firstLanes(count), all);
    }

    static EightDoubles slice(const double* const* vectors, long long t) {
        return EightDoubles(_mm512_set_pd(vectors[7][t], vectors[6][t], vectors[5][t],
                                          vectors[4][t], vectors[3][t], vectors[2][t],
                                          vectors[1][t], vectors[0][t]));
    }
    // Halves in the order that two steps of shuffling bring into that of the vectors.
    static std::array<EightDoubles, step> slices(const double* const* vectors, long long t) {
        const __m512d a = halves(vectors[0] + t, vectors[2] + t);
        const __m512d b = halves(vectors[1] + t, vectors[3] + t);
        const __m512d c = halves(vectors[4] + t, vectors[6] + t);
        const __m512d d = halves(vectors[5] + t, vectors[7] + t);
        const __m512d evenAB = _mm512_unpacklo_pd(a, b);
        const __m512d oddAB = _mm512_unpackhi_pd(a, b);
        const __m512d evenCD = _mm512_unpacklo_pd(c, d);
        const __m512d oddCD = _mm512_unpackhi_pd(c, d);
        return {EightDoubles(_mm512_shuffle_f64x2(evenAB, evenCD, 0x88)),
                EightDoubles(_mm512_shuffle_f64x2(oddAB, oddCD, 0x88)),
                EightDoubles(_mm512_shuffle_f64x2(evenAB, evenCD, 0xdd)),
                EightDoubles(_mm512_shuffle_f64x2(oddAB, oddCD, 0xdd))};
    }

private:
    static __mmask8 firstLanes(int count) { return static_cast<__mmask8>((1 << count) - 1); }
    static __m512d halves(const double* low, const double* high) {
        return _mm512_insertf64x4(_mm512_castpd256_pd512(_mm256_loadu_pd(low)),
                                  _mm256_loadu_pd(high), 1);
    }
};

inline EightDoubles operator+(EightDoubles a, EightDoubles b) {
    return EightDoubles(_mm512_add_pd(a.all, b.all));
}
/// sum + value, where of two NaNs the older one stays, as pass::plus has it.
inline EightDoubles plus(EightDoubles sum, EightDoubles value) {
    const __mmask8 number = _mm512_cmp_pd_mask(sum.all, sum.all, _CMP_ORD_Q);
    return EightDoubles(_mm512_mask_add_pd(sum.all, number, sum.all, value.all));
}
inline EightDoubles operator*(EightDoubles a, EightDoubles b) {
    return EightDoubles(_mm512_mul_pd(a.all, b.all));
}
inline EightDoubles operator/(EightDoubles a, EightDoubles b) {
    return EightDoubles(_mm512_div_pd(a.all, b.all));
}
inline EightDoubles squareRoot(EightDoubles a) {
    return EightDoubles(_mm512_sqrt_pd(a.all));
}
inline EightDoubles magnitude(EightDoubles a) {
    return EightDoubles(_mm512_abs_pd(a.all));
}
// The instructions give the second operand for a NaN and for equal zeros: the older value stays.
inline EightDoubles lowered(EightDoubles least, EightDoubles value) {
    return EightDoubles(_mm512_min_pd(value.all, least.all));
}
inline EightDoubles raised(EightDoubles most, EightDoubles value) {
    return EightDoubles(_mm512_max_pd(value.all, most.all));
}

}  // namespace cxc
