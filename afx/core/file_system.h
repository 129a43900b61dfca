// What CFile asks of the operating system. Each function returns the system's error number, 0 for
// success.
#pragma once

#include "afx_file.h"

namespace afx {

/// CFile::hFileNull and the error number when the file cannot be opened.
FileHandle openFile(LPCTSTR name, UINT openFlags, LONG& osError);
/// The name as an absolute path.
CString fullPath(LPCTSTR name);
LONG readFile(FileHandle file, void* buffer, UINT count, UINT& delivered);
LONG writeFile(FileHandle file, const void* buffer, UINT count, UINT& taken);
LONG seekFile(FileHandle file, LONGLONG offset, UINT from, LONGLONG& position);
LONG fileLength(FileHandle file, ULONGLONG& length);
LONG flushFile(FileHandle file);
LONG closeFile(FileHandle file);

}  // namespace afx
