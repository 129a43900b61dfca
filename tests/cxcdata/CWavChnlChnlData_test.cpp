#include "cxcdata/CWavChnlChnlData.h"

#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using test::FailingMemory;
using Values = std::vector<double>;

constexpr __int64 tooMany = (1LL << 61) + 1;  // 8 times as many bytes wrap around to 8

// A vector with the given values, as a host fills one.
class Vector : public CWavChnlChnlData {
public:
    explicit Vector(const Values& values = {}) {
        if (values.empty()) return;
        checkInitData(static_cast<__int64>(values.size()), false);
        for (std::size_t i = 0; i < values.size(); ++i)
            m_data[i] = values[i];
    }

    Values values() const { return m_data == nullptr ? Values() : Values(m_data, m_data + m_size); }
    Values backup() const {
        return m_bkData == nullptr ? Values() : Values(m_bkData, m_bkData + m_bkSize);
    }
    // As a record can leave it: a length without values.
    void claim(__int64 size) {
        cleanData();
        m_size = size;
    }
};

struct Range {
    double min = -1.0;
    double mean = -1.0;
    double max = -1.0;
};

struct Statistic : Range {
    double mean2 = -1.0;
    double absMean = -1.0;
    double rms = -1.0;
};

int rangeOf(Vector& v, Range& r) {
    return v.getDataRange(r.min, r.mean, r.max);
}

int statisticOf(Vector& v, Statistic& s) {
    return v.getStatistic(s.min, s.mean, s.max, s.mean2, s.absMean, s.rms);
}

double notANumber() {
    return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

// ---- construction, assignment, destruction

TEST(CWavChnlChnlData, StartsEmptyWithThePairFlagSet) {
    const CWavChnlChnlData v;
    EXPECT_EQ(v.m_bkSize, 0);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_size, 0);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.m_chnlA, 0);
    EXPECT_EQ(v.m_chnlB, 0);
    EXPECT_EQ(v.m_pairFlag, 1);
    EXPECT_EQ(v.getSize(), 0);
}

TEST(CWavChnlChnlData, AssignmentSharesBothArraysAndCopiesEveryField) {
    Vector source({1, 2, 3});
    source.bkDataIn();
    source.m_curIdx = 2;
    source.m_chnlA = 5;
    source.m_chnlB = 7;
    source.m_pairFlag = 9;
    Vector copy;
    copy = source;
    EXPECT_EQ(copy.m_data, source.m_data);
    EXPECT_EQ(copy.m_bkData, source.m_bkData);
    EXPECT_EQ(copy.m_size, 3);
    EXPECT_EQ(copy.m_bkSize, 3);
    EXPECT_EQ(copy.m_curIdx, 2);
    EXPECT_EQ(copy.m_chnlA, 5);
    EXPECT_EQ(copy.m_chnlB, 7);
    EXPECT_EQ(copy.m_pairFlag, 9);
    // Giving up the values leaves the backup shared, so that goes by hand.
    copy.deRefData();
    copy.m_bkData = nullptr;
    copy.m_bkSize = 0;
}

TEST(CWavChnlChnlData, DeRefDataLetsBothSharersBeDestroyed) {
    Vector source({1, 2});
    {
        Vector copy;
        copy = source;
        EXPECT_EQ(copy.deRefData(), 1);
    }
    EXPECT_EQ(source.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, DeRefDataKeepsTheIndexAndTheBackup) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.m_curIdx = 2;
    double* const array = v.getData();
    EXPECT_EQ(v.deRefData(), 1);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
    EXPECT_EQ(v.m_curIdx, 2);
    EXPECT_EQ(v.backup(), Values({1, 2, 3}));
    delete[] array;
}

TEST(CWavChnlChnlData, ArraysOfVectorsReleaseTheirArrays) {
    auto* const vectors = new CWavChnlChnlData[3];
    for (int i = 0; i < 3; ++i) {
        vectors[i].checkInitData(i + 1, true);
        vectors[i].bkDataIn();
    }
    delete[] vectors;  // the leak checker looks on
}

