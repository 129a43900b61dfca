// The older layouts of the dataset record: what each holds, what it leaves alone, and that an
// older file is upgraded by opening and saving it.
#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/CWavChnlChnlDatazq.h"
#include "tests/cxcfile/dataset_passes.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/TestApp.h"

#include <string>
#include <vector>

namespace {

using Layout = int (CSnsCohData09File::*)(CArchive&);

// The layouts are private; an explicit instantiation may name them.
#define CXC_REVEAL(version)                                     \
    struct V##version {                                         \
        friend Layout layoutOf(V##version);                     \
    };                                                          \
    template <Layout Function>                                  \
    struct Reveal##version {                                    \
        friend Layout layoutOf(V##version) { return Function; } \
    };                                                          \
    template struct Reveal##version<&CSnsCohData09File::serialize##version>;

CXC_REVEAL(20160311)
CXC_REVEAL(20130511)
CXC_REVEAL(20130402)
CXC_REVEAL(20120714)
CXC_REVEAL(20080720)
CXC_REVEAL(20080601)

using golden::Bytes;
using test::load;
using test::Outcome;
using test::outcomeOfLoading;
using test::stored;

using Texts = std::vector<std::string>;

class CSnsCohData09FileOlder : public ::testing::Test {
protected:
    test::TestApp app;
};

struct Version {
    unsigned word;
    Layout layout;
    Bytes record;
    // The items of the newest layout that this one holds, besides the grid block.
    int lastItem;
};

// Every version that holds a grid.
std::vector<Version> versionsWithGrid() {
    return {
        {20160311, layoutOf(V20160311()), golden::record20160311(), 38},
        {20130511, layoutOf(V20130511()), golden::record20130511(), 32},
        {20130402, layoutOf(V20130402()), golden::record20130402(), 31},
        {20120714, layoutOf(V20120714()), golden::record20120714(), 25},
    };
}

std::vector<Version> allVersions() {
    std::vector<Version> versions = versionsWithGrid();
    versions.push_back({20080720, layoutOf(V20080720()), golden::record20080720(), 0});
    versions.push_back({20080601, layoutOf(V20080601()), golden::record20080601(), 0});
    return versions;
}

TEST_F(CSnsCohData09FileOlder, EachVersionReadsItsItemsAndKeepsTheRest) {
    for (const Version& version : versionsWithGrid()) {
        SCOPED_TRACE(version.word);
        CSnsCohDatazq data, model, other;
        golden::fillOther(data);
        golden::fillOther(other);
        golden::fill(model);
        EXPECT_EQ(load(data, version.record), 1);
        golden::expectItems(data, model, 3, version.lastItem);
        golden::expectItems(data, other, version.lastItem + 1, golden::lastItem);
        golden::expectGrid(data);
        golden::expectColorsOfOther(data);
    }
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOlder, EachVersionCanBeWrittenByItsFunction) {
    for (const Version& version : allVersions()) {
        SCOPED_TRACE(version.word);
        CSnsCohDatazq data;
        golden::fill(data);
        test::ArchiveFile file;
        EXPECT_EQ(file.store([&](CArchive& ar) { return (data.*version.layout)(ar); }), 1);
        EXPECT_EQ(golden::opening(version.word).str() + file.bytes(), version.record.str());
    }
}

TEST_F(CSnsCohData09FileOlder, FreshDatasetKeepsItsDefaultsWhereALayoutHasNothing) {
    const CSnsCohDatazq fresh;
    for (const Version& version : versionsWithGrid()) {
        CSnsCohDatazq data;
        EXPECT_EQ(load(data, version.record), 1);
        golden::expectItems(data, fresh, version.lastItem + 1, golden::lastItem);
        if (version.lastItem < 32) {
            EXPECT_TRUE(data.m_cxcCmptInfo == _T("CxC ComputeInfo"));
        }
        if (version.lastItem < 35) {
            EXPECT_EQ(data.m_showRangeMax, 1.0);
        }
    }
}

// --- opening and saving upgrades -------------------------------------------------------------

Bytes defaults26to31() {
    return Bytes().f64(0).f64(0).f64(0).f64(0).i32(0).f64(0);
}

Bytes default32() {
    return Bytes().string("CxC ComputeInfo");
}

Bytes defaults33to38() {
    return Bytes().i64(0).f64(0).f64(1).f64(0).i32(1).i32(0);
}

TEST_F(CSnsCohData09FileOlder, Saving20130511GivesACurrentFile) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::record20130511()), 1);
    const Bytes expected = golden::opening(golden::newestVersion)
                               .append(golden::gridBlock())
                               .append(golden::header13to25())
                               .append(golden::header26to31())
                               .append(golden::header32())
                               .append(defaults33to38());
    EXPECT_EQ(stored(data), expected.str());
}

