// The package record, against bytes written by hand.
#include "cxcpkg/CSnsCohFace09File.h"

#include "tests/cxcpkg/package_fixture.h"

namespace {

using test::actCtl;
using test::active;
using test::Bytes;
using test::control;
using test::expectBytes;
using test::FullPackage;
using test::load;
using test::newGolden;
using test::Outcome;
using test::outcomeOfLoading;
using test::refusedRecord;
using test::smallRecord;
using test::stored;
using test::Texts;

class CSnsCohFace09FileTest : public ::testing::Test {
protected:
    test::TestApp app;
};

Bytes opening(unsigned version = 20121016) {
    return Bytes().string("SNSCOHFACE").u32(version);
}

// Fields 10 to 13.
Bytes others() {
    return Bytes().i32(-77).string("Subject 3").string("rest, eyes closed").u8(1);
}

// The others of the older layout.
Bytes others20080721() {
    return Bytes().i32(901).i32(902).i32(-77).string("Subject 3").u8(1).i64(903).i64(904);
}

// Active and Act-Ctl, and nothing behind the datasets.
Bytes twoDatasets() {
    return Bytes()
        .i32(2)
        .i32(1)
        .append(golden::newestRecord())
        .i32(0)
        .i32(1)
        .append(smallRecord(4.5));
}

void expectOthers(const CSnsCohFace& package) {
    EXPECT_EQ(package.m_pkgID, -77);
    EXPECT_EQ(test::ascii(package.m_pkgName), "Subject 3");
    EXPECT_EQ(test::ascii(package.m_pkgInfo), "rest, eyes closed");
    EXPECT_TRUE(package.m_pkgShow);
}

void setOthers(CSnsCohFace& package) {
    package.m_pkgID = -77;
    package.m_pkgName = _T("Subject 3");
    package.m_pkgInfo = _T("rest, eyes closed");
    package.m_pkgShow = true;
}

// A package in which every field differs from what records hold.
struct OtherPackage : FullPackage {
    OtherPackage() {
        m_curntCohDataSetID = 1;
        m_pkgID = 5;
        m_pkgName = _T("Before");
        m_pkgInfo = _T("Before too");
        m_actCtlOperation = 3;
    }
    void expectUnchanged() {
        EXPECT_EQ(m_curntCohDataSetID, 1);
        EXPECT_EQ(getTotalCohDataset(), 3);
        EXPECT_EQ(test::cell(*m_cohActCtl, 6, 2, 2), test::cellValue(6, 2, 2));
        expectOthersUnchanged();
    }
    void expectOthersUnchanged() {
        EXPECT_EQ(m_pkgID, 5);
        EXPECT_EQ(test::ascii(m_pkgName), "Before");
        EXPECT_EQ(test::ascii(m_pkgInfo), "Before too");
        EXPECT_FALSE(m_pkgShow);
    }
};

TEST_F(CSnsCohFace09FileTest, WritesActiveAloneAsOneRecord) {
    CSnsCohFacezq package;
    setOthers(package);
    package.m_actCtlOperation = 3;
    package.setCohData(newGolden(), active);
    expectBytes(stored(package), opening()
                                     .i32(-1)
                                     .i32(1)
                                     .append(golden::newestRecord())
                                     .i32(0)
                                     .i32(0)
                                     .append(others())
                                     .str());
}

TEST_F(CSnsCohFace09FileTest, WritesTheClassesInTheirOrder) {
    CSnsCohFacezq package;
    setOthers(package);
    package.m_curntCohDataSetID = 2;
    package.setCohData(newGolden(), active);
    package.setCohData(newGolden(), control);
    package.setCohData(newGolden(), actCtl);
    package.m_cohControl->m_headerInt11 = 222;
    package.m_cohActCtl->m_headerInt11 = 333;
    const std::string one = golden::newestRecord().str();
    const auto record = [&](int headerInt11) {
        std::string bytes = one;
        const std::string number = Bytes().i32(headerInt11).str();
        bytes.replace(26, number.size(), number);  // behind magic string and version
        return bytes;
    };
    const std::string flag = Bytes().i32(1).str();
    expectBytes(stored(package), opening().i32(2).str() + flag + record(111) + flag + record(222) +
                                     flag + record(333) + others().str());
}

TEST_F(CSnsCohFace09FileTest, ReadsActiveAlone) {
    OtherPackage package;
    EXPECT_EQ(
        load(
            package,
            opening().i32(-1).i32(1).append(golden::newestRecord()).i32(0).i32(0).append(others())),
        1);
    EXPECT_EQ(package.m_curntCohDataSetID, -1);
    ASSERT_NE(package.m_cohActive, nullptr);
    golden::expectGrid(*package.m_cohActive);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
    expectOthers(package);
    EXPECT_EQ(package.m_actCtlOperation, 3);  // not stored
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohFace09FileTest, WhatIsWrittenIsReadAgain) {
    FullPackage package;
    setOthers(package);
    package.m_curntCohDataSetID = 1;
    package.m_actCtlOperation = 2;
    test::ArchiveFile file;
    ASSERT_EQ(file.store([&](CArchive& ar) { return package.serialize(ar); }), 1);
    CSnsCohFacezq loaded;
    ASSERT_EQ(file.load([&](CArchive& ar) { return loaded.serialize(ar); }), 1);
    EXPECT_EQ(loaded.m_curntCohDataSetID, 1);
    EXPECT_EQ(loaded.m_cohActive->m_cohTimTotal, 5);
    EXPECT_EQ(loaded.m_cohControl->m_cohTimTotal, 2);
    EXPECT_EQ(test::cell(*loaded.m_cohActCtl, 6, 1, 2), test::cellValue(6, 1, 2));
    expectOthers(loaded);
    EXPECT_EQ(loaded.m_actCtlOperation, 0);
    expectBytes(stored(loaded), file.bytes());
}

TEST_F(CSnsCohFace09FileTest, EmptyPackageIsStoredAndRead) {
    CSnsCohFacezq package;
    const Bytes bytes =
        opening().i32(-1).i32(0).i32(0).i32(0).i32(0).string("SnsCohFace").string("Unknown").u8(0);
    expectBytes(stored(package), bytes.str());
    OtherPackage loaded;
    EXPECT_EQ(load(loaded, bytes), 1);
    EXPECT_EQ(loaded.getTotalCohDataset(), 0);
    EXPECT_EQ(loaded.m_pkgID, 0);
}

TEST_F(CSnsCohFace09FileTest, CurrentClassIsTakenAsStored) {
    for (const int cls : {2, 7, -2, -0x7FFFFFFF - 1}) {
        CSnsCohFacezq package;
        EXPECT_EQ(load(package, opening().i32(cls).i32(0).i32(0).i32(0).append(others())), 1);
        EXPECT_EQ(package.getCurntCohDataSetID(), cls);
    }
}

TEST_F(CSnsCohFace09FileTest, OlderVersionLeavesTheInformationText) {
    OtherPackage package;
    EXPECT_EQ(load(package, opening(20080721).append(twoDatasets()).append(others20080721())), 1);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    EXPECT_EQ(package.m_pkgID, -77);
    EXPECT_EQ(test::ascii(package.m_pkgName), "Subject 3");
    EXPECT_EQ(test::ascii(package.m_pkgInfo), "Before too");
    EXPECT_TRUE(package.m_pkgShow);
    ASSERT_NE(package.m_cohActCtl, nullptr);
    EXPECT_EQ(package.m_cohActCtl->getValue(0, 0, 0), 4.5);
    EXPECT_EQ(package.m_cohControl, nullptr);
}

TEST_F(CSnsCohFace09FileTest, RecordsFollowOneAnother) {
    const Bytes bytes = opening(20080721)
                            .append(twoDatasets())
                            .append(others20080721())
                            .append(opening())
                            .append(twoDatasets())
                            .append(others());
    CSnsCohFacezq first;
    CSnsCohFacezq second;
    test::ArchiveFile file(bytes);
    EXPECT_EQ(file.load([&](CArchive& ar) { return first.serialize(ar) + second.serialize(ar); }),
              2);
    expectOthers(second);
}

// Opens the parts of the record, which only derived classes may call.
struct Parts : CSnsCohFace09File {
    using CSnsCohFace09File::_01SerializeCohDataPA;
    using CSnsCohFace09File::_03SerializeOthers;
    using CSnsCohFace09File::_03SerializeOthers_obsolete;
};

TEST_F(CSnsCohFace09FileTest, ReservedFieldsOfTheOlderLayoutAreWrittenAsZero) {
    Parts package;
    setOthers(package);
    test::ArchiveFile file;
    EXPECT_EQ(file.store([&](CArchive& ar) { return package._03SerializeOthers_obsolete(ar); }), 1);
    expectBytes(file.bytes(),
                Bytes().i32(0).i32(0).i32(-77).string("Subject 3").u8(1).i64(0).i64(0).str());
    EXPECT_EQ(file.store([&](CArchive& ar) { return package._03SerializeOthers(ar); }), 1);
    expectBytes(file.bytes(), others().str());
    EXPECT_EQ(file.store([&](CArchive& ar) { return package._01SerializeCohDataPA(ar); }), 1);
    expectBytes(file.bytes(), Bytes().i32(-1).i32(0).i32(0).i32(0).str());
}

TEST_F(CSnsCohFace09FileTest, DatasetsPartAloneReleasesTheFormerDatasets) {
    Parts package;
    package.setCohData(test::newFilled(2, 2, 1), active);
    package.setCohData(test::newFilled(2, 2, 1), control);
    test::ArchiveFile file(twoDatasets());
    EXPECT_EQ(file.load([&](CArchive& ar) { return package._01SerializeCohDataPA(ar); }), 1);
    golden::expectGrid(*package.m_cohActive);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.getTotalCohDataset(), 2);
}

