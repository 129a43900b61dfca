#include "cxcpkg/across_datasets.h"

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// Datasets of different shapes, one with a pair without an array, one shorter than it says.
class Group {
public:
    Group() {
        add(3, 5, 4);
        add(2, 5, 7);
        add(5, 2, 4);
        add(3, 3, 1);
        member(1).m_mCC[0][2].cleanData();
        test::setPair(member(0), 1, 1, {0.5, -2.0});
        // Of these the one of the earlier dataset stays.
        test::cell(member(1), 0, 1, 0) = -std::numeric_limits<double>::quiet_NaN();
        test::cell(member(2), 0, 1, 0) = std::numeric_limits<double>::quiet_NaN();
        test::cell(member(2), 1, 1, 1) = std::numeric_limits<double>::quiet_NaN();
    }
    ~Group() { m_group.cleanSnsCohPkg(); }

    CGroupMeegCxcFacezq& operator*() { return m_group; }
    CSnsCohDatazq& member(int i) { return *m_group.getCoherenceData(i); }
    int size() { return static_cast<int>(m_group.getTotalCohDataset()); }

private:
    void add(__int64 rows, __int64 cols, __int64 slices) {
        auto* const dataset = new CSnsCohDatazq;
        dataset->checkInitSnsCohData(rows, cols, slices, true);
        std::uniform_real_distribution<double> usual(-3.0, 3.0);
        for (__int64 r = 0; r < rows; ++r) {
            for (__int64 c = 0; c < cols; ++c) {
                for (__int64 t = 0; t < slices; ++t)
                    test::cell(*dataset, t, r, c) = usual(m_random);
            }
        }
        m_group.setCohData(dataset, size());
    }

    std::mt19937 m_random{7};
    CGroupMeegCxcFacezq m_group;
};

void expectSameValues(CSnsCohDatazq& a, CSnsCohDatazq& b) {
    ASSERT_EQ(a.m_snsRowTotal, b.m_snsRowTotal);
    ASSERT_EQ(a.m_snsColTotal, b.m_snsColTotal);
    ASSERT_EQ(a.m_cohTimTotal, b.m_cohTimTotal);
    for (__int64 r = 0; r < a.m_snsRowTotal; ++r) {
        for (__int64 c = 0; c < a.m_snsColTotal; ++c) {
            for (__int64 t = 0; t < a.m_cohTimTotal; ++t) {
                const double one = test::cell(a, t, r, c);
                const double other = test::cell(b, t, r, c);
                EXPECT_EQ(std::memcmp(&one, &other, sizeof(one)), 0)
                    << one << " and " << other << " at " << t << ", " << r << ", " << c;
            }
        }
    }
}

TEST(AcrossDatasets, OneAfterAnotherGivesTheAverageToTheLastBit) {
    Group group;
    const int members = group.size();
    CSnsCohDatazq sums;
    sums.checkInitSnsCohData(5, 5, 7, true);
    for (int i = 0; i < members; ++i)
        cxc::Accumulation(sums).take(group.member(i));
    cxc::sumsToMeans(sums, members);
    ASSERT_EQ((*group).averageAll(), members + 1);
    expectSameValues(sums, group.member(members));
    EXPECT_TRUE(std::isnan(test::cell(sums, 0, 1, 0)));
    EXPECT_TRUE(std::signbit(test::cell(sums, 0, 1, 0)));
}

TEST(AcrossDatasets, OneAfterAnotherGivesTheSummaryToTheLastBit) {
    Group group;
    const int members = group.size();
    CSnsCohDatazq minimum;
    CSnsCohDatazq mean;
    CSnsCohDatazq maximum;
    for (CSnsCohDatazq* const result : {&minimum, &mean, &maximum})
        result->checkInitSnsCohData(5, 5, 7, true);
    for (int i = 0; i < members; ++i)
        cxc::Accumulation(minimum, mean, maximum, i == 0).take(group.member(i));
    cxc::sumsToMeans(mean, members);
    ASSERT_EQ((*group).summaryAll(), members + 3);
    expectSameValues(minimum, group.member(members));
    expectSameValues(mean, group.member(members + 1));
    expectSameValues(maximum, group.member(members + 2));
}

