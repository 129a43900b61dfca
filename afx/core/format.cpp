#include "afx/core/format.h"

#include "afx/core/code_page.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace afx {
namespace {

using Text = std::basic_string<TCHAR>;

enum class Size { none, shortInt, longInt, int64, charNarrow };

struct Directive {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;
    Size size = Size::none;
    TCHAR conversion = 0;
};

// A width or a precision beyond this is cut: no host asks for more, a damaged format may.
constexpr int widest = 1 << 20;

// va_list cannot be passed by reference on every platform; a struct can.
struct Arguments {
    va_list list;
};

bool isDigit(TCHAR c) {
    return c >= '0' && c <= '9';
}

int readNumber(LPCTSTR& at, Arguments& arguments) {
    if (*at == '*') {
        ++at;
        return std::clamp(va_arg(arguments.list, int), -widest, widest);
    }
    int number = 0;
    for (; isDigit(*at); ++at)
        number = std::min(widest, number * 10 + (*at - '0'));
    return number;
}

Size readSize(LPCTSTR& at) {
    const auto starts = [&](const char* text) {
        for (std::size_t i = 0; i < std::strlen(text); ++i) {
            if (at[i] != static_cast<TCHAR>(text[i])) return false;
        }
        at += std::strlen(text);
        return true;
    };
    if (starts("I64") || starts("ll")) return Size::int64;
    if (starts("I32")) return Size::none;
    if (starts("I") || starts("z") || starts("t"))
        return sizeof(std::size_t) == 8 ? Size::int64 : Size::none;
    if (starts("hh")) return Size::charNarrow;
    if (starts("h")) return Size::shortInt;
    if (starts("l") || starts("w")) return Size::longInt;
    return Size::none;
}

Directive readDirective(LPCTSTR& at, Arguments& arguments) {
    Directive d;
    for (bool flags = true; flags;) {
        switch (*at) {
            case '-':
                d.left = true;
                break;
            case '+':
                d.plus = true;
                break;
            case ' ':
                d.space = true;
                break;
            case '#':
                d.alternate = true;
                break;
            case '0':
                d.zero = true;
                break;
            default:
                flags = false;
                continue;
        }
        ++at;
    }
    d.width = readNumber(at, arguments);
    if (d.width < 0) {
        d.left = true;
        d.width = -d.width;
    }
    if (*at == '.') {
        ++at;
        d.precision = readNumber(at, arguments);
    }
    d.size = readSize(at);
    d.conversion = *at;
    if (*at != 0) ++at;
    return d;
}

// `sign` stands before padding zeros, `body` behind them.
void pad(Text& out, const Directive& d, const Text& sign, const Text& body, bool zeros) {
    const std::size_t used = sign.size() + body.size();
    const auto width = static_cast<std::size_t>(d.width);
    const std::size_t fill = width > used ? width - used : 0;
    if (!d.left && !zeros) out.append(fill, ' ');
    out += sign;
    if (!d.left && zeros) out.append(fill, '0');
    out += body;
    if (d.left) out.append(fill, ' ');
}

Text signOf(const Directive& d, bool negative) {
    if (negative) return Text(1, '-');
    if (d.plus) return Text(1, '+');
    return d.space ? Text(1, ' ') : Text();
}

void putInteger(Text& out, const Directive& d, std::uint64_t value, Text sign) {
    char digits[32];
    const int base = d.conversion == 'x' || d.conversion == 'X' || d.conversion == 'p' ? 16
                     : d.conversion == 'o'                                             ? 8
                                                                                       : 10;
    char* end = std::to_chars(digits, digits + sizeof(digits), value, base).ptr;
    if (d.precision == 0 && value == 0) end = digits;
    if (d.conversion == 'X' || d.conversion == 'p') {
        for (char* c = digits; c != end; ++c)
            *c = *c >= 'a' && *c <= 'f' ? static_cast<char>(*c - 'a' + 'A') : *c;
    }
    Text body(digits, end);
    if (d.precision > 0 && body.size() < static_cast<std::size_t>(d.precision))
        body.insert(0, static_cast<std::size_t>(d.precision) - body.size(), '0');
    if (d.alternate && base == 16 && value != 0) sign += Text{'0', d.conversion};
    if (d.alternate && base == 8 && (body.empty() || body[0] != '0')) body.insert(0, 1, '0');
    pad(out, d, sign, body, d.zero && d.precision < 0);
}

std::int64_t signedArgument(const Directive& d, Arguments& arguments) {
    switch (d.size) {
        case Size::int64:
            return va_arg(arguments.list, long long);
        case Size::shortInt:
            return static_cast<short>(va_arg(arguments.list, int));
        case Size::charNarrow:
            return static_cast<signed char>(va_arg(arguments.list, int));
        default:
            return va_arg(arguments.list, int);  // a long has 32 bits here
    }
}

std::uint64_t unsignedArgument(const Directive& d, Arguments& arguments) {
    switch (d.size) {
        case Size::int64:
            return va_arg(arguments.list, unsigned long long);
        case Size::shortInt:
            return static_cast<unsigned short>(va_arg(arguments.list, int));
        case Size::charNarrow:
            return static_cast<unsigned char>(va_arg(arguments.list, int));
        default:
            return va_arg(arguments.list, unsigned);
    }
}

Text spellSpecial(double value) {
    const char* name = "inf";
    if (std::isnan(value)) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        constexpr std::uint64_t indefinite = 0xFFF8000000000000u;
        constexpr std::uint64_t quiet = 0x0008000000000000u;
        name = bits == indefinite ? "nan(ind)" : (bits & quiet) != 0 ? "nan" : "nan(snan)";
    }
    return Text(name, name + std::strlen(name));
}