TEST_F(CSnsCohFace09FileTest, StoringFlushesTheArchive) {
    FullPackage package;
    EXPECT_EQ(test::bytesBeforeClosing(package), stored(package).size());
}

TEST_F(CSnsCohFace09FileTest, ForeignRecordsAreRefused) {
    for (const char* magic : {"GROUPCXCDATAFACE", "SnsCohFace", "SNSCOHFAC", "SNSCOHFACES", ""}) {
        OtherPackage package;
        EXPECT_EQ(load(package, Bytes().string(magic).u32(20121016).append(twoDatasets())), 0);
        package.expectUnchanged();
        EXPECT_EQ(app.messages(), Texts{"Unknown Coherence file!"}) << magic;
        EXPECT_EQ(app.messageTypes(), std::vector<UINT>{MB_OK});
        app.clearMessages();
    }
}

TEST_F(CSnsCohFace09FileTest, UnknownVersionsAreRefused) {
    for (const unsigned version :
         {0u, 20121017u, 20180725u, 20080601u, 20121016u + 0x80000000u, 0xFFFFFFFFu}) {
        OtherPackage package;
        EXPECT_EQ(load(package, opening(version).append(twoDatasets()).append(others())), 0);
        package.expectUnchanged();
        EXPECT_EQ(app.messages(), Texts{"Coherence data format error!"});
        app.clearMessages();
    }
}

