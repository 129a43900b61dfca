#include "afx/core/utf8.h"

namespace afx {
namespace {

void putPoint(std::string& out, std::uint32_t point) {
    const auto put = [&](std::uint32_t byte) { out += static_cast<char>(byte); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0 | (point >> 6));
        put(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        put(0xE0 | (point >> 12));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    } else {
        put(0xF0 | (point >> 18));
        put(0x80 | ((point >> 12) & 0x3F));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    }
}

// Length of the well-formed sequence at `i` and its code point; 0 when it is not well-formed.
std::size_t readPoint(const std::string& bytes, std::size_t i, std::uint32_t& point) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes[k]); };
    const unsigned first = byte(i);
    if (first < 0x80) {
        point = first;
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || i + length > bytes.size()) return 0;
    point = first & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
        point = (point << 6) | (byte(i + k) & 0x3Fu);
    }
    const std::uint32_t least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    const bool surrogate = point >= 0xD800 && point < 0xE000;
    return point < least || point > 0x10FFFF || surrogate ? 0 : length;
}

}  // namespace

std::string utf8(LPCTSTR text) {
    std::string out;
    for (LPCTSTR at = text; at != nullptr && *at != 0; ++at) {
        const std::uint32_t unit = *at;
        const std::uint32_t next = at[1];
        if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
            putPoint(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++at;
        } else if (unit >= 0xDC80 && unit < 0xDD00) {
            out += static_cast<char>(unit - 0xDC00);
        } else if (unit >= 0xD800 && unit < 0xE000) {
            putPoint(out, 0xFFFD);
        } else {
            putPoint(out, unit);
        }
    }
    return out;
}

CString utf16(const std::string& bytes) {
    std::basic_string<TCHAR> out;
    for (std::size_t i = 0; i < bytes.size();) {
        std::uint32_t point = 0;
        const std::size_t length = readPoint(bytes, i, point);
        if (length == 0) {
            out += static_cast<TCHAR>(0xDC00 + static_cast<unsigned char>(bytes[i]));
        } else if (point >= 0x10000) {
            out += static_cast<TCHAR>(0xD800 + ((point - 0x10000) >> 10));
            out += static_cast<TCHAR>(0xDC00 + ((point - 0x10000) & 0x3FF));
        } else {
            out += static_cast<TCHAR>(point);
        }
        i += length == 0 ? 1 : length;
    }
    return CString(out.data(), static_cast<int>(out.size()));
}

}  // namespace afx
