#include "host/strong_pairs.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

COLORREF between(COLORREF a, COLORREF b, double part) {
    const auto mix = [part](int from, int to) {
        return static_cast<int>(std::lround(from + part * (to - from)));
    };
    return RGB(mix(GetRValue(a), GetRValue(b)), mix(GetGValue(a), GetGValue(b)),
               mix(GetBValue(a), GetBValue(b)));
}

// Of the value at (row, col) and its mirror image those that exist; of two the stronger one, and
// a number rather than NaN. 0 where there is neither.
double strongerOf(const ShownSlice& shown, int a, int b) {
    double found = 0.0;
    for (const auto& [row, col] : {std::pair(a, b), std::pair(b, a)}) {
        if (row >= shown.rows || col >= shown.cols) continue;
        const double value = shown.at(row, col);
        if (std::fabs(value) > std::fabs(found)) found = value;  // never for NaN
    }
    return found;
}

}  // namespace

std::vector<StrongPair> strongPairs(const ShownSlice& shown, std::size_t count) {
    const double most = std::max(std::fabs(shown.least), std::fabs(shown.most));
    const int sensors = std::max(shown.rows, shown.cols);
    const int shorter = std::min(shown.rows, shown.cols);
    std::vector<StrongPair> pairs;
    for (int a = 0; a < shorter; ++a) {
        for (int b = a + 1; b < sensors; ++b) {
            const double value = strongerOf(shown, a, b);
            if (value == 0.0) continue;
            const double strength = most > 0.0 ? std::min(std::fabs(value) / most, 1.0) : 0.0;
            pairs.push_back({a, b, value, strength});
        }
    }
    const auto stronger = [](const StrongPair& a, const StrongPair& b) {
        return a.strength > b.strength;
    };
    if (pairs.size() > count) {
        std::nth_element(pairs.begin(), pairs.begin() + static_cast<std::ptrdiff_t>(count),
                         pairs.end(), stronger);
        pairs.resize(count);
    }
    std::stable_sort(pairs.rbegin(), pairs.rend(), stronger);
    return pairs;
}

COLORREF lineColor(const ShownSlice& shown, bool negative, double strength) {
    const COLORREF strong = negative ? shown.suppressive : shown.active;
    const COLORREF own = between(shown.basic, strong, std::min(strength * 3.0, 1.0));
    return between(RGB(255, 255, 255), own, 0.2 + 0.8 * strength);
}
