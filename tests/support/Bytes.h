// Builds expected bytes by hand, item by item, as a format table lists them.
#pragma once

#include "framework.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class Bytes {
public:
    Bytes& u8(unsigned value) { return little(value, 1); }
    Bytes& u16(unsigned value) { return little(value, 2); }
    Bytes& i32(int value) { return little(static_cast<std::uint32_t>(value), 4); }
    Bytes& u32(std::uint32_t value) { return little(value, 4); }
    Bytes& i64(long long value) { return little(static_cast<std::uint64_t>(value), 8); }
    Bytes& u64(std::uint64_t value) { return little(value, 8); }
    Bytes& f64(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return little(bits, 8);
    }
    Bytes& f64s(const std::vector<double>& values) {
        for (const double value : values)
            f64(value);
        return *this;
    }

    // The characters alone, two bytes each.
    Bytes& units(std::string_view ascii) {
        for (const char character : ascii)
            u16(static_cast<unsigned char>(character));
        return *this;
    }

    // A string as the writer stores it: marker, length, 16-bit characters.
    Bytes& string(std::string_view ascii) {
        u8(0xFF).u16(0xFFFE).length(ascii.size());
        return units(ascii);
    }

    // A string of an older or foreign archive: length, 8-bit characters.
    Bytes& narrowString(std::string_view ascii) {
        length(ascii.size());
        for (const char character : ascii)
            u8(static_cast<unsigned char>(character));
        return *this;
    }

    // The length of a string with its escapes.
    Bytes& length(std::uint64_t n) {
        if (n < 0xFF) return u8(static_cast<unsigned>(n));
        u8(0xFF);
        if (n < 0xFFFE) return u16(static_cast<unsigned>(n));
        u16(0xFFFF);
        if (n < 0xFFFFFFFF) return u32(static_cast<std::uint32_t>(n));
        return u32(0xFFFFFFFF).u64(n);
    }

    Bytes& append(const Bytes& other) {
        m_bytes += other.m_bytes;
        return *this;
    }

    Bytes first(std::size_t n) const {
        Bytes part;
        part.m_bytes = m_bytes.substr(0, n);
        return part;
    }

    std::size_t size() const { return m_bytes.size(); }
    const std::string& str() const { return m_bytes; }

private:
    Bytes& little(std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i)
            m_bytes += static_cast<char>(value >> (8 * i) & 0xFF);
        return *this;
    }

    std::string m_bytes;
};

}  // namespace test
