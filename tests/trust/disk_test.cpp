// A file that fails at every byte, written and read: the exception reaches the caller, no wait
// cursor stays, nothing of the object is lost, and every operation works afterwards. Then a device
// that is full: files are closed.
#include "tests/support/TempDir.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/RoughFile.h"
#include "tests/trust/every_operation.h"
#include "tests/trust/golden_files.h"

#include "cxcfile/text_export.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using test::Outcome;
using test::RoughFile;

struct CleanGroup : CGroupMeegCxcFacezq {
    ~CleanGroup() { cleanSnsCohPkg(); }
};

// The object stores what it stored before, and can still be used.
template <class Record>
void expectWhole(Record& record, const std::string& stored) {
    ASSERT_EQ(test::bytesOf(record), stored);
}

// Stores the record with each byte the first that the disk does not take.
template <class Record>
void failEachByteWritten(const std::string& bytes) {
    test::QuietApp app;
    Record record;
    ASSERT_EQ(test::loadFrom(bytes, record), Outcome::accepted);
    const std::string stored = test::bytesOf(record);
    for (std::size_t n = 0; n < stored.size(); ++n) {
        SCOPED_TRACE("byte " + std::to_string(n));
        RoughFile file(stored.size());
        file.failAt = n;
        ASSERT_EQ(test::passThrough(file, CArchive::store, record), Outcome::fileFailed);
        ASSERT_EQ(file.content(), stored.substr(0, n)) << "what came before is there";
        ASSERT_EQ(app.waiting(), 0);
        expectWhole(record, stored);
    }
    RoughFile file(stored.size());
    file.failAt = stored.size();
    ASSERT_EQ(test::passThrough(file, CArchive::store, record), Outcome::accepted);
    test::Digest digest;
    test::useEverything(record, digest);
}

// Loads the record with each byte the first that the disk does not give, into a new object and
// into one that held another record; then all of it, which succeeds.
template <class Record>
void failEachByteRead(const std::string& bytes, const std::string& before) {
    test::QuietApp app;
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        SCOPED_TRACE("byte " + std::to_string(n));
        Record record;
        test::loadFrom(before, record);
        RoughFile file(bytes);
        file.failAt = n;
        ASSERT_EQ(test::passThrough(file, CArchive::load, record), Outcome::fileFailed);
        ASSERT_EQ(app.waiting(), 0);
        {
            // What is left of it is valid, whatever it is.
            Record same;
            test::loadFrom(before, same);
            RoughFile again(bytes);
            again.failAt = n;
            test::passThrough(again, CArchive::load, same);
            test::Digest one;
            test::Digest other;
            test::useEverything(record, one);
            test::useEverything(same, other);
            ASSERT_EQ(one.value(), other.value());
        }
        ASSERT_EQ(test::loadFrom(bytes, record), Outcome::accepted);
    }
}

TEST(FailingDisk, EveryByteOfAVectorWritten) {
    for (const golden::File& file : golden::vectorFiles())
        failEachByteWritten<CWavChnlChnlDatazq>(file.bytes);
}

TEST(FailingDisk, EveryByteOfADatasetWritten) {
    failEachByteWritten<CSnsCohDatazq>(golden::record20160311().str());
}

TEST(FailingDisk, EveryByteOfAPackageWritten) {
    failEachByteWritten<CSnsCohFacezq>(golden::packageFiles()[0].bytes);
}

TEST(FailingDisk, EveryByteOfAGroupWritten) {
    failEachByteWritten<CleanGroup>(golden::groupFiles()[0].bytes);
}

TEST(FailingDisk, EveryByteOfAVectorRead) {
    for (const golden::File& file : golden::vectorFiles())
        failEachByteRead<CWavChnlChnlDatazq>(file.bytes, golden::vectorFiles()[1].bytes);
}

TEST(FailingDisk, EveryByteOfADatasetRead) {
    for (const golden::File& file : golden::datasetFiles())
        failEachByteRead<CSnsCohDatazq>(file.bytes, golden::record20160311().str());
}

TEST(FailingDisk, EveryByteOfAPackageRead) {
    for (const golden::File& file : golden::packageFiles())
        failEachByteRead<CSnsCohFacezq>(file.bytes, golden::packageFiles()[0].bytes);
}

TEST(FailingDisk, EveryByteOfAGroupRead) {
    for (const golden::File& file : golden::groupFiles())
        failEachByteRead<CleanGroup>(file.bytes, golden::groupFiles()[0].bytes);
}

TEST(FailingDisk, EveryCharacterOfATextAndItsFlushes) {
    test::QuietApp app;
    CSnsCohDatazq dataset;
    ASSERT_EQ(test::loadFrom(golden::record20160311().str(), dataset), Outcome::accepted);
    RoughFile whole(1 << 16);
    ASSERT_TRUE(cxc::writeText(whole, dataset));
    const std::string stored = test::bytesOf(dataset);
    for (ULONGLONG n = 0; n < whole.written(); ++n) {
        RoughFile file(1 << 16);
        file.failAt = n;
        ASSERT_EQ(test::outcomeOf([&] { return cxc::writeText(file, dataset) ? 1 : 0; }),
                  Outcome::fileFailed);
        ASSERT_EQ(file.content(), whole.content().substr(0, static_cast<std::size_t>(n)));
    }
    ASSERT_GE(whole.flushes(), dataset.m_cohTimTotal);
    for (int n = 1; n <= whole.flushes(); ++n) {
        RoughFile file(1 << 16);
        file.failFlush = n;
        ASSERT_EQ(test::outcomeOf([&] { return cxc::writeText(file, dataset) ? 1 : 0; }),
                  Outcome::fileFailed);
        ASSERT_EQ(file.flushes(), n) << "nothing is written after it";
    }
    expectWhole(dataset, stored);
}

#ifdef __linux__

int openFiles() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        static_cast<void>(entry);
        ++count;
    }
    return count;
}

// The device answers every write as a full disk does.
TEST(FullDisk, SavingAndExportingSayItAndCloseTheFile) {
    test::QuietApp app;
    const test::TempDir folder;
    const std::filesystem::path place = folder.path();
    std::filesystem::create_symlink("/dev/full", place / "a.cxc");
    std::filesystem::create_symlink("/dev/full", place / "a.txt");
    CSnsCohDatazq dataset;
    ASSERT_EQ(test::loadFrom(golden::record20160311().str(), dataset), Outcome::accepted);
    const std::string stored = test::bytesOf(dataset);
    const int before = openFiles();

    app.path = CString((place / "a.cxc").string().c_str());
    EXPECT_EQ(test::outcomeOf([&] { return dataset.saveCxcDataStd(); }), Outcome::fileFailed);
    app.path = CString((place / "a.txt").string().c_str());
    EXPECT_EQ(test::outcomeOf([&] { return dataset.exportCxc2txtFile(); }), Outcome::refused);
    EXPECT_EQ(openFiles(), before);
    EXPECT_EQ(app.waiting(), 0);
    expectWhole(dataset, stored);

    app.path = CString((place / "b.cxc").string().c_str());
    EXPECT_EQ(test::outcomeOf([&] { return dataset.saveCxcDataStd(); }), Outcome::accepted);
    EXPECT_EQ(std::filesystem::file_size(place / "b.cxc"), stored.size());
}

#endif

}  // namespace
