#include "tests/cxcfile/golden_dataset.h"
#include "tests/tools/tool_fixture.h"

#include <algorithm>
#include <limits>

namespace {

using test::cell;
using test::cellValue;
using Tool = test::ToolTest;

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(Tool, WrongUsageHasACodeOfItsOwn) {
    EXPECT_EQ(run({}).code, tool::wrongUsage);
    EXPECT_EQ(run({"nonsense"}).code, tool::wrongUsage);
    EXPECT_EQ(run({"info"}).code, tool::wrongUsage);
    EXPECT_EQ(run({"info", "--nonsense", "x"}).code, tool::wrongUsage);
    EXPECT_EQ(run({"combine", "a", "b", "-o", "c", "--operation", "root"}).code, tool::wrongUsage);
    EXPECT_EQ(run({"--help"}).code, tool::done);
    EXPECT_TRUE(has(run({"--help-all"}).out, "--slices"));
    EXPECT_TRUE(has(run({"--version"}).out, "."));
}

TEST_F(Tool, InfoTellsShapeBandLatencyAndNote) {
    makeDataset("a.cxc", 3, 4);
    const Result result = run({"info", "@a.cxc"});
    EXPECT_EQ(result.code, tool::done);
    EXPECT_EQ(result.out, path("a.cxc") +
                              ": 4 slices of 3 x 3 sensors\n"
                              "name: CxcTrial\n"
                              "band: 8 to 13 Hz\n"
                              "slices per second: 2\n"
                              "latency: 1.5 to 3\n"
                              "sensors: All Type\n"
                              "selected slices: 0 to 3\n"
                              "values: 111 to 334, mean 222.5\n"
                              "computation:\n"
                              "  Window: 4 s, step: 0.5 s\n");
    EXPECT_TRUE(result.err.empty());
}

TEST_F(Tool, InfoAsJsonTellsChannelsAndTheOrderOfPairs) {
    makeDataset("a.cxc", 2, 1);
    const Result result = run({"info", "--json", "@a.cxc"});
    EXPECT_TRUE(has(result.out, "\"kind\": \"dataset\""));
    EXPECT_TRUE(has(result.out, "\"version\": 20160311"));
    EXPECT_TRUE(has(result.out, "\"pair_order\": \"row-major"));
    EXPECT_TRUE(has(result.out, "\"row_channels\": [\n          11,\n          12\n"));
}

TEST_F(Tool, TextsOfFilesCannotSteerTheTerminal) {
    CSnsCohDatazq dataset;
    describe(dataset, 2, 1, 0.0);
    dataset.m_cxcName = _T("a\x1b[31m");
    save(dataset, "a.cxc");
    EXPECT_TRUE(has(run({"info", "@a.cxc"}).out, "name: a\\x1b[31m\n"));
}

TEST_F(Tool, WhatIsNoRecordGetsOneLine) {
    putBytes("empty.cxc", "");
    putBytes("other.cxc", "PNG and other things that are no record at all");
    makeDataset("whole.cxc", 3, 4);
    putBytes("cut.cxc", bytesOf("whole.cxc").substr(0, 300));
    EXPECT_TRUE(has(run({"info", "@empty.cxc"}).err, "empty.cxc: the file is empty\n"));
    EXPECT_TRUE(has(run({"info", "@other.cxc"}).err, ": is no dataset, package or group\n"));
    EXPECT_TRUE(has(run({"info", "@cut.cxc"}).err, ": the file ends early\n"));
    const Result missing = run({"info", "@missing.cxc"});
    EXPECT_EQ(missing.code, tool::failed);
    EXPECT_EQ(std::count(missing.err.begin(), missing.err.end(), '\n'), 1);
    EXPECT_EQ(run({"info", "@"}).code, tool::failed);  // a folder
}

TEST_F(Tool, VerifyFindsNothingInAWholeFile) {
    makeDataset("a.cxc", 3, 4);
    const Result result = run({"verify", "@a.cxc"});
    EXPECT_EQ(result.code, tool::done);
    EXPECT_TRUE(has(result.out, "a.cxc: a whole dataset, version 20160311\n"));
}

TEST_F(Tool, VerifySaysWhatDisagrees) {
    CSnsCohDatazq dataset;
    describe(dataset, 3, 4, 0.0);
    test::setPair(dataset, 0, 1, {1.0});
    dataset.m_mCC[0][2].cleanData();
    dataset.m_mCC[2][1].m_chnlB = 99;
    cell(dataset, 1, 1, 1) = std::numeric_limits<double>::quiet_NaN();
    dataset.m_selectEnd = 4;
    dataset.m_rowCrt = 3;
    dataset.m_headerReal0 = 20.0;
    dataset.m_dataMax = 5.0;
    save(dataset, "a.cxc");
    putBytes("a.cxc", bytesOf("a.cxc") + "more");
    const Result result = run({"verify", "@a.cxc"});
    EXPECT_EQ(result.code, tool::disagrees);
    for (const char* const text :
         {"4 bytes follow the record", "the selection 0 to 4 is not inside the 4 slices",
          "the current pair 4, 1 is outside the grid", "the band ends below its begin",
          "1 pair of another length than the dataset, first 1, 2",
          "1 pair without values, first 1, 3",
          "1 pair with other channel numbers than their row and column, first 3, 2",
          "1 pair with infinite or undefined values, first 2, 2",
          "the stored range is 0 to 5, the values lie from "})
        EXPECT_TRUE(has(result.out, text)) << text << " not in\n" << result.out;
}

TEST_F(Tool, VerifyGoesOnBehindAFileThatCannotBeRead) {
    makeDataset("a.cxc", 2, 2);
    putBytes("b.cxc", "no");
    const Result result = run({"verify", "@b.cxc", "@a.cxc"});
    EXPECT_EQ(result.code, tool::failed);
    EXPECT_TRUE(has(result.out, "a.cxc: a whole dataset"));
}

TEST_F(Tool, ExportWritesTheLibrarysText) {
    makeDataset("a.cxc", 2, 1);
    EXPECT_EQ(run({"export", "@a.cxc", "-o", "@a.txt"}).code, tool::done);
    const std::string bytes = bytesOf("a.txt");
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 2)
        text += bytes[i];
    EXPECT_EQ(text, std::string("CxcTrial (2 x 2\n\0Time Slice: 0\n\0"
                                "1 111.000000  121.000000  \n2 211.000000  221.000000  \n\0",
                                87));
}

