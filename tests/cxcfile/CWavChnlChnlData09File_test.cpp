// The record of a pair vector, against bytes written by hand.
#include "cxcdata/CWavChnlChnlData09File.h"

#include "cxcdata/CWavChnlChnlDatazq.h"
#include "cxcfile/pass_record.h"
#include "tests/support/ArchiveFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/DatasetFixture.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

using test::ArchiveFile;
using test::Bytes;
using test::FailingMemory;
using test::MemoryFile;
using Texts = std::vector<std::string>;
using Values = std::vector<double>;

constexpr int newest = 20120222;

// Items 1 to 6 of the record: magic, version, index, channels, flag.
Bytes head(int version = newest, const char* magic = "MMATRIX1DX") {
    return Bytes().string(magic).i32(version).i64(2).i64(11).i64(13).u16(7);
}

// A whole record without a backup.
Bytes record(const Values& values) {
    return head()
        .i64(static_cast<long long>(values.size()))
        .i32(values.empty() ? 0 : 1)
        .f64s(values)
        .i64(0)
        .i32(0);
}

Bytes recordWithBackup(const Values& values, const Values& backup) {
    return head()
        .i64(static_cast<long long>(values.size()))
        .i32(1)
        .f64s(values)
        .i64(static_cast<long long>(backup.size()))
        .i32(1)
        .f64s(backup);
}

void describe(CWavChnlChnlData& v) {
    v.m_curIdx = 2;
    v.m_chnlA = 11;
    v.m_chnlB = 13;
    v.m_pairFlag = 7;
}

void give(CWavChnlChnlData& v, const Values& values) {
    v.checkInitData(static_cast<__int64>(values.size()), false);
    for (std::size_t i = 0; i < values.size(); ++i)
        v.getData()[i] = values[i];
    describe(v);
}

Values valuesOf(const CWavChnlChnlData& v) {
    return v.m_data == nullptr ? Values() : Values(v.m_data, v.m_data + v.m_size);
}

Values backupOf(const CWavChnlChnlData& v) {
    return v.m_bkData == nullptr ? Values() : Values(v.m_bkData, v.m_bkData + v.m_bkSize);
}

class CWavChnlChnlData09FileRecord : public ::testing::Test {
protected:
    std::string stored(CWavChnlChnlDatazq& v) {
        ArchiveFile file;
        EXPECT_EQ(file.store([&](CArchive& ar) { return v.serialize(ar); }), 1);
        return file.bytes();
    }

    int load(CWavChnlChnlDatazq& v, const Bytes& bytes) {
        ArchiveFile file(bytes);
        return file.load([&](CArchive& ar) { return v.serialize(ar); });
    }

    // The cause of the archive exception that loading ends with; -1 without one.
    int loadCause(CWavChnlChnlDatazq& v, const Bytes& bytes) {
        try {
            load(v, bytes);
        } catch (CArchiveException* e) {
            const int cause = e->m_cause;
            e->Delete();
            return cause;
        }
        return -1;
    }

    test::TestApp app;
    CWavChnlChnlDatazq v;
};

int loadFrom(MemoryFile& file, CWavChnlChnlDatazq& v) {
    return cxc::passRecord(file, CArchive::load, v);
}

// Most values that are allocated before the file has shown that it is long enough for them.
constexpr long long mostUnbacked = 64 * 1024 * 1024 / 8;

// Every write fails.
class FailingFile : public CFile {
public:
    void Write(const void*, UINT) override {
        AfxThrowFileException(CFileException::diskFull, -1, _T("full"));
    }
};

}  // namespace

// ---- storing

TEST_F(CWavChnlChnlData09FileRecord, ThreeValuesWithoutBackupAreStoredItemByItem) {
    give(v, {1.5, -2.5, 1e300});
    EXPECT_EQ(stored(v), record({1.5, -2.5, 1e300}).str());
    EXPECT_EQ(stored(v).size(), 78u + 3u * 8u);
}

TEST_F(CWavChnlChnlData09FileRecord, TheBackupFollowsTheValues) {
    give(v, {1, 2, 3});
    v.bkDataIn();
    v.getData()[1] = 9;
    EXPECT_EQ(stored(v), recordWithBackup({1, 9, 3}, {1, 2, 3}).str());
}

