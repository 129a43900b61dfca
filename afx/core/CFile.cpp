#include "afx_file.h"

#include "afx/core/file_system.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CFile, CObject)

#ifdef _WIN32
const afx::FileHandle CFile::hFileNull = INVALID_HANDLE_VALUE;
#else
const afx::FileHandle CFile::hFileNull = -1;
#endif

CFile::CFile() : m_hFile(hFileNull) {}

CFile::CFile(LPCTSTR fileName, UINT openFlags) : m_hFile(hFileNull) {
    CFileException error;
    if (!CFile::Open(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile() {
    CFile::Abort();
}

BOOL CFile::Open(LPCTSTR fileName, UINT openFlags, CFileException* error) {
    LONG osError = 0;
    const afx::FileHandle handle = afx::openFile(fileName, openFlags, osError);
    if (handle == hFileNull) {
        if (error != nullptr) {
            error->m_cause = CFileException::OsErrorToException(osError);
            error->m_lOsError = osError;
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    m_hFile = handle;
    m_strFileName = afx::fullPath(fileName);
    return TRUE;
}

void CFile::fail(LONG osError) const {
    CFileException::ThrowOsError(osError, m_strFileName);
}

ULONGLONG CFile::GetPosition() const {
    LONGLONG position = 0;
    if (const LONG osError = afx::seekFile(m_hFile, 0, current, position)) fail(osError);
    return static_cast<ULONGLONG>(position);
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
    LONGLONG position = 0;
    if (const LONG osError = afx::seekFile(m_hFile, offset, from, position)) fail(osError);
    return static_cast<ULONGLONG>(position);
}

ULONGLONG CFile::GetLength() const {
    ULONGLONG length = 0;
    if (const LONG osError = afx::fileLength(m_hFile, length)) fail(osError);
    return length;
}

CString CFile::GetFilePath() const {
    return m_strFileName;
}

CString CFile::GetFileName() const {
    const int slash = std::max(m_strFileName.ReverseFind('/'), m_strFileName.ReverseFind('\\'));
    return m_strFileName.Mid(slash + 1);
}

UINT CFile::Read(void* buffer, UINT count) {
    BYTE* at = static_cast<BYTE*>(buffer);
    UINT left = count;
    while (left > 0) {
        UINT delivered = 0;
        if (const LONG osError = afx::readFile(m_hFile, at, left, delivered)) fail(osError);
        if (delivered == 0) break;
        at += delivered;
        left -= delivered;
    }
    return count - left;
}

void CFile::Write(const void* buffer, UINT count) {
    const BYTE* at = static_cast<const BYTE*>(buffer);
    UINT left = count;
    while (left > 0) {
        UINT taken = 0;
        if (const LONG osError = afx::writeFile(m_hFile, at, left, taken)) fail(osError);
        if (taken == 0) AfxThrowFileException(CFileException::diskFull, -1, m_strFileName);
        at += taken;
        left -= taken;
    }
}

void CFile::Flush() {
    if (m_hFile == hFileNull) return;
    if (const LONG osError = afx::flushFile(m_hFile)) fail(osError);
}

void CFile::Close() {
    if (m_hFile == hFileNull) return;
    const afx::FileHandle handle = m_hFile;
    m_hFile = hFileNull;
    const LONG osError = afx::closeFile(handle);
    const CString name = m_strFileName;
    m_strFileName.Empty();
    if (osError != 0) CFileException::ThrowOsError(osError, name);
}

void CFile::Abort() {
    if (m_hFile == hFileNull) return;
    afx::closeFile(m_hFile);
    m_hFile = hFileNull;
    m_strFileName.Empty();
}