TEST_F(CSnsCohFace09FileTest, EightBitStringsAreAccepted) {
    CSnsCohFacezq package;
    EXPECT_EQ(load(package, Bytes()
                                .narrowString("SNSCOHFACE")
                                .u32(20121016)
                                .i32(-1)
                                .i32(0)
                                .i32(0)
                                .i32(0)
                                .i32(-77)
                                .narrowString("Subject 3")
                                .narrowString("rest, eyes closed")
                                .u8(200)),
              1);
    expectOthers(package);
}

TEST_F(CSnsCohFace09FileTest, AnyFlagButZeroIsADataset) {
    for (const int flag : {2, -1, 0x01000000}) {
        CSnsCohFacezq package;
        EXPECT_EQ(
            load(
                package,
                opening().i32(0).i32(flag).append(smallRecord(1.5)).i32(0).i32(0).append(others())),
            1);
        ASSERT_NE(package.m_cohActive, nullptr);
        EXPECT_EQ(package.m_cohActive->getValue(0, 0, 0), 1.5);
    }
}

TEST_F(CSnsCohFace09FileTest, RefusedActiveRecordEndsTheLoad) {
    OtherPackage package;
    EXPECT_EQ(load(package,
                   opening().i32(2).i32(1).append(refusedRecord()).i32(0).i32(0).append(others())),
              0);
    EXPECT_EQ(app.messages(), Texts{"The opened file is not CCoherenceData09File or corrupted!"});
    EXPECT_NE(package.m_cohActive, nullptr);
    EXPECT_EQ(package.m_cohActive->m_mCC, nullptr);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohActCtl, nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
    package.expectOthersUnchanged();
}

