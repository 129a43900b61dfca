#include "cxcpkg/CGroupMeegCxcFace02Prcs.h"

#include "tests/cxcpkg/package_fixture.h"
#include "tests/support/Viewer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using test::cell;
using test::cellValue;
using test::CleanGroup;
using test::newFilled;
using test::newSingle;
using test::pairOf;
using test::valuesOf;

const double nan = std::numeric_limits<double>::quiet_NaN();

// Values that sums round: neither exact nor ordered.
CSnsCohDatazq* newUneven(__int64 rows, __int64 cols, __int64 nTim, int seed) {
    CSnsCohDatazq* const data = newFilled(rows, cols, nTim);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c) {
            for (__int64 t = 0; t < nTim; ++t)
                cell(*data, t, r, c) = std::sin(seed * 12.9898 + cellValue(t, r, c) * 0.37) * 7.3;
        }
    }
    return data;
}

// The results by the rule, cell by cell, entry by entry.
struct Expected {
    std::vector<double> minimum, mean, maximum;
    __int64 rows = 0, cols = 0, slices = 0;

    explicit Expected(CleanGroup& group, int entries) {
        int k = 0;
        for (int i = 0; i < entries; ++i) {
            if (const CSnsCohDatazq* const data = group.getCoherenceData(i)) {
                rows = std::max(rows, data->m_snsRowTotal);
                cols = std::max(cols, data->m_snsColTotal);
                slices = std::max(slices, data->m_cohTimTotal);
            }
        }
        minimum = mean = maximum =
            std::vector<double>(static_cast<std::size_t>(rows * cols * slices), 0.0);
        for (int i = 0; i < entries; ++i) {
            CSnsCohDatazq* const data = group.getCoherenceData(i);
            if (data == nullptr) continue;
            for (__int64 r = 0; r < data->m_snsRowTotal; ++r) {
                for (__int64 c = 0; c < data->m_snsColTotal; ++c) {
                    if (pairOf(*data, r, c).m_data == nullptr) break;
                    const __int64 n = std::min(data->m_cohTimTotal, pairOf(*data, r, c).m_size);
                    for (__int64 t = 0; t < n; ++t)
                        take(index(t, r, c), cell(*data, t, r, c), k == 0);
                }
            }
            ++k;
        }
        for (double& value : mean) {
            if (k >= 2) value /= k;
        }
    }

    std::size_t index(__int64 t, __int64 r, __int64 c) const {
        return static_cast<std::size_t>((r * cols + c) * slices + t);
    }

    void take(std::size_t at, double value, bool first) {
        if (first) {
            minimum[at] = value;
            maximum[at] = value;
        } else {
            if (minimum[at] > value) minimum[at] = value;
            if (value > maximum[at]) maximum[at] = value;
        }
        mean[at] += value;
    }

    // To the last bit.
    void expectIn(CSnsCohDatazq& data, const std::vector<double>& values) const {
        ASSERT_EQ(data.m_snsRowTotal, rows);
        ASSERT_EQ(data.m_snsColTotal, cols);
        ASSERT_EQ(data.m_cohTimTotal, slices);
        for (__int64 r = 0; r < rows; ++r) {
            for (__int64 c = 0; c < cols; ++c) {
                ASSERT_EQ(pairOf(data, r, c).m_size, slices);
                ASSERT_EQ(std::memcmp(pairOf(data, r, c).m_data, &values[index(0, r, c)],
                                      static_cast<std::size_t>(slices) * sizeof(double)),
                          0)
                    << r << ' ' << c;
            }
        }
    }
};

void expectAverageAndSummary(CleanGroup& group) {
    const int n = group.size();
    const Expected expected(group, n);
    ASSERT_EQ(group.averageAll(), n + 1);
    expected.expectIn(group.at(n), expected.mean);
    ASSERT_EQ(group.deleteCohDataset(n), 1);
    ASSERT_EQ(group.summaryAll(), n + 3);
    expected.expectIn(group.at(n), expected.minimum);
    expected.expectIn(group.at(n + 1), expected.mean);
    expected.expectIn(group.at(n + 2), expected.maximum);
}

