// The framework's exceptions. They are thrown and caught by pointer; who catches one calls
// Delete().
//
// Differences from MFC:
//  1. The TRY / CATCH macros do not exist; use the language's own.
//  2. The texts of GetErrorMessage are this subset's own.
//  3. CException is allocated with the plain operators; only CMemoryException exists beforehand.
#pragma once

#include "afx_object.h"
#include "afx_string.h"

class AFX_API CException : public CObject {
    DECLARE_DYNAMIC(CException)

public:
    /// autoDelete: the object came from new, so that Delete frees it.
    explicit CException(BOOL autoDelete = TRUE);

    void Delete();
    /// Text for the user, cut to `capacity` characters with its terminator. FALSE without one.
    virtual BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const;
    /// Shows the text in a message box; returns its button.
    virtual int ReportError(UINT type = MB_OK, UINT messageID = 0);

protected:
    BOOL m_bAutoDelete;
};

class AFX_API CSimpleException : public CException {
    DECLARE_DYNAMIC(CSimpleException)

public:
    explicit CSimpleException(BOOL autoDelete = TRUE) : CException(autoDelete) {}
};

class AFX_API CMemoryException : public CSimpleException {
    DECLARE_DYNAMIC(CMemoryException)

public:
    explicit CMemoryException(BOOL autoDelete = TRUE) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;
};

class AFX_API CNotSupportedException : public CSimpleException {
    DECLARE_DYNAMIC(CNotSupportedException)

public:
    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;
};

class AFX_API CResourceException : public CSimpleException {
    DECLARE_DYNAMIC(CResourceException)

public:
    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;
};

class AFX_API CInvalidArgException : public CSimpleException {
    DECLARE_DYNAMIC(CInvalidArgException)

public:
    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;
};

/// The user has been told already.
class AFX_API CUserException : public CSimpleException {
    DECLARE_DYNAMIC(CUserException)
};

class AFX_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

public:
    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG osError = -1, LPCTSTR fileName = nullptr);

    /// The cause that stands for an error number of the operating system.
    static int PASCAL OsErrorToException(LONG osError);
    [[noreturn]] static void PASCAL ThrowOsError(LONG osError, LPCTSTR fileName = nullptr);
    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

class AFX_API CArchiveException : public CException {
    DECLARE_DYNAMIC(CArchiveException)

public:
    enum {
        none,
        genericException,
        readOnly,   // written to while loading
        endOfFile,  // the data ran out
        writeOnly,  // read from while storing
        badIndex,
        badClass,
        badSchema
    };

    explicit CArchiveException(int cause = none, LPCTSTR archiveName = nullptr);

    BOOL GetErrorMessage(LPTSTR text, UINT capacity, PUINT helpContext = nullptr) const override;

    int m_cause;
    CString m_strFileName;
};

[[noreturn]] AFX_API void AFXAPI AfxThrowMemoryException();
[[noreturn]] AFX_API void AFXAPI AfxThrowNotSupportedException();
[[noreturn]] AFX_API void AFXAPI AfxThrowResourceException();
[[noreturn]] AFX_API void AFXAPI AfxThrowInvalidArgException();
[[noreturn]] AFX_API void AFXAPI AfxThrowUserException();
[[noreturn]] AFX_API void AFXAPI AfxThrowFileException(int cause, LONG osError = -1,
                                                       LPCTSTR fileName = nullptr);
[[noreturn]] AFX_API void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR archiveName = nullptr);
