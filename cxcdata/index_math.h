// Arithmetic on indices and counts that files and hosts may set to any 64-bit value: it wraps
// instead of overflowing.
#pragma once

#include "framework.h"

#include <algorithm>

namespace cxc {

constexpr __int64 wrapAdd(__int64 a, __int64 b) {
    return static_cast<__int64>(static_cast<unsigned long long>(a) +
                                static_cast<unsigned long long>(b));
}

constexpr __int64 wrapSub(__int64 a, __int64 b) {
    return static_cast<__int64>(static_cast<unsigned long long>(a) -
                                static_cast<unsigned long long>(b));
}

/// `index` raised to 0, then lowered to total - 1. Requires total >= 1.
constexpr __int64 clampIndex(__int64 index, __int64 total) {
    return std::min(std::max<__int64>(index, 0), total - 1);
}

}  // namespace cxc
