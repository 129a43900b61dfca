#include "afx/core/file_system.h"

#include "afx/core/utf8.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace afx {

FileHandle openFile(LPCTSTR name, UINT openFlags, LONG& osError) {
    const std::string path = utf8(name);
    int flags = O_CLOEXEC;
    switch (openFlags & 3) {
        case CFile::modeRead:
            flags |= O_RDONLY;
            break;
        case CFile::modeWrite:
            flags |= O_WRONLY;
            break;
        default:
            flags |= O_RDWR;
            break;
    }
    if ((openFlags & CFile::modeCreate) != 0)
        flags |= (openFlags & CFile::modeNoTruncate) != 0 ? O_CREAT : O_CREAT | O_TRUNC;
    int file = -1;
    do {
        file = ::open(path.c_str(), flags, 0666);
    } while (file < 0 && errno == EINTR);
    if (file < 0) {
        osError = errno;
        return CFile::hFileNull;
    }
    struct stat status = {};
    if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(file);
        osError = EISDIR;
        return CFile::hFileNull;
    }
    return file;
}

CString fullPath(LPCTSTR name) {
    std::error_code failed;
    const auto path = std::filesystem::absolute(utf8(name), failed);
    return failed ? CString(name) : utf16(path.native());
}

LONG readFile(FileHandle file, void* buffer, UINT count, UINT& delivered) {
    ssize_t n = 0;
    do {
        n = ::read(file, buffer, std::min<UINT>(count, 1u << 30));
    } while (n < 0 && errno == EINTR);
    delivered = n < 0 ? 0 : static_cast<UINT>(n);
    return n < 0 ? errno : 0;
}

LONG writeFile(FileHandle file, const void* buffer, UINT count, UINT& taken) {
    ssize_t n = 0;
    do {
        n = ::write(file, buffer, std::min<UINT>(count, 1u << 30));
    } while (n < 0 && errno == EINTR);
    taken = n < 0 ? 0 : static_cast<UINT>(n);
    return n < 0 ? errno : 0;
}

LONG seekFile(FileHandle file, LONGLONG offset, UINT from, LONGLONG& position) {
    const int whence = from == CFile::begin     ? SEEK_SET
                       : from == CFile::current ? SEEK_CUR
                                                : SEEK_END;
    position = ::lseek(file, offset, whence);
    return position < 0 ? errno : 0;
}

LONG fileLength(FileHandle file, ULONGLONG& length) {
    struct stat status = {};
    if (::fstat(file, &status) != 0) return errno;
    // Pipes and devices have no length to speak of.
    if (!S_ISREG(status.st_mode) && !S_ISBLK(status.st_mode)) return ESPIPE;
    length = static_cast<ULONGLONG>(status.st_size);
    return 0;
}

LONG flushFile(FileHandle file) {
    // Pipes and some file systems cannot sync and have nothing to lose by it.
    return ::fsync(file) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
}

LONG closeFile(FileHandle file) {
    // After EINTR the descriptor is gone all the same.
    return ::close(file) == 0 || errno == EINTR ? 0 : errno;
}

}  // namespace afx

int PASCAL CFileException::OsErrorToException(LONG osError) {
    switch (osError) {
        case 0:
            return none;
        case ENOENT:
            return fileNotFound;
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP:
        case EINVAL:
            return badPath;
        case EMFILE:
        case ENFILE:
            return tooManyOpenFiles;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return accessDenied;
        case EBADF:
            return invalidFile;
        case ESPIPE:
            return badSeek;
        case EIO:
            return hardIO;
        case ETXTBSY:
        case EBUSY:
            return sharingViolation;
        case EAGAIN:
            return lockViolation;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return diskFull;
        default:
            return genericException;
    }
}
