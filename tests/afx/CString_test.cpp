#include <afx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/support/Text.h"

namespace {

using test::toUtf8;

CString formatted(LPCTSTR format, ...) {
    CString text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    return text;
}

double fromBits(std::uint64_t bits) {
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

}  // namespace

TEST(CString, StartsEmptyAndTerminated) {
    const CString text;
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetString()[0], 0);
}

TEST(CString, CopiesWideTextAndCountedPartsOfIt) {
    EXPECT_EQ(toUtf8(CString(_T("abc"))), "abc");
    EXPECT_EQ(toUtf8(CString(_T("abcdef"), 3)), "abc");
    EXPECT_EQ(toUtf8(CString(static_cast<TCHAR>('x'), 3)), "xxx");
    EXPECT_TRUE(CString(static_cast<LPCTSTR>(nullptr)).IsEmpty());
}

TEST(CString, CountsEmbeddedZerosButComparesUpToTheFirst) {
    const TCHAR units[] = {'a', 0, 'b'};
    const CString text(units, 3);
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(text.GetString()[2], static_cast<TCHAR>('b'));
    EXPECT_TRUE(text == _T("a"));
}

TEST(CString, WidensNarrowTextByTheCodePage) {
    const CString text("a\x80\x9F\xE9z");
    const TCHAR expected[] = {'a', 0x20AC, 0x0178, 0x00E9, 'z', 0};
    EXPECT_TRUE(text == expected);
    EXPECT_TRUE(CString(static_cast<LPCSTR>(nullptr)).IsEmpty());
}

TEST(CString, CopiesAreIndependentWhenOneChanges) {
    CString a(_T("one"));
    CString b(a);
    b += _T(" more");
    EXPECT_EQ(toUtf8(a), "one");
    EXPECT_EQ(toUtf8(b), "one more");
    CString c = a;
    c.GetBuffer()[0] = 'O';
    EXPECT_EQ(toUtf8(a), "one");
    EXPECT_EQ(toUtf8(c), "One");
}

TEST(CString, AssignsFromPartsOfItself) {
    CString text(_T("abcdef"));
    text = text.GetString() + 3;
    EXPECT_EQ(toUtf8(text), "def");
    text += text.GetString();
    EXPECT_EQ(toUtf8(text), "defdef");
    const CString& same = text;
    text = same;
    EXPECT_EQ(toUtf8(text), "defdef");
    text = static_cast<TCHAR>('q');
    EXPECT_EQ(toUtf8(text), "q");
}

TEST(CString, JoinsInEveryCombination) {
    const CString a(_T("a"));
    EXPECT_EQ(toUtf8(a + a), "aa");
    EXPECT_EQ(toUtf8(a + _T("b")), "ab");
    EXPECT_EQ(toUtf8(_T("b") + a), "ba");
    EXPECT_EQ(toUtf8(a + static_cast<TCHAR>('c')), "ac");
    EXPECT_EQ(toUtf8(static_cast<TCHAR>('c') + a), "ca");
}

TEST(CString, FindsCaseSensitivelyFromAStart) {
    const CString text(_T("data.cxc.CXC.cxc"));
    EXPECT_EQ(text.Find(_T(".cxc")), 4);
    EXPECT_EQ(text.Find(_T(".cxc"), 5), 12);
    EXPECT_EQ(text.Find(_T(".Cxc")), -1);
    EXPECT_EQ(text.Find(static_cast<TCHAR>('C')), 9);
    EXPECT_EQ(text.Find(_T("x"), 99), -1);
    EXPECT_EQ(text.Find(_T("x"), -1), -1);
    EXPECT_EQ(text.ReverseFind(static_cast<TCHAR>('.')), 12);
}

TEST(CString, CutsPartsOutAndClampsTheirBounds) {
    const CString text(_T("abcdef"));
    EXPECT_EQ(toUtf8(text.Left(2)), "ab");
    EXPECT_EQ(toUtf8(text.Right(2)), "ef");
    EXPECT_EQ(toUtf8(text.Mid(2)), "cdef");
    EXPECT_EQ(toUtf8(text.Mid(2, 2)), "cd");
    EXPECT_EQ(toUtf8(text.Mid(4, 99)), "ef");
    EXPECT_EQ(toUtf8(text.Left(-1)), "");
    EXPECT_EQ(toUtf8(text.Mid(99)), "");
}

TEST(CString, ComparesByCodeUnits) {
    const CString b(_T("b"));
    EXPECT_TRUE(b == _T("b"));
    EXPECT_TRUE(_T("b") == b);
    EXPECT_TRUE(b != CString(_T("B")));
    EXPECT_TRUE(CString(_T("a")) < b);
    EXPECT_TRUE(b < _T("ba"));
    EXPECT_TRUE(b > _T("a"));
    EXPECT_TRUE(_T("a") <= b);
    EXPECT_TRUE(b >= _T("b"));
    EXPECT_EQ(b.CompareNoCase(_T("B")), 0);
    EXPECT_GT(b.Compare(_T("B")), 0);
}