TEST(CWavChnlChnlData, CopyConstructionSharesTheArrays) {
    Vector source({1, 2});
    source.m_pairFlag = 9;
    CWavChnlChnlData copy(source);
    EXPECT_EQ(copy.m_data, source.m_data);
    EXPECT_EQ(copy.m_size, 2);
    EXPECT_EQ(copy.m_pairFlag, 9);
    copy.deRefData();
}

// ---- cleaning and the backup

TEST(CWavChnlChnlData, CleanDataEmptiesTheValuesAndLeavesTheBackup) {
    Vector v({1, 2});
    v.bkDataIn();
    v.m_curIdx = 1;
    EXPECT_EQ(v.cleanData(), 1);
    EXPECT_EQ(v.getData(), nullptr);
    EXPECT_EQ(v.getSize(), 0);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, CleanbkDataDropsTheBackupAndLeavesTheValues) {
    Vector v({1, 2});
    v.bkDataIn();
    EXPECT_EQ(v.cleanbkData(), 1);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 0);
    EXPECT_EQ(v.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, BkDataInCopiesTheValues) {
    Vector v({1, 2, 3});
    EXPECT_EQ(v.bkDataIn(), 1);
    EXPECT_EQ(v.backup(), Values({1, 2, 3}));
    EXPECT_NE(v.m_bkData, v.m_data);
}

TEST(CWavChnlChnlData, BkDataInReusesABackupOfTheSameLength) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    double* const array = v.m_bkData;
    v.getData()[1] = 9;
    EXPECT_EQ(v.bkDataIn(), 1);
    EXPECT_EQ(v.m_bkData, array);
    EXPECT_EQ(v.backup(), Values({1, 9, 3}));
}

TEST(CWavChnlChnlData, BkDataInReplacesABackupOfAnotherLength) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.resize(2);
    EXPECT_EQ(v.bkDataIn(), 1);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, BkDataInWithoutValuesDropsABackupOfAnotherLengthAndFails) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.cleanData();
    EXPECT_EQ(v.bkDataIn(), 0);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 0);
}

TEST(CWavChnlChnlData, BkDataInOfAClaimedLengthFails) {
    Vector v;
    v.claim(5);
    EXPECT_EQ(v.bkDataIn(), 0);
    EXPECT_EQ(v.m_bkData, nullptr);
}

TEST(CWavChnlChnlData, BkDataInFailsSilentlyWithoutMemory) {
    test::TestApp app;
    Vector v({1, 2});
    const FailingMemory failing(1);
    EXPECT_EQ(v.bkDataIn(), 0);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST(CWavChnlChnlData, BkDataInOutRestoresClearedValuesAndClampsTheIndex) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.cleanData();
    v.m_curIdx = 99;
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
    EXPECT_EQ(v.m_curIdx, 0);  // replaced values start at 0
    v.m_curIdx = 99;
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.m_curIdx, 2);
    v.m_curIdx = -4;
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.backup(), Values({1, 2, 3}));
}

TEST(CWavChnlChnlData, BkDataInOutReusesTheValueArrayOfTheSameLength) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    double* const array = v.getData();
    array[0] = 8;
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.getData(), array);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
}