TEST(CGroupMeegCxcFace02Prcs_Queries, SliceMaximumIsThatOfTheCurrentEntryClamped) {
    CleanGroup group;
    EXPECT_EQ(group.getCohTimSlcMax(), 1);
    group.append(newSingle(1));
    group.append(newSingle(2));
    group.append(nullptr);
    group.at(0).m_headerLong2 = 70;
    group.at(1).m_headerLong2 = 80;
    EXPECT_EQ(group.getCohTimSlcMax(), 70);
    group.m_curntCohDataSetID = 1;
    EXPECT_EQ(group.getCohTimSlcMax(), 80);
    group.m_curntCohDataSetID = 9;
    EXPECT_EQ(group.getCohTimSlcMax(), 1);  // the null entry
}

TEST(CGroupMeegCxcFace02Prcs_Queries, RangeIsThatOfTheEntry) {
    CleanGroup group;
    group.append(newFilled(3, 3, 5));
    group.append(nullptr);
    double lo = 5.0;
    double hi = 5.0;
    EXPECT_EQ(group.getSnsCohRange(0, lo, hi, false, 1), 1);
    EXPECT_EQ(lo, cellValue(0, 0, 1));
    EXPECT_EQ(hi, cellValue(4, 2, 1));
    group.m_curntCohDataSetID = 0;
    group.at(0).setSelect(2, 3);
    EXPECT_EQ(group.getSnsCohRange(-1, lo, hi, true, 0), 1);
    EXPECT_EQ(lo, cellValue(2, 0, 0));
    EXPECT_EQ(hi, cellValue(3, 2, 2));
    for (const int index : {1, 2, -2}) {
        lo = hi = 5.0;
        EXPECT_EQ(group.getSnsCohRange(index, lo, hi, false, 0), 0);
        EXPECT_EQ(lo, 0.0);
        EXPECT_EQ(hi, 0.0);
    }
}

TEST(CGroupMeegCxcFace02Prcs_Queries, SelectionIsCheckedWithoutAMessage) {
    test::TestApp app;
    CleanGroup group;
    group.append(newFilled(2, 2, 10));
    group.append(nullptr);
    group.append(new CSnsCohDatazq);
    group.at(2).m_cohTimTotal = 4;
    EXPECT_EQ(group.checkSelect4Class(5, 3, 0), 1);
    EXPECT_EQ(group.checkSelect4Class(0, 10, 0), 0);
    EXPECT_EQ(group.checkSelect4Class(-1, 0, 0), 0);
    EXPECT_EQ(group.checkSelect4Class(0, 0, 1), 0);
    EXPECT_EQ(group.checkSelect4Class(0, 0, 2), 0);
    EXPECT_EQ(group.checkSelect4Class(0, 0, 3), 0);
    EXPECT_EQ(group.checkSelect4Class(0, 0, -1), 0);
    group.m_curntCohDataSetID = 0;
    EXPECT_EQ(group.checkSelect4Class(0, 0, -1), 1);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CGroupMeegCxcFace02Prcs_Queries, OnlySeveralSlicesAreAccumulated) {
    CleanGroup group;
    EXPECT_EQ(group.accumulateTrlCoh(nullptr), 0);
    CSnsCohDatazq data;
    test::fill(data, 2, 3, 1);
    EXPECT_EQ(group.accumulateTrlCoh(&data), 0);
    test::fill(data, 2, 3, 3);
    EXPECT_EQ(group.accumulateTrlCoh(&data), 1);
    EXPECT_EQ(data.m_cohTimTotal, 1);
    EXPECT_EQ(group.getLatency4PtSecond(1000), 0.0);
}

TEST(CGroupMeegCxcFace02Prcs_Average, OneDatasetIsCopied) {
    CleanGroup group;
    group.append(newFilled(5, 3, 7));
    EXPECT_EQ(group.averageAll(), 2);
    EXPECT_EQ(group.name(1), "Average1 Result");
    for (__int64 r = 0; r < 5; ++r) {
        for (__int64 c = 0; c < 3; ++c)
            EXPECT_EQ(valuesOf(group.at(1), r, c), valuesOf(group.at(0), r, c));
    }
    EXPECT_EQ(group.getCurntCohDataSetID(), -1);
}