TEST_F(Tool, ExportWritesTheNameThatIsGivenWhateverItsEnding) {
    makeDataset("a.cxc", 2, 2);
    ASSERT_EQ(run({"export", "@a.cxc", "-o", "@b.text"}).code, tool::done);
    EXPECT_TRUE(exists("b.text"));
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(Tool, ExportAsCsvIsRowByRowWithEveryDigit) {
    makeDataset("a.cxc", 2, 2, 1.0 / 3.0);
    EXPECT_EQ(run({"export", "@a.cxc", "--format", "csv", "-o", "@a.csv"}).code, tool::done);
    EXPECT_EQ(bytesOf("a.csv"),
              "slice,latency,row,column,row_channel,column_channel,value\n"
              "0,1.5,1,1,11,11,111.33333333333333\n"
              "1,2,1,1,11,11,112.33333333333333\n"
              "0,1.5,1,2,11,12,121.33333333333333\n"
              "1,2,1,2,11,12,122.33333333333333\n"
              "0,1.5,2,1,12,11,211.33333333333334\n"
              "1,2,2,1,12,11,212.33333333333334\n"
              "0,1.5,2,2,12,12,221.33333333333334\n"
              "1,2,2,2,12,12,222.33333333333334\n");
}

TEST_F(Tool, ConvertGoesByTheEndingAndTheMember) {
    makeDataset("a.cxc", 2, 1);
    makeDataset("b.cxc", 3, 1);
    ASSERT_EQ(run({"pack", "--active", "@a.cxc", "--control", "@b.cxc", "-o", "@p.cxcpkg"}).code,
              tool::done);
    EXPECT_EQ(run({"convert", "@p.cxcpkg", "@c.cxc", "--member", "control"}).code, tool::done);
    EXPECT_EQ(bytesOf("c.cxc"), bytesOf("b.cxc"));
    EXPECT_TRUE(has(run({"convert", "@p.cxcpkg", "@d.csv"}).err, "active, control"));
    EXPECT_TRUE(has(run({"convert", "@a.cxc", "@d.nc"}).err, "python -m cxc convert"));
    EXPECT_FALSE(exists("d.nc"));
}

TEST_F(Tool, UpgradeBringsAnOldPackageToTheNewestVersion) {
    makeDataset("a.cxc", 2, 1);
    ASSERT_EQ(run({"pack", "--active", "@a.cxc", "-o", "@new.cxcpkg", "--name", "p"}).code,
              tool::done);
    // The older layout: its version word, and behind the classes two reserved numbers, the
    // identifier, the name, the show flag and two reserved numbers.
    std::string bytes = bytesOf("new.cxcpkg");
    const std::string tail("\0\0\0\0\0\0\0\0\x05\0\0\0\xFF\xFE\xFF\x01p\0\x01", 19);
    const std::size_t others = bytes.size() - (4 + 6 + 4 + 1);
    bytes = bytes.substr(0, others) + tail + std::string(16, '\0');
    const std::size_t version = bytes.find(std::string("\xb8\x05\x33\x01", 4));
    ASSERT_NE(version, std::string::npos);
    bytes.replace(version, 4, std::string("\x51\x68\x32\x01", 4));  // 20080721
    putBytes("old.cxcpkg", bytes);
    EXPECT_EQ(run({"upgrade", "--in-place", "@old.cxcpkg"}).out,
              path("old.cxcpkg") + ": version 20080721 to 20121016\n");
    EXPECT_EQ(run({"upgrade", "--in-place", "@old.cxcpkg"}).out,
              path("old.cxcpkg") + ": version 20121016 already\n");
    EXPECT_TRUE(has(run({"info", "@old.cxcpkg"}).out, "package of 1 dataset\nname: p\n"));
}

TEST_F(Tool, UpgradeNeverLosesWhatFollowsTheRecord) {
    makeDataset("a.cxc", 2, 1);
    putBytes("a.cxc", bytesOf("a.cxc") + "note");
    const std::string before = bytesOf("a.cxc");
    EXPECT_EQ(run({"upgrade", "@a.cxc", "-o", "@b.cxc"}).code, tool::failed);
    EXPECT_FALSE(exists("b.cxc"));
    EXPECT_EQ(bytesOf("a.cxc"), before);
}

TEST_F(Tool, CombineSubtractsTheMeanOfControl) {
    makeDataset("active.cxc", 2, 3);
    makeDataset("control.cxc", 2, 2);
    const Result result =
        run({"combine", "@active.cxc", "@control.cxc", "-o", "@x.cxc", "--operation", "subtract"});
    EXPECT_EQ(result.code, tool::done);
    EXPECT_TRUE(has(result.err, "control.cxc: its 2 slices are reduced to their mean"));
    const auto made = open("x.cxc");
    EXPECT_EQ(cell(*made, 2, 1, 0), cellValue(2, 1, 0) - (cellValue(0, 1, 0) + 0.5));
    EXPECT_EQ(made->m_headerReal1, 13.0);
    EXPECT_EQ(made->m_anaLatencyBegin, 1.5);
    EXPECT_EQ(made->m_mCC[1][0].m_chnlA, 12);
    EXPECT_EQ(made->m_selectEnd, 2);
    EXPECT_TRUE(has(test::ascii(made->m_cxcCmptInfo), "Control being the mean of its 2 slices"));
}

TEST_F(Tool, CombineKnowsFourOperations) {
    makeDataset("active.cxc", 2, 1);
    makeDataset("control.cxc", 2, 1, 1.0);
    const double a = cellValue(0, 0, 1);
    const double c = a + 1.0;
    const std::pair<const char*, double> expected[] = {
        {"subtract", a - c}, {"add", a + c}, {"multiply", a * c}, {"divide", a / c}};
    for (const auto& [operation, value] : expected) {
        ASSERT_EQ(run({"combine", "@active.cxc", "@control.cxc", "-o", "@x.cxc", "--force",
                       "--operation", operation})
                      .code,
                  tool::done);
        EXPECT_EQ(cell(*open("x.cxc"), 0, 0, 1), value) << operation;
    }
}

TEST_F(Tool, CombineRefusesMixedShapesAndWarnsOfOtherBands) {
    makeDataset("active.cxc", 2, 1);
    makeDataset("control.cxc", 3, 1);
    const Result refused = run({"combine", "@active.cxc", "@control.cxc", "-o", "@x.cxc"});
    EXPECT_EQ(refused.code, tool::failed);
    EXPECT_TRUE(has(refused.err, "the numbers of sensors must be the same"));
    EXPECT_FALSE(exists("x.cxc"));

    CSnsCohDatazq other;
    describe(other, 2, 1, 0.0);
    other.m_headerReal0 = 4.0;
    other.m_mCC[1][0].m_chnlA = 77;
    save(other, "control.cxc");
    const Result warned = run({"combine", "@active.cxc", "@control.cxc", "-o", "@x.cxc"});
    EXPECT_EQ(warned.code, tool::done);
    EXPECT_TRUE(has(warned.err, "control.cxc differs from "));
    EXPECT_TRUE(has(warned.err, "in band: 4 to 13 Hz, not 8 to 13 Hz;"));
    EXPECT_TRUE(has(warned.err, "in channel number of row 2: 77, not 12;"));
}

TEST_F(Tool, CombineMakesAPackageOfAllThree) {
    makeDataset("active.cxc", 2, 2);
    makeDataset("control.cxc", 2, 1);
    ASSERT_EQ(run({"combine", "@active.cxc", "@control.cxc", "-o", "@x.cxcpkg"}).code, tool::done);
    const tool::Record record(path("x.cxcpkg"));
    EXPECT_EQ(record.members().size(), 3u);
    EXPECT_EQ(record.package()->m_curntCohDataSetID, 2);
}

TEST_F(Tool, AverageIsThatOfAGroupOfTheSameDatasets) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 2, 2, 0.1);
    makeDataset("c.cxc", 2, 2, 0.7);
    ASSERT_EQ(run({"average", "@a.cxc", "@b.cxc", "@c.cxc", "-o", "@m.cxc"}).code, tool::done);
    ASSERT_EQ(run({"pack", "@a.cxc", "@b.cxc", "@c.cxc", "-o", "@g.cxcgrp"}).code, tool::done);
    tool::Record group(path("g.cxcgrp"));
    ASSERT_EQ(group.group()->averageAll(), 4);
    CSnsCohDatazq& expected = *group.group()->getCoherenceData(3);
    const auto made = open("m.cxc");
    for (__int64 r = 0; r < 2; ++r) {
        for (__int64 c = 0; c < 2; ++c)
            EXPECT_EQ(test::valuesOf(*made, r, c), test::valuesOf(expected, r, c));
    }
    EXPECT_EQ(made->m_cxcName, expected.m_cxcName);
    EXPECT_EQ(made->m_mCC[1][0].m_chnlB, 11);
    EXPECT_TRUE(has(test::ascii(made->m_cxcCmptInfo), "b.cxc"));
}