TEST_F(CWavChnlChnlData09FileRecord, AnEmptyVectorStoresLengthAndMarkerZero) {
    describe(v);
    EXPECT_EQ(stored(v), record({}).str());
}

TEST_F(CWavChnlChnlData09FileRecord, ALengthWithoutValuesIsStoredWithMarkerZero) {
    describe(v);
    v.m_size = 5;
    EXPECT_EQ(stored(v), head().i64(5).i32(0).i64(0).i32(0).str());
}

TEST_F(CWavChnlChnlData09FileRecord, AnArrayWithoutElementsIsStoredWithMarkerZero) {
    v.setData(new double[1], 0);
    describe(v);
    EXPECT_EQ(stored(v), record({}).str());
}

TEST_F(CWavChnlChnlData09FileRecord, ABackupArrayWithoutElementsStillStoresMarkerOne) {
    give(v, {1});
    v.m_bkData = new double[1];
    EXPECT_EQ(stored(v), head().i64(1).i32(1).f64(1).i64(0).i32(1).str());
}

TEST_F(CWavChnlChnlData09FileRecord, ANegativeBackupLengthStoresNoBlock) {
    give(v, {1});
    v.m_bkData = new double[1];
    v.m_bkSize = -4;
    EXPECT_EQ(stored(v), head().i64(1).i32(1).f64(1).i64(-4).i32(1).str());
}

TEST_F(CWavChnlChnlData09FileRecord, AStoredRecordIsInTheFileWhenSerializeReturns) {
    give(v, {1, 2});
    ArchiveFile file;
    file.store([&](CArchive& ar) {
        const int result = v.serialize(ar);
        EXPECT_EQ(ar.GetFile()->GetLength(), 78u + 2u * 8u);
        return result;
    });
}

TEST_F(CWavChnlChnlData09FileRecord, AFailingWriteReachesTheCaller) {
    give(v, {1, 2});
    FailingFile file;
    CArchive ar(&file, CArchive::store);
    try {
        v.serialize(ar);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::diskFull);
        e->Delete();
    }
    ar.Abort();
    EXPECT_EQ(valuesOf(v), Values({1, 2}));
}

// ---- loading

TEST_F(CWavChnlChnlData09FileRecord, EveryItemIsReadBack) {
    EXPECT_EQ(load(v, recordWithBackup({1.5, -2.5}, {3, 4, 5})), 1);
    EXPECT_EQ(v.m_curIdx, 2);
    EXPECT_EQ(v.m_chnlA, 11);
    EXPECT_EQ(v.m_chnlB, 13);
    EXPECT_EQ(v.m_pairFlag, 7);
    EXPECT_EQ(valuesOf(v), Values({1.5, -2.5}));
    EXPECT_EQ(backupOf(v), Values({3, 4, 5}));
    EXPECT_EQ(stored(v), recordWithBackup({1.5, -2.5}, {3, 4, 5}).str());
}

TEST_F(CWavChnlChnlData09FileRecord, ValuesKeepEveryBit) {
    const std::uint64_t patterns[] = {0x7FF8000000000123u, 0xFFF8000000000000u, 0x8000000000000000u,
                                      1u, 0x7FF0000000000000u};
    Bytes bytes = head().i64(5).i32(1);
    for (const std::uint64_t pattern : patterns)
        bytes.u64(pattern);
    bytes.i64(0).i32(0);
    ASSERT_EQ(load(v, bytes), 1);
    EXPECT_EQ(std::memcmp(v.m_data, patterns, sizeof(patterns)), 0);
    EXPECT_EQ(stored(v), bytes.str());
}

TEST_F(CWavChnlChnlData09FileRecord, TheIndexIsTakenAsStored) {
    Bytes bytes =
        Bytes().string("MMATRIX1DX").i32(newest).i64(-99).i64(1).i64(2).u16(65535).i64(0).i32(0);
    bytes.i64(0).i32(0);
    EXPECT_EQ(load(v, bytes), 1);
    EXPECT_EQ(v.m_curIdx, -99);
    EXPECT_EQ(v.m_pairFlag, 65535);
}

