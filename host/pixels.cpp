#include "host/pixels.h"

namespace {

// The mean of a square of pixels.
DWORD meanOf(const DWORD* corner, int rowLength, int side) {
    DWORD red = 0;
    DWORD green = 0;
    DWORD blue = 0;
    for (int y = 0; y < side; ++y, corner += rowLength) {
        for (int x = 0; x < side; ++x) {
            red += corner[x] >> 16 & 0xFF;
            green += corner[x] >> 8 & 0xFF;
            blue += corner[x] & 0xFF;
        }
    }
    const DWORD count = static_cast<DWORD>(side * side);
    return red / count << 16 | green / count << 8 | blue / count;
}

}  // namespace

DWORD pixelOf(COLORREF color) {
    return static_cast<DWORD>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
}

Pixels shrunk(const DWORD* colors, int width, int height, int factor) {
    Pixels small = {width / factor, height / factor, {}};
    small.colors.reserve(static_cast<std::size_t>(small.width) *
                         static_cast<std::size_t>(small.height));
    for (int y = 0; y < small.height; ++y, colors += static_cast<std::ptrdiff_t>(width) * factor) {
        for (int x = 0; x < small.width; ++x)
            small.colors.push_back(meanOf(colors + x * factor, width, factor));
    }
    return small;
}
