#include "cxcdata/CSnsCohData08Show.h"

#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using test::fill;

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr __int64 most = std::numeric_limits<__int64>::max();

class CSnsCohData08Show_Stepping : public ::testing::Test {
protected:
    void select(__int64 nTim, __int64 begin, __int64 end) {
        d.m_cohTimTotal = nTim;
        d.m_selectBegin = begin;
        d.m_selectEnd = end;
    }
    void expect(__int64 result, __int64 begin, __int64 end) {
        EXPECT_EQ(result, begin);
        EXPECT_EQ(d.m_selectBegin, begin);
        EXPECT_EQ(d.m_selectEnd, end);
    }

    CSnsCohDatazq d;
};

TEST_F(CSnsCohData08Show_Stepping, SelectionMovesAndKeepsItsWidth) {
    select(10, 2, 4);
    expect(d.nextSelect(3, 0), 5, 7);
    expect(d.nextSelect(-4, 1), 1, 3);
    expect(d.nextSelect(0, 0), 1, 3);
}

TEST_F(CSnsCohData08Show_Stepping, SelectionStopsAtTheEdges) {
    select(10, 8, 9);
    expect(d.nextSelect(1, 0), 8, 9);
    select(10, 6, 7);
    expect(d.nextSelect(100, 0), 8, 9);
    select(10, 2, 4);
    expect(d.nextSelect(-5, 0), 0, 2);
}

TEST_F(CSnsCohData08Show_Stepping, SelectionJumpsToTheOtherEnd) {
    select(10, 8, 9);
    expect(d.nextSelect(1, 1), 0, 1);
    expect(d.nextSelect(-1, 1), 8, 9);
}

TEST_F(CSnsCohData08Show_Stepping, ReversedSelectionHasWidthZero) {
    select(10, 5, 1);
    expect(d.nextSelect(2, 0), 7, 7);
}

TEST_F(CSnsCohData08Show_Stepping, SelectionWiderThanTheDataStopsAtBothEnds) {
    select(3, 0, 4);
    expect(d.nextSelect(-1, 0), 0, 2);
    select(3, 0, 4);
    expect(d.nextSelect(1, 0), 0, 2);
}

TEST_F(CSnsCohData08Show_Stepping, WideSelectionThatWrapsIsStoredAsItComes) {
    select(3, 0, 4);
    expect(d.nextSelect(-1, 1), -2, 2);
    select(3, 0, 4);
    expect(d.nextSelect(1, 1), 0, 4);
}

TEST_F(CSnsCohData08Show_Stepping, DatasetWithoutSlicesSteps) {
    select(0, 0, 0);
    expect(d.nextSelect(1, 0), 0, 0);
    expect(d.nextSelect(-1, 0), 0, 0);
}

TEST_F(CSnsCohData08Show_Stepping, WildSelectionsAreSteppedWithoutOverflow) {
    for (const __int64 nTim : {0LL, 10LL, least, most}) {
        for (const __int64 begin : {least, -1LL, 5LL, most}) {
            for (const __int64 end : {least, 0LL, most}) {
                for (const int step :
                     {std::numeric_limits<int>::min(), -1, 1, std::numeric_limits<int>::max()}) {
                    for (const int wrap : {0, 1}) {
                        select(nTim, begin, end);
                        const __int64 stepped = d.nextSelect(step, wrap);
                        EXPECT_EQ(stepped, d.m_selectBegin);
                    }
                }
            }
        }
    }
}

TEST(CSnsCohData08Show, FindingASelectionDoesNothing) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 5);
    d.setSelect(1, 2);
    EXPECT_EQ(d.findSelectCxC(3), 0);
    EXPECT_EQ(d.m_selectBegin, 1);
    EXPECT_EQ(d.m_selectEnd, 2);
}

TEST(CSnsCohData08Show, ChannelTypesHaveNames) {
    CSnsCohDatazq d;
    const std::vector<std::string> names = {"All Type", "MEG Sensor", "EEG Sensor",
                                            "MEG EEG Sensor", "Unknown"};
    for (int id = 0; id < 5; ++id) {
        d.m_chnlTypeID = id;
        EXPECT_EQ(test::ascii(d.getChnlTypeIDname()), names[static_cast<std::size_t>(id)]);
    }
    d.m_chnlTypeID = 7;
    EXPECT_EQ(test::ascii(d.getChnlTypeIDname()), "Unknown");
    d.m_chnlTypeID = -1;
    EXPECT_EQ(test::ascii(d.getChnlTypeIDname()), "Unknown");
}

TEST(CSnsCohData08Show, ComputationNoteIsCopied) {
    CSnsCohDatazq d;
    d.m_cxcCmptInfo = _T("made by hand");
    CString note = d.getCxcCmptInfo();
    note = _T("changed");
    EXPECT_EQ(test::ascii(d.getCxcCmptInfo()), "made by hand");
}

// Range by magnitude

TEST(CSnsCohData08Show, MagnitudesHaveARangeWithTheDiagonal) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {5, -1, 2, 5});
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, false, -1, -1), 1);
    EXPECT_EQ(min, 1.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(d.m_showRangeMin, 1.0);
    EXPECT_EQ(d.m_showRangeMax, 5.0);
    EXPECT_EQ(d.m_showRangeMid, 3.0);
}

