#include "cxcfile/record_io.h"

#include <algorithm>
#include <cstring>

namespace cxc {
namespace {

// The archive counts bytes in 32 bits, so long blocks pass in steps.
constexpr __int64 stepBytes = 1024 * 1024;

}  // namespace

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

void storeBlock(CArchive& ar, const double* values, __int64 count) {
    const auto* at = reinterpret_cast<const BYTE*>(values);
    for (__int64 left = count * static_cast<__int64>(sizeof(double)); left > 0;) {
        const __int64 step = std::min(left, stepBytes);
        ar.Write(at, static_cast<UINT>(step));
        at += step;
        left -= step;
    }
}

__int64 loadBlock(CArchive& ar, double* values, __int64 count) {
    auto* at = reinterpret_cast<BYTE*>(values);
    const __int64 bytes = count * static_cast<__int64>(sizeof(double));
    __int64 left = bytes;
    try {
        while (left > 0) {
            const __int64 step = std::min(left, stepBytes);
            const __int64 delivered = ar.Read(at, static_cast<UINT>(step));
            at += delivered;
            left -= delivered;
            if (delivered < step) break;
        }
    } catch (...) {
        std::memset(at, 0, static_cast<std::size_t>(left));
        throw;
    }
    if (left > 0) std::memset(at, 0, static_cast<std::size_t>(left));
    return bytes - left;
}

}  // namespace cxc