// Seven datasets with a NaN of one sign in one of them and of the other sign in a later one, the
// other way round in another pair, in the first and in the last of an odd number of slices.
class TwoNaNs {
public:
    static constexpr int members = 7;

    TwoNaNs(int early, int late) {
        m_sums.checkInitSnsCohData(2, 2, 3, true);
        for (int i = 0; i < members; ++i) {
            auto* const dataset = new CSnsCohDatazq;
            test::fill(*dataset, 2, 2, 3);
            if (i == early) put(*dataset, std::numeric_limits<double>::quiet_NaN());
            if (i == late) put(*dataset, -std::numeric_limits<double>::quiet_NaN());
            m_group.setCohData(dataset, i);
            cxc::Accumulation(m_sums).take(*dataset);
        }
    }
    ~TwoNaNs() { m_group.cleanSnsCohPkg(); }
    TwoNaNs(const TwoNaNs&) = delete;
    TwoNaNs& operator=(const TwoNaNs&) = delete;

    CSnsCohDatazq& sums() { return m_sums; }
    CSnsCohDatazq& average() { return *m_group.getCoherenceData(m_group.averageAll() - 1); }
    CSnsCohDatazq& mean() { return *m_group.getCoherenceData(m_group.summaryAll() - 2); }

    static void expectTheOlder(CSnsCohDatazq& result) {
        for (const int t : {0, 2}) {
            EXPECT_TRUE(std::isnan(test::cell(result, t, 0, 1)));
            EXPECT_FALSE(std::signbit(test::cell(result, t, 0, 1))) << t;
            EXPECT_TRUE(std::isnan(test::cell(result, t, 1, 0)));
            EXPECT_TRUE(std::signbit(test::cell(result, t, 1, 0))) << t;
        }
        EXPECT_FALSE(std::isnan(test::cell(result, 1, 0, 1)));
    }

private:
    static void put(CSnsCohDatazq& dataset, double nan) {
        for (const int t : {0, 2}) {
            test::cell(dataset, t, 0, 1) = nan;
            test::cell(dataset, t, 1, 0) = -nan;
        }
    }

    CGroupMeegCxcFacezq m_group;
    CSnsCohDatazq m_sums;
};

// result: which of the results. Each has datasets of its own, as a group appends what it makes.
void expectTheOlderWhereverTheyStand(CSnsCohDatazq& (TwoNaNs::*result)()) {
    for (int early = 0; early < TwoNaNs::members; ++early) {
        for (int late = early + 1; late < TwoNaNs::members; ++late) {
            SCOPED_TRACE(std::to_string(early) + " and " + std::to_string(late));
            TwoNaNs datasets(early, late);
            TwoNaNs::expectTheOlder((datasets.*result)());
        }
    }
}

TEST(AcrossDatasets, TheOlderOfTwoNaNsStaysInRunningSums) {
    expectTheOlderWhereverTheyStand(&TwoNaNs::sums);
}

TEST(AcrossDatasets, TheOlderOfTwoNaNsStaysInTheAverage) {
    expectTheOlderWhereverTheyStand(&TwoNaNs::average);
}

TEST(AcrossDatasets, TheOlderOfTwoNaNsStaysInTheMeanOfTheSummary) {
    expectTheOlderWhereverTheyStand(&TwoNaNs::mean);
}

TEST(AcrossDatasets, ADatasetLargerThanTheResultIsCutOff) {
    CSnsCohDatazq sums;
    sums.checkInitSnsCohData(2, 2, 2, true);
    CSnsCohDatazq large;
    test::fill(large, 3, 5, 4);
    cxc::Accumulation(sums).take(large);
    EXPECT_EQ(test::cell(sums, 1, 1, 1), test::cellValue(1, 1, 1));
}