TEST(CSnsCohData08Show, MagnitudesOfSlicesAreCachedToo) {
    CSnsCohDatazq d;
    d.checkInitSnsCohData(1, 2, 4, true);
    test::setPair(d, 0, 0, {-9, -3, 2, 8});
    test::setPair(d, 0, 1, {7, 4, -5, 0});
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getCxcAbsRange(min, max, true, true, 1, 2), 1);
    EXPECT_EQ(min, 2.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(d.m_showRangeMid, 3.5);
    d.setSelect(3, 3);
    EXPECT_EQ(d.getCxcAbsRange(min, max, true, true, -1, -1), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 8.0);
    EXPECT_EQ(d.m_showRangeMid, 4.0);
}

TEST(CSnsCohData08Show, MagnitudeRangeChecksSlicesOnlyWhereItUsesThem) {
    CSnsCohDatazq d;
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, false, 0, 0), 0);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    EXPECT_EQ(d.m_showRangeMax, 1.0);
    fill(d, 2, 2, 5);
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, false, 5, -7), 1);
    EXPECT_EQ(max, 225.0);
    for (const auto& slices : std::vector<std::vector<__int64>>{{5, 0}, {0, 5}, {-2, 0}, {0, -2}}) {
        EXPECT_EQ(d.getCxcAbsRange(min, max, false, true, slices[0], slices[1]), 0);
        EXPECT_EQ(min, 0.0);
        EXPECT_EQ(max, 0.0);
    }
    EXPECT_EQ(d.m_showRangeMax, 225.0);
}

TEST(CSnsCohData08Show, MagnitudeRangeOfNothingIsZeroAndCached) {
    CSnsCohDatazq d;
    fill(d, 2, 2, 5);
    double min = 7.0;
    double max = 7.0;
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, true, 3, 1), 1);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.0);
    EXPECT_EQ(d.m_showRangeMax, 0.0);
    d.m_cohTimTotal = 1000;
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, true, 900, 999), 1);
    EXPECT_EQ(max, 0.0);
}

TEST(CSnsCohData08Show, PairsWithoutValuesAreNotInTheMagnitudeRange) {
    CSnsCohDatazq d;
    test::fillSlice(d, 2, 2, {5, -1, 2, 5});
    test::claimValues(d, 0, 1, 1);
    double min = 0.0;
    double max = 0.0;
    EXPECT_EQ(d.getCxcAbsRange(min, max, false, false, 0, 0), 1);
    EXPECT_EQ(min, 2.0);
    EXPECT_EQ(max, 5.0);
}

TEST(CSnsCohData08Show, NoDisplayOperationLeavesTheRealGrid) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq d;
        hostile.make(d);
        double min = 7.0;
        double max = 7.0;
        EXPECT_EQ(d.getCxcAbsRange(min, max, false, false, -1, -1), d.m_mCC != nullptr);
        for (const __int64 from : {0LL, 1LL, 4LL, most, least}) {
            for (const __int64 to : {0LL, 1LL, 999LL, most - 1, least}) {
                const int status = d.getCxcAbsRange(min, max, false, true, from, to);
                EXPECT_TRUE(status == 1 || (min == 0.0 && max == 0.0));
            }
        }
        d.nextSelect(1, 1);
        d.nextSelect(-1, 0);
    }
}

// Colours

struct ColorCommand {
    const char* name;
    int (CSnsCohData08Show::*ask)();
    COLORREF CSnsCohData::*color;
};

const ColorCommand colorCommands[] = {
    {"active", &CSnsCohData08Show::setActiveColor, &CSnsCohData::m_activeColor},
    {"suppressive", &CSnsCohData08Show::setSuppressiveColor, &CSnsCohData::m_suppressiveColor},
    {"basic", &CSnsCohData08Show::setBasicColor, &CSnsCohData::m_basicColor},
};

TEST(CSnsCohData08Show, ChosenColorReplacesItsOwnFieldOnly) {
    for (const ColorCommand& command : colorCommands) {
        SCOPED_TRACE(command.name);
        test::TestApp app;
        app.colorScript().choose(RGB(10, 20, 30));
        CSnsCohDatazq d;
        const CSnsCohDatazq before;
        EXPECT_EQ((d.*command.ask)(), 1);
        EXPECT_EQ(d.*command.color, RGB(10, 20, 30));
        for (const ColorCommand& other : colorCommands) {
            if (other.color != command.color) {
                EXPECT_EQ(d.*other.color, before.*other.color);
            }
        }
    }
}

TEST(CSnsCohData08Show, ColorDialogStartsAtThePresentColorAndFullyOpen) {
    for (const ColorCommand& command : colorCommands) {
        SCOPED_TRACE(command.name);
        test::TestApp app;
        app.colorScript().acceptInitial();
        CSnsCohDatazq d;
        d.*command.color = RGB(40, 90, 160);
        EXPECT_EQ((d.*command.ask)(), 1);
        ASSERT_EQ(app.colorScript().shown(), 1);
        EXPECT_EQ(app.colorScript().last().initial, RGB(40, 90, 160));
        EXPECT_TRUE(app.colorScript().last().fullOpen);
        EXPECT_EQ(d.*command.color, RGB(40, 90, 160));
    }
}

TEST(CSnsCohData08Show, CancelledColorDialogChangesNothing) {
    for (const ColorCommand& command : colorCommands) {
        SCOPED_TRACE(command.name);
        test::TestApp app;
        app.colorScript().cancel();
        CSnsCohDatazq d;
        d.*command.color = 0x445566;
        EXPECT_EQ((d.*command.ask)(), 1);
        EXPECT_EQ(app.colorScript().shown(), 1);
        EXPECT_EQ(d.*command.color, 0x445566u);
    }
}

}  // namespace
