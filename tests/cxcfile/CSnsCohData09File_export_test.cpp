// The text export, byte for byte.
#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/CWavChnlChnlDatazq.h"
#include "cxcfile/file_commands.h"
#include "cxcfile/text_export.h"
#include "tests/cxcfile/dataset_passes.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/TestApp.h"

#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using golden::Bytes;
using test::MemoryWatch;

// One write of the export: the text and its zero character.
Bytes write(std::string_view text) {
    return Bytes().units(text).u16(0);
}

class CSnsCohData09FileExport : public ::testing::Test {
protected:
    CSnsCohData09FileExport() : target(test::newTemporaryPath(".txt")) {}
    ~CSnsCohData09FileExport() override {
        std::error_code ignored;
        std::filesystem::remove(target, ignored);
    }

    // The bytes of the exported file; the result must be 1.
    std::string exported(CSnsCohDatazq& data) {
        app.script().choose(target);
        EXPECT_EQ(data.exportCxc2txtFile(), 1);
        return test::readFile(target);
    }

    // The export is refused without asking and without a file.
    void expectRefused(CSnsCohDatazq& data) {
        EXPECT_EQ(data.exportCxc2txtFile(), 0);
        EXPECT_FALSE(std::filesystem::exists(target));
        EXPECT_TRUE(app.messages().empty());
    }

    test::TestApp app;
    std::filesystem::path target;
};

void setValues(CWavChnlChnlDatazq& pair, const std::vector<double>& values) {
    ASSERT_NE(pair.checkInitData(static_cast<__int64>(values.size()), true), nullptr);
    for (std::size_t t = 0; t < values.size(); ++t)
        pair.m_data[t] = values[t];
}

TEST_F(CSnsCohData09FileExport, WithoutTheDialogTheTextIsTheSame) {
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(2, 3, 2, true), 1);
    setValues(data.m_mCC[1][2], {0.25, -3.0});
    test::MemoryFile file;
    EXPECT_TRUE(cxc::writeText(file, data));
    EXPECT_EQ(file.content(), exported(data));

    data.cleanSnsCohData();
    data.setChnlRowCol(3, 3);
    data.m_cohTimTotal = 1;
    test::MemoryFile untouched;
    EXPECT_FALSE(cxc::writeText(untouched, data));
    EXPECT_TRUE(untouched.content().empty());
}

