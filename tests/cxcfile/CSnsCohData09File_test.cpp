// The dataset record in its newest version, against bytes written by hand.
#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/CWavChnlChnlDatazq.h"
#include "tests/cxcfile/dataset_passes.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/TestApp.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using golden::Bytes;
using test::load;
using test::MemoryWatch;
using test::Outcome;
using test::outcomeOfLoading;
using test::stored;

using Texts = std::vector<std::string>;

const char* const corrupted = "The opened file is not CCoherenceData09File or corrupted!";
const char* const wrongVersion = "Wrong CxC data format!";

class CSnsCohData09FileRecord : public ::testing::Test {
protected:
    test::TestApp app;
};

double nan(std::uint64_t payload) {
    const std::uint64_t bits = 0x7FF8000000000000 | payload;
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

// The first line of every fatal difference names the offset, not two screens of bytes.
void expectBytes(const std::string& actual, const std::string& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        ASSERT_EQ(actual[i], expected[i]) << "offset " << i;
}

// The bytes of the listing beside this file.
std::string listedBytes() {
    static const char* const listing =
#include "golden/dataset-20160311.txt"
        ;
    std::string bytes;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        EXPECT_EQ(std::stoul(line.substr(0, 4)), bytes.size()) << line;
        std::istringstream pairs(line.substr(6, 23));
        for (std::string pair; pairs >> pair;)
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    }
    return bytes;
}

// A record with the given grid block and the golden header block.
Bytes recordWithGrid(const Bytes& gridBlock) {
    return golden::opening(golden::newestVersion).append(gridBlock).append(golden::header());
}

// The claim of a grid without any vector behind it.
Bytes claim(long long rows, long long cols) {
    return recordWithGrid(golden::sizes(rows, cols).i32(1));
}

TEST_F(CSnsCohData09FileRecord, WritesTheBytesOfTheGoldenFile) {
    CSnsCohDatazq data;
    golden::fill(data);
    expectBytes(stored(data), golden::newestRecord().str());
}

TEST_F(CSnsCohData09FileRecord, ListingAndBuilderDescribeTheSameFile) {
    expectBytes(golden::newestRecord().str(), listedBytes());
}

TEST_F(CSnsCohData09FileRecord, ReadsEveryItemOfTheGoldenFile) {
    CSnsCohDatazq data, model;
    golden::fill(model);
    golden::fillOther(data);
    EXPECT_EQ(load(data, golden::newestRecord()), 1);
    golden::expectItems(data, model, 3, golden::lastItem);
    golden::expectGrid(data);
    golden::expectColorsOfOther(data);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileRecord, EverySizeAndIndexHasItsOwnPlace) {
    const Bytes bytes = recordWithGrid(
        Bytes().i32(-11).i64(1000000000001).i64(-2).i64(-3).i64(4).i64(5).i64(-6).i64(7).i32(0));
    CSnsCohDatazq data;
    golden::fillOther(data);
    EXPECT_EQ(load(data, bytes), 1);
    EXPECT_EQ(data.m_headerInt11, -11);
    EXPECT_EQ(data.m_cohTimTotal, 1000000000001);
    EXPECT_EQ(data.m_selectBegin, -2);
    EXPECT_EQ(data.m_selectEnd, -3);
    EXPECT_EQ(data.m_rowCrt, 4);
    EXPECT_EQ(data.m_columnCrt, 5);
    EXPECT_EQ(data.m_snsRowTotal, -6);
    EXPECT_EQ(data.m_snsColTotal, 7);
    EXPECT_EQ(data.m_mCC, nullptr);
    expectBytes(stored(data), bytes.str());
}