TEST(CGroupMeegCxcFace02Prcs_Average, ShorterDatasetCountsAsZerosBehindItsEnd) {
    CleanGroup group;
    group.append(newFilled(4, 4, 10));
    group.append(newFilled(4, 4, 5));
    EXPECT_EQ(group.averageAll(), 3);
    EXPECT_EQ(group.name(2), "Average2 Result");
    EXPECT_EQ(group.at(2).m_cohTimTotal, 10);
    EXPECT_EQ(cell(group.at(2), 4, 3, 1), cellValue(4, 3, 1));
    EXPECT_EQ(cell(group.at(2), 5, 3, 1), cellValue(5, 3, 1) / 2);
}

TEST(CGroupMeegCxcFace02Prcs_Average, EachSizeIsTheLargest) {
    CleanGroup group;
    group.append(newFilled(64, 32, 2));
    group.append(newFilled(48, 40, 2));
    EXPECT_EQ(group.averageAll(), 3);
    EXPECT_EQ(group.at(2).m_snsRowTotal, 64);
    EXPECT_EQ(group.at(2).m_snsColTotal, 40);
    EXPECT_EQ(cell(group.at(2), 1, 50, 20), cellValue(1, 50, 20) / 2);
    EXPECT_EQ(cell(group.at(2), 1, 20, 35), cellValue(1, 20, 35) / 2);
    EXPECT_EQ(cell(group.at(2), 1, 20, 20), cellValue(1, 20, 20));
    EXPECT_EQ(cell(group.at(2), 1, 60, 39), 0.0);  // in neither
}

TEST(CGroupMeegCxcFace02Prcs_Average, EarlierResultsAreDatasetsLikeAnyOther) {
    CleanGroup group;
    group.append(newSingle(1));
    group.append(newSingle(2));
    EXPECT_EQ(group.averageAll(), 3);
    EXPECT_EQ(group.averageAll(), 4);
    EXPECT_EQ(group.name(3), "Average3 Result");
    EXPECT_EQ(group.at(3).getValue(0, 0, 0), 1.5);
    group.append(newSingle(7.5));
    EXPECT_EQ(group.averageAll(), 6);
    EXPECT_EQ(group.name(5), "Average5 Result");
    EXPECT_EQ(group.at(5).getValue(0, 0, 0), 13.5 / 5);
}

TEST(CGroupMeegCxcFace02Prcs_Average, NothingElseInTheGroupChanges) {
    CleanGroup group;
    group.append(newFilled(2, 3, 5));
    group.append(newFilled(2, 3, 5));
    group.m_curntCohDataSetID = 1;
    test::Viewer viewer;
    group.viewerAdd(&viewer);
    CSnsCohDatazq* const first = &group.at(0);
    EXPECT_EQ(group.averageAll(), 3);
    EXPECT_EQ(group.summaryAll(), 6);
    EXPECT_EQ(group.m_viewers.GetSize(), 1);
    EXPECT_FALSE(viewer.takeRepaint().requested);
    EXPECT_EQ(group.getCurntCohDataSetID(), 1);
    EXPECT_EQ(&group.at(0), first);
    EXPECT_EQ(cell(group.at(0), 4, 1, 2), cellValue(4, 1, 2));
    EXPECT_EQ(cell(group.at(1), 4, 1, 2), cellValue(4, 1, 2));
    EXPECT_EQ(group.name(0), "CxcTrial");
}

TEST(CGroupMeegCxcFace02Prcs_Average, DatasetsThatCoverNothingCountInTheDivisor) {
    CleanGroup group;
    group.append(newSingle(9));
    group.append(new CSnsCohDatazq);  // no grid
    group.append(nullptr);            // does not count
    group.append(new CSnsCohDatazq);
    group.at(3).setChnlRowCol(1, 1);
    EXPECT_EQ(group.averageAll(), 5);
    EXPECT_EQ(group.name(4), "Average3 Result");
    EXPECT_EQ(group.at(4).getValue(0, 0, 0), 3.0);
    EXPECT_EQ(group.summaryAll(), 8);
    EXPECT_EQ(group.name(5), "Cxc4 Minimum");
}