TEST_F(Tool, AverageWarnsOfEveryDifferenceAndSaysWhatTheRuleMadeOfIt) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 2, 3);
    makeDataset("c.cxc", 3, 2);
    const Result result = run({"average", "@a.cxc", "@b.cxc", "@c.cxc", "-o", "@m.cxc"});
    EXPECT_EQ(result.code, tool::done);
    EXPECT_TRUE(has(result.err, "b.cxc differs from "));
    EXPECT_TRUE(has(result.err, "in length: 3 slices, not 2\n"));
    EXPECT_TRUE(has(result.err, "in rows: 3, not 2\n"));
    EXPECT_TRUE(has(result.err,
                    "every sum is divided by 3: where a smaller dataset has no value "
                    "it counts as 0\n"));
    const auto made = open("m.cxc");
    EXPECT_EQ(cell(*made, 2, 0, 0), cellValue(2, 0, 0) / 3.0);
    EXPECT_EQ(cell(*made, 1, 2, 2), cellValue(1, 2, 2) / 3.0);
    EXPECT_EQ(cell(*made, 0, 0, 0), (cellValue(0, 0, 0) * 3.0) / 3.0);
}

TEST_F(Tool, ResultsOverManyUnevenFilesAreThoseOfAGroupToTheLastBit) {
    std::vector<std::string> files;
    for (int i = 0; i < 25; ++i) {
        const std::string name = "s" + std::to_string(i) + ".cxc";
        makeDataset(name, 2 + (i * 7) % 9, 1 + (i * 5) % 4, 0.1 * i - 1.0 / (i + 1));
        files.push_back('@' + name);
    }
    const auto with = [&](const std::string& command, const std::string& output) {
        std::vector<std::string> all = {command, "-o", output};
        all.insert(all.end(), files.begin(), files.end());
        return run(all).code;
    };
    ASSERT_EQ(with("average", "@m.cxc"), tool::done);
    ASSERT_EQ(with("summary", "@s.cxc"), tool::done);
    ASSERT_EQ(with("pack", "@g.cxcgrp"), tool::done);
    const auto expectSame = [&](const std::string& name, CSnsCohDatazq& expected) {
        SCOPED_TRACE(name);
        const auto made = open(name);
        ASSERT_EQ(made->m_snsRowTotal, 10);
        ASSERT_EQ(expected.m_snsRowTotal, 10);
        for (__int64 r = 0; r < 10; ++r) {
            for (__int64 c = 0; c < 10; ++c)
                EXPECT_EQ(test::valuesOf(*made, r, c), test::valuesOf(expected, r, c));
        }
    };
    tool::Record average(path("g.cxcgrp"));
    ASSERT_EQ(average.group()->averageAll(), 26);
    expectSame("m.cxc", *average.group()->getCoherenceData(25));
    tool::Record summary(path("g.cxcgrp"));
    ASSERT_EQ(summary.group()->summaryAll(), 28);
    expectSame("s_min.cxc", *summary.group()->getCoherenceData(25));
    expectSame("s_mean.cxc", *summary.group()->getCoherenceData(26));
    expectSame("s_max.cxc", *summary.group()->getCoherenceData(27));
}

