#ifdef _WIN32

#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

namespace {

using test::TestApp;

// A picture in memory.
class CDCTest : public testing::Test {
protected:
    void SetUp() override {
        const HDC screen = ::GetDC(nullptr);
        ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
        ASSERT_TRUE(bitmap.CreateCompatibleBitmap(CDC::FromHandle(screen), 40, 30));
        ::ReleaseDC(nullptr, screen);
        before = dc.SelectObject(&bitmap);
        ASSERT_NE(before, nullptr);
        dc.FillSolidRect(0, 0, 40, 30, white);
    }
    void TearDown() override { EXPECT_EQ(dc.SelectObject(before), &bitmap); }

    static constexpr COLORREF white = RGB(255, 255, 255);
    static constexpr COLORREF red = RGB(255, 0, 0);
    TestApp app;
    CBitmap bitmap;
    CDC dc;
    CBitmap* before = nullptr;
};

TEST_F(CDCTest, FillsWithoutRightAndBottomAndKeepsTheColourBehindText) {
    const CRect rect(5, 6, 10, 12);
    dc.FillSolidRect(rect, red);
    EXPECT_EQ(dc.GetPixel(5, 6), red);
    EXPECT_EQ(dc.GetPixel(9, 11), red);
    EXPECT_EQ(dc.GetPixel(10, 11), white);
    EXPECT_EQ(dc.GetPixel(9, 12), white);
    EXPECT_EQ(dc.SetBkColor(white), red);
}

TEST_F(CDCTest, FillsWithABrush) {
    CBrush brush(red);
    const CRect rect(0, 0, 4, 4);
    dc.FillRect(rect, &brush);
    EXPECT_EQ(dc.GetPixel(3, 3), red);
    EXPECT_EQ(dc.GetPixel(4, 4), white);
}

TEST_F(CDCTest, DrawsWithTheSelectedPenAndReturnsTheEarlierOne) {
    CPen pen(PS_SOLID, 1, red);
    CPen* const earlier = dc.SelectObject(&pen);
    ASSERT_NE(earlier, nullptr);
    dc.MoveTo(2, 8);
    EXPECT_TRUE(dc.LineTo(20, 8));
    EXPECT_EQ(dc.MoveTo(0, 0), CPoint(20, 8));
    EXPECT_EQ(dc.GetPixel(2, 8), red);
    EXPECT_EQ(dc.GetPixel(19, 8), red);
    EXPECT_EQ(dc.GetPixel(20, 8), white) << "the end is not drawn";
    EXPECT_EQ(dc.SelectObject(earlier), &pen);
}

TEST_F(CDCTest, OutlinesAndFillsShapes) {
    CBrush brush(RGB(0, 0, 255));
    CBrush* const earlier = dc.SelectObject(&brush);
    CGdiObject* const pen = dc.SelectStockObject(NULL_PEN);
    ASSERT_NE(pen, nullptr);
    EXPECT_TRUE(pen->IsKindOf(RUNTIME_CLASS(CPen)));
    const CRect circle(10, 5, 30, 25);
    EXPECT_TRUE(dc.Ellipse(circle));
    EXPECT_EQ(dc.GetPixel(20, 15), RGB(0, 0, 255));
    EXPECT_EQ(dc.GetPixel(10, 5), white);
    const CRect square(0, 0, 6, 6);
    EXPECT_TRUE(dc.Rectangle(square));
    EXPECT_EQ(dc.GetPixel(2, 2), RGB(0, 0, 255));
    EXPECT_EQ(dc.SelectObject(earlier), &brush);
}

TEST_F(CDCTest, CopiesPictures) {
    CDC target;
    CBitmap copy;
    ASSERT_TRUE(target.CreateCompatibleDC(&dc));
    ASSERT_TRUE(copy.CreateCompatibleBitmap(&dc, 8, 8));
    CBitmap* const earlier = target.SelectObject(&copy);
    dc.FillSolidRect(3, 3, 1, 1, red);
    EXPECT_TRUE(target.BitBlt(0, 0, 8, 8, &dc, 2, 1, SRCCOPY));
    EXPECT_EQ(target.GetPixel(1, 2), red);
    EXPECT_EQ(target.GetPixel(0, 0), white);
    target.SelectObject(earlier);
}

TEST_F(CDCTest, TextHasAnExtentAndColours) {
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(90, _T("Tahoma")));
    CFont* const earlier = dc.SelectObject(&font);
    const CSize wide = dc.GetTextExtent(_T("mmmm"));
    EXPECT_GT(wide.cx, dc.GetTextExtent(_T("m")).cx);
    EXPECT_GT(wide.cy, 0);
    EXPECT_EQ(dc.SetTextColor(red), RGB(0, 0, 0));
    EXPECT_EQ(dc.SetBkMode(TRANSPARENT), OPAQUE);
    EXPECT_EQ(dc.SetTextAlign(TA_LEFT), static_cast<UINT>(TA_LEFT));
    EXPECT_TRUE(dc.TextOut(0, 0, _T("m")));
    CRect rect(0, 0, 40, 30);
    EXPECT_GT(dc.DrawText(_T("m"), rect, DT_CENTER | DT_SINGLELINE), 0);
    int drawn = 0;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            drawn += dc.GetPixel(x, y) != white ? 1 : 0;
    EXPECT_GT(drawn, 0);
    dc.SelectObject(earlier);
}

TEST_F(CDCTest, SavedSettingsComeBack) {
    const int saved = dc.SaveDC();
    dc.SetTextColor(red);
    EXPECT_TRUE(dc.RestoreDC(saved));
    EXPECT_EQ(dc.SetTextColor(RGB(0, 0, 0)), RGB(0, 0, 0));
}

TEST(CClientDC, WindowThatIsMissingThrows) {
    TestApp app;
    CWnd none;
    try {
        CClientDC dc(&none);
        FAIL();
    } catch (CResourceException* e) {
        e->Delete();
    }
}

TEST(CClientDC, ManyInTurnDoNotRunOut) {
    TestApp app;
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP | WS_VISIBLE, 0, 0, 9,
                                9, nullptr, nullptr));
    for (int i = 0; i < 20000; ++i) {
        CClientDC dc(&window);
        ASSERT_NE(dc.GetSafeHdc(), nullptr);
    }
    CDC* const dc = window.GetDC();
    ASSERT_NE(dc, nullptr);
    EXPECT_TRUE(window.ReleaseDC(dc));
}

}  // namespace

#endif
