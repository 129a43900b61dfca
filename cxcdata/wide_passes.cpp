// Compiled for a newer machine than the rest of the library, so nothing here may be shared with
// other sources: no header with inline functions but the compiler's own.
#include "cxcdata/wide_passes.h"

#if defined(CXC_WIDE_PASSES)

#include <immintrin.h>

namespace cxc::pass {
namespace {

using Four = __m256d;

Four magnitude(Four value) {
    return _mm256_andnot_pd(_mm256_set1_pd(-0.0), value);
}
// The instructions give the second operand for a NaN and for equal zeros: the older value stays.
Four lowered(Four least, Four value) {
    return _mm256_min_pd(value, least);
}
Four raised(Four most, Four value) {
    return _mm256_max_pd(value, most);
}

struct Range {
    static void add(Four* field, Four value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
    }
};

struct MagnitudeRange {
    static constexpr int count = 2;
    static void add(Four* field, Four value) { Range::add(field, magnitude(value)); }
};

struct Statistic {
    static constexpr int count = 5;
    static void add(Four* field, Four value) {
        Range::add(field, value);
        field[2] = _mm256_add_pd(field[2], value);
        field[3] = _mm256_add_pd(field[3], magnitude(value));
        field[4] = _mm256_add_pd(field[4], _mm256_mul_pd(value, value));
    }
};

// Four slices of four rows: read along the rows, added slice by slice.
template <class Accumulator>
void addSquare(Four* field, const double* const* rows, long long t) {
    const Four a = _mm256_loadu_pd(rows[0] + t);
    const Four b = _mm256_loadu_pd(rows[1] + t);
    const Four c = _mm256_loadu_pd(rows[2] + t);
    const Four d = _mm256_loadu_pd(rows[3] + t);
    const Four even01 = _mm256_unpacklo_pd(a, b);
    const Four odd01 = _mm256_unpackhi_pd(a, b);
    const Four even23 = _mm256_unpacklo_pd(c, d);
    const Four odd23 = _mm256_unpackhi_pd(c, d);
    Accumulator::add(field, _mm256_permute2f128_pd(even01, even23, 0x20));
    Accumulator::add(field, _mm256_permute2f128_pd(odd01, odd23, 0x20));
    Accumulator::add(field, _mm256_permute2f128_pd(even01, even23, 0x31));
    Accumulator::add(field, _mm256_permute2f128_pd(odd01, odd23, 0x31));
}

template <class Accumulator>
void addRows(const double* const* rows, long long length, double* fields) {
    constexpr int count = Accumulator::count;
    Four low[count];
    Four high[count];
    for (int f = 0; f < count; ++f) {
        low[f] = _mm256_loadu_pd(fields + f * wideRows);
        high[f] = _mm256_loadu_pd(fields + f * wideRows + 4);
    }
    long long t = 0;
    for (; t + 4 <= length; t += 4) {
        addSquare<Accumulator>(low, rows, t);
        addSquare<Accumulator>(high, rows + 4, t);
    }
    for (; t < length; ++t) {
        Accumulator::add(low, _mm256_set_pd(rows[3][t], rows[2][t], rows[1][t], rows[0][t]));
        Accumulator::add(high, _mm256_set_pd(rows[7][t], rows[6][t], rows[5][t], rows[4][t]));
    }
    for (int f = 0; f < count; ++f) {
        _mm256_storeu_pd(fields + f * wideRows, low[f]);
        _mm256_storeu_pd(fields + f * wideRows + 4, high[f]);
    }
}

}  // namespace

bool canGoWide() {
    static const bool can = __builtin_cpu_supports("avx2") != 0;
    return can;
}

void addWide(Kind kind, const double* const* rows, long long length, double* fields) {
    if (kind == Kind::magnitudeRange)
        addRows<MagnitudeRange>(rows, length, fields);
    else if (kind == Kind::statistic)
        addRows<Statistic>(rows, length, fields);
}

}  // namespace cxc::pass

#else

namespace cxc::pass {

bool canGoWide() {
    return false;
}

void addWide(Kind, const double* const*, long long, double*) {}

}  // namespace cxc::pass

#endif