TEST(CGroupMeegCxcFace02Prcs_Average, PairWithoutAnArrayEndsItsRow) {
    CleanGroup group;
    group.append(newFilled(2, 5, 3));
    group.append(newFilled(2, 5, 3));
    pairOf(group.at(1), 0, 2).cleanData();
    test::claimValues(group.at(1), 1, 4, 3);
    EXPECT_EQ(group.averageAll(), 3);
    EXPECT_EQ(cell(group.at(2), 1, 0, 1), cellValue(1, 0, 1));
    EXPECT_EQ(cell(group.at(2), 1, 0, 2), cellValue(1, 0, 2) / 2);
    EXPECT_EQ(cell(group.at(2), 1, 0, 3), cellValue(1, 0, 3) / 2);  // has values, is skipped
    EXPECT_EQ(cell(group.at(2), 1, 0, 4), cellValue(1, 0, 4) / 2);
    EXPECT_EQ(cell(group.at(2), 1, 1, 3), cellValue(1, 1, 3));
    EXPECT_EQ(cell(group.at(2), 1, 1, 4), cellValue(1, 1, 4) / 2);
}

TEST(CGroupMeegCxcFace02Prcs_Average, CellsBehindTheCountersOfADatasetAreNotTaken) {
    for (const int lowered : {0, 1, 2}) {
        CleanGroup group;
        group.append(newFilled(4, 4, 6));
        group.append(newFilled(4, 4, 6));
        CSnsCohDatazq& data = group.at(1);  // has the cells, but says that it has fewer
        (lowered == 0   ? data.m_snsRowTotal
         : lowered == 1 ? data.m_snsColTotal
                        : data.m_cohTimTotal) = 3;
        expectAverageAndSummary(group);
        EXPECT_EQ(cell(group.at(3), 5, 3, 3), cellValue(5, 3, 3) / 2) << lowered;
    }
}

TEST(CGroupMeegCxcFace02Prcs_Average, PairWithAnEmptyArrayIsSkippedAlone) {
    CleanGroup group;
    group.append(newFilled(1, 3, 2));
    pairOf(group.at(0), 0, 1).m_size = 0;  // the array stays
    EXPECT_EQ(group.averageAll(), 2);
    EXPECT_EQ(cell(group.at(1), 1, 0, 0), cellValue(1, 0, 0));
    EXPECT_EQ(cell(group.at(1), 1, 0, 1), 0.0);
    EXPECT_EQ(cell(group.at(1), 1, 0, 2), cellValue(1, 0, 2));
}

TEST(CGroupMeegCxcFace02Prcs_Average, ChannelNumbersAreThoseOfTheReference) {
    CleanGroup group;
    group.append(newFilled(3, 4, 1));
    group.append(newFilled(2, 2, 1));
    for (int i = 0; i < 2; ++i) {
        CSnsCohDatazq& data = group.at(i);
        for (__int64 r = 0; r < data.m_snsRowTotal; ++r) {
            for (__int64 c = 0; c < data.m_snsColTotal; ++c) {
                pairOf(data, r, c).m_chnlA = 1000 * (i + 1) + r;
                pairOf(data, r, c).m_chnlB = 2000 * (i + 1) + c;
            }
        }
    }
    EXPECT_EQ(group.averageAll(), 3);  // current index -1: the first entry
    EXPECT_EQ(pairOf(group.at(2), 2, 3).m_chnlA, 1002);
    EXPECT_EQ(pairOf(group.at(2), 2, 3).m_chnlB, 2003);
    group.m_curntCohDataSetID = 1;  // smaller than the result
    EXPECT_EQ(group.averageAll(), 4);
    EXPECT_EQ(pairOf(group.at(3), 1, 1).m_chnlA, 2001);
    EXPECT_EQ(pairOf(group.at(3), 1, 1).m_chnlB, 4001);
    EXPECT_EQ(pairOf(group.at(3), 2, 3).m_chnlA, 0);
    EXPECT_EQ(group.summaryAll(), 7);
    for (int i = 4; i < 7; ++i) {
        EXPECT_EQ(pairOf(group.at(i), 1, 0).m_chnlA, 2001);
        EXPECT_EQ(pairOf(group.at(i), 1, 0).m_chnlB, 4000);
        EXPECT_EQ(pairOf(group.at(i), 0, 2).m_chnlB, 0);
    }
}

