// A dataset read pair by pair; tests/trust compares it with whole readings of damaged records.
#include "cxcfile/each_pair.h"

#include "tests/cxcfile/dataset_passes.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/DatasetFixture.h"
#include "tests/support/TestApp.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace {

class EachPair : public ::testing::Test {
protected:
    static int read(CSnsCohDatazq& dataset, const golden::Bytes& bytes,
                    const cxc::PairTaker& take) {
        return test::ArchiveFile(bytes).load(
            [&](CArchive& ar) { return cxc::loadEachPair(ar, dataset, take); });
    }
    static void ignore(const CSnsCohDatazq&, __int64, __int64, const CWavChnlChnlDatazq&) {}

    test::TestApp app;
};

TEST_F(EachPair, PairsComeRowByRowAndNoGridIsKept) {
    CSnsCohDatazq dataset;
    std::vector<double> first;
    std::vector<__int64> places;
    EXPECT_EQ(
        read(dataset, golden::newestRecord(),
             [&](const CSnsCohDatazq& from, __int64 r, __int64 c, const CWavChnlChnlDatazq& pair) {
                 EXPECT_EQ(&from, &dataset);
                 EXPECT_EQ(from.m_cohTimTotal, golden::slices);
                 EXPECT_EQ(pair.m_size, golden::slices);
                 EXPECT_EQ(pair.m_chnlB, c + 11);
                 places.push_back(10 * r + c);
                 first.push_back(pair.m_data[0]);
             }),
        1);
    EXPECT_EQ(places, (std::vector<__int64>{0, 1, 2, 10, 11, 12}));
    EXPECT_EQ(first, (std::vector<double>{110.25, 120.25, 130.25, 210.25, 220.25, 230.25}));
    EXPECT_EQ(dataset.m_mCC, nullptr);
    EXPECT_EQ(dataset.m_snsRowTotal, golden::rows);
    EXPECT_EQ(dataset.m_snsColTotal, golden::cols);
    EXPECT_EQ(dataset.m_headerReal0, 8.5);
    EXPECT_TRUE(dataset.m_cxcCmptInfo == _T("Welch 2 s"));
}

TEST_F(EachPair, ABackupBelongsToItsPairAlone) {
    CSnsCohDatazq dataset;
    std::vector<bool> backups;
    read(dataset, golden::newestRecord(),
         [&](const CSnsCohDatazq&, __int64, __int64, const CWavChnlChnlDatazq& pair) {
             backups.push_back(pair.m_bkData != nullptr);
         });
    EXPECT_EQ(backups, (std::vector<bool>{false, true, false, false, false, false}));
}

TEST_F(EachPair, AGridThatTheDatasetHadIsReleased) {
    CSnsCohDatazq dataset;
    golden::fillOther(dataset);
    EXPECT_EQ(read(dataset, golden::newestRecord(), ignore), 1);
    EXPECT_EQ(dataset.m_mCC, nullptr);
    EXPECT_EQ(dataset.m_cohTimTotal, golden::slices);
}

TEST_F(EachPair, ARecordThatHoldsNoPairsReleasesTheGridToo) {
    CSnsCohDatazq dataset;
    golden::fillOther(dataset);
    EXPECT_EQ(read(dataset, golden::record20080720(), ignore), 1);
    EXPECT_EQ(dataset.m_mCC, nullptr);
}

TEST_F(EachPair, ARefusedPairLeavesTheDatasetEmpty) {
    CSnsCohDatazq dataset;
    EXPECT_EQ(read(dataset,
                   golden::opening(golden::newestVersion)
                       .append(golden::sizes())
                       .i32(1)
                       .append(golden::pairRecord(0, 0))
                       .string("OTHER"),
                   ignore),
              0);
    EXPECT_EQ(dataset.m_snsRowTotal, 0);
    EXPECT_EQ(app.messages(), (std::vector<std::string>{"Unknown MMatrix1D file!"}));
}

TEST_F(EachPair, WhatIsRefusedHasItsMessage) {
    CSnsCohDatazq dataset;
    EXPECT_EQ(read(dataset, golden::Bytes().string("OTHER"), ignore), 0);
    EXPECT_EQ(
        app.messages(),
        (std::vector<std::string>{"The opened file is not CCoherenceData09File or corrupted!"}));
}

TEST_F(EachPair, AnArchiveThatStoresIsRefused) {
    CSnsCohDatazq dataset;
    test::ArchiveFile file;
    EXPECT_EQ(file.store([&](CArchive& ar) { return cxc::loadEachPair(ar, dataset, ignore); }), 0);
    EXPECT_EQ(file.bytes(), "");
}

TEST_F(EachPair, ADatasetReadMeanwhileKeepsItsGrid) {
    CSnsCohDatazq dataset;
    CSnsCohDatazq other;
    read(dataset, golden::newestRecord(),
         [&](const CSnsCohDatazq&, __int64, __int64, const CWavChnlChnlDatazq&) {
             EXPECT_EQ(test::load(other, golden::newestRecord()), 1);
         });
    golden::expectGrid(other);
}

TEST_F(EachPair, WhatTheTakerThrowsPassesAndLaterReadingsAreWhole) {
    CSnsCohDatazq dataset;
    EXPECT_THROW(read(dataset, golden::newestRecord(),
                      [](const CSnsCohDatazq&, __int64, __int64 c, const CWavChnlChnlDatazq&) {
                          if (c == 1) throw std::runtime_error("enough");
                      }),
                 std::runtime_error);
    EXPECT_EQ(test::load(dataset, golden::newestRecord()), 1);
    golden::expectGrid(dataset);
}

TEST_F(EachPair, NoMoreThanOnePairIsInMemory) {
    CSnsCohDatazq large;
    ASSERT_EQ(large.checkInitSnsCohData(8, 8, 100, true), 1);
    test::ArchiveFile file;
    file.store([&](CArchive& ar) { return large.serialize(ar); });
    CSnsCohDatazq dataset;
    const test::MemoryWatch memory;
    file.load([&](CArchive& ar) { return cxc::loadEachPair(ar, dataset, ignore); });
    // One array for all.
    EXPECT_EQ(memory.largest(), 100 * sizeof(double));
    EXPECT_EQ(memory.count(), 1);
}

TEST_F(EachPair, PairsOfUnlikeLengthsHaveTheirOwnValues) {
    const std::vector<std::vector<double>> pairs = {{1.0, 2.0, 3.0}, {4.0},     {5.0}, {},
                                                    {6.0, 7.0},      {8.0, 9.0}};
    golden::Bytes bytes = golden::opening(20120714);
    bytes.append(golden::header13to25()).append(golden::sizes()).i32(1);
    for (const std::vector<double>& values : pairs)
        bytes.append(golden::vectorRecord(values));
    CSnsCohDatazq dataset;
    std::vector<std::vector<double>> read;
    EXPECT_EQ(
        EachPair::read(dataset, bytes,
                       [&](const CSnsCohDatazq&, __int64, __int64, const CWavChnlChnlDatazq& pair) {
                           read.emplace_back(pair.m_data, pair.m_data + pair.m_size);
                       }),
        1);
    EXPECT_EQ(read, pairs);
}

}  // namespace