TEST_F(Tool, AMeanTakesGroupsOldFilesAndFilesWithoutPairs) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 2, 2, 2.0);
    ASSERT_EQ(run({"pack", "@b.cxc", "@a.cxc", "-o", "@g.cxcgrp"}).code, tool::done);
    ASSERT_EQ(
        run({"average", "@a.cxc", "@g.cxcgrp", "@a.cxc", "--member", "0", "-o", "@m.cxc"}).code,
        tool::done);
    EXPECT_EQ(cell(*open("m.cxc"), 1, 1, 0), (3.0 * cellValue(1, 1, 0) + 2.0) / 3.0);

    putBytes("old.cxc", golden::record20120714().str());
    putBytes("new.cxc", golden::newestRecord().str());
    ASSERT_EQ(run({"average", "@old.cxc", "@new.cxc", "-o", "@m.cxc", "--force"}).code, tool::done);
    EXPECT_EQ(cell(*open("m.cxc"), 1, 1, 2), golden::value(1, 1, 2));
    EXPECT_EQ(open("m.cxc")->m_mCC[0][2].m_chnlB, 13);

    putBytes("none.cxc", golden::opening(20130402)
                             .append(golden::sizes())
                             .i32(0)
                             .append(golden::header13to25())
                             .append(golden::header26to31())
                             .str());
    const Result result = run({"average", "@new.cxc", "@none.cxc", "-o", "@m.cxc", "--force"});
    ASSERT_EQ(result.code, tool::done);
    EXPECT_TRUE(has(result.err, "none.cxc differs from ")) << result.err;
    EXPECT_EQ(cell(*open("m.cxc"), 1, 1, 2), golden::value(1, 1, 2) / 2.0);
}

