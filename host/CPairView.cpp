#include "host/CPairView.h"

#include "host/axis_labels.h"
#include "host/strong_pairs.h"

#include <algorithm>
#include <cmath>

IMPLEMENT_DYNAMIC(CPairView, CPictureView)

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr std::size_t mostLines = 200;

// Sensor 1 at the top, then clockwise.
CPoint onCircle(CPoint middle, double radius, int sensor, int sensors) {
    const double angle = 2.0 * pi * sensor / sensors - pi / 2.0;
    return CPoint(middle.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                  middle.y + static_cast<int>(std::lround(radius * std::sin(angle))));
}

}  // namespace

void CPairView::draw(CDC& dc, const CRect& area) {
    constexpr int margin = 34;
    const int radius = std::min(area.Width(), area.Height()) / 2 - margin;
    if (radius < 10) return;
    drawLines(dc, area.CenterPoint(), radius);
    drawSensors(dc, area.CenterPoint(), radius);
}

void CPairView::drawLines(CDC& dc, CPoint middle, int radius) {
    const int sensors = std::max(shown().rows, shown().cols);
    for (const StrongPair& pair : strongPairs(shown(), mostLines)) {
        const COLORREF color = pair.value < 0.0 ? shown().suppressive : shown().active;
        CPen pen(PS_SOLID, 1 + static_cast<int>(pair.strength * 2.5),
                 paled(color, 0.15 + 0.85 * pair.strength * pair.strength));
        CPen* const before = dc.SelectObject(&pen);
        const CPoint from = onCircle(middle, radius, pair.row, sensors);
        const CPoint to = onCircle(middle, radius, pair.col, sensors);
        dc.MoveTo(from.x, from.y);
        dc.LineTo(to.x, to.y);
        dc.SelectObject(before);
    }
}

void CPairView::drawSensors(CDC& dc, CPoint middle, int radius) {
    const int sensors = std::max(shown().rows, shown().cols);
    const int around = static_cast<int>(2.0 * pi * radius);
    const int dot = std::clamp(around / sensors / 3, 1, 4);
    CBrush brush(shown().basic);
    for (int sensor = 0; sensor < sensors; ++sensor) {
        const CPoint point = onCircle(middle, radius, sensor, sensors);
        dc.FillRect(CRect(point.x - dot, point.y - dot, point.x + dot + 1, point.y + dot + 1),
                    &brush);
    }
    const CSize widest = dc.GetTextExtent(numberText(sensors));
    const int step = labelStep(sensors, around, widest.cx + 6);
    for (int sensor = 0; sensor < sensors; sensor += step) {
        // The last label of a round would touch the first.
        if (sensor > 0 && sensors - sensor < step) break;
        drawCentered(dc, onCircle(middle, radius + 16.0, sensor, sensors), numberText(sensor + 1));
    }
}