TEST_F(CWavChnlChnlData09FileRecord, MagicIn8BitCharactersIsAccepted) {
    Bytes bytes = Bytes().narrowString("MMATRIX1DX").i32(newest).i64(0).i64(1).i64(2).u16(1);
    bytes.i64(1).i32(1).f64(4.5).i64(0).i32(0);
    EXPECT_EQ(load(v, bytes), 1);
    EXPECT_EQ(valuesOf(v), Values({4.5}));
}

TEST_F(CWavChnlChnlData09FileRecord, AnotherMagicIsRefusedAndChangesNothing) {
    for (const char* const magic : {"MMATRIX1DY", "mmatrix1dx", "MMATRIX1D", "MMATRIX1DXX", ""}) {
        app.clearMessages();
        CWavChnlChnlDatazq filled;
        give(filled, {1, 2});
        EXPECT_EQ(load(filled, head(newest, magic).i64(0).i32(0).i64(0).i32(0)), 0) << magic;
        EXPECT_EQ(app.messages(), Texts({"Unknown MMatrix1D file!"}));
        EXPECT_EQ(valuesOf(filled), Values({1, 2}));
    }
}

// Deliberate: 20120228 is the date of the function, not of the layout.
TEST_F(CWavChnlChnlData09FileRecord, AnyVersionBut20120222IsRefusedAndChangesNothing) {
    for (const int version : {20120228, 20120221, 0, -20120222}) {
        app.clearMessages();
        CWavChnlChnlDatazq filled;
        give(filled, {1, 2});
        EXPECT_EQ(load(filled, head(version).i64(0).i32(0).i64(0).i32(0)), 0) << version;
        EXPECT_EQ(app.messages(), Texts({"MMatrix1D format error!"}));
        EXPECT_EQ(app.messageTypes()[0] & 0xFu, static_cast<UINT>(MB_OK));
        EXPECT_EQ(valuesOf(filled), Values({1, 2}));
    }
}

TEST_F(CWavChnlChnlData09FileRecord, MarkerZeroWithALengthLeavesALengthWithoutValues) {
    give(v, {1, 2});
    EXPECT_EQ(load(v, head().i64(5).i32(0).i64(0).i32(0)), 1);
    EXPECT_EQ(v.m_size, 5);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.getValueMax(), 0.0);
}

TEST_F(CWavChnlChnlData09FileRecord, MarkersOtherThanZeroAndOneAnnounceValues) {
    EXPECT_EQ(load(v, head().i64(1).i32(-3).f64(4).i64(1).i32(77).f64(5)), 1);
    EXPECT_EQ(valuesOf(v), Values({4}));
    EXPECT_EQ(backupOf(v), Values({5}));
}

TEST_F(CWavChnlChnlData09FileRecord, ANegativeLengthHasNoBlock) {
    EXPECT_EQ(load(v, head().i64(-5).i32(1).i64(0).i32(0)), 1);
    EXPECT_EQ(v.m_size, -5);
    EXPECT_EQ(v.m_data, nullptr);
}

TEST_F(CWavChnlChnlData09FileRecord, AShortValueBlockIsAnErrorAndItsRestIsZero) {
    EXPECT_EQ(load(v, head().i64(3).i32(1).f64(4).u8(0)), 0);
    EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"}));
    EXPECT_EQ(v.m_size, 3);
    EXPECT_EQ(valuesOf(v), Values({4, 0, 0}));
}

TEST_F(CWavChnlChnlData09FileRecord, AMissingValueBlockIsAnErrorToo) {
    EXPECT_EQ(load(v, head().i64(3).i32(1)), 0);
    EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"}));
    EXPECT_EQ(valuesOf(v), Values({0, 0, 0}));
}

// Deliberately unlike the values.
TEST_F(CWavChnlChnlData09FileRecord, AShortBackupBlockIsAcceptedAndItsRestIsZero) {
    EXPECT_EQ(load(v, head().i64(1).i32(1).f64(4).i64(3).i32(1).f64(5).u8(0)), 1);
    EXPECT_TRUE(app.messages().empty());
    EXPECT_EQ(backupOf(v), Values({5, 0, 0}));
    EXPECT_EQ(v.m_bkSize, 3);
}

TEST_F(CWavChnlChnlData09FileRecord, ABackupBlockWithoutAByteIsAnError) {
    EXPECT_EQ(load(v, head().i64(1).i32(1).f64(4).i64(3).i32(1)), 0);
    EXPECT_EQ(app.messages(), Texts({"Read back up data error!?"}));
    EXPECT_EQ(v.m_bkSize, 3);
    EXPECT_EQ(backupOf(v), Values({0, 0, 0}));
    EXPECT_EQ(valuesOf(v), Values({4}));
}