TEST_F(CSnsCohData09FileRecord, EveryBitOfADoubleSurvives) {
    const std::vector<double> special = {nan(1), -nan(12345), -0.0,
                                         std::numeric_limits<double>::infinity(),
                                         std::numeric_limits<double>::denorm_min()};
    Bytes bytes = golden::opening(golden::newestVersion)
                      .append(golden::sizes(1, 1, 5))
                      .i32(1)
                      .append(golden::vectorRecord(special))
                      .append(golden::header13to25())
                      .f64(nan(2))
                      .f64(-nan(3))
                      .f64(-0.0)
                      .f64(-std::numeric_limits<double>::infinity())
                      .i32(1)
                      .f64(nan(4))
                      .append(golden::header32())
                      .append(golden::header33to38());
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, bytes), 1);
    expectBytes(stored(data), bytes.str());
}

TEST_F(CSnsCohData09FileRecord, NewDatasetIsStoredWithoutAGrid) {
    CSnsCohDatazq data;
    const std::string bytes = stored(data);
    const Bytes expected = golden::opening(golden::newestVersion)
                               .i32(0)
                               .i64(0)
                               .i64(0)
                               .i64(1)
                               .i64(0)
                               .i64(0)
                               .i64(0)
                               .i64(0)
                               .i32(0);
    expectBytes(bytes.substr(0, expected.size()), expected.str());

    CSnsCohDatazq read;
    golden::fillOther(read);
    EXPECT_EQ(test::ArchiveFile(bytes).load([&](CArchive& ar) { return read.serialize(ar); }), 1);
    golden::expectItems(read, data, 3, golden::lastItem);
    EXPECT_EQ(read.m_mCC, nullptr);
}

TEST_F(CSnsCohData09FileRecord, GridIsLeftOutWithoutRowsOrColumns) {
    for (const bool rows : {true, false}) {
        CSnsCohDatazq data;
        golden::fill(data);
        (rows ? data.m_snsRowTotal : data.m_snsColTotal) = 0;
        const Bytes expected = recordWithGrid(golden::sizes(rows ? 0 : 2, rows ? 3 : 0).i32(0));
        expectBytes(stored(data), expected.str());
    }
}

TEST_F(CSnsCohData09FileRecord, GridIsLeftOutWhenCountersExceedIt) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_snsRowTotal = 3;
    expectBytes(stored(data), recordWithGrid(golden::sizes(3, 3).i32(0)).str());
    data.m_snsRowTotal = 2;
    data.m_snsColTotal = 1000000000000;
    expectBytes(stored(data), recordWithGrid(golden::sizes(2, 1000000000000).i32(0)).str());
    data.m_snsColTotal = -1;
    expectBytes(stored(data), recordWithGrid(golden::sizes(2, -1).i32(0)).str());
}

TEST_F(CSnsCohData09FileRecord, GridIsLeftOutWhenARowIsMissing) {
    CSnsCohDatazq data;
    golden::fill(data);
    delete[] data.m_mCC[1];
    data.m_mCC[1] = nullptr;
    expectBytes(stored(data), recordWithGrid(golden::sizes(2, 3).i32(0)).str());
}

TEST_F(CSnsCohData09FileRecord, CountersBelowTheGridStoreItsCorner) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_snsColTotal = 2;
    Bytes grid = golden::sizes(2, 2).i32(1);
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 2; ++c)
            grid.append(golden::pairRecord(r, c));
    }
    expectBytes(stored(data), recordWithGrid(grid).str());
}

TEST_F(CSnsCohData09FileRecord, VectorsNeedNotHaveOneValuePerSlice) {
    Bytes grid = golden::sizes(1, 3, 2).i32(1);
    grid.append(golden::vectorRecord({}));
    grid.append(golden::vectorHead(5).i32(0).i64(0).i32(0));  // a length without values
    grid.append(golden::vectorRecord({1, 2, 3}));
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, recordWithGrid(grid)), 1);
    EXPECT_EQ(data.m_mCC[0][0].m_size, 0);
    EXPECT_EQ(data.m_mCC[0][1].m_size, 5);
    EXPECT_EQ(data.m_mCC[0][1].m_data, nullptr);
    EXPECT_EQ(data.m_mCC[0][2].m_size, 3);
    expectBytes(stored(data), recordWithGrid(grid).str());
}

