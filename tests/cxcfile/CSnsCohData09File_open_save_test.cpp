// Opening and saving ".cxc" files through the file dialogs.
#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/CWavChnlChnlDatazq.h"
#include "cxcfile/file_commands.h"
#include "tests/cxcfile/dataset_passes.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestApp.h"

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

// Remembers how many file dialogs had been shown when a wait cursor began and ended.
class CursorApp : public test::TestApp {
public:
    void DoWaitCursor(int nCode) override {
        if (nCode > 0) dialogsAtBegin = script().shown();
        if (nCode < 0) dialogsAtEnd = script().shown();
        TestApp::DoWaitCursor(nCode);
    }

    int dialogsAtBegin = -1;
    int dialogsAtEnd = -1;
};

class CSnsCohData09FileOpenSave : public ::testing::Test {
protected:
    CSnsCohData09FileOpenSave() : target(test::newTemporaryPath(".cxc")) {}
    ~CSnsCohData09FileOpenSave() override {
        std::error_code ignored;
        std::filesystem::remove_all(target, ignored);
    }

    // Opens a file with the given bytes.
    int open(CSnsCohDatazq& data, const std::string& bytes) {
        test::writeFile(target, bytes);
        app.script().choose(target);
        return data.openCxcDataStd();
    }

    CursorApp app;
    std::filesystem::path target;
};

TEST_F(CSnsCohData09FileOpenSave, SavedFileIsExactlyOneRecord) {
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(test::readFile(target), golden::newestRecord().str());
    EXPECT_EQ(app.script().lastProposed(), "Rest");
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOpenSave, SavedFileOpensAgain) {
    CSnsCohDatazq saved, opened;
    golden::fill(saved);
    golden::fillOther(opened);
    app.script().choose(target);
    EXPECT_EQ(saved.saveCxcDataStd(), 1);
    app.script().choose(target);
    EXPECT_EQ(opened.openCxcDataStd(), 1);
    golden::expectItems(opened, saved, 3, golden::lastItem);
    golden::expectGrid(opened);
    golden::expectColorsOfOther(opened);
}

TEST_F(CSnsCohData09FileOpenSave, ExistingFileIsReplacedWhole) {
    test::writeFile(target, std::string(100000, 'x'));
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(test::readFile(target), golden::newestRecord().str());
}

TEST_F(CSnsCohData09FileOpenSave, EmptyNameIsProposedAsCxCData) {
    CSnsCohDatazq data;
    data.m_cxcName = _T("");
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(app.script().lastProposed(), "CxC Data");
    EXPECT_TRUE(data.m_cxcName == _T("CxC Data"));
}

TEST_F(CSnsCohData09FileOpenSave, NameCxCDataStaysAfterCancel) {
    CSnsCohDatazq data;
    data.m_cxcName = _T("");
    app.script().cancel();
    EXPECT_EQ(data.saveCxcDataStd(), 0);
    EXPECT_TRUE(data.m_cxcName == _T("CxC Data"));
}