TEST(CWavChnlChnlData, BkDataInOutWithoutABackupFailsAndChangesNothing) {
    Vector v({1, 2});
    EXPECT_EQ(v.bkDataInOut(), 0);
    v.m_bkSize = 3;  // a length without an array
    EXPECT_EQ(v.bkDataInOut(), 0);
    EXPECT_EQ(v.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, BkDataInOutAllocatesWhereTheLengthFitsButTheArrayIsMissing) {
    Vector v({1, 2});
    v.bkDataIn();
    v.claim(2);
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, BkDataInOutSaysWhenMemoryIsShort) {
    test::TestApp app;
    Vector v({1, 2});
    v.bkDataIn();
    v.cleanData();
    const FailingMemory failing(1);
    EXPECT_EQ(v.bkDataInOut(), 0);
    ASSERT_EQ(app.messages().size(), 1u);
    EXPECT_EQ(app.messages()[0], "Not enough memory!");
    EXPECT_EQ(app.messageTypes()[0] & 0xFu, static_cast<UINT>(MB_OK));
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
}

TEST(CWavChnlChnlData, BkDataInOutWithoutMemoryKeepsALengthThatAlreadyFitted) {
    test::TestApp app;
    Vector v({1, 2});
    v.bkDataIn();
    v.claim(2);
    const FailingMemory failing(1);
    EXPECT_EQ(v.bkDataInOut(), 0);
    EXPECT_EQ(app.messages(), std::vector<std::string>({"Not enough memory!"}));
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 2);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, BkDataInOutReplacesValuesOfAnotherLengthAndStartsAtTheFirst) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.resize(7);
    v.m_curIdx = 1;
    EXPECT_EQ(v.bkDataInOut(), 1);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
    EXPECT_EQ(v.m_curIdx, 0);
}

// ---- plain copies

TEST(CWavChnlChnlData, SetWritesUpToButExcludingTheEnd) {
    Vector v({1, 2, 3, 4, 5});
    v.m_curIdx = 3;
    v.set_(v.getData() + 1, v.getData() + 4, 7.0);
    EXPECT_EQ(v.values(), Values({1, 7, 7, 7, 5}));
    EXPECT_EQ(v.m_curIdx, 3);
}

TEST(CWavChnlChnlData, SetTakesAValueThatIsOneOfTheElements) {
    Vector v({1, 2, 3});
    const double& aliased = v.getData()[1];
    v.set_(v.getData(), v.getData() + 3, aliased);
    EXPECT_EQ(v.values(), Values({2, 2, 2}));
}

TEST(CWavChnlChnlData, SetOfAReversedOrNullRangeWritesNothing) {
    Vector v({1, 2, 3});
    v.set_(v.getData() + 2, v.getData() + 1, 7.0);
    v.set_(nullptr, nullptr, 7.0);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
}

TEST(CWavChnlChnlData, CopyCopiesAlsoBetweenOverlappingRanges) {
    Vector v({1, 2, 3, 4, 5});
    v.copy_(v.getData() + 1, v.getData(), 4);
    EXPECT_EQ(v.values(), Values({1, 1, 2, 3, 4}));
}

TEST(CWavChnlChnlData, CopyOfNothingOrFromNowhereDoesNothing) {
    Vector v({1, 2, 3});
    double other[2] = {8, 9};
    v.copy_(v.getData(), other, 0);
    v.copy_(v.getData(), other, -2);
    v.copy_(v.getData(), nullptr, 2);
    v.copy_(nullptr, other, 2);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
}

// ---- checkInitData

TEST(CWavChnlChnlData, CheckInitDataMakesTheValuesExactlySoLong) {
    Vector v({1, 2, 3});
    v.m_curIdx = 2;
    double* const values = v.checkInitData(5, true);
    EXPECT_EQ(values, v.getData());
    EXPECT_EQ(v.values(), Values({0, 0, 0, 0, 0}));
    EXPECT_EQ(v.m_curIdx, 0);
}

TEST(CWavChnlChnlData, CheckInitDataKeepsAnArrayOfTheRightLength) {
    Vector v({1, 2, 3});
    v.m_curIdx = 2;
    double* const array = v.getData();
    EXPECT_EQ(v.checkInitData(3, false), array);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
    EXPECT_EQ(v.m_curIdx, 2);
    EXPECT_EQ(v.checkInitData(3, true), array);
    EXPECT_EQ(v.values(), Values({0, 0, 0}));
}