TEST_F(CWavChnlChnlData09FileRecord, ABackupMarkerWithLengthZeroMakesNoBackup) {
    EXPECT_EQ(load(v, head().i64(1).i32(1).f64(4).i64(0).i32(1)), 1);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 0);
}

TEST_F(CWavChnlChnlData09FileRecord, AStoredBackupReplacesTheOneThatWasThere) {
    give(v, {1, 2});
    v.bkDataIn();
    EXPECT_EQ(load(v, recordWithBackup({7}, {8, 9, 10})), 1);
    EXPECT_EQ(backupOf(v), Values({8, 9, 10}));
}

TEST_F(CWavChnlChnlData09FileRecord, WithoutAStoredBackupTheOldArrayStaysBesideTheStoredLength) {
    give(v, {1, 2, 3});
    v.bkDataIn();
    double* const array = v.m_bkData;
    EXPECT_EQ(load(v, head().i64(0).i32(0).i64(2).i32(0)), 1);
    EXPECT_EQ(v.m_bkData, array);
    EXPECT_EQ(v.m_bkSize, 2);
    EXPECT_EQ(backupOf(v), Values({1, 2}));
}

TEST_F(CWavChnlChnlData09FileRecord,
       AStoredLengthBeyondTheOldBackupDropsItSoThatNobodyReadsPastIt) {
    give(v, {1, 2, 3});
    v.bkDataIn();
    EXPECT_EQ(load(v, head().i64(4).i32(1).f64s({4, 5, 6, 7}).i64(4).i32(0)), 1);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 4);
    EXPECT_EQ(v.bkDataIn(), 1);
    EXPECT_EQ(backupOf(v), Values({4, 5, 6, 7}));
}

TEST_F(CWavChnlChnlData09FileRecord, TheEndBetweenTheTwoBackupItemsLeavesTheBackupAsItWas) {
    give(v, {1, 2, 3});
    v.bkDataIn();
    EXPECT_EQ(loadCause(v, head().i64(0).i32(0).i64(1000)), CArchiveException::endOfFile);
    EXPECT_EQ(v.m_bkSize, 3);
    EXPECT_EQ(backupOf(v), Values({1, 2, 3}));
}

TEST_F(CWavChnlChnlData09FileRecord, ANegativeBackupLengthIsTakenAndCanBeStoredAgain) {
    give(v, {1});
    v.bkDataIn();
    EXPECT_EQ(load(v, head().i64(0).i32(0).i64(-9).i32(0)), 1);
    EXPECT_EQ(v.m_bkSize, -9);
    EXPECT_EQ(stored(v), head().i64(0).i32(0).i64(-9).i32(1).str());
}

// Eight times such a length is a positive number of bytes again.
TEST_F(CWavChnlChnlData09FileRecord, ABackupLengthAtTheEndOfItsRangeStoresNoBlock) {
    constexpr long long length = -0x7FFFFFFFFFFFFFFFLL - 1 + 100000;
    give(v, {1});
    v.bkDataIn();
    EXPECT_EQ(load(v, head().i64(0).i32(0).i64(length).i32(0)), 1);
    EXPECT_EQ(stored(v), head().i64(0).i32(0).i64(length).i32(1).str());
}

TEST_F(CWavChnlChnlData09FileRecord, AMagicWithALengthInTheNextFormIsTheSameMagic) {
    Bytes bytes = Bytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(10).units("MMATRIX1DX").i32(newest);
    bytes.i64(0).i64(1).i64(2).u16(1).i64(1).i32(1).f64(4.5).i64(0).i32(0);
    EXPECT_EQ(load(v, bytes), 1);
    EXPECT_EQ(valuesOf(v), Values({4.5}));
}

TEST_F(CWavChnlChnlData09FileRecord, AMagicThatAgreesInTheLowBytesOnlyIsRefused) {
    Bytes bytes = Bytes().u8(0xFF).u16(0xFFFE).u8(10).u16('M' + 0x100).units("MATRIX1DX");
    EXPECT_EQ(load(v, bytes.i32(newest).i64(0)), 0);
    EXPECT_EQ(app.messages(), Texts({"Unknown MMatrix1D file!"}));
}

