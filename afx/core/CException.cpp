#include "afx_exception.h"

#include "afxwin.h"

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CResourceException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)
IMPLEMENT_DYNAMIC(CUserException, CSimpleException)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace {

// In memory of its own, so that throwing it needs none.
CMemoryException* memoryException() {
    static CMemoryException exception(FALSE);
    return &exception;
}

// Copies as much of `message` as fits.
BOOL give(LPCTSTR message, LPTSTR text, UINT capacity) {
    if (text == nullptr || capacity == 0) return FALSE;
    UINT i = 0;
    for (; i + 1 < capacity && message[i] != 0; ++i)
        text[i] = message[i];
    text[i] = 0;
    return TRUE;
}

LPCTSTR fileMessage(int cause) {
    switch (cause) {
        case CFileException::fileNotFound:
            return _T("the file was not found");
        case CFileException::badPath:
            return _T("the path is not valid");
        case CFileException::tooManyOpenFiles:
            return _T("too many files are open");
        case CFileException::accessDenied:
            return _T("access was denied");
        case CFileException::invalidFile:
            return _T("the file handle is not valid");
        case CFileException::directoryFull:
            return _T("the folder is full");
        case CFileException::badSeek:
            return _T("the position in the file is not valid");
        case CFileException::hardIO:
            return _T("the device reported an error");
        case CFileException::sharingViolation:
            return _T("the file is in use");
        case CFileException::lockViolation:
            return _T("a part of the file is locked");
        case CFileException::diskFull:
            return _T("the disk is full");
        case CFileException::endOfFile:
            return _T("the end of the file was reached");
        default:
            return _T("an error occurred");
    }
}

LPCTSTR archiveMessage(int cause) {
    switch (cause) {
        case CArchiveException::readOnly:
            return _T("it was written to while it was being read");
        case CArchiveException::endOfFile:
            return _T("the data end too early");
        case CArchiveException::writeOnly:
            return _T("it was read from while it was being written");
        case CArchiveException::badIndex:
            return _T("the format is not valid");
        default:
            return _T("an error occurred");
    }
}

BOOL giveNamed(const CString& name, LPCTSTR message, LPTSTR text, UINT capacity) {
    if (name.IsEmpty()) return give(message, text, capacity);
    return give(name + _T(": ") + message, text, capacity);
}

}  // namespace

CException::CException(BOOL autoDelete) : m_bAutoDelete(autoDelete) {}

void CException::Delete() {
    if (m_bAutoDelete) delete this;
}

BOOL CException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    if (text != nullptr && capacity > 0) text[0] = 0;
    return FALSE;
}

int CException::ReportError(UINT type, UINT) {
    TCHAR text[512];
    if (GetErrorMessage(text, 512)) return AfxMessageBox(text, type);
    return AfxMessageBox(_T("No error message is available."), type);
}

BOOL CMemoryException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return give(_T("Out of memory."), text, capacity);
}

BOOL CNotSupportedException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return give(_T("The operation is not supported."), text, capacity);
}

BOOL CResourceException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return give(_T("A resource is not available."), text, capacity);
}

BOOL CInvalidArgException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return give(_T("An argument is not valid."), text, capacity);
}

CFileException::CFileException(int cause, LONG osError, LPCTSTR fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

BOOL CFileException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return giveNamed(m_strFileName, fileMessage(m_cause), text, capacity);
}

void PASCAL CFileException::ThrowOsError(LONG osError, LPCTSTR fileName) {
    AfxThrowFileException(OsErrorToException(osError), osError, fileName);
}

CArchiveException::CArchiveException(int cause, LPCTSTR archiveName)
    : m_cause(cause), m_strFileName(archiveName) {}

BOOL CArchiveException::GetErrorMessage(LPTSTR text, UINT capacity, PUINT) const {
    return giveNamed(m_strFileName, archiveMessage(m_cause), text, capacity);
}

void AFXAPI AfxThrowMemoryException() {
    throw memoryException();
}

void AFXAPI AfxThrowNotSupportedException() {
    throw new CNotSupportedException;
}

void AFXAPI AfxThrowResourceException() {
    throw new CResourceException;
}

void AFXAPI AfxThrowInvalidArgException() {
    throw new CInvalidArgException;
}

void AFXAPI AfxThrowUserException() {
    throw new CUserException;
}

void AFXAPI AfxThrowFileException(int cause, LONG osError, LPCTSTR fileName) {
    throw new CFileException(cause, osError, fileName);
}

void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR archiveName) {
    throw new CArchiveException(cause, archiveName);
}