TEST(CWavChnlChnlData, CheckInitDataAllocatesWhereOnlyTheLengthIsThere) {
    Vector v;
    v.claim(3);
    v.m_curIdx = 2;
    EXPECT_NE(v.checkInitData(3, true), nullptr);
    EXPECT_EQ(v.values(), Values({0, 0, 0}));
    EXPECT_EQ(v.m_curIdx, 2);  // the length did not change
}

TEST(CWavChnlChnlData, CheckInitDataWithoutMemoryLeavesItEmpty) {
    Vector v({1, 2});
    const FailingMemory failing(1);
    EXPECT_EQ(v.checkInitData(3, true), nullptr);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
}

TEST(CWavChnlChnlData, CheckInitDataWithoutMemoryKeepsALengthThatAlreadyFitted) {
    Vector v;
    v.claim(3);
    const FailingMemory failing(1);
    EXPECT_EQ(v.checkInitData(3, true), nullptr);
    EXPECT_EQ(v.m_size, 3);
}

TEST(CWavChnlChnlData, CheckInitDataLeavesTheBackup) {
    Vector v({1, 2});
    v.bkDataIn();
    v.checkInitData(5, true);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, LengthsThatNoMemoryHoldsAreFailuresNotExceptions) {
    for (const __int64 bad : {-1LL, std::numeric_limits<long long>::min(), tooMany,
                              std::numeric_limits<long long>::max()}) {
        Vector v({1, 2});
        EXPECT_EQ(v.checkInitData(bad, true), nullptr) << bad;
        EXPECT_EQ(v.m_size, 0) << bad;
    }
}

TEST(CWavChnlChnlData, CheckInitDataOfZeroElementsIsAnEmptyArray) {
    Vector v({1, 2});
    EXPECT_NE(v.checkInitData(0, true), nullptr);
    EXPECT_EQ(v.m_size, 0);
}

// ---- extremes and zeros

TEST(CWavChnlChnlData, GetValueMaxIsTheLargestAndZeroWithoutValues) {
    EXPECT_EQ(Vector({-3, -1, -2}).getValueMax(), -1.0);
    Vector v;
    EXPECT_EQ(v.getValueMax(), 0.0);
    v.claim(4);
    EXPECT_EQ(v.getValueMax(), 0.0);
}

TEST(CWavChnlChnlData, GetValueMaxNeverTakesANaNBehindTheFirst) {
    EXPECT_EQ(Vector({1, notANumber(), 2}).getValueMax(), 2.0);
    EXPECT_TRUE(std::isnan(Vector({notANumber(), 2}).getValueMax()));
}

TEST(CWavChnlChnlData, AllValueNonZeroCountsNegativeZeroAsZeroAndNaNNot) {
    EXPECT_EQ(Vector().allValueNonZero(), 0);
    EXPECT_EQ(Vector({1, 0, 2}).allValueNonZero(), 0);
    EXPECT_EQ(Vector({1, 2, -0.0}).allValueNonZero(), 0);
    EXPECT_EQ(Vector({1, notANumber(), 2}).allValueNonZero(), 1);
    Vector claimed;
    claimed.claim(3);
    EXPECT_EQ(claimed.allValueNonZero(), 0);
}

// ---- copy2Mtx

TEST(CWavChnlChnlData, Copy2MtxCopiesIntoTheVector) {
    double source[3] = {4, 5, 6};
    Vector v({1, 2});
    v.m_curIdx = 1;
    EXPECT_EQ(v.copy2Mtx(source, 3), 1);
    EXPECT_EQ(v.values(), Values({4, 5, 6}));
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(source[0], 4.0);
}

TEST(CWavChnlChnlData, Copy2MtxReusesAnArrayOfTheRightLength) {
    double source[2] = {4, 5};
    Vector v({1, 2});
    v.m_curIdx = 1;
    double* const array = v.getData();
    EXPECT_EQ(v.copy2Mtx(source, 2), 1);
    EXPECT_EQ(v.getData(), array);
    EXPECT_EQ(v.m_curIdx, 1);
}