TEST_F(CWavChnlChnlData09FileRecord, ALongForeignTextIsReadToItsEndAndRefused) {
    for (const std::size_t length : {254u, 255u, 5000u, 70000u}) {
        app.clearMessages();
        ArchiveFile file(head(newest, std::string(length, 'M').c_str()));
        DWORD next = 0;
        EXPECT_EQ(file.load([&](CArchive& ar) {
            const int result = v.serialize(ar);
            ar >> next;
            return result;
        }),
                  0)
            << length;
        EXPECT_EQ(app.messages(), Texts({"Unknown MMatrix1D file!"}));
        EXPECT_EQ(next, static_cast<DWORD>(newest)) << length;
    }
}

TEST_F(CWavChnlChnlData09FileRecord, AMagicLongerThanTheFileEndsItWithoutTakingMemory) {
    for (const unsigned long long length :
         {300ULL, 70000ULL, 0xFFFFFFFEULL, 1ULL << 62, 0xFFFFFFFFFFFFFFFFULL}) {
        give(v, {1, 2});
        const Bytes wide = Bytes().u8(0xFF).u16(0xFFFE).length(length).units("MMATRIX1DX");
        EXPECT_EQ(loadCause(v, wide), CArchiveException::endOfFile) << length;
        const Bytes narrow = Bytes().length(length).u8('M').u8('M');
        EXPECT_EQ(loadCause(v, narrow), CArchiveException::endOfFile) << length;
        EXPECT_EQ(valuesOf(v), Values({1, 2}));
    }
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CWavChnlChnlData09FileRecord, AnEmptyFileEndsItWithoutAMessage) {
    EXPECT_EQ(loadCause(v, Bytes()), CArchiveException::endOfFile);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CWavChnlChnlData09FileRecord, AShortValueBlockLeavesTheBackupThatWasThere) {
    give(v, {1, 2});
    v.bkDataIn();
    EXPECT_EQ(load(v, head().i64(3).i32(1).f64(4)), 0);
    EXPECT_EQ(backupOf(v), Values({1, 2}));
}

TEST_F(CWavChnlChnlData09FileRecord, ASingleByteOfTheBackupIsEnough) {
    EXPECT_EQ(load(v, head().i64(0).i32(0).i64(2).i32(1).u8(0)), 1);
    EXPECT_TRUE(app.messages().empty());
    EXPECT_EQ(backupOf(v), Values({0, 0}));
}

// ---- failing reads and long blocks

TEST_F(CWavChnlChnlData09FileRecord, AReadThatFailsWithinTheValuesLeavesAsManyAsAreCounted) {
    const Bytes bytes = record({1, 2, 3});
    MemoryFile file(bytes);
    file.failAt(head().size() + 8 + 4 + 12);
    try {
        loadFrom(file, v);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::hardIO);
        e->Delete();
    }
    ASSERT_EQ(v.m_size, 3);
    ASSERT_NE(v.m_data, nullptr);
    EXPECT_EQ(v.m_data[2], 0.0);
    EXPECT_EQ(v.bkDataIn(), 1);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CWavChnlChnlData09FileRecord, AReadThatFailsWithinTheBackupLeavesAsManyAsAreCounted) {
    MemoryFile file(recordWithBackup({1, 2}, {3, 4, 5}));
    file.failAt(head().size() + 8 + 4 + 16 + 8 + 4 + 12);
    give(v, {9});
    v.bkDataIn();
    try {
        loadFrom(file, v);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        e->Delete();
    }
    EXPECT_EQ(valuesOf(v), Values({1, 2}));
    ASSERT_EQ(v.m_bkSize, 3);
    ASSERT_NE(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkData[2], 0.0);
}

