#include "host/strong_pairs.h"

#include <algorithm>
#include <cmath>

std::vector<StrongPair> strongPairs(const ShownSlice& shown, std::size_t count) {
    const double most = std::max(std::fabs(shown.least), std::fabs(shown.most));
    std::vector<StrongPair> pairs;
    for (int r = 0; r < shown.rows; ++r) {
        for (int c = r + 1; c < shown.cols; ++c) {
            double value = shown.at(r, c);
            if (c < shown.rows && r < shown.cols &&
                !(std::fabs(shown.at(c, r)) <= std::fabs(value)))
                value = shown.at(c, r);
            if (std::isnan(value) || value == 0.0) continue;
            const double strength = most > 0.0 ? std::min(std::fabs(value) / most, 1.0) : 0.0;
            pairs.push_back({r, c, value, strength});
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

COLORREF paled(COLORREF color, double strength) {
    const auto mix = [strength](int part) {
        return static_cast<int>(std::lround(255.0 + strength * (part - 255.0)));
    };
    return RGB(mix(GetRValue(color)), mix(GetGValue(color)), mix(GetBValue(color)));
}