TEST(CWavChnlChnlData, Copy2MtxAllocatesWhereOnlyTheLengthIsThere) {
    double source[2] = {4, 5};
    Vector v;
    v.claim(2);
    v.m_curIdx = 1;
    EXPECT_EQ(v.copy2Mtx(source, 2), 1);
    EXPECT_EQ(v.values(), Values({4, 5}));
    EXPECT_EQ(v.m_curIdx, 1);  // the length did not change
}

TEST(CWavChnlChnlData, Copy2MtxTakesAPartOfTheVectorItself) {
    Vector v({1, 2, 3});
    EXPECT_EQ(v.copy2Mtx(v.getData() + 1, 2), 1);
    EXPECT_EQ(v.values(), Values({2, 3}));
}

TEST(CWavChnlChnlData, Copy2MtxWithoutMemoryLeavesItEmpty) {
    double source[3] = {4, 5, 6};
    Vector v({1, 2});
    const FailingMemory failing(1);
    EXPECT_EQ(v.copy2Mtx(source, 3), 0);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
}

TEST(CWavChnlChnlData, Copy2MtxWithoutMemoryEmptiesALengthWithoutValuesToo) {
    double source[3] = {4, 5, 6};
    Vector v;
    v.claim(3);
    const FailingMemory failing(1);
    EXPECT_EQ(v.copy2Mtx(source, 3), 0);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
}

TEST(CWavChnlChnlData, Copy2MtxOfNothingLeavesNoElementsAndSaysOne) {
    double source[1] = {4};
    Vector v({1, 2});
    v.bkDataIn();
    EXPECT_EQ(v.copy2Mtx(source, 0), 1);
    EXPECT_EQ(v.m_size, 0);
    EXPECT_EQ(v.getValueMax(), 0.0);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, Copy2MtxFromNowhereChangesNothingAndABadLengthEmptiesIt) {
    double source[3] = {4, 5, 6};
    Vector v({1, 2});
    EXPECT_EQ(v.copy2Mtx(nullptr, 3), 0);
    EXPECT_EQ(v.values(), Values({1, 2}));
    EXPECT_EQ(v.copy2Mtx(source, -1), 0);
    EXPECT_EQ(v.m_size, 0);
}

// ---- resize

TEST(CWavChnlChnlData, ResizeKeepsTheLeadingValues) {
    Vector v({1, 2, 3});
    v.m_curIdx = 2;
    EXPECT_EQ(v.resize(5), 1);
    EXPECT_EQ(v.m_size, 5);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.m_data[0], 1.0);
    EXPECT_EQ(v.m_data[1], 2.0);
    EXPECT_EQ(v.m_data[2], 3.0);
    EXPECT_EQ(v.resize(2), 1);
    EXPECT_EQ(v.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, ResizeToNothingEmptiesIt) {
    for (const __int64 n : {0LL, -7LL}) {
        Vector v({1, 2, 3});
        v.m_curIdx = 1;
        EXPECT_EQ(v.resize(n), 1);
        EXPECT_EQ(v.m_data, nullptr);
        EXPECT_EQ(v.m_size, 0);
        EXPECT_EQ(v.m_curIdx, 0);
    }
}

TEST(CWavChnlChnlData, ResizeOfAnEmptyVectorGivesZeros) {
    Vector v;
    EXPECT_EQ(v.resize(3), 1);
    EXPECT_EQ(v.values(), Values({0, 0, 0}));
    Vector claimed;
    claimed.claim(3);
    EXPECT_EQ(claimed.resize(3), 1);
    EXPECT_EQ(claimed.values(), Values({0, 0, 0}));
}

TEST(CWavChnlChnlData, ResizeOfAFilledVectorWithoutMemoryFailsAndChangesNothing) {
    Vector v({1, 2, 3});
    const FailingMemory failing(1);
    EXPECT_EQ(v.resize(5), 0);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
}