TEST(CSnsCohFace09File_Meddling, SlotsMayBeEmptiedWhileAMessageOfTheRecordStands) {
    // The grid ends with a foreign vector record, which is said in a message.
    const Bytes bytes = opening()
                            .i32(2)
                            .i32(1)
                            .append(golden::opening(golden::newestVersion))
                            .append(golden::sizes(1, 2, 1))
                            .i32(1)
                            .append(golden::vectorRecord({1.5}))
                            .string("NOMATRIX1D");
    FullPackage package;
    test::MeddlingApp app;
    app.meddle = [&] { package.cleanSnsCohPkg(); };
    EXPECT_EQ(outcomeOfLoading(package, bytes), Outcome::refused);
    EXPECT_EQ(app.messages().size(), 1u);
    ASSERT_NE(package.m_cohActive, nullptr);
    EXPECT_EQ(package.m_cohActive->m_mCC, nullptr);
    app.meddle = [&] { package.setCohData(newGolden(), active); };
    EXPECT_EQ(outcomeOfLoading(package, bytes), Outcome::refused);
    EXPECT_EQ(package.m_cohActive->m_mCC, nullptr);
}

TEST_F(CSnsCohFace09FileTest, RefusedActCtlRecordEndsTheLoad) {
    OtherPackage package;
    EXPECT_EQ(load(package, opening()
                                .i32(2)
                                .i32(1)
                                .append(smallRecord(1.5))
                                .i32(0)
                                .i32(1)
                                .append(refusedRecord())
                                .append(others())),
              0);
    EXPECT_EQ(package.m_cohActive->getValue(0, 0, 0), 1.5);
    EXPECT_NE(package.m_cohActCtl, nullptr);
    package.expectOthersUnchanged();
}

TEST_F(CSnsCohFace09FileTest, RefusedControlRecordIsPassedOver) {
    OtherPackage package;
    EXPECT_EQ(load(package, opening()
                                .i32(2)
                                .i32(1)
                                .append(smallRecord(1.5))
                                .i32(1)
                                .append(refusedRecord())
                                .i32(1)
                                .append(smallRecord(2.5))
                                .append(others())),
              1);
    EXPECT_EQ(app.messages().size(), 1u);  // what the dataset record says
    EXPECT_EQ(package.m_cohActive->getValue(0, 0, 0), 1.5);
    ASSERT_NE(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_cohControl->m_mCC, nullptr);
    EXPECT_EQ(package.m_cohActCtl->getValue(0, 0, 0), 2.5);
    expectOthers(package);
}