TEST_F(CSnsCohData09FileOlder, Saving20130402GivesACurrentFile) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::record20130402()), 1);
    const Bytes expected = golden::opening(golden::newestVersion)
                               .append(golden::gridBlock())
                               .append(golden::header13to25())
                               .append(golden::header26to31())
                               .append(default32())
                               .append(defaults33to38());
    EXPECT_EQ(stored(data), expected.str());
}

TEST_F(CSnsCohData09FileOlder, Saving20120714GivesACurrentFile) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::record20120714()), 1);
    const Bytes expected = golden::opening(golden::newestVersion)
                               .append(golden::gridBlock())
                               .append(golden::header13to25())
                               .append(defaults26to31())
                               .append(default32())
                               .append(defaults33to38());
    EXPECT_EQ(stored(data), expected.str());
}

TEST_F(CSnsCohData09FileOlder, Saving20080720GivesACurrentFile) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::record20080720()), 1);
    const Bytes expected = golden::opening(golden::newestVersion)
                               .i32(0)
                               .i64(0)
                               .i64(0)
                               .i64(1)
                               .i64(1)
                               .i64(2)
                               .i64(2)
                               .i64(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .i32(0)
                               .f64(0)
                               .f64(-0.25)
                               .f64(1.75)
                               .i64(0)
                               .i64(0)
                               .i64(0)
                               .i64(0)
                               .i64(0)
                               .f64(0.1)
                               .f64(1)
                               .string("Rest")
                               .u8(1)
                               .i32(109)
                               .i32(0)
                               .append(defaults26to31())
                               .append(default32())
                               .append(defaults33to38());
    EXPECT_EQ(stored(data), expected.str());
}

TEST_F(CSnsCohData09FileOlder, Saving20080601GivesTheDatasetAsItWas) {
    CSnsCohDatazq data, fresh;
    EXPECT_EQ(load(data, golden::record20080601()), 1);
    EXPECT_EQ(stored(data), stored(fresh));
}

// --- the versions one by one -----------------------------------------------------------------

TEST_F(CSnsCohData09FileOlder, ChangedNoteSurvives20130402) {
    CSnsCohDatazq data;
    data.m_cxcCmptInfo = _T("changed");
    EXPECT_EQ(load(data, golden::record20130402()), 1);
    EXPECT_TRUE(data.m_cxcCmptInfo == _T("changed"));
}

TEST_F(CSnsCohData09FileOlder, Version20120714WithoutAGridKeepsTheStoredSizes) {
    CSnsCohDatazq data, model;
    golden::fill(model);
    golden::fillOther(data);
    const Bytes bytes =
        golden::opening(20120714).append(golden::header13to25()).append(golden::sizes()).i32(0);
    EXPECT_EQ(load(data, bytes), 1);
    EXPECT_EQ(data.m_mCC, nullptr);
    golden::expectItems(data, model, 3, 25);
}

TEST_F(CSnsCohData09FileOlder, Version20120714EmptiesTheDatasetBeforeItsHeader) {
    CSnsCohDatazq data, model, other;
    golden::fill(model);
    golden::fillOther(data);
    golden::fillOther(other);
    EXPECT_EQ(outcomeOfLoading(data, golden::opening(20120714).i32(100).i32(101)),
              Outcome::endOfFile);
    golden::expectEmptied(data);
    EXPECT_EQ(data.m_headerInt0, 100);
    EXPECT_EQ(data.m_headerInt1, 101);
    EXPECT_EQ(data.m_headerInt2, 503);
    golden::expectItems(data, other, 14, golden::lastItem);
}

TEST_F(CSnsCohData09FileOlder, Version20120714HasReadItsHeaderWhenTheGridFails) {
    CSnsCohDatazq data, model, other;
    golden::fill(model);
    golden::fillOther(data);
    golden::fillOther(other);
    const Bytes bytes = golden::opening(20120714)
                            .append(golden::header13to25())
                            .append(golden::sizes())
                            .i32(1)
                            .string("no vector");
    EXPECT_EQ(load(data, bytes), 0);
    EXPECT_EQ(app.messages(), Texts{"Unknown MMatrix1D file!"});
    golden::expectEmptied(data);
    golden::expectItems(data, model, 13, 25);
    golden::expectItems(data, other, 26, golden::lastItem);
}

TEST_F(CSnsCohData09FileOlder, FailedTableKeepsTheStoredSizesInEveryVersion) {
    const Bytes grid = golden::sizes(1000000000, 3).i32(1);
    const Bytes records[] = {
        golden::opening(golden::newestVersion).append(grid).append(golden::header()),
        golden::opening(20130511).append(grid).append(golden::header()),
        golden::opening(20130402).append(grid).append(golden::header()),
        golden::opening(20120714).append(golden::header13to25()).append(grid),
    };
    for (const Bytes& record : records) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        test::MemoryWatch watch;
        EXPECT_EQ(load(data, record), 0);
        EXPECT_EQ(watch.bytes(), 0u);
        EXPECT_EQ(data.m_mCC, nullptr);
        EXPECT_EQ(data.m_snsRowTotal, 1000000000);
        EXPECT_EQ(data.m_snsColTotal, 3);
    }
}