TEST_F(CSnsCohData09FileOpenSave, CancelledSaveWritesNothing) {
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().cancel();
    EXPECT_EQ(data.saveCxcDataStd(), 0);
    EXPECT_FALSE(std::filesystem::exists(target));
    EXPECT_TRUE(data.m_cxcName == _T("Rest"));
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOpenSave, DatasetThatEndsUnderTheDialogIsNotSaved) {
    test::writeFile(target, "before");
    auto data = std::make_unique<CSnsCohDatazq>();
    golden::fill(*data);
    int dialogsWhenAsked = -1;
    app.script().choose(target);
    const int result = cxc::saveDataset(*data, [&] {
        dialogsWhenAsked = app.script().shown();
        data.reset();
        return false;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(dialogsWhenAsked, 1);
    EXPECT_EQ(test::readFile(target), "before");
}

TEST_F(CSnsCohData09FileOpenSave, DatasetThatIsStillThereIsSavedAndACancelAsksForNothing) {
    CSnsCohDatazq data;
    golden::fill(data);
    int asked = 0;
    const auto stillThere = [&] {
        ++asked;
        return true;
    };
    app.script().cancel();
    EXPECT_EQ(cxc::saveDataset(data, stillThere), 0);
    EXPECT_EQ(asked, 0);
    app.script().choose(target);
    EXPECT_EQ(cxc::saveDataset(data, stillThere), 1);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(test::readFile(target), golden::record20160311().str());
}

TEST_F(CSnsCohData09FileOpenSave, CancelledOpenChangesNothing) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    app.script().cancel();
    EXPECT_EQ(data.openCxcDataStd(), 0);
    golden::expectItems(data, other, 3, golden::lastItem);
    EXPECT_NE(data.m_mCC, nullptr);
}

// --- the extension ---------------------------------------------------------------------------

TEST_F(CSnsCohData09FileOpenSave, ExtensionIsAppendedWhereThePathHasNone) {
    // Capital letters do not count, deliberately.
    for (const std::string ending : {"", ".CXC", ".dat", ".cx"}) {
        const std::filesystem::path plain = test::newTemporaryPath(ending);
        const std::filesystem::path real = plain.string() + ".cxc";
        CSnsCohDatazq data;
        app.script().choose(plain);
        EXPECT_EQ(data.saveCxcDataStd(), 1);
        EXPECT_FALSE(std::filesystem::exists(plain)) << ending;
        EXPECT_TRUE(std::filesystem::remove(real)) << ending;
    }
}

TEST_F(CSnsCohData09FileOpenSave, ExtensionAnywhereInThePathCounts) {
    const std::filesystem::path inName = test::newTemporaryPath(".cxc.dat");
    std::filesystem::create_directory(target);
    for (const std::filesystem::path& path : {inName, target / "plain"}) {
        CSnsCohDatazq data;
        app.script().choose(path);
        EXPECT_EQ(data.saveCxcDataStd(), 1);
        EXPECT_TRUE(std::filesystem::remove(path)) << path;
    }
}

// --- files that cannot be opened, created or understood --------------------------------------

TEST_F(CSnsCohData09FileOpenSave, FileThatCannotBeCreatedGivesZeroWithoutAMessage) {
    // A folder stands where the extension leads to.
    std::filesystem::create_directory(target);
    CSnsCohDatazq data;
    golden::fill(data);
    std::filesystem::path typed = target;
    app.script().choose(typed.replace_extension());
    EXPECT_EQ(data.saveCxcDataStd(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOpenSave, FileThatCannotBeOpenedGivesZeroWithoutAMessage) {
#ifdef _WIN32
    test::writeFile(target, golden::newestRecord().str());
    const CFile locked(test::toCString(target), CFile::modeReadWrite | CFile::shareExclusive);
#else
    std::filesystem::create_directory(target);
#endif
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    app.script().choose(target);
    EXPECT_EQ(data.openCxcDataStd(), 0);
    EXPECT_TRUE(app.messages().empty());
    golden::expectItems(data, other, 3, golden::lastItem);
}

TEST_F(CSnsCohData09FileOpenSave, FileThatIsNotThereGivesZeroWithoutAMessage) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    app.script().choose(target);
    EXPECT_EQ(data.openCxcDataStd(), 0);
    EXPECT_TRUE(app.messages().empty());
    golden::expectItems(data, other, 3, golden::lastItem);
}

TEST_F(CSnsCohData09FileOpenSave, ForeignFileIsRefusedWithAMessageAndStillGivesOne) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    EXPECT_EQ(open(data, golden::Bytes().string("SOMETHING").str()), 1);
    EXPECT_EQ(app.messages(), Texts{"The opened file is not CCoherenceData09File or corrupted!"});
    golden::expectItems(data, other, 3, golden::lastItem);
    EXPECT_EQ(data.getValue(2, 4, 6), -1462);
}

TEST_F(CSnsCohData09FileOpenSave, UnknownVersionIsRefusedWithAMessageAndStillGivesOne) {
    CSnsCohDatazq data, other;
    golden::fillOther(data);
    golden::fillOther(other);
    EXPECT_EQ(open(data, golden::opening(20160312).str()), 1);
    EXPECT_EQ(app.messages(), Texts{"Wrong CxC data format!"});
    golden::expectItems(data, other, 3, golden::lastItem);
}

TEST_F(CSnsCohData09FileOpenSave, FailedRecordStillGivesOne) {
    CSnsCohDatazq data;
    golden::fillOther(data);
    const golden::Bytes bytes = golden::opening(golden::newestVersion)
                                    .append(golden::sizes(2, -1))
                                    .i32(1)
                                    .append(golden::header());
    EXPECT_EQ(open(data, bytes.str()), 1);
    golden::expectEmptied(data);
}

TEST_F(CSnsCohData09FileOpenSave, EveryVersionOpens) {
    CSnsCohDatazq model;
    golden::fill(model);
    for (const golden::Bytes& record :
         {golden::newestRecord(), golden::record20130511(), golden::record20130402(),
          golden::record20120714(), golden::record20080720(), golden::record20080601()}) {
        CSnsCohDatazq data;
        EXPECT_EQ(open(data, record.str()), 1);
    }
    EXPECT_TRUE(app.messages().empty());
}

// --- exceptions and the wait cursor ----------------------------------------------------------

TEST_F(CSnsCohData09FileOpenSave, TruncatedFileRaisesTheExceptionAndEndsTheWaitCursor) {
    const std::string whole = golden::newestRecord().str();
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{10}, std::size_t{60}, whole.size() - 1}) {
        CSnsCohDatazq data;
        golden::fillOther(data);
        bool thrown = false;
        try {
            open(data, whole.substr(0, length));
        } catch (CArchiveException* e) {
            thrown = e->m_cause == CArchiveException::endOfFile;
            e->Delete();
        }
        EXPECT_TRUE(thrown) << length;
        EXPECT_EQ(app.waitBegins(), app.waitEnds());
        // The file is closed: it can be replaced.
        std::filesystem::remove(target);
        EXPECT_FALSE(std::filesystem::exists(target));
    }
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOpenSave, WaitCursorCoversTheDialogAndEndsOnEveryWayOut) {
    CSnsCohDatazq data;
    EXPECT_EQ(open(data, golden::newestRecord().str()), 1);
    EXPECT_EQ(app.waitBegins(), 1);
    EXPECT_EQ(app.waitEnds(), 1);
    EXPECT_EQ(app.dialogsAtBegin, 0);
    EXPECT_EQ(app.dialogsAtEnd, 1);
    app.script().cancel();
    EXPECT_EQ(data.openCxcDataStd(), 0);
    EXPECT_EQ(app.waitBegins(), 2);
    EXPECT_EQ(app.waitEnds(), 2);
}

