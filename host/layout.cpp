#include "host/layout.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double pi = 3.14159265358979323846;
// Pixels.
constexpr int margin = 36;  // for the numbers beside the cells
constexpr int barGap = 14;
constexpr int barWidth = 14;
constexpr int barNumbers = 50;

}  // namespace

MatrixLayout matrixLayout(const CRect& area, int rows, int cols) {
    MatrixLayout layout = {CRect(0, 0, 0, 0), CRect(0, 0, 0, 0)};
    constexpr int beside = barGap + barWidth + barNumbers;
    const int roomX = area.Width() - margin - beside;
    const int roomY = area.Height() - 2 * margin;
    if (rows < 1 || cols < 1 || roomX < 1 || roomY < 1) return layout;

    const double cell =
        std::min(static_cast<double>(roomX) / cols, static_cast<double>(roomY) / rows);
    const double longSide = cell * std::max(rows, cols);
    const int width = std::max(static_cast<int>(std::min<double>(longSide, roomX)), 1);
    const int height = std::max(static_cast<int>(std::min<double>(longSide, roomY)), 1);
    const int left = area.left + margin + (roomX - width) / 2;
    const int top = area.top + margin + (roomY - height) / 2;
    layout.cells = CRect(left, top, left + width, top + height);
    layout.bar = CRect(left + width + barGap, top, left + width + barGap + barWidth, top + height);
    return layout;
}

PaneLayout paneLayout(int width, int height) {
    // The matrix has its colour bar, so it takes a little more.
    if (height > width) {
        const int middle = height * 11 / 20;
        return {CRect(0, 0, width, middle), CRect(0, middle, width, height)};
    }
    const int middle = width * 11 / 20;
    return {CRect(0, 0, middle, height), CRect(middle, 0, width, height)};
}

CPoint onCircle(CPoint middle, double radius, int sensor, int sensors) {
    const double angle = 2.0 * pi * sensor / sensors - pi / 2.0;
    return CPoint(middle.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                  middle.y + static_cast<int>(std::lround(radius * std::sin(angle))));
}

double bendOf(int from, int to, int sensors) {
    const int apart = std::abs(to - from);
    return 1.0 - std::sqrt(2.0 * std::min(apart, sensors - apart) / sensors);
}

__int64 stepped(__int64 slice, __int64 steps, __int64 slices) {
    const __int64 last = std::max<__int64>(slices - 1, 0);
    const __int64 from = std::clamp<__int64>(slice, 0, last);
    if (steps < 0) return steps < -from ? 0 : from + steps;
    return steps > last - from ? last : from + steps;
}
