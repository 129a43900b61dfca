// The group record, against bytes written by hand.
#include "cxcpkg/CGroupMeegCxcFace09File.h"

#include "tests/cxcpkg/package_fixture.h"

namespace {

using test::Bytes;
using test::CleanGroup;
using test::expectBytes;
using test::load;
using test::newGolden;
using test::newSingle;
using test::Outcome;
using test::outcomeOfLoading;
using test::refusedRecord;
using test::smallRecord;
using test::stored;
using test::Texts;

class CGroupMeegCxcFace09FileTest : public ::testing::Test {
protected:
    test::TestApp app;
};

Bytes opening(unsigned version = 20180725) {
    return Bytes().string("GROUPCXCDATAFACE").u32(version);
}

// Fields 6 to 10.
Bytes others() {
    return Bytes().i32(-77).string("Study 3").string("rest, eyes closed").u8(1).i32(2);
}

void setOthers(CGroupMeegCxcFace& group) {
    group.m_pkgID = -77;
    group.m_pkgName = _T("Study 3");
    group.m_pkgInfo = _T("rest, eyes closed");
    group.m_pkgShow = true;
    group.m_actCtlOperation = 2;
}

void expectOthers(const CGroupMeegCxcFace& group) {
    EXPECT_EQ(group.m_pkgID, -77);
    EXPECT_EQ(test::ascii(group.m_pkgName), "Study 3");
    EXPECT_EQ(test::ascii(group.m_pkgInfo), "rest, eyes closed");
    EXPECT_TRUE(group.m_pkgShow);
    EXPECT_EQ(group.m_actCtlOperation, 2);
}

// A group in which every field differs from what records hold.
struct OtherGroup : CleanGroup {
    OtherGroup() {
        append(newSingle(7));
        append(nullptr);
        m_curntCohDataSetID = 1;
        m_pkgID = 5;
        m_pkgName = _T("Before");
        m_actCtlOperation = 3;
    }
    void expectUnchanged() {
        EXPECT_EQ(m_curntCohDataSetID, 1);
        EXPECT_EQ(size(), 2);
        EXPECT_EQ(at(0).getValue(0, 0, 0), 7.0);
        expectOthersUnchanged();
    }
    void expectOthersUnchanged() {
        EXPECT_EQ(m_pkgID, 5);
        EXPECT_EQ(test::ascii(m_pkgName), "Before");
        EXPECT_EQ(m_actCtlOperation, 3);
    }
};

TEST_F(CGroupMeegCxcFace09FileTest, WritesTheEntriesInTheirOrderWithNulls) {
    CleanGroup group;
    setOthers(group);
    group.m_curntCohDataSetID = 2;
    group.append(newGolden());
    group.append(nullptr);
    group.append(newGolden());
    expectBytes(stored(group), opening()
                                   .i32(2)
                                   .i32(3)
                                   .i32(1)
                                   .append(golden::newestRecord())
                                   .i32(0)
                                   .i32(1)
                                   .append(golden::newestRecord())
                                   .append(others())
                                   .str());
}

TEST_F(CGroupMeegCxcFace09FileTest, ReadListHasNoNullsButTheStoredIndex) {
    OtherGroup group;
    EXPECT_EQ(load(group, opening()
                              .i32(2)
                              .i32(3)
                              .i32(1)
                              .append(smallRecord(1.5))
                              .i32(0)
                              .i32(1)
                              .append(smallRecord(2.5))
                              .append(others())),
              1);
    ASSERT_EQ(group.size(), 2);
    EXPECT_EQ(group.at(0).getValue(0, 0, 0), 1.5);
    EXPECT_EQ(group.at(1).getValue(0, 0, 0), 2.5);
    EXPECT_EQ(group.getCurntCohDataSetID(), 2);  // beyond the list
    EXPECT_EQ(group.getTrlCohDataAny(), &group.at(1));
    expectOthers(group);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CGroupMeegCxcFace09FileTest, WhatIsWrittenIsReadAgain) {
    CleanGroup group;
    setOthers(group);
    group.m_curntCohDataSetID = 1;
    for (const TCHAR* name : {_T("first"), _T("second"), _T("third")}) {
        group.append(newGolden());
        group.at(group.size() - 1).m_cxcName = name;
    }
    test::ArchiveFile file;
    ASSERT_EQ(file.store([&](CArchive& ar) { return group.serialize(ar); }), 1);
    CleanGroup loaded;
    ASSERT_EQ(file.load([&](CArchive& ar) { return loaded.serialize(ar); }), 1);
    ASSERT_EQ(loaded.size(), 3);
    EXPECT_EQ(loaded.name(0), "first");
    EXPECT_EQ(loaded.name(1), "second");
    EXPECT_EQ(loaded.name(2), "third");
    golden::expectGrid(loaded.at(2));
    expectOthers(loaded);
    expectBytes(stored(loaded), file.bytes());
}

TEST_F(CGroupMeegCxcFace09FileTest, EmptyGroupIsStoredAndRead) {
    CleanGroup group;
    setOthers(group);
    const Bytes bytes = opening().i32(-1).i32(0).append(others());
    expectBytes(stored(group), bytes.str());
    OtherGroup loaded;
    EXPECT_EQ(load(loaded, bytes), 1);
    EXPECT_EQ(loaded.size(), 0);
    EXPECT_EQ(loaded.getCurntCohDataSetID(), -1);
    expectOthers(loaded);
}

TEST_F(CGroupMeegCxcFace09FileTest, NegativeCountIsAnEmptyList) {
    OtherGroup group;
    EXPECT_EQ(load(group, opening().i32(4).i32(-3).append(others())), 1);
    EXPECT_EQ(group.size(), 0);
    EXPECT_EQ(group.getCurntCohDataSetID(), 4);
    expectOthers(group);
}

TEST_F(CGroupMeegCxcFace09FileTest, CountBeyondTheFileEndsWithTheFile) {
    OtherGroup group;
    const Bytes bytes =
        opening().i32(0).i32(0x7FFFFFFF).i32(1).append(smallRecord(1.5)).i32(0).i32(0);
    const test::FailingMemory memory(0);
    EXPECT_EQ(outcomeOfLoading(group, bytes), Outcome::endOfFile);
    EXPECT_LT(memory.count(), 20);
    ASSERT_EQ(group.size(), 1);
    EXPECT_EQ(group.at(0).getValue(0, 0, 0), 1.5);
    group.expectOthersUnchanged();
}

TEST_F(CGroupMeegCxcFace09FileTest, StoringFlushesTheArchive) {
    OtherGroup group;
    EXPECT_EQ(test::bytesBeforeClosing(group), stored(group).size());
}

TEST_F(CGroupMeegCxcFace09FileTest, ForeignRecordsAreRefused) {
    for (const char* magic : {"SNSCOHFACE", "GroupCxcDataFace", "GROUPCXCDATAFACES", ""}) {
        OtherGroup group;
        EXPECT_EQ(load(group, Bytes().string(magic).u32(20180725).i32(0).i32(0).append(others())),
                  0);
        group.expectUnchanged();
        EXPECT_EQ(app.messages(), Texts{"Unknown Coherence file!"}) << magic;
        EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
        app.clearMessages();
    }
}

TEST_F(CGroupMeegCxcFace09FileTest, UnknownVersionsAreRefused) {
    for (const unsigned version :
         {0u, 20180726u, 20121016u, 20180725u + 0x80000000u, 0xFFFFFFFFu}) {
        OtherGroup group;
        EXPECT_EQ(load(group, opening(version).i32(0).i32(0).append(others())), 0);
        group.expectUnchanged();
        EXPECT_EQ(app.messages(), Texts{"Group Cxc data format error!"});
        app.clearMessages();
    }
}

TEST_F(CGroupMeegCxcFace09FileTest, EightBitStringsAndAnyFlagAreAccepted) {
    CleanGroup group;
    EXPECT_EQ(load(group, Bytes()
                              .narrowString("GROUPCXCDATAFACE")
                              .u32(20180725)
                              .i32(0)
                              .i32(1)
                              .i32(-1)
                              .append(smallRecord(1.5))
                              .i32(-77)
                              .narrowString("Study 3")
                              .narrowString("rest, eyes closed")
                              .u8(7)
                              .i32(2)),
              1);
    EXPECT_EQ(group.size(), 1);
    expectOthers(group);
}

TEST_F(CGroupMeegCxcFace09FileTest, RefusedDatasetEndsTheLoadAndIsDiscarded) {
    OtherGroup group;
    EXPECT_EQ(load(group, opening()
                              .i32(0)
                              .i32(3)
                              .i32(1)
                              .append(smallRecord(1.5))
                              .i32(1)
                              .append(refusedRecord())
                              .i32(1)
                              .append(smallRecord(2.5))
                              .append(others())),
              0);
    ASSERT_EQ(group.size(), 1);
    EXPECT_EQ(group.at(0).getValue(0, 0, 0), 1.5);
    EXPECT_EQ(app.messages(), Texts{"The opened file is not CCoherenceData09File or corrupted!"});
    group.expectOthersUnchanged();
}

TEST_F(CGroupMeegCxcFace09FileTest, FileEndingAnywhereLeavesAUsableGroup) {
    const Bytes first = opening().i32(1).i32(3).i32(1).append(smallRecord(1.5));
    const Bytes second = Bytes(first).i32(0).i32(1).append(smallRecord(2.5));
    const Bytes whole = Bytes(second).append(others());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        OtherGroup group;
        const Outcome outcome = outcomeOfLoading(group, whole.first(length));
        ASSERT_TRUE(outcome == Outcome::endOfFile || outcome == Outcome::refused) << length;
        if (length < 40) {
            group.expectUnchanged();
        } else {
            const int whole2 = length >= second.size() ? 2 : length >= first.size() ? 1 : 0;
            ASSERT_EQ(group.size(), whole2) << length;
        }
        group.averageAll();
    }
    OtherGroup group;
    EXPECT_EQ(load(group, whole), 1);
}