TEST_F(CSnsCohData09FileOpenSave, SavingShowsNoWaitCursor) {
    CSnsCohDatazq data;
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(app.waitBegins(), 0);
}

TEST_F(CSnsCohData09FileOpenSave, DialogsOfferDatasetFilesFirst) {
    CSnsCohDatazq data;
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    const Texts filters = {"Channel cross channel(*.cxc)", "All Files(*.*)"};
    EXPECT_FALSE(app.script().last().open);
    EXPECT_EQ(app.script().last().filters, filters);
    EXPECT_EQ(app.script().last().filter, 0);
    EXPECT_FALSE(app.script().last().askedToReplace);
    app.script().choose(target);
    EXPECT_EQ(data.openCxcDataStd(), 1);
    EXPECT_TRUE(app.script().last().open);
    EXPECT_EQ(app.script().last().proposed, "");
    EXPECT_EQ(app.script().last().filters, filters);
    EXPECT_EQ(app.script().last().filter, 0);
}

TEST_F(CSnsCohData09FileOpenSave, ExistingFileStaysWhenTheUserDoesNotReplaceIt) {
    test::writeFile(target, "before");
    CSnsCohDatazq data;
    app.script().chooseUnlessItExists(target);
    EXPECT_EQ(data.saveCxcDataStd(), 0);
    EXPECT_TRUE(app.script().last().askedToReplace);
    EXPECT_EQ(test::readFile(target), "before");
}

TEST_F(CSnsCohData09FileOpenSave, NameTooLongForTheDialogStaysWhole) {
    CSnsCohDatazq data;
    data.m_cxcName = CString(std::string(1000000, 'n').c_str());
    app.script().choose(target);
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(data.m_cxcName.GetLength(), 1000000);
    CSnsCohDatazq read;
    app.script().choose(target);
    EXPECT_EQ(read.openCxcDataStd(), 1);
    EXPECT_TRUE(read.m_cxcName == data.m_cxcName);
}

#ifndef _WIN32
// Dialogs on a screen offer no such path.
TEST_F(CSnsCohData09FileOpenSave, PathsOfAnyLengthAreTakenWhole) {
    const test::TempDir folder;
    const std::filesystem::path deep =
        folder / std::string(200, 'a') / std::string(200, 'b') / std::string(200, 'c');
    std::filesystem::create_directories(deep);
    CSnsCohDatazq data, read;
    golden::fill(data);
    app.script().choose(deep / "file");
    EXPECT_EQ(data.saveCxcDataStd(), 1);
    EXPECT_EQ(test::readFile(deep / "file.cxc"), golden::record20160311().str());
    app.script().choose(deep / "file.cxc");
    EXPECT_EQ(read.openCxcDataStd(), 1);
    golden::expectGrid(read);
}

TEST_F(CSnsCohData09FileOpenSave, ExtensionThatMakesTheNameTooLongGivesZeroWithoutAMessage) {
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(target.parent_path() / std::string(253, 'n'));
    EXPECT_EQ(data.saveCxcDataStd(), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(CSnsCohData09FileOpenSave, FullDiskRaisesTheFileException) {
    // The device that is always full exists on Linux only.
    std::filesystem::create_symlink("/dev/full", target);
    CSnsCohDatazq data;
    golden::fill(data);
    app.script().choose(target);
    bool thrown = false;
    try {
        data.saveCxcDataStd();
    } catch (CFileException* e) {
        thrown = e->m_cause == CFileException::diskFull;
        e->Delete();
    }
    EXPECT_TRUE(thrown);
    golden::expectGrid(data);
}
#endif

}  // namespace