TEST_F(Tool, TheFirstBadFileIsTheOneNamed) {
    makeDataset("a.cxc", 6, 2);
    const std::string bytes = bytesOf("a.cxc");
    putBytes("b.cxc", bytes.substr(0, bytes.size() - 9));
    putBytes("c.cxc", bytes.substr(0, 200));
    for (int i = 0; i < 20; ++i) {
        const Result result =
            run({"average", "@a.cxc", "@a.cxc", "@b.cxc", "@c.cxc", "-o", "@m.cxc"});
        EXPECT_EQ(result.code, tool::failed);
        EXPECT_TRUE(has(result.err, "b.cxc: the file ends early\n")) << result.err;
    }
    EXPECT_EQ(entries().size(), 3u);
}

// By chance; that the threads share nothing of it is what the thread sanitizer watches.
TEST_F(Tool, WhatTheLibrarySaysOfAFileStaysWithIt) {
    makeDataset("a.cxc", 6, 2);
    std::string bytes = bytesOf("a.cxc");
    bytes[bytes.find(std::string("M\0A\0T", 5))] = '?';  // in the magic string of the first vector
    putBytes("b.cxc", bytes);
    bytes = bytesOf("a.cxc");
    bytes[bytes.find(std::string("\x9e\x02\x33\x01", 4))] = '?';  // its version, 20120222
    putBytes("c.cxc", bytes);
    for (int i = 0; i < 20; ++i) {
        const Result result =
            run({"average", "@a.cxc", "@b.cxc", "@c.cxc", "@c.cxc", "-o", "@m.cxc"});
        EXPECT_EQ(result.code, tool::failed);
        EXPECT_TRUE(has(result.err, "b.cxc: Unknown MMatrix1D file!\n")) << result.err;
    }
}

TEST_F(Tool, SummaryWritesMinimumMeanAndMaximum) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 2, 2, 3.0);
    ASSERT_EQ(run({"summary", "@a.cxc", "@b.cxc", "-o", "@s.cxc"}).code, tool::done);
    EXPECT_EQ(cell(*open("s_min.cxc"), 1, 1, 0), cellValue(1, 1, 0));
    EXPECT_EQ(cell(*open("s_mean.cxc"), 1, 1, 0), cellValue(1, 1, 0) + 1.5);
    EXPECT_EQ(cell(*open("s_max.cxc"), 1, 1, 0), cellValue(1, 1, 0) + 3.0);
}

