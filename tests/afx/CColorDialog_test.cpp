#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using test::TestApp;

constexpr DWORD initialAndOpen = CC_RGBINIT | CC_FULLOPEN;

TEST(CColorDialog, StartsAtTheInitialColourWithTheCustomPartOpen) {
    TestApp app;
    app.colorScript().cancel();
    CColorDialog dialog(RGB(12, 34, 56));
    dialog.m_cc.Flags |= initialAndOpen;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(app.colorScript().last().initial, RGB(12, 34, 56));
    EXPECT_TRUE(app.colorScript().last().fullOpen);
}

TEST(CColorDialog, WithoutTheFlagItStartsAtBlack) {
    TestApp app;
    app.colorScript().cancel();
    CColorDialog dialog(RGB(12, 34, 56), CC_FULLOPEN);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(app.colorScript().last().initial, RGB(0, 0, 0));
}

TEST(CColorDialog, WithoutTheFlagTheCustomPartIsClosed) {
    TestApp app;
    app.colorScript().cancel();
    CColorDialog dialog(RGB(12, 34, 56), CC_RGBINIT);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_FALSE(app.colorScript().last().fullOpen);
}

TEST(CColorDialog, OkBringsTheChosenColour) {
    TestApp app;
    app.colorScript().choose(RGB(200, 100, 50));
    CColorDialog dialog(RGB(12, 34, 56), initialAndOpen);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetColor(), RGB(200, 100, 50));
}

TEST(CColorDialog, OkWithoutAChoiceKeepsTheInitialColour) {
    TestApp app;
    app.colorScript().acceptInitial();
    CColorDialog dialog(RGB(12, 34, 56), initialAndOpen);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetColor(), RGB(12, 34, 56));
}

TEST(CColorDialog, CustomColoursAreWhiteAndSharedByAllDialogs) {
    COLORREF* const colors = CColorDialog::GetSavedCustomColors();
    EXPECT_TRUE(std::all_of(colors, colors + 16,
                            [](COLORREF color) { return color == RGB(255, 255, 255); }));
    const CColorDialog first;
    const CColorDialog second;
    EXPECT_EQ(first.m_cc.lpCustColors, colors);
    EXPECT_EQ(second.m_cc.lpCustColors, colors);
}

}  // namespace