TEST_F(CSnsCohData09FileRecord, RecordsFollowOneAnotherInOneArchive) {
    CSnsCohDatazq first, second;
    golden::fill(first);
    golden::fillOther(second);
    test::ArchiveFile file;
    file.store([&](CArchive& ar) { return first.serialize(ar) + second.serialize(ar); });
    EXPECT_EQ(file.bytes(), golden::newestRecord().str() + stored(second));

    CSnsCohDatazq readFirst, readSecond;
    EXPECT_EQ(
        file.load([&](CArchive& ar) { return readFirst.serialize(ar) + readSecond.serialize(ar); }),
        2);
    golden::expectItems(readFirst, first, 3, golden::lastItem);
    golden::expectGrid(readFirst);
    golden::expectItems(readSecond, second, 3, golden::lastItem);
    EXPECT_EQ(readSecond.getValue(2, 4, 6), -1462);
}

TEST_F(CSnsCohData09FileRecord, BytesBehindTheRecordAreNotLookedAt) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, golden::newestRecord().u8(0xFF).u8(0xFF)), 1);
    golden::expectGrid(data);
}

TEST_F(CSnsCohData09FileRecord, StoringPutsTheBytesIntoTheFile) {
    CSnsCohDatazq data;
    golden::fill(data);
    test::ArchiveFile file;
    file.store([&](CArchive& ar) {
        const int result = data.serialize(ar);
        // Nothing may be left in the archive's buffer.
        EXPECT_EQ(ar.GetFile()->GetLength(), golden::newestRecord().size());
        return result;
    });
}

TEST_F(CSnsCohData09FileRecord, MagicInOtherLettersIsRefused) {
    for (const char* magic :
         {"MEGCOHPTs", "megcohpts", "MEGCOHPT", "MEGCOHPTSS", "", "MMATRIX1DX"}) {
        app.clearMessages();
        CSnsCohDatazq data, model;
        golden::fillOther(data);
        golden::fillOther(model);
        const Bytes bytes = Bytes()
                                .string(magic)
                                .u32(20160311)
                                .append(golden::gridBlock())
                                .append(golden::header());
        EXPECT_EQ(load(data, bytes), 0) << magic;
        EXPECT_EQ(app.messages(), Texts{corrupted});
        golden::expectItems(data, model, 3, golden::lastItem);
        EXPECT_EQ(data.getValue(0, 4, 6), -1460);
    }
}

TEST_F(CSnsCohData09FileRecord, MagicWithATailBehindAZeroIsRefused) {
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, Bytes().string(std::string("MEGCOHPTS\0x", 11)).u32(20160311)), 0);
    EXPECT_EQ(app.messages(), Texts{corrupted});
}

TEST_F(CSnsCohData09FileRecord, UnknownVersionIsRefused) {
    for (const unsigned version :
         {0u, 1u, 20160310u, 20160312u, 20120222u, 20160311u + 0x80000000u, 0xFFFFFFFFu}) {
        app.clearMessages();
        CSnsCohDatazq data, model;
        golden::fillOther(data);
        golden::fillOther(model);
        EXPECT_EQ(load(data, golden::opening(version).append(golden::gridBlock())), 0) << version;
        EXPECT_EQ(app.messages(), Texts{wrongVersion});
        golden::expectItems(data, model, 3, golden::lastItem);
        EXPECT_EQ(data.getValue(0, 4, 6), -1460);
    }
}

TEST_F(CSnsCohData09FileRecord, NarrowStringsAreRead) {
    const std::string wide = Bytes().string("Rest").str();
    std::string bytes = golden::newestRecord().str();
    const std::size_t name = bytes.rfind(wide);
    ASSERT_NE(name, std::string::npos);
    bytes.replace(name, wide.size(), Bytes().narrowString("Rest").str());
    bytes.replace(0, 22, Bytes().narrowString("MEGCOHPTS").str());

    CSnsCohDatazq data, model;
    golden::fill(model);
    EXPECT_EQ(test::ArchiveFile(bytes).load([&](CArchive& ar) { return data.serialize(ar); }), 1);
    golden::expectItems(data, model, 3, golden::lastItem);
}