TEST(CString, BuffersAreWritableAndKeepWhatWasThere) {
    CString text(_T("ab"));
    LPTSTR buffer = text.GetBuffer(5);
    EXPECT_EQ(buffer[1], static_cast<TCHAR>('b'));
    buffer[2] = 'c';
    buffer[3] = 0;
    text.ReleaseBuffer();
    EXPECT_EQ(toUtf8(text), "abc");
    text.GetBuffer(5)[1] = 0;
    text.ReleaseBuffer(3);
    EXPECT_EQ(text.GetLength(), 3);
}

TEST(CString, AFullBufferNeedsNoTerminator) {
    CString text;
    std::fill_n(text.GetBuffer(4), 5, static_cast<TCHAR>('x'));
    text.ReleaseBuffer();
    EXPECT_EQ(toUtf8(text), "xxxx");
}

TEST(CString, NoTextIsLongerThanItsBuffer) {
    CString text(_T("abc"));
    CString empty;
    for (CString* changed : {&text, &empty}) {
        try {
            changed->ReleaseBuffer(1000);
            ADD_FAILURE() << "nothing was thrown";
        } catch (CInvalidArgException* e) {
            e->Delete();
        }
    }
    EXPECT_EQ(toUtf8(text), "abc");
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(CString, ALengthBeyondAnyBufferIsAMemoryException) {
    CString text(_T("abc"));
    try {
        text.GetBuffer(std::numeric_limits<int>::max());
        ADD_FAILURE() << "nothing was thrown";
    } catch (CMemoryException* e) {
        e->Delete();
    }
    EXPECT_EQ(toUtf8(text), "abc");
}

TEST(CString, EmptyDropsTheText) {
    CString text(_T("abc"));
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
    text += _T("d");
    EXPECT_EQ(toUtf8(text), "d");
}

TEST(CString, GrowsByManySmallPieces) {
    CString text;
    for (int i = 0; i < 100000; ++i)
        text += static_cast<TCHAR>('a' + i % 26);
    EXPECT_EQ(text.GetLength(), 100000);
    EXPECT_EQ(text.GetString()[99999], static_cast<TCHAR>('a' + 99999 % 26));
}

TEST(CString, FormatsStringsOfBothWidths) {
    const CString name(_T("wide"));
    EXPECT_EQ(toUtf8(formatted(_T("<%s|%S|%hs|%ls>"), name.GetString(), "narrow", "n", _T("w"))),
              "<wide|narrow|n|w>");
    EXPECT_EQ(toUtf8(formatted(_T("%6s|%-6s|%.2s"), _T("abc"), _T("abc"), _T("abc"))),
              "   abc|abc   |ab");
    EXPECT_EQ(toUtf8(formatted(_T("%s"), static_cast<LPCTSTR>(nullptr))), "(null)");
    EXPECT_EQ(toUtf8(formatted(_T("%c%%"), 'x')), "x%");
}

TEST(CString, FormatsIntegersOf32And64Bits) {
    EXPECT_EQ(toUtf8(formatted(_T("%d %u %i"), -5, 4000000000u, 7)), "-5 4000000000 7");
    EXPECT_EQ(toUtf8(formatted(_T("%I64d"), std::numeric_limits<long long>::min())),
              "-9223372036854775808");
    EXPECT_EQ(toUtf8(formatted(_T("%lld %I64u"), 123456789012LL, 18446744073709551615ULL)),
              "123456789012 18446744073709551615");
    EXPECT_EQ(toUtf8(formatted(_T("%ld %lu %I32d %hd"), static_cast<LONG>(-6),
                               static_cast<DWORD>(4000000000u), -7, 65535)),
              "-6 4000000000 -7 -1");
    EXPECT_EQ(toUtf8(formatted(_T("%5d|%-5d|%05d|%+d|% d|%.3d"), 42, 42, 42, 42, 42, 7)),
              "   42|42   |00042|+42| 42|007");
    EXPECT_EQ(toUtf8(formatted(_T("%x %X %#x %o"), 255, 255, 255, 8)), "ff FF 0xff 10");
    EXPECT_EQ(toUtf8(formatted(_T("%*d|%-*d|%.*f"), 4, 7, 4, 7, 1, 2.25)), "   7|7   |2.2");
}

TEST(CString, FormatsDoubles) {
    EXPECT_EQ(toUtf8(formatted(_T("%f %.3f %.0f"), 1.5, -2.0005, 2.5)), "1.500000 -2.001 2");
    EXPECT_EQ(toUtf8(formatted(_T("%8.2f|%-8.2f|%08.2f|%+f"), 3.14159, 3.14159, -3.14159, 1.0)),
              "    3.14|3.14    |-0003.14|+1.000000");
    EXPECT_EQ(toUtf8(formatted(_T("%e %g %G"), 12345.678, 1e-10, 1e20)),
              "1.234568e+04 1e-10 1E+20");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), -0.0)), "-0.000000");
    EXPECT_EQ(formatted(_T("%f"), std::numeric_limits<double>::max()).GetLength(), 309 + 7);
}

