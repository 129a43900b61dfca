// What CFile asks of the operating system. Each function returns the system's error number, 0 for
// success.
#pragma once

#include "afx_file.h"

namespace afx {

/// CFile::hFileNull and the error number when the file cannot be opened.
CFile::Handle openFile(LPCTSTR name, UINT openFlags, LONG& osError);
/// The name as an absolute path.
CString fullPath(LPCTSTR name);
LONG readFile(CFile::Handle file, void* buffer, UINT count, UINT& delivered);
LONG writeFile(CFile::Handle file, const void* buffer, UINT count, UINT& taken);
LONG seekFile(CFile::Handle file, LONGLONG offset, UINT from, LONGLONG& position);
LONG fileLength(CFile::Handle file, ULONGLONG& length);
LONG flushFile(CFile::Handle file);
LONG closeFile(CFile::Handle file);

}  // namespace afx