TEST_F(CSnsCohData09FileRecord, NamesOfEveryPrefixLengthAreKept) {
    for (const std::size_t length : {0u, 1u, 254u, 255u, 0xFFFDu, 0xFFFEu, 0xFFFFu, 200000u}) {
        CSnsCohDatazq data;
        const std::string text(length, 'n');
        data.m_cxcName = CString(text.c_str());
        const std::string bytes = stored(data);
        EXPECT_NE(bytes.find(Bytes().string(text).str()), std::string::npos) << length;
        CSnsCohDatazq read;
        EXPECT_EQ(test::ArchiveFile(bytes).load([&](CArchive& ar) { return read.serialize(ar); }),
                  1);
        EXPECT_EQ(static_cast<std::size_t>(read.m_cxcName.GetLength()), length);
        EXPECT_TRUE(read.m_cxcName == data.m_cxcName);
    }
}

TEST_F(CSnsCohData09FileRecord, AnyNonZeroBoolByteIsTrue) {
    std::string bytes = golden::newestRecord().str();
    const std::size_t flag = bytes.rfind(Bytes().string("Rest").str()) + 4 + 8;
    ASSERT_EQ(bytes[flag], 1);
    for (const int byte : {0, 1, 2, 128, 255}) {
        bytes[flag] = static_cast<char>(byte);
        CSnsCohDatazq data;
        EXPECT_EQ(test::ArchiveFile(bytes).load([&](CArchive& ar) { return data.serialize(ar); }),
                  1);
        EXPECT_EQ(data.m_tscsInfo, byte != 0);
        EXPECT_EQ(stored(data)[flag], byte != 0 ? 1 : 0);
    }
}

TEST_F(CSnsCohData09FileRecord, AnyNonZeroMarkerMeansThatAGridFollows) {
    for (const int marker : {2, -1, 256, 0x7FFFFFFF}) {
        CSnsCohDatazq data;
        EXPECT_EQ(
            load(data, recordWithGrid(golden::sizes().i32(marker).append(golden::gridRecords()))),
            1);
        golden::expectGrid(data);
    }
}

// --- files that end early --------------------------------------------------------------------

TEST_F(CSnsCohData09FileRecord, EmptyFileRaisesTheEndOfFileException) {
    CSnsCohDatazq data, model;
    golden::fillOther(data);
    golden::fillOther(model);
    EXPECT_EQ(outcomeOfLoading(data, Bytes()), Outcome::endOfFile);
    golden::expectItems(data, model, 3, golden::lastItem);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileRecord, StringLongerThanTheFileRaisesTheEndOfFileException) {
    const Bytes starts[] = {
        Bytes().u8(0xFE).units("foreign"),                                // 254 characters
        Bytes().u8(0xFF).u16(0xFFFE).u8(9).units("MEGCOHPT"),             // one is missing
        Bytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(1u << 31),  // 2^31 characters
        Bytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFE),
        Bytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(1ull << 63 | 1),
    };
    for (const Bytes& bytes : starts) {
        CSnsCohDatazq data;
        EXPECT_EQ(outcomeOfLoading(data, bytes), Outcome::endOfFile);
    }
    EXPECT_TRUE(app.messages().empty());
}

// Where the golden file may end with a result instead of an exception: inside the values of a
// pair, and before the first byte of a backup.
bool endsInABlock(std::size_t n) {
    std::size_t begin =
        golden::opening(golden::newestVersion).append(golden::sizes()).i32(1).size();
    for (int r = 0; r < golden::rows; ++r) {
        for (int c = 0; c < golden::cols; ++c) {
            const std::size_t values = begin + golden::vectorHead(2).i32(1).size();
            if (n >= values && n < values + 16) return true;
            if (r == 0 && c == 1 && n == values + 16 + 8 + 4) return true;
            begin += golden::pairRecord(r, c).size();
        }
    }
    return false;
}