TEST(CGroupMeegCxcFace02Prcs_Average, NothingToAverageIsRefused) {
    CleanGroup group;
    EXPECT_EQ(group.averageAll(), 0);
    EXPECT_EQ(group.summaryAll(), 0);
    group.append(nullptr);
    group.append(nullptr);
    EXPECT_EQ(group.averageAll(), 0);
    EXPECT_EQ(group.summaryAll(), 0);
    group.append(newSingle(1));
    EXPECT_EQ(group.averageAll(), 0);  // the reference, entry 0, is null
    EXPECT_EQ(group.summaryAll(), 0);
    EXPECT_EQ(group.size(), 3);
    group.m_curntCohDataSetID = 2;
    EXPECT_EQ(group.averageAll(), 4);
}

TEST(CGroupMeegCxcFace02Prcs_Average, SizesThatMultiplyToSomethingAreStillRefused) {
    CleanGroup group;
    group.append(new CSnsCohDatazq);
    group.at(0).m_cohTimTotal = 1;
    for (const __int64 n : {-2LL, 0LL, 4294967296LL, 30000LL, test::mostIndex}) {
        group.at(0).m_snsRowTotal = n;
        group.at(0).m_snsColTotal = n;
        group.at(0).m_cohTimTotal = n == 30000 ? 1000000 : 1;
        EXPECT_EQ(group.averageAll(), 0) << n;
        EXPECT_EQ(group.summaryAll(), 0) << n;
    }
    group.at(0).m_snsRowTotal = 2;
    group.at(0).m_snsColTotal = 2;
    group.at(0).m_cohTimTotal = 0;
    EXPECT_EQ(group.averageAll(), 0);
    EXPECT_EQ(group.size(), 1);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, ExtremesAndMeanOfEachCell) {
    CleanGroup group;
    for (const double value : {0.2, 0.5, 0.35})
        group.append(newSingle(value));
    EXPECT_EQ(group.summaryAll(), 6);
    EXPECT_EQ(group.name(3), "Cxc3 Minimum");
    EXPECT_EQ(group.name(4), "Cxc3 Mean");
    EXPECT_EQ(group.name(5), "Cxc3 Max");
    EXPECT_EQ(group.at(3).getValue(0, 0, 0), 0.2);
    EXPECT_EQ(group.at(4).getValue(0, 0, 0), (0.2 + 0.5 + 0.35) / 3);
    EXPECT_EQ(group.at(5).getValue(0, 0, 0), 0.5);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, OneDatasetIsCopiedThreeTimes) {
    CleanGroup group;
    group.append(newFilled(3, 2, 5));
    EXPECT_EQ(group.summaryAll(), 4);
    EXPECT_EQ(group.name(1), "Cxc1 Minimum");
    EXPECT_EQ(group.name(2), "Cxc1 Mean");
    EXPECT_EQ(group.name(3), "Cxc1 Max");
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(valuesOf(group.at(i), 2, 1), valuesOf(group.at(0), 2, 1));
}

