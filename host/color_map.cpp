#include "host/color_map.h"

#include <algorithm>
#include <cmath>

namespace {

struct Shade {
    double red, green, blue;
};

// From 0 to the far end of one sign. Lightness falls evenly, so that equal steps look equal.
constexpr Shade reds[] = {
    {250, 248, 246}, {248, 205, 180}, {226, 135, 105}, {190, 60, 58}, {103, 0, 31}};
constexpr Shade blues[] = {
    {250, 248, 246}, {190, 216, 232}, {118, 171, 207}, {54, 120, 178}, {5, 48, 97}};
constexpr int steps = 4;

COLORREF between(const Shade& a, const Shade& b, double part) {
    const auto mix = [part](double from, double to) {
        return static_cast<int>(std::lround(from + part * (to - from)));
    };
    return RGB(mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue));
}

COLORREF shadeOf(const Shade* shades, double strength) {
    const double place = std::clamp(strength, 0.0, 1.0) * steps;
    const int step = std::min(static_cast<int>(place), steps - 1);
    return between(shades[step], shades[step + 1], place - step);
}

}  // namespace

ColorMap::ColorMap(double least, double most) : m_bottom(least), m_top(most) {
    if (!std::isfinite(m_bottom) || !std::isfinite(m_top) || m_bottom > m_top) {
        m_bottom = 0.0;
        m_top = 1.0;
    } else if (m_bottom < 0.0 && m_top > 0.0) {
        // Equal strength on both sides: white is 0, and the sides can be compared.
        m_top = std::max(-m_bottom, m_top);
        m_bottom = -m_top;
    } else if (m_bottom >= 0.0) {
        m_bottom = 0.0;
        if (m_top == 0.0) m_top = 1.0;
    } else {
        m_top = 0.0;
    }
}

COLORREF ColorMap::colorOf(double value) const {
    if (std::isnan(value)) return RGB(160, 160, 160);
    return value < 0.0 ? shadeOf(blues, m_bottom < 0.0 ? value / m_bottom : 0.0)
                       : shadeOf(reds, m_top > 0.0 ? value / m_top : 0.0);
}