TEST_F(CSnsCohData09FileOlder, FailedVectorStopsTheMiddleVersionsBeforeTheirHeader) {
    for (const unsigned word : {20130511u, 20130402u}) {
        app.clearMessages();
        CSnsCohDatazq data, other;
        golden::fillOther(data);
        golden::fillOther(other);
        const Bytes bytes = golden::opening(word)
                                .append(golden::sizes())
                                .i32(1)
                                .string("no vector")
                                .append(golden::header());
        EXPECT_EQ(load(data, bytes), 0);
        golden::expectEmptied(data);
        golden::expectItems(data, other, 13, golden::lastItem);
        EXPECT_EQ(app.messages(), Texts{"Unknown MMatrix1D file!"});
    }
}

void expect20080720(const CSnsCohData& data) {
    EXPECT_EQ(data.m_snsRowTotal, 2);
    EXPECT_EQ(data.m_rowCrt, 1);
    EXPECT_EQ(data.m_columnCrt, 2);
    EXPECT_EQ(data.m_anaLatencyBegin, -0.25);
    EXPECT_EQ(data.m_anaLatencyEnd, 1.75);
    EXPECT_EQ(data.m_headerInt9, 109);
    EXPECT_TRUE(data.m_tscsInfo);
    EXPECT_TRUE(data.m_cxcName == _T("Rest"));
}

TEST_F(CSnsCohData09FileOlder, Version20080720GivesAFreshDatasetARowCountOnly) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::record20080720()), 1);
    expect20080720(data);
    EXPECT_EQ(data.m_snsColTotal, 0);
    EXPECT_EQ(data.m_cohTimTotal, 0);
    EXPECT_EQ(data.m_mCC, nullptr);
}

TEST_F(CSnsCohData09FileOlder, Version20080720NeitherReadsNorFreesAGrid) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    CWavChnlChnlDatazq* const* const grid = data.m_mCC;
    EXPECT_EQ(load(data, golden::record20080720()), 1);
    expect20080720(data);
    EXPECT_EQ(data.m_mCC, grid);
    EXPECT_EQ(data.m_snsColTotal, 7);
    EXPECT_EQ(data.m_cohTimTotal, 3);
    EXPECT_EQ(data.getValue(2, 4, 6), -1462);
    // All other members are as before.
    for (const golden::Field& field : golden::storedFields()) {
        const int item = field.item;
        const bool read = item == 7 || item == 8 || item == 9 || item == 17 || item == 18 ||
                          item == 22 || item == 23 || item == 24;
        if (!read) {
            EXPECT_TRUE(field.same(data, other)) << field.name;
        }
    }
}

TEST_F(CSnsCohData09FileOlder, RowCountOf20080720MayExceedTheGridItMeets) {
    for (const long long rows : {6LL, 1000000000LL, -3LL, 0x7FFFFFFFFFFFFFFFLL}) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        const Bytes bytes =
            golden::opening(20080720).i64(rows).i64(rows).i64(99).f64(0).f64(0).i32(0).u8(0).string(
                "");
        EXPECT_EQ(load(data, bytes), 1);
        EXPECT_EQ(data.m_snsRowTotal, rows);
        EXPECT_EQ(data.getValue(0, -1, -1), 0.0);
        // What is stored claims no grid, because the counters do not describe it.
        const std::string saved = stored(data);
        const Bytes expected = golden::opening(golden::newestVersion)
                                   .i32(512)
                                   .i64(3)
                                   .i64(21)
                                   .i64(22)
                                   .i64(rows)
                                   .i64(99)
                                   .i64(rows)
                                   .i64(7)
                                   .i32(0);
        EXPECT_EQ(saved.substr(0, expected.size()), expected.str());
        // The whole grid is released, not as many rows as the counter says.
        EXPECT_EQ(data.cleanSnsCohData(), 1);
    }
}

TEST_F(CSnsCohData09FileOlder, Version20080601ChangesNothing) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    CWavChnlChnlDatazq* const* const grid = data.m_mCC;
    EXPECT_EQ(load(data, golden::record20080601()), 1);
    EXPECT_EQ(load(data, golden::record20080601().u8(1).u8(2)), 1);
    golden::expectItems(data, other, 3, golden::lastItem);
    EXPECT_EQ(data.m_mCC, grid);
    EXPECT_EQ(data.getValue(2, 4, 6), -1462);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOlder, FileThatEndsAnywhereIsHarmlessInEveryVersion) {
    for (const Version& version : allVersions()) {
        for (std::size_t n = 0; n < version.record.size(); ++n) {
            CSnsCohDatazq data;
            golden::fillOther(data);
            const Outcome outcome = outcomeOfLoading(data, version.record.first(n));
            ASSERT_TRUE(outcome == Outcome::endOfFile || outcome == Outcome::refused)
                << version.word << " " << n;
            data.getStatistics();
            stored(data);
        }
    }
}

}  // namespace
