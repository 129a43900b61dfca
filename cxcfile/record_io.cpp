#include "cxcfile/record_io.h"

namespace cxc {

__int64 bytesLeft(CArchive& ar) {
    try {
        // Gives the bytes that the archive has read ahead back to the file.
        ar.Flush();
        const CFile* const file = ar.GetFile();
        return static_cast<__int64>(file->GetLength()) - static_cast<__int64>(file->GetPosition());
    } catch (CFileException* e) {
        e->Delete();
    }
    return -1;
}

bool claimIsBacked(CArchive& ar, __int64 count, __int64 elementBytes, double storedBytes) {
    if (count < 0) return false;
    const double elements = static_cast<double>(count);
    if (elements * static_cast<double>(elementBytes) <= static_cast<double>(largestUnbackedClaim))
        return true;
    const __int64 left = bytesLeft(ar);
    return left < 0 || elements * storedBytes <= static_cast<double>(left);
}

}  // namespace cxc