TEST(AcrossDatasets, APairWithoutAnArrayEndsItsRowAlone) {
    CSnsCohDatazq sums;
    sums.checkInitSnsCohData(2, 3, 1, true);
    CWavChnlChnlDatazq full;
    *full.checkInitData(1, true) = 5.0;
    const CWavChnlChnlDatazq empty;
    cxc::Accumulation into(sums);
    for (__int64 r = 0; r < 2; ++r) {
        for (__int64 c = 0; c < 3; ++c)
            into.takePair(r, c, r == 0 && c == 1 ? empty : full, 1);
    }
    EXPECT_EQ(test::cell(sums, 0, 0, 0), 5.0);
    EXPECT_EQ(test::cell(sums, 0, 0, 2), 0.0);
    EXPECT_EQ(test::cell(sums, 0, 1, 0), 5.0);
    EXPECT_EQ(test::cell(sums, 0, 1, 2), 5.0);
}

TEST(AcrossDatasets, PairsOutsideTheResultAreLeftOut) {
    CSnsCohDatazq sums;
    sums.checkInitSnsCohData(1, 1, 1, true);
    CWavChnlChnlDatazq pair;
    *pair.checkInitData(1, true) = 5.0;
    cxc::Accumulation into(sums);
    into.takePair(0, 1, pair, 1);
    into.takePair(1, 0, pair, 1);
    into.takePair(0, 0, pair, 0);
    EXPECT_EQ(test::cell(sums, 0, 0, 0), 0.0);
    into.takePair(0, 0, pair, 1);
    EXPECT_EQ(test::cell(sums, 0, 0, 0), 5.0);
}

TEST(AcrossDatasets, HostileDatasetsStayInsideWhatIsThere) {
    for (const test::HostileDataset& hostile : test::hostileDatasets()) {
        SCOPED_TRACE(hostile.name);
        CSnsCohDatazq dataset;
        hostile.make(dataset);
        CSnsCohDatazq least;
        CSnsCohDatazq sums;
        CSnsCohDatazq most;
        for (CSnsCohDatazq* const result : {&least, &sums, &most})
            result->checkInitSnsCohData(4, 4, 3, true);
        cxc::Accumulation(sums).take(dataset);
        cxc::Accumulation(least, sums, most, true).take(dataset);
        EXPECT_EQ(test::cell(sums, 2, 3, 3), 0.0);
    }
}

TEST(AcrossDatasets, TheMeanOfOneIsItsSum) {
    CSnsCohDatazq sums;
    test::fill(sums, 2, 2, 2);
    cxc::sumsToMeans(sums, 1);
    EXPECT_EQ(test::cell(sums, 1, 0, 1), test::cellValue(1, 0, 1));
    cxc::sumsToMeans(sums, 2);
    EXPECT_EQ(test::cell(sums, 1, 0, 1), test::cellValue(1, 0, 1) / 2.0);
}

// Sets a watcher for the length of a test.
class Watched {
public:
    explicit Watched(cxc::RowWatcher watcher) { cxc::watchRows(std::move(watcher)); }
    ~Watched() { cxc::watchRows({}); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
};

TEST(AcrossDatasets, TheWatcherIsAskedAfterEveryRowOfTheResults) {
    Group group;
    std::vector<__int64> seen;
    {
        const Watched watched([&](__int64 done, __int64 rows) {
            EXPECT_EQ(rows, 5);
            seen.push_back(done);
            return true;
        });
        ASSERT_EQ((*group).averageAll(), 5);
        ASSERT_EQ((*group).summaryAll(), 8);
    }
    EXPECT_EQ(seen, (std::vector<__int64>{1, 2, 3, 4, 5, 1, 2, 3, 4, 5}));
    ASSERT_EQ((*group).averageAll(), 9);
    EXPECT_EQ(seen.size(), 10u);
}

TEST(AcrossDatasets, AWatcherThatSaysNoLeavesTheGroupAsItWas) {
    Group group;
    const Watched watched([](__int64 done, __int64) { return done < 3; });
    EXPECT_EQ((*group).averageAll(), 0);
    EXPECT_EQ((*group).summaryAll(), 0);
    EXPECT_EQ(group.size(), 4);
}

}  // namespace