TEST_F(CSnsCohData09FileExport, EveryByteOfASmallDataset) {
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(2, 3, 1, true), 1);
    data.m_cxcName = _T("A");
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 3; ++c)
            data.m_mCC[r][c].m_data[0] = r + c / 8.0;
    }
    const Bytes expected = write("A (2 x 3\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 0.000000  0.125000  0.250000  \n"
                                             "2 1.000000  1.125000  1.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileExport, SlicesCountFromZeroAndRowsFromOne) {
    CSnsCohDatazq data;
    golden::fill(data);
    const Bytes expected = write("Rest (2 x 3\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 110.250000  120.250000  130.250000  \n"
                                             "2 210.250000  220.250000  230.250000  \n"))
                               .append(write("Time Slice: 1\n"))
                               .append(write("1 111.250000  121.250000  131.250000  \n"
                                             "2 211.250000  221.250000  231.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, NoSlicesGiveTheHeadingAlone) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 0;
    EXPECT_EQ(exported(data), write("Rest (2 x 3\n").str());
    data.m_cohTimTotal = -5;
    EXPECT_EQ(exported(data), write("Rest (2 x 3\n").str());
}

TEST_F(CSnsCohData09FileExport, NoRowsGiveEmptyBlocks) {
    CSnsCohDatazq data;
    data.m_cohTimTotal = 2;
    data.m_snsColTotal = 3;
    const Bytes expected = write("CxcTrial (0 x 3\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write(""))
                               .append(write("Time Slice: 1\n"))
                               .append(write(""));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, NegativeRowsCountAsNone) {
    CSnsCohDatazq data;
    data.m_cohTimTotal = 1;
    data.m_snsRowTotal = -0x7FFFFFFFFFFFFFFF - 1;
    const Bytes expected = write("CxcTrial (-9223372036854775808 x 0\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write(""));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, ShortVectorCutsTheRestOfItsRowOnly) {
    CSnsCohDatazq data;
    golden::fill(data);
    setValues(data.m_mCC[0][1], {120.25});
    const Bytes expected = write("Rest (2 x 3\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 110.250000  120.250000  130.250000  \n"
                                             "2 210.250000  220.250000  230.250000  \n"))
                               .append(write("Time Slice: 1\n"))
                               .append(write("1 111.250000  \n"
                                             "2 211.250000  221.250000  231.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, RowCutAtItsFirstVectorKeepsItsLabel) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 1;
    data.m_mCC[0][0].cleanData();
    const Bytes expected = write("Rest (2 x 3\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 \n2 210.250000  220.250000  230.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, LengthWithoutValuesCountsAsShort) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 1;
    data.m_mCC[1][1].cleanData();
    data.m_mCC[1][1].m_size = 5;
    const Bytes expected =
        write("Rest (2 x 3\n")
            .append(write("Time Slice: 0\n"))
            .append(write("1 110.250000  120.250000  130.250000  \n2 210.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, CountersBeyondTheGridGiveLabelsWithoutValues) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 1;
    data.m_snsRowTotal = 4;
    data.m_snsColTotal = 1000000000000;
    const Bytes expected = write("Rest (4 x 1000000000000\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 110.250000  120.250000  130.250000  \n"
                                             "2 210.250000  220.250000  230.250000  \n"
                                             "3 \n"
                                             "4 \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, CountersBelowTheGridAreKeptTo) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 1;
    data.m_snsRowTotal = 1;
    data.m_snsColTotal = 2;
    const Bytes expected = write("Rest (1 x 2\n")
                               .append(write("Time Slice: 0\n"))
                               .append(write("1 110.250000  120.250000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, UnusualValuesAreSpelledTheSameEverywhere) {
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(1, 6, 1, true), 1);
    data.m_cxcName = _T("x");
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> values = {
        infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), -0.0, 1e22, -1e-300};
    for (int c = 0; c < 6; ++c)
        data.m_mCC[0][c].m_data[0] = values[static_cast<std::size_t>(c)];
    const Bytes expected =
        write("x (1 x 6\n")
            .append(write("Time Slice: 0\n"))
            .append(write("1 inf  -inf  nan  -0.000000  10000000000000000000000.000000  "
                          "-0.000000  \n"));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, LongestNumbersFitIntoTheBlock) {
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(3, 50, 1, true), 1);
    data.m_cxcName = _T("x");
    const double most = -std::numeric_limits<double>::max();
    std::string block;
    char text[400];
    std::snprintf(text, sizeof(text), "%f  ", most);
    for (int r = 0; r < 3; ++r) {
        block += std::to_string(r + 1) + " ";
        for (int c = 0; c < 50; ++c) {
            data.m_mCC[r][c].m_data[0] = most;
            block += text;
        }
        block += "\n";
    }
    const Bytes expected =
        write("x (3 x 50\n").append(write("Time Slice: 0\n")).append(write(block));
    EXPECT_EQ(exported(data), expected.str());
}

TEST_F(CSnsCohData09FileExport, BlockLargerThanAPieceOfWritingIsWhole) {
    // 600 x 60 of the longest numbers are 23 MB of text, more than is held in memory at once.
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(600, 60, 1, true), 1);
    data.m_cxcName = _T("x");
    const double most = -std::numeric_limits<double>::max();
    std::string block;
    char text[400];
    std::snprintf(text, sizeof(text), "%f  ", most);
    for (int r = 0; r < 600; ++r) {
        block += std::to_string(r + 1) + " ";
        for (int c = 0; c < 60; ++c) {
            data.m_mCC[r][c].m_data[0] = most;
            block += text;
        }
        block += "\n";
    }
    const Bytes expected =
        write("x (600 x 60\n").append(write("Time Slice: 0\n")).append(write(block));
    MemoryWatch watch;
    EXPECT_TRUE(exported(data) == expected.str());
    // A piece is 2^23 characters; the array that holds it grows by half.
    EXPECT_LE(watch.largest(), std::size_t{3} << 23);
}

TEST_F(CSnsCohData09FileExport, MemoryIsBoundedByOneBlock) {
    CSnsCohDatazq data;
    ASSERT_EQ(data.checkInitSnsCohData(20, 30, 200, true), 1);
    std::size_t bytes = 0;
    {
        MemoryWatch watch;
        exported(data);
        bytes = watch.bytes();
    }
    const std::size_t block = 20 * (30 * 10 + 4) * 2;
    EXPECT_GT(bytes, block / 2);
    EXPECT_LT(bytes, block + 4096);
}

// --- refused datasets ------------------------------------------------------------------------

TEST_F(CSnsCohData09FileExport, RowsWithoutAGridWriteNothing) {
    CSnsCohDatazq data;
    data.m_snsRowTotal = 2;
    data.m_snsColTotal = 3;
    data.m_cohTimTotal = 1;
    expectRefused(data);
}

TEST_F(CSnsCohData09FileExport, SlicesFarBeyondEveryVectorWriteNothing) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_cohTimTotal = 1000000000000000;
    expectRefused(data);
    data.m_cohTimTotal = 10000001;
    expectRefused(data);
}

TEST_F(CSnsCohData09FileExport, SlicesFarBeyondNoVectorsAtAllWriteNothing) {
    CSnsCohDatazq data;
    data.m_cohTimTotal = 1000000000000000;
    expectRefused(data);
}

TEST_F(CSnsCohData09FileExport, RowsFarBeyondTheGridWriteNothing) {
    CSnsCohDatazq data;
    golden::fill(data);
    data.m_snsRowTotal = 0x7FFFFFFFFFFFFFFF;
    expectRefused(data);
}

TEST_F(CSnsCohData09FileExport, RefusedDatasetLeavesAnExistingFileAlone) {
    test::writeFile(target, "before");
    CSnsCohDatazq data;
    data.m_snsRowTotal = 2;
    EXPECT_EQ(data.exportCxc2txtFile(), 0);
    EXPECT_EQ(test::readFile(target), "before");
}

TEST_F(CSnsCohData09FileExport, DatasetThatEndsUnderTheDialogIsNotExported) {
    test::writeFile(target, "before");
    auto data = std::make_unique<CSnsCohDatazq>();
    golden::fill(*data);
    int dialogsWhenAsked = -1;
    app.script().choose(target);
    const int result = cxc::exportDataset(*data, [&] {
        dialogsWhenAsked = app.script().shown();
        data.reset();
        return false;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(dialogsWhenAsked, 1);
    EXPECT_EQ(test::readFile(target), "before");
}

// --- names and dialogs -----------------------------------------------------------------------

TEST_F(CSnsCohData09FileExport, ProposedNameIsJoinedWithoutASeparator) {
    CSnsCohDatazq data;
    exported(data);
    const test::FileDialogFacts facts = app.script().last();
    EXPECT_EQ(facts.proposed, "CxcTrialto text.txt");
    EXPECT_FALSE(facts.open);
    EXPECT_EQ(facts.filters,
              (std::vector<std::string>{"MEG Channel data(*.txt)", "All Files(*.*)"}));
    EXPECT_EQ(facts.filter, 0);
}

TEST_F(CSnsCohData09FileExport, EmptyNameBecomesCxCDataAndStaysAfterCancel) {
    CSnsCohDatazq data;
    data.m_cxcName = _T("");
    app.script().cancel();
    EXPECT_EQ(data.exportCxc2txtFile(), 0);
    EXPECT_EQ(app.script().lastProposed(), "CxC Datato text.txt");
    EXPECT_TRUE(data.m_cxcName == _T("CxC Data"));
    EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(CSnsCohData09FileExport, ExistingFileIsReplaced) {
    test::writeFile(target, std::string(100000, 'x'));
    CSnsCohDatazq data;
    EXPECT_EQ(exported(data), write("CxcTrial (0 x 0\n").str());
}

TEST_F(CSnsCohData09FileExport, ExtensionIsAppendedWhereThePathHasNone) {
    for (const std::string ending : {"", ".TXT", ".dat", ".tx"}) {
        const std::filesystem::path plain = test::newTemporaryPath(ending);
        const std::filesystem::path real = plain.string() + ".txt";
        CSnsCohDatazq data;
        app.script().choose(plain);
        EXPECT_EQ(data.exportCxc2txtFile(), 1);
        EXPECT_FALSE(std::filesystem::exists(plain)) << ending;
        EXPECT_TRUE(std::filesystem::remove(real)) << ending;
    }
}

TEST_F(CSnsCohData09FileExport, ExtensionAnywhereInThePathCounts) {
    const std::filesystem::path inName = test::newTemporaryPath(".txt.dat");
    const std::filesystem::path folder = test::newTemporaryPath(".txt");
    std::filesystem::create_directory(folder);
    for (const std::filesystem::path& path : {inName, folder / "plain"}) {
        CSnsCohDatazq data;
        app.script().choose(path);
        EXPECT_EQ(data.exportCxc2txtFile(), 1);
        EXPECT_TRUE(std::filesystem::remove(path)) << path;
    }
    std::filesystem::remove_all(folder);
}

TEST_F(CSnsCohData09FileExport, NameIsNoFormat) {
    CSnsCohDatazq data;
    data.m_cxcName = _T("100%s %n %d");
    EXPECT_EQ(exported(data), write("100%s %n %d (0 x 0\n").str());
}

TEST_F(CSnsCohData09FileExport, VeryLongNameIsWrittenWhole) {
    CSnsCohDatazq data;
    const std::string name(1000000, 'n');
    data.m_cxcName = CString(name.c_str());
    EXPECT_TRUE(exported(data) == write(name + " (0 x 0\n").str());
    EXPECT_EQ(data.m_cxcName.GetLength(), 1000000);
}

// --- failures --------------------------------------------------------------------------------

TEST_F(CSnsCohData09FileExport, FileThatCannotBeCreatedGivesZero) {
    CSnsCohDatazq data;
    golden::fill(data);
    // A folder stands where the extension leads to.
    std::filesystem::create_directory(target);
    std::filesystem::path typed = target;
    app.script().choose(typed.replace_extension());
    EXPECT_EQ(data.exportCxc2txtFile(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileExport, FailingMemoryGivesZero) {
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(target);
    MemoryWatch watch(1);
    EXPECT_EQ(data.exportCxc2txtFile(), 0);
    EXPECT_TRUE(app.messages().empty());
}

#ifndef _WIN32
TEST_F(CSnsCohData09FileExport, FullDiskGivesZero) {
    // The device that is always full exists on Linux only; the name must hold the extension.
    const std::filesystem::path link = test::newTemporaryPath(".txt");
    std::filesystem::create_symlink("/dev/full", link);
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(link);
    EXPECT_EQ(data.exportCxc2txtFile(), 0);
    EXPECT_TRUE(app.messages().empty());
    std::filesystem::remove(link);
}
#endif

}  // namespace