TEST_F(CWavChnlChnlData09FileRecord, LongBlocksPassInStepsOfAtMostOneMebibyte) {
    constexpr std::size_t count = 300000;  // more than two steps, and not a whole number of them
    Values values(count);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = static_cast<double>(i) + 0.25;
    give(v, values);
    v.bkDataIn();
    MemoryFile written;
    {
        CArchive ar(&written, CArchive::store);
        EXPECT_EQ(v.serialize(ar), 1);
    }
    const Bytes expected = recordWithBackup(values, values);
    ASSERT_TRUE(written.content() == expected.str());
    EXPECT_LE(written.largestStep(), 1u << 20);
    MemoryFile file(expected);
    CWavChnlChnlDatazq back;
    EXPECT_EQ(loadFrom(file, back), 1);
    EXPECT_LE(file.largestStep(), 1u << 20);
    EXPECT_TRUE(valuesOf(back) == values);
    EXPECT_TRUE(backupOf(back) == values);
}

TEST_F(CWavChnlChnlData09FileRecord, ALongBlockThatIsCutKeepsWhatCameAndClearsTheRest) {
    constexpr std::size_t count = 300000;
    constexpr std::size_t present = 200000;
    MemoryFile file(head().i64(count).i32(1).f64s(Values(present, 2.5)));
    EXPECT_EQ(loadFrom(file, v), 0);
    EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"}));
    Values expected(count, 0.0);
    std::fill_n(expected.begin(), present, 2.5);
    EXPECT_TRUE(valuesOf(v) == expected);
}

// ---- claims and failing memory

TEST_F(CWavChnlChnlData09FileRecord, AClaimUpToTheLimitIsAShortBlock) {
    EXPECT_EQ(load(v, head().i64(mostUnbacked).i32(1).f64(4)), 0);
    EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"}));
    ASSERT_EQ(v.m_size, mostUnbacked);
    ASSERT_NE(v.m_data, nullptr);
    EXPECT_EQ(v.m_data[0], 4.0);
    EXPECT_EQ(v.m_data[mostUnbacked - 1], 0.0);
}

TEST_F(CWavChnlChnlData09FileRecord, AClaimAboveTheLimitIsNotBelievedWithoutTheBytes) {
    const FailingMemory counting(0);
    EXPECT_EQ(load(v, head().i64(mostUnbacked + 1).i32(1).f64(4)), 0);
    EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
    EXPECT_EQ(v.m_size, 0);
    EXPECT_EQ(FailingMemory::count(), 0);
}

TEST_F(CWavChnlChnlData09FileRecord, ABackupClaimAboveTheLimitIsNotBelievedWithoutTheBytes) {
    EXPECT_EQ(load(v, head().i64(1).i32(1).f64(4).i64(mostUnbacked + 1).i32(1).f64(5)), 0);
    EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, mostUnbacked + 1);
    EXPECT_EQ(valuesOf(v), Values({4}));
}

TEST_F(CWavChnlChnlData09FileRecord, AClaimThatTheFileBacksIsReadWholeAndInPlace) {
    MemoryFile file(head().i64(mostUnbacked + 1).i32(1).f64(4.5).f64(5.5));
    file.appendZeros(static_cast<ULONGLONG>(mostUnbacked - 1) * 8 + 8 + 4);
    EXPECT_EQ(loadFrom(file, v), 1);
    EXPECT_TRUE(app.messages().empty());
    ASSERT_EQ(v.m_size, mostUnbacked + 1);
    ASSERT_NE(v.m_data, nullptr);
    EXPECT_EQ(v.m_data[0], 4.5);
    EXPECT_EQ(v.m_data[1], 5.5);
    EXPECT_EQ(v.m_data[mostUnbacked], 0.0);
}

TEST_F(CWavChnlChnlData09FileRecord, AFileWithoutALengthIsReadAsFarAsItGoes) {
    for (const bool refusing : {false, true}) {
        app.clearMessages();
        MemoryFile file(head().i64(mostUnbacked + 1).i32(1).f64(4.5));
        refusing ? file.refuseLength() : file.forgetLength();
        CArchive ar(&file, CArchive::load);
        EXPECT_EQ(v.serialize(ar), 0);
        ar.Abort();
        EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"}));
        ASSERT_EQ(v.m_size, mostUnbacked + 1);
        ASSERT_NE(v.m_data, nullptr);
        EXPECT_EQ(v.m_data[0], 4.5);
    }
}