TEST(CWavChnlChnlData, ResizeToALengthThatNoMemoryHoldsChangesAFilledVectorNot) {
    for (const __int64 bad : {tooMany, static_cast<__int64>(1LL << 60),
                              static_cast<__int64>(std::numeric_limits<long long>::max())}) {
        Vector v({1, 2, 3});
        v.m_curIdx = 2;
        EXPECT_EQ(v.resize(bad), 0) << bad;
        EXPECT_EQ(v.values(), Values({1, 2, 3})) << bad;
        EXPECT_EQ(v.m_curIdx, 2) << bad;
    }
}

TEST(CWavChnlChnlData, ResizeLeavesTheBackup) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    v.resize(5);
    EXPECT_EQ(v.backup(), Values({1, 2, 3}));
    v.resize(0);
    EXPECT_EQ(v.backup(), Values({1, 2, 3}));
}

// Deliberate: unlike the case above, an empty vector says 1.
TEST(CWavChnlChnlData, ResizeOfAnEmptyVectorWithoutMemoryStillSaysOne) {
    Vector v;
    const FailingMemory failing(1);
    EXPECT_EQ(v.resize(5), 1);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
    v.claim(5);
    EXPECT_EQ(v.resize(5), 1);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_size, 0);
}

// ---- polynmlEval

TEST(CWavChnlChnlData, PolynmlEvalTakesCoefficientsInAscendingOrder) {
    EXPECT_EQ(Vector({1, 0, 3}).polynmlEval(2.0), 13.0);
    EXPECT_EQ(Vector({1, 2, 3}).polynmlEval(10.0), 321.0);
    EXPECT_EQ(Vector({4}).polynmlEval(1e300), 4.0);
}

TEST(CWavChnlChnlData, PolynmlEvalOfNothingIsZero) {
    Vector v;
    EXPECT_EQ(v.polynmlEval(2.0), 0.0);
    v.claim(5);
    EXPECT_EQ(v.polynmlEval(2.0), 0.0);
}

// ---- setData

TEST(CWavChnlChnlData, SetDataAdoptsTheArrayAndLeavesTheBackup) {
    Vector v({1, 2});
    v.bkDataIn();
    v.m_curIdx = 1;
    auto* const array = new double[3]{7, 8, 9};
    EXPECT_EQ(v.setData(array, 3), 1);
    EXPECT_EQ(v.getData(), array);
    EXPECT_EQ(v.getSize(), 3);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.backup(), Values({1, 2}));
}

TEST(CWavChnlChnlData, SetDataOfItsOwnArrayKeepsItAlive) {
    Vector v({1, 2, 3});
    EXPECT_EQ(v.setData(v.getData(), 2), 1);
    EXPECT_EQ(v.values(), Values({1, 2}));
}

TEST(CWavChnlChnlData, SetDataOfItsBackupLeavesOneOwner) {
    Vector v({1, 2, 3});
    v.bkDataIn();
    EXPECT_EQ(v.setData(v.m_bkData, 3), 1);
    EXPECT_EQ(v.values(), Values({1, 2, 3}));
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 0);
}

TEST(CWavChnlChnlData, EveryReaderBearsALengthWithoutValues) {
    Vector v;
    EXPECT_EQ(v.setData(nullptr, 5), 1);
    Range r;
    Statistic s;
    EXPECT_EQ(rangeOf(v, r), 0);
    EXPECT_EQ(statisticOf(v, s), 0);
    EXPECT_EQ(v.getValueMax(), 0.0);
    EXPECT_EQ(v.normSumSqrt(), 0);
    EXPECT_EQ(v.getSelectDataMean(0, 4, 0), 0.0);
    EXPECT_EQ(v.getSelectDataMean(0, 4, 1), 0.0);
    EXPECT_EQ(v.getSize(), 5);
}

