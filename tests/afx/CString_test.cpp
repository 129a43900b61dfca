#include <afx.h>
#include <gtest/gtest.h>

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

#ifndef _WIN32
// The C library here rounds exactly, too; on Windows its spelling differs.
TEST(CString, FormatsAnyFiniteDoubleAsTheCLibraryDoes) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const double value = fromBits(random());
        if (value != value || value - value != 0.0) continue;
        char expected[400];
        std::snprintf(expected, sizeof(expected), "%f", value);
        ASSERT_EQ(toUtf8(formatted(_T("%f"), value)), expected);
        std::snprintf(expected, sizeof(expected), "%.3f|%e|%g", value, value, value);
        ASSERT_EQ(toUtf8(formatted(_T("%.3f|%e|%g"), value, value, value)), expected);
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
