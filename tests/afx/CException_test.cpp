#include <afx.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "tests/support/TestApp.h"
#include "tests/support/Text.h"

namespace {

CString messageOf(const CException& e) {
    TCHAR text[200];
    return e.GetErrorMessage(text, 200) ? CString(text) : CString();
}

template <class Exception, class Throw>
void expectThrown(Throw throwIt) {
    try {
        throwIt();
        ADD_FAILURE() << "nothing was thrown";
    } catch (Exception* e) {
        EXPECT_TRUE(e->IsKindOf(RUNTIME_CLASS(CException)));
        e->Delete();
    }
}

}  // namespace

TEST(CException, EachIsThrownByPointerAndCaughtAsItsBase) {
    expectThrown<CMemoryException>([] { AfxThrowMemoryException(); });
    expectThrown<CNotSupportedException>([] { AfxThrowNotSupportedException(); });
    expectThrown<CResourceException>([] { AfxThrowResourceException(); });
    expectThrown<CInvalidArgException>([] { AfxThrowInvalidArgException(); });
    expectThrown<CUserException>([] { AfxThrowUserException(); });
    expectThrown<CSimpleException>([] { AfxThrowMemoryException(); });
    expectThrown<CException>([] { AfxThrowFileException(CFileException::diskFull); });
}

TEST(CException, TheMemoryExceptionExistsBeforehandAndSurvivesDelete) {
    CMemoryException* first = nullptr;
    for (int i = 0; i < 2; ++i) {
        try {
            AfxThrowMemoryException();
        } catch (CMemoryException* e) {
            if (first != nullptr) {
                EXPECT_EQ(e, first);
            }
            first = e;
            e->Delete();
        }
    }
    EXPECT_EQ(test::toUtf8(messageOf(*first)), "Out of memory.");
}

TEST(CException, FileExceptionsCarryCauseErrorAndName) {
    try {
        AfxThrowFileException(CFileException::diskFull, 28, _T("a.cxc"));
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::diskFull);
        EXPECT_EQ(e->m_lOsError, 28);
        EXPECT_EQ(test::toUtf8(e->m_strFileName), "a.cxc");
        EXPECT_EQ(test::toUtf8(messageOf(*e)), "a.cxc: the disk is full");
        e->Delete();
    }
}

TEST(CException, CausesHaveTheirNumbers) {
    EXPECT_EQ(CFileException::none, 0);
    EXPECT_EQ(CFileException::fileNotFound, 2);
    EXPECT_EQ(CFileException::accessDenied, 5);
    EXPECT_EQ(CFileException::diskFull, 13);
    EXPECT_EQ(CFileException::endOfFile, 14);
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
    EXPECT_EQ(CArchiveException::badSchema, 7);
}

TEST(CException, ErrorsOfTheSystemHaveTheirCauses) {
#ifdef _WIN32
    const std::pair<LONG, int> known[] = {
        {0, CFileException::none},
        {ERROR_FILE_NOT_FOUND, CFileException::fileNotFound},
        {ERROR_PATH_NOT_FOUND, CFileException::badPath},
        {ERROR_TOO_MANY_OPEN_FILES, CFileException::tooManyOpenFiles},
        {ERROR_ACCESS_DENIED, CFileException::accessDenied},
        {ERROR_INVALID_HANDLE, CFileException::invalidFile},
        {ERROR_NEGATIVE_SEEK, CFileException::badSeek},
        {ERROR_CRC, CFileException::hardIO},
        {ERROR_SHARING_VIOLATION, CFileException::sharingViolation},
        {ERROR_LOCK_VIOLATION, CFileException::lockViolation},
        {ERROR_DISK_FULL, CFileException::diskFull},
        {ERROR_HANDLE_EOF, CFileException::endOfFile},
        {123456, CFileException::genericException}};
#else
    const std::pair<LONG, int> known[] = {{0, CFileException::none},
                                          {ENOENT, CFileException::fileNotFound},
                                          {ENOTDIR, CFileException::badPath},
                                          {EMFILE, CFileException::tooManyOpenFiles},
                                          {EACCES, CFileException::accessDenied},
                                          {EISDIR, CFileException::accessDenied},
                                          {EBADF, CFileException::invalidFile},
                                          {ESPIPE, CFileException::badSeek},
                                          {EIO, CFileException::hardIO},
                                          {EBUSY, CFileException::sharingViolation},
                                          {ENOSPC, CFileException::diskFull},
                                          {123456, CFileException::genericException}};
#endif
    for (const auto& [osError, cause] : known) {
        EXPECT_EQ(CFileException::OsErrorToException(osError), cause) << osError;
        try {
            CFileException::ThrowOsError(osError, _T("c.cxc"));
        } catch (CFileException* e) {
            EXPECT_EQ(e->m_cause, cause);
            EXPECT_EQ(e->m_lOsError, osError);
            EXPECT_EQ(test::toUtf8(e->m_strFileName), "c.cxc");
            e->Delete();
        }
    }
}

TEST(CException, ArchiveExceptionsCarryCauseAndName) {
    try {
        AfxThrowArchiveException(CArchiveException::endOfFile, _T("b.cxc"));
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::endOfFile);
        EXPECT_EQ(test::toUtf8(messageOf(*e)), "b.cxc: the data end too early");
        e->Delete();
    }
}

TEST(CException, MessagesAreCutToTheRoomThereIs) {
    CMemoryException e(FALSE);
    TCHAR text[5] = {'x', 'x', 'x', 'x', 'x'};
    EXPECT_TRUE(e.GetErrorMessage(text, 4));
    EXPECT_EQ(test::toUtf8(text), "Out");
    EXPECT_EQ(text[4], static_cast<TCHAR>('x'));
    EXPECT_FALSE(e.GetErrorMessage(text, 0));
}

TEST(CException, ReportErrorShowsTheTextInAMessageBox) {
    test::TestApp app;
    CMemoryException known(FALSE);
    CUserException unknown;
    known.ReportError();
    unknown.ReportError();
    EXPECT_EQ(app.messages(),
              std::vector<std::string>({"Out of memory.", "No error message is available."}));
}
