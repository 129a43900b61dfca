#include "afx/core/code_page.h"

namespace afx {

#ifdef _WIN32

int wideLength(const char* text, int length) {
    return length < 1 ? 0 : MultiByteToWideChar(CP_ACP, 0, text, length, nullptr, 0);
}

void widen(const char* text, int length, TCHAR* target) {
    if (length > 0) MultiByteToWideChar(CP_ACP, 0, text, length, target, wideLength(text, length));
}

#else

namespace {

// Bytes 80 to 9F; the others are their own code points. Five are undefined and stay as they are.
constexpr TCHAR upper[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                             0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

int wideLength(const char*, int length) {
    return length < 0 ? 0 : length;
}

void widen(const char* text, int length, TCHAR* target) {
    for (int i = 0; i < length; ++i) {
        const auto byte = static_cast<BYTE>(text[i]);
        target[i] = byte >= 0x80 && byte < 0xA0 ? upper[byte - 0x80] : TCHAR{byte};
    }
}

#endif

}  // namespace afx