TEST_F(CSnsCohData09FileRecord, FileThatEndsAnywhereIsHarmless) {
    const Bytes whole = golden::newestRecord();
    const std::size_t gridBegin =
        golden::opening(golden::newestVersion).append(golden::sizes()).i32(1).size();
    const std::size_t gridEnd =
        golden::opening(golden::newestVersion).append(golden::gridBlock()).size();
    for (std::size_t n = 0; n < whole.size(); ++n) {
        app.clearMessages();
        CSnsCohDatazq data;
        golden::fillOther(data);
        const Outcome outcome = outcomeOfLoading(data, whole.first(n));
        if (endsInABlock(n)) {
            ASSERT_EQ(outcome, Outcome::refused) << n;
            ASSERT_EQ(app.messages().size(), 1u) << n;
            golden::expectEmptied(data);
        } else {
            ASSERT_EQ(outcome, Outcome::endOfFile) << n;
            ASSERT_TRUE(app.messages().empty()) << n;
        }
        if (outcome == Outcome::endOfFile && n >= gridBegin && n < gridEnd) {
            // No half-built grid; the counters are as read.
            ASSERT_EQ(data.m_mCC, nullptr) << n;
            ASSERT_EQ(data.m_snsRowTotal, 2) << n;
            ASSERT_EQ(data.m_snsColTotal, 3) << n;
        }
        if (n >= gridEnd) golden::expectGrid(data);
        // Whatever was read, the dataset can be used, stored and emptied.
        data.getStatistics();
        stored(data);
        EXPECT_EQ(data.cleanSnsCohData(), 1);
    }
}

TEST_F(CSnsCohData09FileRecord, DatasetIsEmptiedBeforeTheFirstItemIsRead) {
    CSnsCohDatazq data;
    golden::fillOther(data);
    EXPECT_EQ(outcomeOfLoading(data, golden::opening(golden::newestVersion)), Outcome::endOfFile);
    golden::expectEmptied(data);
    EXPECT_EQ(data.m_headerInt0, 501);
}

TEST_F(CSnsCohData09FileRecord, EndInsideTheHeaderKeepsWhatWasRead) {
    CSnsCohDatazq data, other, model;
    golden::fillOther(data);
    golden::fillOther(other);
    golden::fill(model);
    const Bytes begin = golden::opening(golden::newestVersion)
                            .append(golden::gridBlock())
                            .append(golden::header13to25())
                            .append(golden::header26to31())
                            .u8(0xFF)
                            .u16(0xFFFE)
                            .u8(9)
                            .units("Welch");
    EXPECT_EQ(outcomeOfLoading(data, begin), Outcome::endOfFile);
    golden::expectGrid(data);
    golden::expectItems(data, model, 3, 31);
    golden::expectItems(data, other, 32, golden::lastItem);
}

// --- grids that cannot be built --------------------------------------------------------------

// The grid is gone, the counters are as read, the header block is the one before.
void expectNoTable(const CSnsCohDatazq& data, long long rows, long long cols) {
    CSnsCohDatazq other;
    golden::fillOther(other);
    EXPECT_EQ(data.m_mCC, nullptr);
    EXPECT_EQ(data.m_snsRowTotal, rows);
    EXPECT_EQ(data.m_snsColTotal, cols);
    EXPECT_EQ(data.m_cohTimTotal, 2);
    EXPECT_EQ(data.m_selectEnd, 1);
    EXPECT_EQ(data.m_rowCrt, 1);
    EXPECT_EQ(data.m_columnCrt, 2);
    EXPECT_EQ(data.m_headerInt11, 111);
    golden::expectItems(data, other, 13, golden::lastItem);
}

void expectNoRow(const CSnsCohDatazq& data) {
    CSnsCohDatazq other;
    golden::fillOther(other);
    golden::expectEmptied(data);
    EXPECT_EQ(data.m_headerInt11, 111);
    golden::expectItems(data, other, 13, golden::lastItem);
}