TEST_F(CSnsCohFace09FileTest, WhatFollowsARefusedControlRecordMayBeAnything) {
    // The refused record goes on: its version word and grid are read as flag and dataset.
    const Bytes start = opening().i32(2).i32(0).i32(1);
    const std::string record = golden::newestRecord().str();
    for (std::size_t skip = 0; skip < record.size(); skip += 7) {
        CSnsCohFacezq package;
        Bytes bytes = start;
        bytes.append(refusedRecord());
        for (const char byte : record.substr(skip))
            bytes.u8(static_cast<unsigned char>(byte));
        const Outcome outcome = outcomeOfLoading(package, bytes);
        EXPECT_TRUE(outcome == Outcome::refused || outcome == Outcome::accepted ||
                    outcome == Outcome::endOfFile)
            << test::name(outcome);
        stored(package);
    }
}

TEST_F(CSnsCohFace09FileTest, FileEndingAnywhereLeavesAUsablePackage) {
    const Bytes whole = opening()
                            .i32(2)
                            .i32(1)
                            .append(smallRecord(1.5))
                            .i32(1)
                            .append(smallRecord(2.5))
                            .i32(1)
                            .append(smallRecord(3.5))
                            .append(others());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        OtherPackage package;
        const Outcome outcome = outcomeOfLoading(package, whole.first(length));
        ASSERT_TRUE(outcome == Outcome::endOfFile || outcome == Outcome::refused) << length;
        for (CSnsCohDatazq* const data :
             {package.m_cohActive, package.m_cohControl, package.m_cohActCtl}) {
            if (data != nullptr) data->getValue(0, 0, 0);
        }
        if (length < 28) package.expectUnchanged();
        package.deleteCohDataset(active);
    }
    OtherPackage package;
    EXPECT_EQ(load(package, whole), 1);
}

TEST_F(CSnsCohFace09FileTest, FileEndingInsideADatasetKeepsItInItsSlot) {
    OtherPackage package;
    const Bytes bytes = opening().i32(2).i32(1).append(golden::newestRecord());
    EXPECT_EQ(outcomeOfLoading(package, bytes.first(bytes.size() - 5)), Outcome::endOfFile);
    ASSERT_NE(package.m_cohActive, nullptr);
    golden::expectGrid(*package.m_cohActive);
    EXPECT_EQ(package.m_cohControl, nullptr);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

TEST_F(CSnsCohFace09FileTest, EveryFailingAllocationIsAStatus) {
    const Bytes bytes = opening().append(twoDatasets()).append(others());
    int total = 0;
    {
        CSnsCohFacezq package;
        const test::FailingMemory memory(0);
        ASSERT_EQ(load(package, bytes), 1);
        total = memory.count();
    }
    ASSERT_GT(total, 10);
    for (int n = 1; n <= total; ++n) {
        CSnsCohFacezq package;
        const test::FailingMemory memory(n, true);
        EXPECT_EQ(load(package, bytes), 0) << n;
    }
}

TEST_F(CSnsCohFace09FileTest, ControlWithoutMemoryForItsDatasetEndsTheLoad) {
    // What follows the flag could be read as an absent Act-Ctl and the others.
    const Bytes bytes = opening().i32(2).i32(0).i32(1).i32(0).append(others());
    OtherPackage package;
    const test::FailingMemory memory(1, true);
    EXPECT_EQ(load(package, bytes), 0);
    EXPECT_EQ(package.m_cohControl, nullptr);
    package.expectOthersUnchanged();
}

TEST_F(CSnsCohFace09FileTest, FileThatCannotBeWrittenIsAnException) {
    FullPackage package;
    const test::ArchiveFile target;
    CFile file;
    ASSERT_TRUE(file.Open(target.name(), CFile::modeRead));
    CArchive ar(&file, CArchive::store);
    bool thrown = false;
    try {
        package.serialize(ar);
    } catch (CFileException* e) {
        thrown = true;
        e->Delete();
    } catch (CArchiveException* e) {
        thrown = true;
        e->Delete();
    }
    EXPECT_TRUE(thrown);
    ar.Abort();
    EXPECT_EQ(package.getTotalCohDataset(), 3);
}

}  // namespace