TEST_F(Tool, ABadFileAmongManyLeavesNoOutput) {
    makeDataset("a.cxc", 2, 2);
    putBytes("b.cxc", bytesOf("a.cxc").substr(0, bytesOf("a.cxc").size() - 9));
    const Result result = run({"average", "@a.cxc", "@b.cxc", "-o", "@m.cxc"});
    EXPECT_EQ(result.code, tool::failed);
    EXPECT_TRUE(has(result.err, "b.cxc: the file ends early\n"));
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(Tool, SizesThatAFileOnlyClaimsTakeNoMemory) {
    makeDataset("a.cxc", 2, 2);
    std::string bytes = bytesOf("a.cxc");
    bytes[26 + 4 + 4] = 1;  // 2 to the 32nd more slices
    putBytes("b.cxc", bytes);
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"average", "@a.cxc", "@b.cxc", "-o", "@m.cxc"},
                                               {"combine", "@b.cxc", "@a.cxc", "-o", "@m.cxc"},
                                               {"combine", "@a.cxc", "@b.cxc", "-o", "@m.cxc"},
                                               {"select", "@b.cxc", "-o", "@m.cxc"}}) {
        const Result result = run(command);
        EXPECT_EQ(result.code, tool::failed);
        EXPECT_TRUE(has(result.err, "b.cxc: says that it holds more values than there are\n"))
            << result.err;
    }
}

TEST_F(Tool, ExistingOutputsAreKeptUnlessForced) {
    makeDataset("a.cxc", 2, 2);
    putBytes("m.cxc", "kept");
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"average", "@a.cxc", "-o", "@m.cxc"},
                                               {"select", "@a.cxc", "-o", "@m.cxc"},
                                               {"export", "@a.cxc", "-o", "@m.cxc"},
                                               {"convert", "@a.cxc", "@m.cxc"},
                                               {"upgrade", "@a.cxc", "-o", "@m.cxc"},
                                               {"pack", "@a.cxc", "-o", "@m.cxc"},
                                               {"combine", "@a.cxc", "@a.cxc", "-o", "@m.cxc"}}) {
        const Result result = run(command);
        EXPECT_EQ(result.code, tool::failed) << command[0];
        EXPECT_TRUE(has(result.err, "m.cxc: exists already; --force replaces it\n")) << command[0];
        EXPECT_EQ(bytesOf("m.cxc"), "kept") << command[0];
    }
    EXPECT_EQ(run({"select", "@a.cxc", "-o", "@m.cxc", "--force"}).code, tool::done);
    EXPECT_EQ(open("m.cxc")->m_snsRowTotal, 2);
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(Tool, AnOutputWithoutItsFolderIsRefusedBeforeTheWork) {
    makeDataset("a.cxc", 2, 2);
    const Result result = run({"average", "@a.cxc", "-o", "@no/m.cxc"});
    EXPECT_EQ(result.code, tool::failed);
    EXPECT_TRUE(has(result.err, "m.cxc: there is no such folder\n"));
}

TEST_F(Tool, SelectTakesSlicesAndSensorsInTheirOrder) {
    makeDataset("a.cxc", 5, 6);
    ASSERT_EQ(
        run({"select", "@a.cxc", "-o", "@b.cxc", "--slices", "2-4", "--sensors", "5,1-2"}).code,
        tool::done);
    const auto made = open("b.cxc");
    EXPECT_EQ(made->m_snsRowTotal, 3);
    EXPECT_EQ(made->m_cohTimTotal, 3);
    EXPECT_EQ(cell(*made, 0, 0, 2), cellValue(2, 4, 1));
    EXPECT_EQ(cell(*made, 2, 1, 0), cellValue(4, 0, 4));
    EXPECT_EQ(made->m_mCC[0][2].m_chnlA, 15);
    EXPECT_EQ(made->m_mCC[0][2].m_chnlB, 12);
    EXPECT_EQ(made->m_anaLatencyBegin, 2.5);
    EXPECT_EQ(made->m_anaLatencyEnd, 3.5);
    EXPECT_EQ(made->m_selectEnd, 2);
    EXPECT_EQ(made->m_headerReal0, 8.0);
    EXPECT_TRUE(has(test::ascii(made->m_cxcCmptInfo), "slices 2 to 4, sensors 5,1-2"));
}