std::string digitsOf(double value, std::chars_format style, int precision) {
    // 309 digits before the point at most, and the exponent or the point with its decimals.
    std::string digits(static_cast<std::size_t>(precision) + 330, '\0');
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, style, precision);
    digits.resize(static_cast<std::size_t>(result.ptr - digits.data()));
    return digits;
}

// %#g keeps the zeros at the end, which the general style drops. The exponent decides between the
// two other styles as the C standard says.
std::string allDigitsOf(double value, int precision) {
    const int significant = std::max(precision, 1);
    std::string scientific = digitsOf(value, std::chars_format::scientific, significant - 1);
    const char* const power = scientific.c_str() + scientific.find('e') + 1;
    const auto exponent = static_cast<int>(std::strtol(power, nullptr, 10));
    if (exponent < -4 || exponent >= significant) return scientific;
    return digitsOf(value, std::chars_format::fixed, significant - 1 - exponent);
}

void putDouble(Text& out, const Directive& d, double value) {
    const Text sign = signOf(d, std::signbit(value));
    const bool upper = d.conversion == 'E' || d.conversion == 'G' || d.conversion == 'F';
    if (!std::isfinite(value)) {
        Text body = spellSpecial(value);
        if (upper)
            std::transform(body.begin(), body.end(), body.begin(), [](TCHAR c) {
                return c >= 'a' && c <= 'z' ? static_cast<TCHAR>(c - 'a' + 'A') : c;
            });
        pad(out, d, sign, body, false);
        return;
    }
    const std::chars_format style =
        d.conversion == 'f' || d.conversion == 'F'   ? std::chars_format::fixed
        : d.conversion == 'e' || d.conversion == 'E' ? std::chars_format::scientific
                                                     : std::chars_format::general;
    const int precision = d.precision < 0 ? 6 : d.precision;
    std::string digits = d.alternate && style == std::chars_format::general
                             ? allDigitsOf(std::fabs(value), precision)
                             : digitsOf(std::fabs(value), style, precision);
    if (upper)
        std::transform(digits.begin(), digits.end(), digits.begin(),
                       [](char c) { return c == 'e' ? 'E' : c; });
    if (d.alternate && digits.find('.') == digits.npos)
        digits.insert(std::min(digits.find_first_of("eE"), digits.size()), 1, '.');
    pad(out, d, sign, Text(digits.begin(), digits.end()), d.zero);
}

template <class Character>
std::size_t boundedLength(const Character* text, int precision) {
    const std::size_t most = precision < 0 ? SIZE_MAX : static_cast<std::size_t>(precision);
    std::size_t length = 0;
    while (length < most && text[length] != 0)
        ++length;
    return length;
}

void putWide(Text& out, const Directive& d, LPCTSTR text) {
    static const TCHAR none[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
    if (text == nullptr) text = none;
    pad(out, d, Text(), Text(text, boundedLength(text, d.precision)), false);
}

void putNarrow(Text& out, const Directive& d, const char* text) {
    if (text == nullptr) text = "(null)";
    const int length =
        static_cast<int>(std::min<std::size_t>(boundedLength(text, d.precision), INT_MAX / 2));
    Text wide(static_cast<std::size_t>(wideLength(text, length)), TCHAR{});
    widen(text, length, wide.data());
    pad(out, d, Text(), wide, false);
}

void put(Text& out, const Directive& d, Arguments& arguments) {
    switch (d.conversion) {
        case 'd':
        case 'i': {
            const std::int64_t value = signedArgument(d, arguments);
            const auto bits = static_cast<std::uint64_t>(value);
            putInteger(out, d, value < 0 ? 0 - bits : bits, signOf(d, value < 0));
            break;
        }
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            putInteger(out, d, unsignedArgument(d, arguments), Text());
            break;
        case 'p': {
            Directive pointer = d;
            pointer.precision = 2 * sizeof(void*);
            putInteger(out, pointer,
                       reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, void*)), Text());
            break;
        }
        case 'f':
        case 'F':
        case 'e':
        case 'E':
        case 'g':
        case 'G':
            putDouble(out, d, va_arg(arguments.list, double));
            break;
        case 'c':
            pad(out, d, Text(), Text(1, static_cast<TCHAR>(va_arg(arguments.list, int))), false);
            break;
        case 's':
            if (d.size == Size::shortInt)
                putNarrow(out, d, va_arg(arguments.list, const char*));
            else
                putWide(out, d, va_arg(arguments.list, LPCTSTR));
            break;
        case 'S':
            if (d.size == Size::longInt)
                putWide(out, d, va_arg(arguments.list, LPCTSTR));
            else
                putNarrow(out, d, va_arg(arguments.list, const char*));
            break;
        case 0:
            break;
        default:  // "%%", and whatever is no conversion stands for itself
            out += d.conversion;
            break;
    }
}

}  // namespace

Text format(LPCTSTR format, va_list arguments) {
    Text out;
    if (format == nullptr) return out;
    Arguments copy;
    va_copy(copy.list, arguments);
    for (LPCTSTR at = format; *at != 0;) {
        if (*at != '%') {
            out += *at++;
            continue;
        }
        ++at;
        put(out, readDirective(at, copy), copy);
    }
    va_end(copy.list);
    return out;
}

}  // namespace afx
