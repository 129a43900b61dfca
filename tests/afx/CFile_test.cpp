#include <afx.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/TempDir.h"
#include "tests/support/Text.h"

namespace {

class CFileTest : public ::testing::Test {
protected:
    void put(const std::string& name, const std::string& bytes) {
        std::ofstream(dir / name, std::ios::binary) << bytes;
    }
    std::string get(const std::string& name) {
        std::ifstream in(dir / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    test::TempDir dir;
};

}  // namespace

TEST_F(CFileTest, WritesAndReadsBack) {
    {
        CFile file(dir.name("a"), CFile::modeCreate | CFile::modeWrite);
        file.Write("hello", 5);
        file.Write("", 0);
        EXPECT_EQ(file.GetLength(), 5u);
        EXPECT_EQ(file.GetPosition(), 5u);
        file.Flush();
        file.Close();
    }
    EXPECT_EQ(get("a"), "hello");
    CFile file(dir.name("a"), CFile::modeRead);
    char buffer[10] = {};
    EXPECT_EQ(file.Read(buffer, 10), 5u);
    EXPECT_EQ(std::string(buffer), "hello");
    EXPECT_EQ(file.Read(buffer, 10), 0u);
}

TEST_F(CFileTest, CreateCutsAnExistingFileUnlessToldNotTo) {
    put("a", "long content");
    CFile(dir.name("a"), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite)
        .Write("L", 1);
    EXPECT_EQ(get("a"), "Long content");
    CFile(dir.name("a"), CFile::modeCreate | CFile::modeWrite).Write("x", 1);
    EXPECT_EQ(get("a"), "x");
}

TEST_F(CFileTest, SeeksFromEveryOrigin) {
    put("a", "0123456789");
    CFile file(dir.name("a"), CFile::modeRead);
    char c = 0;
    EXPECT_EQ(file.Seek(3, CFile::begin), 3u);
    file.Read(&c, 1);
    EXPECT_EQ(c, '3');
    EXPECT_EQ(file.Seek(-2, CFile::end), 8u);
    EXPECT_EQ(file.Seek(-4, CFile::current), 4u);
    try {
        file.Seek(-99, CFile::begin);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        e->Delete();
    }
    EXPECT_EQ(file.GetPosition(), 4u);
}

TEST_F(CFileTest, OpenSaysWhatFailedAndNeverThrows) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(dir.name("missing"), CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
    EXPECT_EQ(test::toUtf8(error.m_strFileName), test::toUtf8(dir.name("missing")));
    EXPECT_FALSE(file.Open(dir.name("missing"), CFile::modeRead));
    EXPECT_EQ(file.m_hFile, CFile::hFileNull);
}

TEST_F(CFileTest, TheConstructorThrowsWhatOpenSays) {
    try {
        CFile file(dir.name("missing"), CFile::modeRead);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::fileNotFound);
        EXPECT_EQ(e->m_lOsError, 2);  // "no such file" of Windows and of the others alike
        EXPECT_EQ(test::toUtf8(e->m_strFileName), test::toUtf8(dir.name("missing")));
        e->Delete();
    }
}

TEST_F(CFileTest, ReadsAndWritesTheSameFile) {
    put("a", "0123456789");
    CFile file(dir.name("a"), CFile::modeReadWrite);
    char c = 0;
    EXPECT_EQ(file.Read(&c, 1), 1u);
    file.Write("AB", 2);
    EXPECT_EQ(file.GetPosition(), 3u);
    EXPECT_EQ(file.Read(&c, 1), 1u);
    EXPECT_EQ(c, '3');
    file.Close();
    EXPECT_EQ(get("a"), "0AB3456789");
}

TEST_F(CFileTest, AnExclusiveFileIsSharedOffWindowsOnly) {
    put("a", "x");
    CFile first(dir.name("a"), CFile::modeRead | CFile::shareExclusive);
    CFile second;
    CFileException error;
    const BOOL opened = second.Open(dir.name("a"), CFile::modeRead, &error);
#ifdef _WIN32
    EXPECT_FALSE(opened);
    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
#else
    EXPECT_TRUE(opened);
#endif
}

TEST_F(CFileTest, ADirectoryOpensForNothing) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(test::fromPath(dir.path()), CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::accessDenied);
    EXPECT_FALSE(file.Open(test::fromPath(dir.path()), CFile::modeCreate | CFile::modeWrite));
}

TEST_F(CFileTest, AFolderThatIsMissingIsNoPlaceForAFile) {
    CFile file;
    EXPECT_FALSE(file.Open(test::fromPath(dir / "no" / "a"), CFile::modeCreate | CFile::modeWrite));
}

TEST_F(CFileTest, KnowsItsPathWhileOpen) {
    CFile file(dir.name("name.cxc"), CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(test::toUtf8(file.GetFileName()), "name.cxc");
    EXPECT_EQ(test::toPath(file.GetFilePath()), dir / "name.cxc");
    file.Close();
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
    file.Close();  // once more is harmless
}

TEST_F(CFileTest, NamesBeyondAsciiWork) {
    const TCHAR name[] = {0x00E9, 0x4E2D, 0xD83D, 0xDE00, 0};
    const CString path = test::fromPath(dir.path()) + _T("/") + name;
    CFile(path, CFile::modeCreate | CFile::modeWrite).Write("x", 1);
    CFile file(path, CFile::modeRead);
    EXPECT_EQ(file.GetLength(), 1u);
    EXPECT_TRUE(file.GetFileName() == name);
}

TEST_F(CFileTest, WritingToAFileOpenForReadingThrows) {
    put("a", "x");
    CFile file(dir.name("a"), CFile::modeRead);
    try {
        file.Write("y", 1);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_NE(e->m_cause, CFileException::none);
        e->Delete();
    }
    file.Close();
    EXPECT_EQ(get("a"), "x");
}

TEST_F(CFileTest, TheDestructorAndAbortCloseSilently) {
    { CFile file(dir.name("a"), CFile::modeCreate | CFile::modeWrite); }
    CFile file(dir.name("a"), CFile::modeRead);
    file.Abort();
    EXPECT_EQ(file.m_hFile, CFile::hFileNull);
    std::filesystem::remove(dir / "a");  // Windows would refuse while it is open
    EXPECT_FALSE(std::filesystem::exists(dir / "a"));
}

#ifndef _WIN32
TEST_F(CFileTest, ADeviceHasNoLengthButCanBeRead) {
    CFile file(_T("/dev/zero"), CFile::modeRead);
    try {
        file.GetLength();
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::badSeek);
        e->Delete();
    }
    char byte = 1;
    EXPECT_EQ(file.Read(&byte, 1), 1u);
    EXPECT_EQ(byte, 0);
}

TEST_F(CFileTest, AFullDeviceIsADiskFullException) {
    CFile file(_T("/dev/full"), CFile::modeWrite);
    try {
        file.Write("x", 1);
        ADD_FAILURE() << "nothing was thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::diskFull);
        e->Delete();
    }
}
#endif
