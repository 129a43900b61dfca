// Asks the machine to fetch memory that is needed soon. A hint: any address is harmless.
#pragma once

#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace cxc {

inline constexpr int doublesPerCacheLine = 8;

/// Element `ahead` of an array, which may lie behind its end.
/// A source that is compiled for newer machines names its Number, so as not to share its function
/// with others.
template <class Number = double>
void prefetch(const double* array, long long ahead = 0) {
    const auto address = reinterpret_cast<std::uintptr_t>(array) +
                         static_cast<std::uintptr_t>(ahead) * sizeof(double);
#if defined(__SSE2__) || defined(_M_X64)
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
#elif defined(__GNUC__)
    __builtin_prefetch(reinterpret_cast<const void*>(address));
#else
    static_cast<void>(address);
#endif
}

}  // namespace cxc