TEST(CString, SpellsInfinitiesAndNaNsAsWindowsDoes) {
    EXPECT_EQ(toUtf8(formatted(_T("%f"), std::numeric_limits<double>::infinity())), "inf");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), -std::numeric_limits<double>::infinity())), "-inf");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), fromBits(0x7FF8000000000000))), "nan");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), fromBits(0x7FF8000000000001))), "nan");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), fromBits(0xFFF8000000000001))), "-nan");
    EXPECT_EQ(toUtf8(formatted(_T("%f"), fromBits(0xFFF8000000000000))), "-nan(ind)");
    EXPECT_EQ(toUtf8(formatted(_T("%05f|%F"), std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::infinity())),
              "  inf|INF");
}

TEST(CString, KeepsTheZerosOfAnAlternateGeneralForm) {
    EXPECT_EQ(toUtf8(formatted(_T("%#g|%#.3g|%#.0g|%#g"), 1.0, 1e5, 2.0, 1e-10)),
              "1.00000|1.00e+05|2.|1.00000e-10");
    EXPECT_EQ(toUtf8(formatted(_T("%#g|%#g|%#g|%#g"), 1e-4, 1e-5, 999999.0, 1e6)),
              "0.000100000|1.00000e-05|999999.|1.00000e+06");
    EXPECT_EQ(toUtf8(formatted(_T("%#.3G|%#.3f|%#.0f|%#.0e"), 1e-7, 1.0, 3.0, 3.0)),
              "1.00E-07|1.000|3.|3.e+00");
}

// The digits of every build are the same: their sum is pinned.
TEST(CString, FormatsDoublesAlikeInEveryBuild) {
    std::mt19937_64 random(7);
    std::uint64_t sum = 14695981039346656037u;
    for (int i = 0; i < 20000; ++i) {
        const double value = fromBits(random());
        const CString text = formatted(_T("%f %.17g %.3e"), value, value, value);
        for (int k = 0; k < text.GetLength(); ++k)
            sum = (sum ^ static_cast<std::uint64_t>(text.GetAt(k))) * 1099511628211u;
    }
    EXPECT_EQ(sum, 9226775528479824327u);
}

#ifndef _WIN32
// The C library here rounds exactly, too; on Windows its spelling differs.
TEST(CString, FormatsAnyFiniteDoubleAsTheCLibraryDoes) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 1000000; ++i) {
        const double value = fromBits(random());
        if (value != value || value - value != 0.0) continue;
        char expected[400];
        const int length = std::snprintf(expected, sizeof(expected), "%f", value);
        const CString text = formatted(_T("%f"), value);
        ASSERT_EQ(text.GetLength(), length) << expected;
        ASSERT_TRUE(std::equal(expected, expected + length, text.GetString())) << expected;
    }
}

TEST(CString, FormatsWithFlagsWidthAndPrecisionAsTheCLibraryDoes) {
    std::mt19937_64 random(2);
    const auto pick = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    for (int i = 0; i < 100000; ++i) {
        std::string directive = "%";
        for (const char flag : {'-', '+', ' ', '#', '0'}) {
            if (pick(3) == 0) directive += flag;
        }
        if (pick(2) == 0) directive += std::to_string(1 + pick(30));
        if (pick(2) == 0) directive += "." + std::to_string(pick(25));
        const double real =
            pick(2) == 0 ? fromBits(random()) : (static_cast<double>(pick(20001)) - 10000) / 8;
        if (real != real) continue;
        const long long integer = static_cast<long long>(random()) >> pick(64);
        const bool isReal = pick(2) == 0;
        const char conversion = isReal ? "feEgG"[pick(5)] : "diuxXo"[pick(6)];
        const std::string format = directive + (isReal ? "" : "ll") + conversion;
        const std::u16string wide(format.begin(), format.end());
        char expected[500];
        if (isReal) {
            std::snprintf(expected, sizeof(expected), format.c_str(), real);
            ASSERT_EQ(toUtf8(formatted(wide.c_str(), real)), expected) << format;
        } else {
            std::snprintf(expected, sizeof(expected), format.c_str(), integer);
            ASSERT_EQ(toUtf8(formatted(wide.c_str(), integer)), expected) << format;
        }
    }
}
#endif

TEST(CString, ReplacesItsContentByAFormatOfAnyLength) {
    CString text(_T("old"));
    const CString longText(static_cast<TCHAR>('y'), 100000);
    text.Format(_T("%s!"), longText.GetString());
    EXPECT_EQ(text.GetLength(), 100001);
    text.Format(_T("%d"), 3);
    EXPECT_EQ(toUtf8(text), "3");
}

TEST(CString, BearsBrokenFormats) {
    EXPECT_EQ(toUtf8(formatted(_T("100%"))), "100");
    EXPECT_EQ(toUtf8(formatted(_T("%5"))), "");
    EXPECT_EQ(toUtf8(formatted(_T("%y"))), "y");
}