TEST_F(CGroupMeegCxcFace09FileTest, EveryFailingAllocationIsAStatus) {
    const Bytes bytes = opening()
                            .i32(1)
                            .i32(2)
                            .i32(1)
                            .append(smallRecord(1.5))
                            .i32(1)
                            .append(golden::newestRecord())
                            .append(others());
    int total = 0;
    {
        CleanGroup group;
        const test::FailingMemory memory(0);
        ASSERT_EQ(load(group, bytes), 1);
        total = memory.count();
    }
    ASSERT_GT(total, 10);
    for (int n = 1; n <= total; ++n) {
        CleanGroup group;
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(load(group, bytes), 0) << n;
        EXPECT_LE(group.size(), 1);
    }
}

TEST_F(CGroupMeegCxcFace09FileTest, GridlessDatasetsDoNotMakeTheAverageHuge) {
    // A few hundred bytes that claim 30,000 x 30,000 pairs of a million slices.
    const Bytes gridless = golden::opening(golden::newestVersion)
                               .append(golden::sizes(30000, 30000, 1000000))
                               .i32(0)
                               .append(golden::header());
    CleanGroup group;
    ASSERT_EQ(load(group, opening().i32(0).i32(1).i32(1).append(gridless).append(others())), 1);
    const test::FailingMemory memory(0);
    EXPECT_EQ(group.averageAll(), 0);
    EXPECT_EQ(group.summaryAll(), 0);
    EXPECT_LT(memory.count(), 20);  // nothing for rows and pairs
    EXPECT_EQ(group.size(), 1);
}

}  // namespace
