#include "afx/core/file_system.h"

namespace afx {

FileHandle openFile(LPCTSTR name, UINT openFlags, LONG& osError) {
    DWORD access = GENERIC_READ;
    switch (openFlags & 3) {
        case CFile::modeRead:
            break;
        case CFile::modeWrite:
            access = GENERIC_WRITE;
            break;
        default:
            access = GENERIC_READ | GENERIC_WRITE;
            break;
    }
    DWORD share = 0;
    switch (openFlags & 0x70) {
        case CFile::shareDenyWrite:
            share = FILE_SHARE_READ;
            break;
        case CFile::shareDenyRead:
            share = FILE_SHARE_WRITE;
            break;
        case CFile::shareDenyNone:
            share = FILE_SHARE_READ | FILE_SHARE_WRITE;
            break;
        default:
            break;
    }
    DWORD creation = OPEN_EXISTING;
    if ((openFlags & CFile::modeCreate) != 0)
        creation = (openFlags & CFile::modeNoTruncate) != 0 ? OPEN_ALWAYS : CREATE_ALWAYS;
    SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr,
                                   (openFlags & CFile::modeNoInherit) == 0};
    const HANDLE file = CreateFileW(name == nullptr ? L"" : name, access, share, &inherit, creation,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == CFile::hFileNull) osError = static_cast<LONG>(GetLastError());
    return file;
}

CString fullPath(LPCTSTR name) {
    CString path;
    const DWORD length = GetFullPathNameW(name, 0, nullptr, nullptr);
    const DWORD written =
        GetFullPathNameW(name, length, path.GetBuffer(static_cast<int>(length)), nullptr);
    path.ReleaseBuffer(static_cast<int>(written < length ? written : 0));
    return path.IsEmpty() ? CString(name) : path;
}

LONG readFile(FileHandle file, void* buffer, UINT count, UINT& delivered) {
    DWORD n = 0;
    const BOOL done = ReadFile(file, buffer, count, &n, nullptr);
    delivered = done ? n : 0;
    if (done) return 0;
    const DWORD osError = GetLastError();
    return osError == ERROR_BROKEN_PIPE || osError == ERROR_HANDLE_EOF ? 0
                                                                       : static_cast<LONG>(osError);
}

LONG writeFile(FileHandle file, const void* buffer, UINT count, UINT& taken) {
    DWORD n = 0;
    const BOOL done = WriteFile(file, buffer, count, &n, nullptr);
    taken = done ? n : 0;
    return done ? 0 : static_cast<LONG>(GetLastError());
}

LONG seekFile(FileHandle file, LONGLONG offset, UINT from, LONGLONG& position) {
    LARGE_INTEGER distance;
    LARGE_INTEGER reached;
    distance.QuadPart = offset;
    if (!SetFilePointerEx(file, distance, &reached, from)) return static_cast<LONG>(GetLastError());
    position = reached.QuadPart;
    return 0;
}

LONG fileLength(FileHandle file, ULONGLONG& length) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size)) return static_cast<LONG>(GetLastError());
    length = static_cast<ULONGLONG>(size.QuadPart);
    return 0;
}

LONG flushFile(FileHandle file) {
    return FlushFileBuffers(file) ? 0 : static_cast<LONG>(GetLastError());
}

LONG closeFile(FileHandle file) {
    return CloseHandle(file) ? 0 : static_cast<LONG>(GetLastError());
}

}  // namespace afx

int PASCAL CFileException::OsErrorToException(LONG osError) {
    switch (osError) {
        case 0:
            return none;
        case ERROR_FILE_NOT_FOUND:
            return fileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_FILENAME_EXCED_RANGE:
            return badPath;
        case ERROR_TOO_MANY_OPEN_FILES:
            return tooManyOpenFiles;
        case ERROR_ACCESS_DENIED:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return accessDenied;
        case ERROR_INVALID_HANDLE:
            return invalidFile;
        case ERROR_CANNOT_MAKE:
            return directoryFull;
        case ERROR_SEEK:
        case ERROR_NEGATIVE_SEEK:
            return badSeek;
        case ERROR_CRC:
        case ERROR_NOT_READY:
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_GEN_FAILURE:
            return hardIO;
        case ERROR_SHARING_VIOLATION:
            return sharingViolation;
        case ERROR_LOCK_VIOLATION:
            return lockViolation;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return diskFull;
        case ERROR_HANDLE_EOF:
            return endOfFile;
        default:
            return genericException;
    }
}
