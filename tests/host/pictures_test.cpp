#include "host/axis_labels.h"
#include "host/color_map.h"
#include "host/pixels.h"
#include "host/shown_slice.h"
#include "host/strong_pairs.h"
#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const COLORREF white = ColorMap(0.0, 1.0).colorOf(0.0);

int lightness(COLORREF color) {
    return GetRValue(color) + GetGValue(color) + GetBValue(color);
}

TEST(ColorMap, BothSignsAreComparedOnOneScale) {
    const ColorMap map(-1.0, 4.0);
    EXPECT_EQ(map.bottom(), -4.0);
    EXPECT_EQ(map.top(), 4.0);
    EXPECT_EQ(map.colorOf(0.0), white);
    EXPECT_GT(GetRValue(map.colorOf(2.0)), GetBValue(map.colorOf(2.0)));
    EXPECT_LT(GetRValue(map.colorOf(-2.0)), GetBValue(map.colorOf(-2.0)));
}

TEST(ColorMap, OneSignBeginsAtZero) {
    const ColorMap positive(0.5, 2.0);
    EXPECT_EQ(positive.bottom(), 0.0);
    EXPECT_EQ(positive.top(), 2.0);
    const ColorMap negative(-3.0, -1.0);
    EXPECT_EQ(negative.bottom(), -3.0);
    EXPECT_EQ(negative.top(), 0.0);
}

TEST(ColorMap, StrongerIsDarker) {
    const ColorMap map(-1.0, 1.0);
    for (const double sign : {-1.0, 1.0}) {
        int before = lightness(white) + 1;
        for (int i = 0; i <= 20; ++i) {
            const int here = lightness(map.colorOf(sign * i / 20.0));
            EXPECT_LT(here, before) << sign << " " << i;
            before = here;
        }
    }
}

TEST(ColorMap, BearsEveryRangeAndValue) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ColorMap(0.0, 1.0).colorOf(nan), static_cast<COLORREF>(RGB(160, 160, 160)));
    EXPECT_EQ(ColorMap(0.0, 1.0).colorOf(7.0), ColorMap(0.0, 1.0).colorOf(1.0));
    EXPECT_EQ(ColorMap(0.0, 1.0).colorOf(infinity), ColorMap(0.0, 1.0).colorOf(1.0));
    for (const double least : {nan, -infinity, 0.0, 5.0}) {
        const ColorMap map(least, 0.0);
        EXPECT_LT(map.bottom(), map.top());
        EXPECT_EQ(map.colorOf(0.0), white);
    }
}

TEST(AxisLabels, StepIsTheSmallestRoundOneThatFits) {
    EXPECT_EQ(labelStep(16, 320, 18), 1);
    EXPECT_EQ(labelStep(64, 320, 18), 5);
    EXPECT_EQ(labelStep(306, 320, 18), 20);
    EXPECT_EQ(labelStep(306, 320, 25), 50);
    EXPECT_EQ(labelStep(5, 0, 25), 5);
    EXPECT_EQ(labelStep(3, 10, 1000), 5);
}