TEST_F(Tool, SelectRefusesWhatIsNotThere) {
    makeDataset("a.cxc", 3, 4);
    for (const std::vector<std::string>& wish :
         std::vector<std::vector<std::string>>{{"--slices", "0-4"},
                                               {"--slices", "3-2"},
                                               {"--sensors", "0"},
                                               {"--sensors", "4"},
                                               {"--rows", "1,1"},
                                               {"--columns", "3-1"}}) {
        const Result result = run({"select", "@a.cxc", "-o", "@b.cxc", wish[0], wish[1]});
        EXPECT_EQ(result.code, tool::failed) << wish[1];
        EXPECT_FALSE(exists("b.cxc"));
    }
    EXPECT_EQ(run({"select", "@a.cxc", "-o", "@b.cxc", "--sensors", "1,x"}).code, tool::wrongUsage);
}

TEST_F(Tool, PackAndUnpackGiveTheSameFilesBack) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 3, 1, 0.5);
    ASSERT_EQ(run({"pack", "@a.cxc", "@b.cxc", "-o", "@g.cxcgrp", "--name", "all"}).code,
              tool::done);
    const Result result = run({"unpack", "@g.cxcgrp", "-d", "@"});
    EXPECT_EQ(result.code, tool::done);
    EXPECT_EQ(bytesOf("g_000.cxc"), bytesOf("a.cxc"));
    EXPECT_EQ(bytesOf("g_001.cxc"), bytesOf("b.cxc"));
    EXPECT_EQ(run({"unpack", "@g.cxcgrp", "-d", "@"}).code, tool::failed);
    EXPECT_EQ(run({"unpack", "@a.cxc", "-d", "@"}).code, tool::failed);
    EXPECT_EQ(run({"pack", "@a.cxc", "--active", "@b.cxc", "-o", "@x.cxcpkg"}).code,
              tool::wrongUsage);
}

TEST_F(Tool, AnInterruptLeavesNothingBehind) {
    makeDataset("a.cxc", 2, 2);
    tool::setInterrupted(true);
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"average", "@a.cxc", "-o", "@m.cxc"},
                                               {"select", "@a.cxc", "-o", "@m.cxc"},
                                               {"convert", "@a.cxc", "@m.cxc"}}) {
        const Result result = run(command);
        EXPECT_EQ(result.code, tool::interrupted) << command[0];
        EXPECT_EQ(result.err, "cxc: interrupted\n");
    }
    tool::setInterrupted(false);
    EXPECT_EQ(entries().size(), 1u);
}

// A terminal whose user interrupts as soon as a text is written.
class InterruptingBuffer : public std::stringbuf {
public:
    explicit InterruptingBuffer(std::string text) : m_text(std::move(text)) {}

protected:
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        const std::streamsize written = std::stringbuf::xsputn(characters, count);
        if (str().find(m_text) != std::string::npos) tool::setInterrupted(true);
        return written;
    }

private:
    const std::string m_text;
};

