// CFile: an open file of the operating system, unbuffered.
//
// Differences from MFC:
//  1. Share modes are kept by Windows only; elsewhere other programs may open the file as well.
//  2. No static operations (Rename, Remove, GetStatus) and no Duplicate.
//  3. A directory or a device without a length opens as the system says; directories never do.
#pragma once

#include "afx_exception.h"

namespace afx {

/// What the operating system has for an open file.
#ifdef _WIN32
using FileHandle = HANDLE;
#else
using FileHandle = int;
#endif

}  // namespace afx

class AFX_API CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

public:
    enum OpenFlags {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,      // made new, or cut to no bytes
        modeNoTruncate = 0x2000,  // with modeCreate: an existing file keeps its content
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    static const afx::FileHandle hFileNull;  // m_hFile of a file that is not open

    CFile();
    /// Opens or throws CFileException*.
    CFile(LPCTSTR fileName, UINT openFlags);
    /// Closes an open file silently.
    ~CFile() override;

    /// FALSE on failure, with the cause in `error` when given; never throws for it.
    virtual BOOL Open(LPCTSTR fileName, UINT openFlags, CFileException* error = nullptr);

    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    virtual ULONGLONG GetLength() const;
    virtual CString GetFilePath() const;
    virtual CString GetFileName() const;

    /// Bytes delivered; fewer than asked only at the end of the file.
    virtual UINT Read(void* buffer, UINT count);
    /// All of it or an exception.
    virtual void Write(const void* buffer, UINT count);
    /// To the disk itself.
    virtual void Flush();
    virtual void Close();
    virtual void Abort();

    afx::FileHandle m_hFile;

protected:
    CString m_strFileName;  // full path; empty without a name

private:
    [[noreturn]] void fail(LONG osError) const;
};