TEST(CWavChnlChnlData, EveryReaderBearsANegativeLengthBesideAnArray) {
    Vector v;
    v.setData(new double[1]{5}, -3);
    Range r;
    Statistic s;
    EXPECT_EQ(rangeOf(v, r), 1);
    EXPECT_EQ(r.max, 0.0);
    EXPECT_EQ(statisticOf(v, s), 1);
    EXPECT_EQ(s.rms, 0.0);
    EXPECT_EQ(v.getValueMax(), 0.0);
    EXPECT_EQ(v.allValueNonZero(), 0);
    EXPECT_EQ(v.normSumSqrt(), 0);
    EXPECT_EQ(v.polynmlEval(2.0), 0.0);
    EXPECT_EQ(v.getSelectDataMean(0, 4, 1), 0.0);
    EXPECT_EQ(v.bkDataIn(), 0);
    EXPECT_EQ(v.m_data[0], 5.0);
    EXPECT_EQ(v.resize(2), 1);
    EXPECT_EQ(v.values(), Values({0, 0}));
}

// ---- normSumSqrt

TEST(CWavChnlChnlData, NormSumSqrtDividesByTheMeanMagnitudeWithoutARoot) {
    Vector v({-2, 2});
    EXPECT_EQ(v.normSumSqrt(), 1);
    EXPECT_EQ(v.values(), Values({-1, 1}));
    Vector w({9, 0, 0});
    EXPECT_EQ(w.normSumSqrt(), 1);
    EXPECT_EQ(w.values(), Values({3, 0, 0}));
}

TEST(CWavChnlChnlData, NormSumSqrtRefusesZeroAndNaNMeansAndChangesNothing) {
    Vector zeros({0, -0.0});
    EXPECT_EQ(zeros.normSumSqrt(), 0);
    EXPECT_EQ(zeros.values(), Values({0, 0}));
    Vector broken({1, notANumber()});
    EXPECT_EQ(broken.normSumSqrt(), 0);
    EXPECT_EQ(broken.values()[0], 1.0);
    Vector empty;
    EXPECT_EQ(empty.normSumSqrt(), 0);
}

// ---- range and statistics

TEST(CWavChnlChnlData, GetDataRangeGivesMinimumMeanMaximumInThisOrder) {
    Vector v({2, -1, 5});
    Range r;
    EXPECT_EQ(rangeOf(v, r), 1);
    EXPECT_EQ(r.min, -1.0);
    EXPECT_EQ(r.mean, 2.0);
    EXPECT_EQ(r.max, 5.0);
}

TEST(CWavChnlChnlData, GetStatisticGivesSixFigures) {
    Vector v({3, -4});
    Statistic s;
    EXPECT_EQ(statisticOf(v, s), 1);
    EXPECT_EQ(s.min, -4.0);
    EXPECT_EQ(s.mean, -0.5);
    EXPECT_EQ(s.max, 3.0);
    EXPECT_EQ(s.mean2, -0.5);
    EXPECT_EQ(s.absMean, 3.5);
    EXPECT_EQ(s.rms, std::sqrt(12.5));
}

TEST(CWavChnlChnlData, RangesOfAnEmptyArraySucceedWithZerosAndOfNoArrayFailWithZeros) {
    for (const bool present : {true, false}) {
        Vector v;
        if (present) v.setData(new double[1], 0);
        Range r;
        Statistic s;
        EXPECT_EQ(rangeOf(v, r), present ? 1 : 0);
        EXPECT_EQ(statisticOf(v, s), present ? 1 : 0);
        for (const double figure :
             {r.min, r.mean, r.max, s.min, s.mean, s.max, s.mean2, s.absMean, s.rms})
            EXPECT_EQ(figure, 0.0);
    }
}

TEST(CWavChnlChnlData, OutputsMayBeElementsOfTheVector) {
    Vector v({2, -1, 5});
    double* const d = v.getData();
    EXPECT_EQ(v.getDataRange(d[0], d[1], d[2]), 1);
    EXPECT_EQ(v.values(), Values({-1, 2, 5}));
}