TEST(CGroupMeegCxcFace02Prcs_Summary, CellsOutsideTheFirstDatasetStartFromZero) {
    CleanGroup group;
    group.append(newFilled(2, 2, 2));
    group.append(newFilled(4, 2, 3));
    EXPECT_EQ(group.summaryAll(), 5);
    EXPECT_EQ(cell(group.at(2), 1, 3, 1), 0.0);
    EXPECT_EQ(cell(group.at(3), 1, 3, 1), cellValue(1, 3, 1) / 2);
    EXPECT_EQ(cell(group.at(4), 1, 3, 1), cellValue(1, 3, 1));
    EXPECT_EQ(cell(group.at(2), 2, 1, 1), 0.0);  // the slice behind the first one's end
    group.cleanSnsCohPkg();
    group.append(newSingle(-1));
    group.append(newFilled(1, 2, 1));
    cell(group.at(1), 0, 0, 1) = -5;
    EXPECT_EQ(group.summaryAll(), 5);
    EXPECT_EQ(cell(group.at(2), 0, 0, 1), -5.0);
    EXPECT_EQ(cell(group.at(4), 0, 0, 1), 0.0);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, FirstDatasetThatCoversNothingIsStillTheFirst) {
    CleanGroup group;
    group.append(new CSnsCohDatazq);
    group.append(newSingle(3));
    EXPECT_EQ(group.summaryAll(), 5);
    EXPECT_EQ(group.at(2).getValue(0, 0, 0), 0.0);
    EXPECT_EQ(group.at(3).getValue(0, 0, 0), 1.5);
    EXPECT_EQ(group.at(4).getValue(0, 0, 0), 3.0);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, NanNeverReplacesAnExtremeAndStaysWhenFirst) {
    for (const int slices : {1, 2, 3}) {  // alone and side by side
        CleanGroup group;
        for (const double value : {2.0, nan, 1.0}) {
            CSnsCohDatazq* const data = newFilled(1, 2, slices);
            std::fill_n(pairOf(*data, 0, 0).m_data, slices, value);
            std::fill_n(pairOf(*data, 0, 1).m_data, slices, value == 2.0 ? nan : value);
            group.append(data);
        }
        EXPECT_EQ(group.summaryAll(), 6);
        EXPECT_EQ(valuesOf(group.at(3), 0, 0), std::vector<double>(slices, 1.0));
        EXPECT_EQ(valuesOf(group.at(5), 0, 0), std::vector<double>(slices, 2.0));
        for (int i = 3; i < 6; ++i)
            EXPECT_TRUE(std::isnan(cell(group.at(i), slices - 1, 0, 1)));
        EXPECT_TRUE(std::isnan(cell(group.at(4), 0, 0, 0)));
    }
}

TEST(CGroupMeegCxcFace02Prcs_Summary, ZerosKeepTheSignThatCameFirst) {
    CleanGroup group;
    for (const double value : {-0.0, 0.0}) {
        CSnsCohDatazq* const data = newFilled(1, 1, 3);
        std::fill_n(pairOf(*data, 0, 0).m_data, 3, value);
        group.append(data);
    }
    EXPECT_EQ(group.summaryAll(), 5);
    for (const int i : {2, 4}) {
        for (const double value : valuesOf(group.at(i), 0, 0))
            EXPECT_TRUE(std::signbit(value));
    }
}

TEST(CGroupMeegCxcFace02Prcs_Summary, ResultsAreThoseOfTheRuleToTheLastBit) {
    CleanGroup group;
    int seed = 0;
    for (const std::vector<int>& size :
         {std::vector<int>{3, 7, 5}, {7, 2, 3}, {5, 5, 1}, {1, 9, 8}, {6, 6, 6}, {2, 3, 11}})
        group.append(newUneven(size[0], size[1], size[2], ++seed));
    group.setCohData(nullptr, 2);
    pairOf(group.at(1), 4, 1).cleanData();
    pairOf(group.at(5), 2, 3).resize(4);
    pairOf(group.at(5), 3, 3).cleanData();
    cell(group.at(5), 0, 0, 0) = nan;
    cell(group.at(5), 1, 0, 0) = -0.0;
    expectAverageAndSummary(group);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, ManyDatasetsAreTakenInTheirOrder) {
    for (const int count : {4, 6, 7, 64, 65, 133}) {
        CleanGroup group;
        for (int i = 0; i < count; ++i) {
            // Mostly alike, so that several are taken at once, with some that are not.
            group.append(i % 9 == 5 ? newUneven(2, 4, 9, i) : newUneven(3, 37, 7, i));
            if (i % 11 == 3) pairOf(group.at(i), 1, i % 4).cleanData();
            if (i % 13 == 7) pairOf(group.at(i), 0, 1).resize(4);
        }
        group.m_curntCohDataSetID = 0;
        expectAverageAndSummary(group);
    }
    CleanGroup group;  // nothing but null in the first round
    for (int i = 0; i < 70; ++i)
        group.append(nullptr);
    for (int i = 0; i < 5; ++i)
        group.append(newUneven(2, 3, 5, i));
    group.m_curntCohDataSetID = 72;
    expectAverageAndSummary(group);
}

