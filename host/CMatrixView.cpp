#include "host/CMatrixView.h"

#include "host/axis_labels.h"
#include "host/color_map.h"
#include "host/layout.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CMatrixView, CPictureView)

namespace {

void drawFrame(CDC& dc, const CRect& place) {
    CBrush brush(RGB(190, 194, 202));
    ::FrameRect(dc.GetSafeHdc(),
                CRect(place.left - 1, place.top - 1, place.right + 1, place.bottom + 1), brush);
}

void drawCells(CDC& dc, const CRect& cells, const ShownSlice& shown, const ColorMap& colors) {
    Pixels pixels = {shown.cols, shown.rows, {}};
    pixels.colors.reserve(shown.values.size());
    for (const double value : shown.values)
        pixels.colors.push_back(pixelOf(colors.colorOf(value)));
    drawPixels(dc, cells, pixels);
    drawFrame(dc, cells);
}

void drawNumbers(CDC& dc, const CRect& cells, const ShownSlice& shown) {
    const CSize widest = dc.GetTextExtent(numberText(std::max(shown.rows, shown.cols)));
    for (const int c : labelledSensors(shown.cols, cells.Width(), widest.cx + 6)) {
        const int x = cells.left + (2 * c + 1) * cells.Width() / (2 * shown.cols);
        drawCentered(dc, CPoint(x, cells.top - 10), numberText(c + 1));
    }
    for (const int r : labelledSensors(shown.rows, cells.Height(), widest.cy + 2)) {
        const int y = cells.top + (2 * r + 1) * cells.Height() / (2 * shown.rows);
        const CSize size = dc.GetTextExtent(numberText(r + 1));
        dc.TextOut(cells.left - 6 - size.cx, y - size.cy / 2, numberText(r + 1));
    }
}

void drawBar(CDC& dc, const CRect& bar, const ColorMap& colors) {
    constexpr int shades = 128;
    Pixels pixels = {1, shades, {}};
    for (int i = 0; i < shades; ++i) {
        const double part = 1.0 - (i + 0.5) / shades;
        pixels.colors.push_back(
            pixelOf(colors.colorOf(colors.bottom() + part * (colors.top() - colors.bottom()))));
    }
    drawPixels(dc, bar, pixels);
    drawFrame(dc, bar);
    // As many numbers as have room, the ends always.
    const int lineHeight = dc.GetTextExtent(_T("0")).cy;
    const int steps = bar.Height() >= 8 * lineHeight ? 4 : bar.Height() >= 4 * lineHeight ? 2 : 1;
    for (int i = 0; i <= steps; ++i) {
        const double value = colors.top() + i * (colors.bottom() - colors.top()) / steps;
        const int y = bar.top + i * (bar.Height() - 1) / steps;
        dc.TextOut(bar.right + 6, y - lineHeight / 2, valueText(value));
    }
}

}  // namespace

void CMatrixView::draw(CDC& dc, const CRect& area, const ShownSlice& shown) {
    const MatrixLayout layout = matrixLayout(area, shown.rows, shown.cols);
    if (layout.cells.IsRectEmpty()) return;
    const ColorMap colors(shown.least, shown.most);
    drawCells(dc, layout.cells, shown, colors);
    drawNumbers(dc, layout.cells, shown);
    drawBar(dc, layout.bar, colors);
}