TEST_F(CSnsCohData09FileRecord, BillionColumnsInATinyFileTakeNoMemory) {
    CSnsCohDatazq data;
    golden::fillOther(data);
    MemoryWatch watch;
    EXPECT_EQ(load(data, claim(1, 1000000000)), 0);
    EXPECT_LT(watch.bytes(), 1024u);
    expectNoRow(data);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileRecord, BillionRowsInATinyFileTakeNoMemory) {
    for (const long long cols : {-1LL, 0LL, 1LL, 1000000000LL, 0x7FFFFFFFFFFFFFFFLL}) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        MemoryWatch watch;
        EXPECT_EQ(load(data, claim(1000000000, cols)), 0);
        EXPECT_EQ(watch.bytes(), 0u) << cols;
        expectNoTable(data, 1000000000, cols);
    }
}

TEST_F(CSnsCohData09FileRecord, CountsAtTheEndOfTheirRangeAreRefused) {
    CSnsCohDatazq data;
    golden::fillOther(data);
    EXPECT_EQ(load(data, claim(0x7FFFFFFFFFFFFFFF, 0x7FFFFFFFFFFFFFFF)), 0);
    expectNoTable(data, 0x7FFFFFFFFFFFFFFF, 0x7FFFFFFFFFFFFFFF);

    CSnsCohDatazq columns;
    golden::fillOther(columns);
    EXPECT_EQ(load(columns, claim(1, 0x7FFFFFFFFFFFFFFF)), 0);
    expectNoRow(columns);
}

TEST_F(CSnsCohData09FileRecord, NegativeRowsFailAsTheTable) {
    for (const long long rows : {-1LL, -0x7FFFFFFFFFFFFFFFLL - 1}) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        EXPECT_EQ(load(data, claim(rows, 3)), 0);
        expectNoTable(data, rows, 3);
    }
}

TEST_F(CSnsCohData09FileRecord, NegativeColumnsFailAsARow) {
    for (const long long cols : {-1LL, -0x7FFFFFFFFFFFFFFFLL - 1}) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        EXPECT_EQ(load(data, claim(2, cols)), 0);
        expectNoRow(data);
    }
}

TEST_F(CSnsCohData09FileRecord, MarkerWithoutRowsMeansNoGridAndTheHeaderFollows) {
    CSnsCohDatazq data, model;
    golden::fill(model);
    golden::fillOther(data);
    EXPECT_EQ(load(data, claim(0, 3)), 1);
    EXPECT_EQ(data.m_mCC, nullptr);
    EXPECT_EQ(data.m_snsColTotal, 3);
    golden::expectItems(data, model, 13, golden::lastItem);
}

TEST_F(CSnsCohData09FileRecord, RowsWithoutColumnsAreReadAndReleased) {
    CSnsCohDatazq data, model;
    golden::fill(model);
    golden::fillOther(data);
    EXPECT_EQ(load(data, claim(4, 0)), 1);
    EXPECT_EQ(data.m_snsRowTotal, 4);
    EXPECT_EQ(data.m_snsColTotal, 0);
    golden::expectItems(data, model, 13, golden::lastItem);
    expectBytes(stored(data), recordWithGrid(golden::sizes(4, 0).i32(0)).str());
}

TEST_F(CSnsCohData09FileRecord, FailingMemoryLeavesTheStatedStates) {
    // The table, then per row its vectors and per vector its values; (0, 1) has a backup.
    int allocations = 0;
    {
        CSnsCohDatazq data;
        MemoryWatch watch;
        EXPECT_EQ(load(data, golden::newestRecord()), 1);
        allocations = watch.count();
    }
    ASSERT_EQ(allocations, 1 + 2 + 6 + 1);
    for (int failing = 1; failing <= allocations; ++failing) {
        app.clearMessages();
        CSnsCohDatazq data;
        golden::fillOther(data);
        {
            MemoryWatch watch(failing);
            EXPECT_EQ(load(data, golden::newestRecord()), 0) << failing;
        }
        if (failing == 1)
            expectNoTable(data, 2, 3);
        else
            expectNoRow(data);
        const bool row = failing <= 2 || failing == 7;
        EXPECT_EQ(app.messages(), row ? Texts{} : Texts{"Not enough memory!"}) << failing;
    }
}

