#include "host/CMatrixView.h"

#include "host/axis_labels.h"
#include "host/color_map.h"

#include <algorithm>
#include <vector>

IMPLEMENT_DYNAMIC(CMatrixView, CPictureView)

namespace {

constexpr int margin = 36;  // pixels for the numbers beside the cells
constexpr int barWidth = 16;
constexpr int barRoom = 76;  // with its numbers

// 0x00RRGGBB, as bitmaps have it.
DWORD pixelOf(COLORREF color) {
    return static_cast<DWORD>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
}

// Stretches width x height pixels, rows from above, over a rectangle, each as a plain block.
void drawPixels(CDC& dc, const CRect& place, int width, int height,
                const std::vector<DWORD>& pixels) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    ::SetStretchBltMode(dc.GetSafeHdc(), COLORONCOLOR);
    ::StretchDIBits(dc.GetSafeHdc(), place.left, place.top, place.Width(), place.Height(), 0, 0,
                    width, height, pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

// The largest rectangle for the cells, square cells where that is possible.
CRect placeOfCells(const CRect& area, int rows, int cols) {
    const int width = area.Width() - margin - barRoom;
    const int height = area.Height() - 2 * margin;
    if (width < 1 || height < 1) return CRect(0, 0, 0, 0);
    const double cell =
        std::min(static_cast<double>(width) / cols, static_cast<double>(height) / rows);
    const int left = area.left + margin;
    const int top = area.top + margin;
    return CRect(left, top, left + std::max(static_cast<int>(cell * cols), 1),
                 top + std::max(static_cast<int>(cell * rows), 1));
}

}  // namespace

void CMatrixView::draw(CDC& dc, const CRect& area) {
    const CRect cells = placeOfCells(area, shown().rows, shown().cols);
    if (cells.Width() < 1) return;
    const ColorMap colors(shown().least, shown().most);
    drawCells(dc, cells, colors);
    drawNumbers(dc, cells);
    drawBar(dc, CRect(cells.right + 14, cells.top, cells.right + 14 + barWidth, cells.bottom),
            colors);
}

void CMatrixView::drawCells(CDC& dc, const CRect& cells, const ColorMap& colors) {
    std::vector<DWORD> pixels;
    pixels.reserve(shown().values.size());
    for (const double value : shown().values)
        pixels.push_back(pixelOf(colors.colorOf(value)));
    drawPixels(dc, cells, shown().cols, shown().rows, pixels);
}

void CMatrixView::drawNumbers(CDC& dc, const CRect& cells) {
    const CSize widest = dc.GetTextExtent(numberText(std::max(shown().rows, shown().cols)));
    const int colStep = labelStep(shown().cols, cells.Width(), widest.cx + 6);
    for (int c = 0; c < shown().cols; c += colStep) {
        const int x = cells.left + (2 * c + 1) * cells.Width() / (2 * shown().cols);
        drawCentered(dc, CPoint(x, cells.top - 10), numberText(c + 1));
    }
    const int rowStep = labelStep(shown().rows, cells.Height(), widest.cy + 2);
    for (int r = 0; r < shown().rows; r += rowStep) {
        const int y = cells.top + (2 * r + 1) * cells.Height() / (2 * shown().rows);
        const CSize size = dc.GetTextExtent(numberText(r + 1));
        dc.TextOut(cells.left - 6 - size.cx, y - size.cy / 2, numberText(r + 1));
    }
}

void CMatrixView::drawBar(CDC& dc, const CRect& bar, const ColorMap& colors) {
    constexpr int shades = 128;
    std::vector<DWORD> pixels;
    for (int i = 0; i < shades; ++i) {
        const double part = 1.0 - (i + 0.5) / shades;
        pixels.push_back(
            pixelOf(colors.colorOf(colors.bottom() + part * (colors.top() - colors.bottom()))));
    }
    drawPixels(dc, bar, 1, shades, pixels);
    for (int i = 0; i <= 4; ++i) {
        const double value = colors.top() + i * (colors.bottom() - colors.top()) / 4;
        const CString text = valueText(value);
        const int y = bar.top + i * (bar.Height() - 1) / 4;
        dc.TextOut(bar.right + 5, y - dc.GetTextExtent(text).cy / 2, text);
    }
}