TEST(CWavChnlChnlData, StatisticOutputsMayBeElementsOfTheVectorToo) {
    Vector v({3, -4, 5, 1, 1, 0});
    double* const d = v.getData();
    EXPECT_EQ(v.getStatistic(d[0], d[1], d[2], d[3], d[4], d[5]), 1);
    EXPECT_EQ(v.values(), Values({-4, 1, 5, 1, 14.0 / 6.0, std::sqrt(52.0 / 6.0)}));
}

TEST(CWavChnlChnlData, SumsAddTheElementsInTheirOrder) {
    // In any other order the small ones survive.
    Vector v({1e16, 1, 1, -1e16});
    Range r;
    Statistic s;
    EXPECT_EQ(rangeOf(v, r), 1);
    EXPECT_EQ(r.mean, 0.0);
    EXPECT_EQ(statisticOf(v, s), 1);
    EXPECT_EQ(s.mean, 0.0);
    EXPECT_EQ(s.mean2, 0.0);
    EXPECT_EQ(v.getSelectDataMean(0, 3, 0), 0.0);
    Vector w({1, 1, 1e16, -1e16});
    EXPECT_EQ(rangeOf(w, r), 1);
    EXPECT_EQ(r.mean, 0.5);
    EXPECT_EQ(w.getSelectDataMean(0, 3, 0), 0.5);
}

TEST(CWavChnlChnlData, ANaNBehindTheFirstNeverReplacesAnExtreme) {
    Vector v({2, notANumber(), 5});
    Range r;
    EXPECT_EQ(rangeOf(v, r), 1);
    EXPECT_EQ(r.min, 2.0);
    EXPECT_EQ(r.max, 5.0);
    EXPECT_TRUE(std::isnan(r.mean));
}

// ---- getSelectDataMean

TEST(CWavChnlChnlData, GetSelectDataMeanClampsBothEndsIntoTheVector) {
    Vector v({1, 2, 3, 4, 5, 6, 7, 8, 9, 100});
    EXPECT_EQ(v.getSelectDataMean(-5, 1000, 0), 14.5);
    EXPECT_EQ(v.getSelectDataMean(1, 3, 0), 3.0);
    EXPECT_EQ(v.getSelectDataMean(9, 9, 0), 100.0);
    EXPECT_EQ(v.getSelectDataMean(50, 60, 0), 100.0);
    constexpr __int64 least = std::numeric_limits<long long>::min();
    constexpr __int64 most = std::numeric_limits<long long>::max();
    EXPECT_EQ(v.getSelectDataMean(least, most, 0), 14.5);
}

TEST(CWavChnlChnlData, GetSelectDataMeanOfAReversedRange) {
    Vector v({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    EXPECT_EQ(v.getSelectDataMean(7, 3, 0), 0.0);
    EXPECT_EQ(v.getSelectDataMean(7, 3, 1), 8.0);
}

TEST(CWavChnlChnlData, TheSignedPeakIsTheMinimumInATie) {
    EXPECT_EQ(Vector({-3, 1, 3}).getSelectDataMean(0, 2, 1), -3.0);
    EXPECT_EQ(Vector({-2, 1, 3}).getSelectDataMean(0, 2, 1), 3.0);
    EXPECT_EQ(Vector({-4, 1, 3}).getSelectDataMean(0, 2, 1), -4.0);
    EXPECT_EQ(Vector({-4, 1, 3}).getSelectDataMean(1, 2, 1), 3.0);
}

TEST(CWavChnlChnlData, AnUnknownModeAndAVectorWithoutElementsGiveZero) {
    EXPECT_EQ(Vector({1, 2}).getSelectDataMean(0, 1, 2), 0.0);
    EXPECT_EQ(Vector({1, 2}).getSelectDataMean(0, 1, -1), 0.0);
    Vector v;
    v.setData(new double[1], 0);
    EXPECT_EQ(v.getSelectDataMean(0, 0, 0), 0.0);
    EXPECT_EQ(v.getSelectDataMean(0, 0, 1), 0.0);
}
