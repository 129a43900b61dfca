#include "host/CPairView.h"

#include "host/axis_labels.h"
#include "host/layout.h"
#include "host/strong_pairs.h"

#include <algorithm>
#include <cmath>
#include <vector>

IMPLEMENT_DYNAMIC(CPairView, CPictureView)

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr int margin = 34;     // pixels around the circle, for the numbers
constexpr int keyHeight = 30;  // pixels below it, for the scale
constexpr int fineness = 3;    // the circle is drawn so many times larger, for smooth lines
constexpr int mostLines = 200;

void drawLine(CDC& dc, CPoint middle, int radius, int sensors, const StrongPair& pair,
              const ShownSlice& shown) {
    const double bent = radius * bendOf(pair.first, pair.second, sensors);
    const CPoint curve[] = {onCircle(middle, radius, pair.first, sensors),
                            onCircle(middle, bent, pair.first, sensors),
                            onCircle(middle, bent, pair.second, sensors),
                            onCircle(middle, radius, pair.second, sensors)};
    const double width = 1.0 + 2.5 * pair.strength * pair.strength;
    CPen pen(PS_SOLID, static_cast<int>(std::lround(width * fineness)),
             lineColor(shown, pair.value < 0.0, pair.strength));
    CPen* const before = dc.SelectObject(&pen);
    ::PolyBezier(dc.GetSafeHdc(), curve, 4);
    dc.SelectObject(before);
}

// Dark where a line ends.
void drawSensors(CDC& dc, CPoint middle, int radius, int sensors,
                 const std::vector<StrongPair>& pairs) {
    std::vector<bool> linked(static_cast<std::size_t>(sensors));
    for (const StrongPair& pair : pairs)
        linked[static_cast<std::size_t>(pair.first)] =
            linked[static_cast<std::size_t>(pair.second)] = true;
    const int dot =
        std::clamp(static_cast<int>(pi * radius / sensors / 2.0), fineness, 4 * fineness);
    CBrush dark(RGB(40, 44, 52));
    CBrush pale(RGB(180, 184, 192));
    CGdiObject* const pen = dc.SelectStockObject(NULL_PEN);
    for (int sensor = 0; sensor < sensors; ++sensor) {
        const CPoint at = onCircle(middle, radius, sensor, sensors);
        CBrush* const before =
            dc.SelectObject(linked[static_cast<std::size_t>(sensor)] ? &dark : &pale);
        dc.Ellipse(CRect(at.x - dot, at.y - dot, at.x + dot + 1, at.y + dot + 1));
        dc.SelectObject(before);
    }
    dc.SelectObject(static_cast<CPen*>(pen));
}

void drawCircle(CDC& dc, CPoint middle, int radius, const ShownSlice& shown) {
    const int sensors = std::max(shown.rows, shown.cols);
    const std::vector<StrongPair> pairs =
        strongPairs(shown, static_cast<std::size_t>(std::min(2 * sensors, mostLines)));
    for (const StrongPair& pair : pairs)
        drawLine(dc, middle, radius, sensors, pair, shown);
    drawSensors(dc, middle, radius, sensors, pairs);
}

// Drawn large and shrunk: lines without steps.
void drawSmooth(CDC& dc, CPoint middle, int radius, const ShownSlice& shown) {
    const int half = radius + 6;
    const int large = 2 * half * fineness;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = large;
    info.bmiHeader.biHeight = -large;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* colors = nullptr;
    CDC memory;
    CBitmap bitmap;
    if (!memory.CreateCompatibleDC(&dc) ||
        !bitmap.Attach(
            ::CreateDIBSection(dc.GetSafeHdc(), &info, DIB_RGB_COLORS, &colors, nullptr, 0)))
        return;
    CBitmap* const before = memory.SelectObject(&bitmap);
    memory.FillSolidRect(0, 0, large, large, RGB(255, 255, 255));
    drawCircle(memory, CPoint(half * fineness, half * fineness), radius * fineness, shown);
    ::GdiFlush();
    drawPixels(dc, CRect(middle.x - half, middle.y - half, middle.x + half, middle.y + half),
               shrunk(static_cast<const DWORD*>(colors), large, large, fineness));
    memory.SelectObject(before);
}

void drawNumbers(CDC& dc, CPoint middle, int radius, int sensors) {
    const int outside = radius + 17;
    const CSize widest = dc.GetTextExtent(numberText(sensors));
    const int around = static_cast<int>(2.0 * pi * outside);
    for (const int sensor : labelledSensors(sensors, around, widest.cx + 6, true))
        drawCentered(dc, onCircle(middle, outside, sensor, sensors), numberText(sensor + 1));
}

// The colours of lines, from the strongest negative one to the strongest positive one.
void drawKey(CDC& dc, CPoint middle, const ShownSlice& shown) {
    constexpr int half = 60;  // pixels of one sign
    constexpr int thickness = 5;
    const double most = std::max(std::fabs(shown.least), std::fabs(shown.most));
    const int first = shown.least < 0.0 ? -half : 0;
    const int last = shown.most > 0.0 || first == 0 ? half : 0;
    const int start = middle.x - (first + last) / 2;
    for (int i = first; i < last; ++i) {
        const double strength = std::fabs(i + 0.5) / half;
        dc.FillSolidRect(start + i, middle.y - thickness / 2, 1, thickness,
                         lineColor(shown, i < 0, strength));
    }
    dc.SetBkMode(TRANSPARENT);
    const CString low = valueText(first < 0 ? -most : 0.0);
    const CSize size = dc.GetTextExtent(low);
    dc.TextOut(start + first - 6 - size.cx, middle.y - size.cy / 2, low);
    dc.TextOut(start + last + 6, middle.y - size.cy / 2, valueText(last > 0 ? most : 0.0));
}

}  // namespace

void CPairView::draw(CDC& dc, const CRect& area, const ShownSlice& shown) {
    const CPoint middle(area.CenterPoint().x, (area.top + area.bottom - keyHeight) / 2);
    const int radius = std::min(area.Width(), area.Height() - keyHeight) / 2 - margin;
    if (radius < 10) return;
    drawSmooth(dc, middle, radius, shown);
    drawNumbers(dc, middle, radius, std::max(shown.rows, shown.cols));
    if (area.Width() > 240) drawKey(dc, CPoint(middle.x, area.bottom - keyHeight / 2), shown);
}