TEST_F(CWavChnlChnlData09FileRecord, EveryAllocationThatFailsEndsInAStatedState) {
    const Bytes bytes = recordWithBackup({1, 2}, {3, 4, 5});
    for (int n = 1; n <= 3; ++n) {
        app.clearMessages();
        CWavChnlChnlDatazq loaded;
        give(loaded, {9});
        loaded.bkDataIn();
        const FailingMemory failing(n, true);
        const int result = load(loaded, bytes);
        EXPECT_EQ(result, n <= 2 ? 0 : 1) << n;
        EXPECT_EQ(app.messages(), n <= 2 ? Texts({"Not enough memory!"}) : Texts()) << n;
        EXPECT_EQ(valuesOf(loaded), n == 1 ? Values() : Values({1, 2})) << n;
        const Values backups[] = {{9}, {}, {3, 4, 5}};
        EXPECT_EQ(loaded.m_bkData == nullptr, n == 2) << n;
        EXPECT_EQ(n == 2 ? Values() : backupOf(loaded), backups[n - 1]) << n;
    }
}

TEST_F(CWavChnlChnlData09FileRecord, LengthsThatNoMemoryHoldsAreNotEnoughMemory) {
    for (const long long length :
         {(1LL << 61) + 1, 1LL << 60, std::numeric_limits<long long>::max(), 1000000000000LL}) {
        app.clearMessages();
        EXPECT_EQ(load(v, head().i64(length).i32(1).f64(4)), 0) << length;
        EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
        EXPECT_EQ(v.m_size, 0);
        EXPECT_EQ(v.m_data, nullptr);
    }
}

TEST_F(CWavChnlChnlData09FileRecord, BackupLengthsThatNoMemoryHoldsAreNotEnoughMemory) {
    give(v, {1});
    v.bkDataIn();
    EXPECT_EQ(load(v, head().i64(1).i32(1).f64(4).i64(1LL << 60).i32(1).f64(5)), 0);
    EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 1LL << 60);
    EXPECT_EQ(valuesOf(v), Values({4}));
}

TEST_F(CWavChnlChnlData09FileRecord, RefusedMemoryForTheValues) {
    const FailingMemory failing(1);
    EXPECT_EQ(load(v, record({1, 2})), 0);
    EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
    EXPECT_EQ(v.m_size, 0);
}

TEST_F(CWavChnlChnlData09FileRecord, RefusedMemoryForTheBackup) {
    const FailingMemory failing(2);
    EXPECT_EQ(load(v, recordWithBackup({1, 2}, {3, 4, 5})), 0);
    EXPECT_EQ(app.messages(), Texts({"Not enough memory!"}));
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_bkSize, 3);
    EXPECT_EQ(valuesOf(v), Values({1, 2}));
}

// ---- truncation

TEST_F(CWavChnlChnlData09FileRecord, ARecordCutAnywhereEndsAsStatedAndLeavesAUsableVector) {
    const Bytes whole = recordWithBackup({1, 2}, {3, 4, 5});
    const std::size_t values = head().size() + 8 + 4;  // the value block begins here
    const std::size_t backup = values + 2 * 8 + 8 + 4;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        app.clearMessages();
        CWavChnlChnlDatazq cut;
        const int cause = loadCause(cut, whole.first(size));
        if (size >= values && size < values + 16) {
            EXPECT_EQ(cause, -1) << size;
            EXPECT_EQ(app.messages(), Texts({"Read Cxc data error!?"})) << size;
        } else if (size == backup) {
            EXPECT_EQ(app.messages(), Texts({"Read back up data error!?"})) << size;
        } else if (size > backup) {
            EXPECT_EQ(cause, -1) << size;
            EXPECT_TRUE(app.messages().empty()) << size;
        } else {
            EXPECT_EQ(cause, CArchiveException::endOfFile) << size;
            EXPECT_TRUE(app.messages().empty()) << size;
        }
        cut.bkDataIn();
        cut.bkDataInOut();
        cut.getSelectDataMean(0, 99, 1);
        stored(cut);
    }
}

TEST_F(CWavChnlChnlData09FileRecord, TwoRecordsFollowEachOtherWithoutAGap) {
    ArchiveFile file(record({1, 2}).append(record({3})));
    CWavChnlChnlDatazq second;
    file.load([&](CArchive& ar) {
        EXPECT_EQ(v.serialize(ar), 1);
        EXPECT_EQ(second.serialize(ar), 1);
        return 0;
    });
    EXPECT_EQ(valuesOf(v), Values({1, 2}));
    EXPECT_EQ(valuesOf(second), Values({3}));
}