TEST(AxisLabels, LabelsAreTheFirstAndRoundNumbers) {
    EXPECT_EQ(labelledSensors(3, 320, 18), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(labelledSensors(7, 70, 18), (std::vector<int>{0, 2, 4, 6}));
    EXPECT_EQ(labelledSensors(17, 51, 18), (std::vector<int>{0, 9}));
    EXPECT_EQ(labelledSensors(17, 85, 18), (std::vector<int>{0, 4, 9, 14}));
    EXPECT_EQ(labelledSensors(12, 0, 18), (std::vector<int>{0}));
    EXPECT_TRUE(labelledSensors(0, 100, 18).empty());
}

TEST(AxisLabels, NeverTouch) {
    for (int sensors = 1; sensors < 400; ++sensors) {
        for (const int pixels : {1, 50, 333, 1000}) {
            for (const bool circle : {false, true}) {
                std::vector<int> labels = labelledSensors(sensors, pixels, 18, circle);
                ASSERT_EQ(labels.front(), 0);
                ASSERT_LT(labels.back(), sensors);
                if (circle && labels.size() > 1) labels.push_back(sensors);
                for (std::size_t i = 1; i < labels.size(); ++i)
                    EXPECT_GE((labels[i] - labels[i - 1]) * pixels, 18 * sensors)
                        << sensors << " on " << pixels;
            }
        }
    }
}

TEST(Shrunk, EachPixelIsTheMeanOfItsBlock) {
    const DWORD colors[] = {0x000000, 0x000010, 0xFF0000, 0xFF0000, 0x002000, 0x004010,
                            0x00FF00, 0x00FF00, 1,        1,        0x050505, 0x070707,
                            1,        1,        0x050505, 0x070707};
    const Pixels small = shrunk(colors, 4, 4, 2);
    EXPECT_EQ(small.width, 2);
    EXPECT_EQ(small.height, 2);
    EXPECT_EQ(small.colors, (std::vector<DWORD>{0x001808, 0x7F7F00, 0x000001, 0x060606}));
}

TEST(Shrunk, ColorsBecomePixels) {
    EXPECT_EQ(pixelOf(RGB(1, 2, 3)), 0x010203u);
}

ShownSlice sliceOf(int rows, int cols, std::vector<double> values, double least, double most) {
    ShownSlice shown;
    shown.rows = rows;
    shown.cols = cols;
    shown.values = std::move(values);
    shown.least = least;
    shown.most = most;
    return shown;
}

TEST(StrongPairs, StrongestComeLastAndTheDiagonalNever) {
    const ShownSlice shown = sliceOf(3, 3, {9, 1, -4, 1, 9, 2, -4, 2, 9}, -4, 2);
    const std::vector<StrongPair> pairs = strongPairs(shown, 2);
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(pairs[0].value, 2);
    EXPECT_EQ(pairs[1].value, -4);
    EXPECT_EQ(pairs[1].first, 0);
    EXPECT_EQ(pairs[1].second, 2);
    EXPECT_EQ(pairs[1].strength, 1.0);
    EXPECT_EQ(pairs[0].strength, 0.5);
}

TEST(StrongPairs, StrongerDirectionCountsAndNothingIsNoPair) {
    const ShownSlice shown = sliceOf(3, 3, {0, 1, nan, -5, 0, 0, nan, 0, 0}, -5, 1);
    const std::vector<StrongPair> pairs = strongPairs(shown, 10);
    ASSERT_EQ(pairs.size(), 1u);
    EXPECT_EQ(pairs[0].value, -5);
}

TEST(StrongPairs, NumbersCountBesideNaN) {
    EXPECT_EQ(strongPairs(sliceOf(2, 2, {0, nan, 3, 0}, 0, 3), 10).at(0).value, 3);
    EXPECT_EQ(strongPairs(sliceOf(2, 2, {0, 3, nan, 0}, 0, 3), 10).at(0).value, 3);
}

TEST(StrongPairs, UnequalCountsOfSensorsGiveTheSamePairsEitherWay) {
    for (const auto& [rows, cols] : {std::pair(2, 4), std::pair(4, 2)}) {
        const auto pairs = strongPairs(sliceOf(rows, cols, std::vector<double>(8, 1.0), 0, 1), 99);
        EXPECT_EQ(pairs.size(), 5u);
        for (const StrongPair& pair : pairs)
            EXPECT_LT(pair.first, 2);
    }
    EXPECT_TRUE(strongPairs(ShownSlice(), 99).empty());
}

TEST(LineColor, HasTheThreeColorsOfTheDatasetOnWhite) {
    ShownSlice shown;
    shown.basic = RGB(0, 255, 0);
    shown.active = RGB(255, 0, 0);
    shown.suppressive = RGB(0, 0, 255);
    EXPECT_EQ(lineColor(shown, false, 1.0), shown.active);
    EXPECT_EQ(lineColor(shown, true, 1.0), shown.suppressive);
    const COLORREF weakest = lineColor(shown, false, 0.0);
    EXPECT_EQ(weakest, lineColor(shown, true, 0.0));
    EXPECT_EQ(weakest, static_cast<COLORREF>(RGB(204, 255, 204)));
    const COLORREF third = lineColor(shown, true, 1.0 / 3.0);
    EXPECT_EQ(GetRValue(third), GetGValue(third));  // nothing of the basic colour any more
    EXPECT_GT(GetBValue(third), GetRValue(third));
}

TEST(ReadSlice, CopiesTheSelectedSlice) {
    CSnsCohDatazq data;
    test::fill(data, 2, 3, 5);
    data.setSelect(3, 4);
    data.m_cxcName = _T("name");
    const ShownSlice shown = readSlice(&data);
    EXPECT_EQ(shown.rows, 2);
    EXPECT_EQ(shown.cols, 3);
    EXPECT_EQ(shown.slice, 3);
    EXPECT_EQ(shown.slices, 5);
    EXPECT_EQ(shown.at(1, 2), test::cellValue(3, 1, 2));
    EXPECT_TRUE(readSlice(nullptr).empty());
    CSnsCohDatazq empty;
    EXPECT_TRUE(readSlice(&empty).empty());
    EXPECT_TRUE(readSlice(&empty).fromDataset);
    EXPECT_FALSE(readSlice(nullptr).fromDataset);
}

TEST(ReadSlice, RangeIsThatOfAllSlicesAndOfNoDiagonal) {
    CSnsCohDatazq data;
    test::fill(data, 3, 3, 4);
    test::cell(data, 0, 1, 1) = 1e9;
    const ShownSlice shown = readSlice(&data);
    EXPECT_EQ(shown.least, test::cellValue(0, 0, 1));
    EXPECT_EQ(shown.most, test::cellValue(3, 2, 1));
}

TEST(ReadSlice, RangeBearsValuesThatAreNoNumbers) {
    CSnsCohDatazq data;
    test::fill(data, 2, 3, 2);
    test::cell(data, 0, 0, 1) = nan;
    test::cell(data, 1, 0, 1) = -7.0;
    test::cell(data, 1, 1, 2) = std::numeric_limits<double>::infinity();
    const ShownSlice shown = readSlice(&data);
    EXPECT_EQ(shown.least, -7.0);
    EXPECT_EQ(shown.most, test::cellValue(0, 1, 2));
    test::fillSlice(data, 2, 2, {1, nan, nan, 1});
    EXPECT_EQ(readSlice(&data).least, 0.0);
    EXPECT_EQ(readSlice(&data).most, 0.0);
}

TEST(ReadSlice, LeavesTheDatasetsOwnRangeAlone) {
    CSnsCohDatazq data;
    test::fill(data, 2, 2, 3);
    data.m_dataMin = -1.0;
    data.m_dataMax = -2.0;
    data.m_dataMean = -3.0;
    readSlice(&data);
    EXPECT_EQ(data.m_dataMin, -1.0);
    EXPECT_EQ(data.m_dataMax, -2.0);
    EXPECT_EQ(data.m_dataMean, -3.0);
}

TEST(ReadSlice, FingerprintFollowsEveryChange) {
    CSnsCohDatazq data;
    test::fill(data, 2, 2, 3);
    std::vector<std::size_t> seen = {readSlice(&data).fingerprint()};
    EXPECT_EQ(readSlice(&data).fingerprint(), seen.back());
    const auto look = [&] {
        const std::size_t now = readSlice(&data).fingerprint();
        for (const std::size_t before : seen)
            EXPECT_NE(now, before);
        seen.push_back(now);
    };
    data.setSelect(1, 1);
    look();
    data.m_cxcName = _T("x");
    look();
    test::cell(data, 1, 0, 1) += 0.001;
    look();
    data.m_activeColor = 5;
    look();
    test::cell(data, 2, 0, 1) = -1e6;  // the range
    look();
}

TEST(ReadSlice, BearsHostileDatasets) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq data;
        hostile.make(data);
        const ShownSlice shown = readSlice(&data);
        EXPECT_EQ(shown.values.size(),
                  static_cast<std::size_t>(shown.rows) * static_cast<std::size_t>(shown.cols));
        strongPairs(shown, 50);
    }
}

}  // namespace