TEST_F(Tool, AnInterruptIsHeardWhileFilesAreRead) {
    makeDataset("a.cxc", 6, 2);
    // Who reads on comes to its end, which is missing.
    const std::string bytes = bytesOf("a.cxc");
    putBytes("b.cxc", bytes.substr(0, bytes.size() - 9));
    InterruptingBuffer terminal("] 2/2 ");
    std::ostream err(&terminal);
    std::ostringstream out;
    EXPECT_EQ(
        tool::run({"average", path("a.cxc"), path("b.cxc"), "-o", path("m.cxc")}, out, err, true),
        tool::interrupted);
    tool::setInterrupted(false);
    EXPECT_TRUE(has(terminal.str(), "cxc: interrupted\n"));
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(Tool, FileNamesMayHoldAnyLetters) {
    const std::string name =
        "Gr\xC3\xB6\xC3\x9F"
        "e \xE6\xB8\xAC.cxc";
    CSnsCohDatazq dataset;
    describe(dataset, 2, 1, 0.0);
    tool::saveRecord(dataset, tool::inFolder(path(""), name), false);
    EXPECT_EQ(run({"verify", tool::inFolder(path(""), name)}).code, tool::done);
}

TEST_F(Tool, CompletionKnowsEveryCommandAndItsOptions) {
    const std::string bash = run({"completion", "bash"}).out;
    EXPECT_TRUE(has(bash,
                    "info verify export convert upgrade combine average summary select pack "
                    "unpack completion"));
    EXPECT_TRUE(has(bash, "--slices"));
    EXPECT_TRUE(has(run({"completion", "zsh"}).out, "bashcompinit"));
}

TEST_F(Tool, AMemberOfPackagesAndGroupsIsTakenLikeADataset) {
    makeDataset("a.cxc", 2, 2);
    makeDataset("b.cxc", 2, 2, 3.0);
    ASSERT_EQ(run({"pack", "@a.cxc", "@b.cxc", "-o", "@g.cxcgrp"}).code, tool::done);
    ASSERT_EQ(run({"pack", "--active", "@a.cxc", "--control", "@b.cxc", "-o", "@p.cxcpkg"}).code,
              tool::done);
    const Result unclear = run({"average", "@g.cxcgrp", "-o", "@m.cxc"});
    EXPECT_EQ(unclear.code, tool::failed);
    EXPECT_TRUE(has(unclear.err, "choose a dataset with --member, or with cxc unpack: 0, 1\n"))
        << unclear.err;
    ASSERT_EQ(run({"average", "@g.cxcgrp", "@a.cxc", "--member", "1", "-o", "@m.cxc"}).code,
              tool::done);
    EXPECT_EQ(cell(*open("m.cxc"), 1, 1, 0), cellValue(1, 1, 0) + 1.5);
    ASSERT_EQ(
        run({"select", "@p.cxcpkg", "--member", "control", "--slices", "1", "-o", "@s.cxc"}).code,
        tool::done);
    EXPECT_EQ(cell(*open("s.cxc"), 0, 1, 0), cellValue(1, 1, 0) + 3.0);
}

// As "$SENSORS" and "$OUT" of a script that has not set them.
TEST_F(Tool, EmptyTextsAreWrongUsage) {
    makeDataset("a.cxc", 2, 2);
    for (const std::string option : {"--slices", "--sensors", "--rows", "--columns"})
        EXPECT_EQ(run({"select", "@a.cxc", "-o", "@b.cxc", option, ""}).code, tool::wrongUsage)
            << option;
    for (const std::string command : {"average", "summary", "select", "pack"})
        EXPECT_EQ(run({command, "@a.cxc", "-o", ""}).code, tool::wrongUsage) << command;
    const std::vector<std::vector<std::string>> others = {
        {"combine", "@a.cxc", "@a.cxc", "-o", ""},
        {"pack", "--active", "", "--control", "@a.cxc", "-o", "@p.cxcpkg"},
        {"pack", "--active", "@a.cxc", "--control", "", "-o", "@p.cxcpkg"},
        {"pack", "--active", "@a.cxc", "--act-ctl", "", "-o", "@p.cxcpkg"},
        {"unpack", "@a.cxc", "-d", ""},
        {"export", "@a.cxc", "-o", ""},
        {"convert", "@a.cxc", ""},
        {"upgrade", "@a.cxc", "--in-place", "-o", ""}};
    for (const std::vector<std::string>& words : others)
        EXPECT_EQ(run(words).code, tool::wrongUsage) << words[0];
    EXPECT_EQ(entries().size(), 1u);
}

// Each is told before the files are read, which would be told, too.
TEST_F(Tool, OutputsThatAreTakenAreToldBeforeTheWork) {
    putBytes("a.cxc", "no dataset");
    putBytes("m.cxc", "kept");
    putBytes("m.csv", "kept");
    for (const std::string command : {"average", "select", "upgrade", "export"}) {
        const Result result = run({command, "@a.cxc", "-o", "@m.cxc"});
        EXPECT_TRUE(has(result.err, "m.cxc: exists already")) << result.err;
    }
    for (const std::string output : {"m.cxc", "m.csv"}) {
        const Result result = run({"convert", "@a.cxc", "@" + output});
        EXPECT_TRUE(has(result.err, output + ": exists already")) << result.err;
    }
    const Result result = run({"combine", "@a.cxc", "@a.cxc", "-o", "@m.cxc"});
    EXPECT_TRUE(has(result.err, "m.cxc: exists already")) << result.err;
}

// The last name is a folder, so that the third output cannot be written.
TEST_F(Tool, OfSeveralOutputsAllAreReplacedOrNone) {
    makeDataset("a.cxc", 2, 2);
    putBytes("s_min.cxc", "kept");
    putBytes("s_mean.cxc", "kept");
    ASSERT_TRUE(std::filesystem::create_directory(path("s_max.cxc")));
    EXPECT_EQ(run({"summary", "@a.cxc", "-o", "@s.cxc", "--force"}).code, tool::failed);
    EXPECT_EQ(bytesOf("s_min.cxc"), "kept");
    EXPECT_EQ(bytesOf("s_mean.cxc"), "kept");
}

}  // namespace