TEST(CGroupMeegCxcFace02Prcs_Summary, ResultsAreAsFreshlySizedDatasets) {
    CleanGroup group;
    group.append(newFilled(2, 3, 5));
    group.at(0).setSelect(2, 3);
    group.at(0).m_rowCrt = 1;
    ASSERT_EQ(group.averageAll(), 2);
    ASSERT_EQ(group.summaryAll(), 5);
    CSnsCohDatazq fresh;
    fresh.checkInitSnsCohData(2, 3, 5, true);
    for (int i = 1; i < 5; ++i) {
        EXPECT_EQ(group.at(i).m_selectBegin, fresh.m_selectBegin);
        EXPECT_EQ(group.at(i).m_selectEnd, fresh.m_selectEnd);
        EXPECT_EQ(group.at(i).m_rowCrt, fresh.m_rowCrt);
        EXPECT_EQ(group.at(i).m_columnCrt, fresh.m_columnCrt);
        EXPECT_EQ(group.at(i).m_snsRowTotal, 2);
        EXPECT_EQ(group.at(i).m_snsColTotal, 3);
        EXPECT_EQ(group.at(i).m_cohTimTotal, 5);
        EXPECT_EQ(test::ascii(group.at(i).m_cxcCmptInfo), "CxC ComputeInfo");
        EXPECT_EQ(group.at(i).checkInitSnsCohData(2, 3, 5, false), 1);
        EXPECT_EQ(cell(group.at(i), 4, 1, 2), cellValue(4, 1, 2));
    }
}

TEST(CGroupMeegCxcFace02Prcs_Summary, HostileDatasetsAreTakenAsFarAsTheyReach) {
    test::TestApp app;
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        for (const int place : {0, 1}) {
            SCOPED_TRACE(hostile.name);
            CleanGroup group;
            group.append(newFilled(3, 3, 2));
            auto* const data = new CSnsCohDatazq;
            hostile.make(*data);
            group.setCohData(data, place);
            group.m_curntCohDataSetID = 0;
            const int averaged = group.averageAll();
            EXPECT_TRUE(averaged == 0 || averaged == 3);
            const int before = group.size();
            const int summarised = group.summaryAll();
            EXPECT_TRUE(summarised == 0 || summarised == before + 3);
            EXPECT_EQ(group.size(), summarised == 0 ? before : summarised);
        }
    }
    EXPECT_TRUE(app.messages().empty());
}

TEST(CGroupMeegCxcFace02Prcs_Summary, EveryFailingAllocationLeavesTheGroup) {
    const auto fillGroup = [](CleanGroup& group) {
        group.append(newFilled(2, 3, 5));
        group.append(newFilled(2, 3, 5));
    };
    for (const bool summary : {false, true}) {
        const auto run = [summary](CleanGroup& group) {
            return summary ? group.summaryAll() : group.averageAll();
        };
        int total = 0;
        {
            CleanGroup group;
            fillGroup(group);
            const test::FailingMemory memory(0);
            ASSERT_EQ(run(group), summary ? 5 : 3);
            total = memory.count();
        }
        // Dataset, name, table, rows and vectors of each result, then the list: no more.
        ASSERT_EQ(total, (summary ? 3 : 1) * (2 + 1 + 2 + 6) + 1);
        for (int n = 1; n <= total; ++n) {
            CleanGroup group;
            fillGroup(group);
            const test::FailingMemory memory(n, true);
            EXPECT_EQ(run(group), 0) << n;
            EXPECT_EQ(group.size(), 2);
        }
    }
}

}  // namespace