TEST_F(CSnsCohData09FileRecord, RefusedVectorEmptiesTheDataset) {
    struct Case {
        Bytes vector;
        const char* message;
    };
    const Case cases[] = {
        {Bytes().string("MMATRIX1Dx").u32(20120222), "Unknown MMatrix1D file!"},
        {Bytes().string("MMATRIX1DX").u32(20120228), "MMatrix1D format error!"},
    };
    for (const Case& refused : cases) {
        app.clearMessages();
        CSnsCohDatazq data;
        golden::fillOther(data);
        Bytes grid = golden::sizes().i32(1);
        grid.append(golden::pairRecord(0, 0)).append(golden::pairRecord(0, 1));
        grid.append(refused.vector).append(golden::pairRecord(1, 0));
        EXPECT_EQ(load(data, recordWithGrid(grid)), 0);
        EXPECT_EQ(app.messages(), Texts{refused.message});
        expectNoRow(data);
    }
}

TEST_F(CSnsCohData09FileRecord, VectorThatClaimsBillionsOfValuesTakesNoMemory) {
    CSnsCohDatazq data;
    golden::fillOther(data);
    MemoryWatch watch;
    Bytes grid = golden::sizes(1, 1).i32(1);
    grid.append(golden::vectorHead(1000000000000)).i32(1).f64(1);
    EXPECT_EQ(load(data, recordWithGrid(grid)), 0);
    EXPECT_LT(watch.bytes(), 1024u);
    EXPECT_EQ(app.messages(), Texts{"Not enough memory!"});
    expectNoRow(data);
}

TEST_F(CSnsCohData09FileRecord, CountersFromAFileNeverLeadOutsideTheGrid) {
    // One real vector of two values, and counters that promise far more.
    Bytes grid = Bytes().i32(0).i64(1000000000000000).i64(77).i64(99).i64(9).i64(8).i64(1).i64(1);
    grid.i32(1).append(golden::vectorRecord({0.5, 0.75}));
    CSnsCohDatazq data;
    EXPECT_EQ(load(data, recordWithGrid(grid)), 1);
    EXPECT_EQ(data.getValue(-1, -1, -1), 0.0);
    EXPECT_EQ(data.getValue(1, 0, 0), 0.75);
    EXPECT_EQ(data.getValueSelect(0, 1, 0, 0), 0.625);
    data.getStatistics();
    EXPECT_EQ(data.cleanSnsCohData(), 1);
}

// --- writing that fails ----------------------------------------------------------------------

// A file whose disk is full after a number of bytes.
class FullFile : public CFile {
public:
    FullFile(const CString& name, UINT room) : CFile(name, modeCreate | modeWrite), m_room(room) {}

    void Write(const void* bytes, UINT count) override {
        if (count > m_room) AfxThrowFileException(CFileException::diskFull);
        m_room -= count;
        CFile::Write(bytes, count);
    }

private:
    UINT m_room;
};

TEST_F(CSnsCohData09FileRecord, FailingWriteReachesTheCaller) {
    for (const UINT room : {0u, 100u, 900u}) {
        CSnsCohDatazq data;
        golden::fill(data);
        const test::ArchiveFile target;
        FullFile file(target.name(), room);
        CArchive ar(&file, CArchive::store);
        bool thrown = false;
        try {
            data.serialize(ar);
        } catch (CFileException* e) {
            thrown = e->m_cause == CFileException::diskFull;
            e->Delete();
        }
        ar.Abort();
        EXPECT_TRUE(thrown) << room;
        golden::expectGrid(data);
    }
}

}  // namespace
