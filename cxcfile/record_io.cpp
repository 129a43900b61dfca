#include "cxcfile/record_io.h"

#include <algorithm>
#include <cstring>

namespace cxc {
namespace {

// The archive counts bytes in 32 bits, so long blocks pass in steps.
constexpr __int64 stepBytes = 1 << 20;

// A length is a byte; where it does not fit, an escape and a wider number, and so on. Text of
// 16-bit units has a marker in front, which looks like a length of two bytes.
constexpr BYTE longerThanByte = 0xFF;
constexpr WORD unitsMarker = 0xFFFE;
constexpr WORD longerThanWord = 0xFFFF;
constexpr DWORD longerThanDword = 0xFFFFFFFF;
static_assert(largestMagic < longerThanByte, "storeMagic writes lengths of one byte");

template <class T>
T load(CArchive& ar) {
    T value{};
    ar >> value;
    return value;
}

ULONGLONG loadBeyondWord(CArchive& ar) {
    const auto dword = load<DWORD>(ar);
    return dword < longerThanDword ? dword : load<ULONGLONG>(ar);
}

void skip(CArchive& ar, StringPrefix stored) {
    BYTE bytes[4096];
    while (stored.length > 0) {
        const ULONGLONG step = std::min<ULONGLONG>(stored.length, sizeof(bytes) / 2);
        readAll(ar, bytes, static_cast<UINT>(step) * stored.charSize);
        stored.length -= step;
    }
}

}  // namespace

StringPrefix loadStringPrefix(CArchive& ar) {
    UINT charSize = 1;
    auto byte = load<BYTE>(ar);
    if (byte < longerThanByte) return {byte, charSize};
    auto word = load<WORD>(ar);
    if (word == unitsMarker) {
        charSize = 2;
        byte = load<BYTE>(ar);
        if (byte < longerThanByte) return {byte, charSize};
        word = load<WORD>(ar);
    }
    return {word < longerThanWord ? word : loadBeyondWord(ar), charSize};
}

void storeMagic(CArchive& ar, LPCTSTR magic, UINT length) {
    ar << longerThanByte << unitsMarker << static_cast<BYTE>(length);
    ar.Write(magic, length * static_cast<UINT>(sizeof(TCHAR)));
}

bool loadOtherMagic(CArchive& ar, LPCTSTR magic, UINT length, StringPrefix stored) {
    if (stored.length != length) {
        skip(ar, stored);
        return false;
    }
    BYTE text[largestMagic];
    readAll(ar, text, length);
    // The magic strings are plain ASCII, the same in every code page.
    return std::equal(text, text + length, magic);
}

__int64 bytesLeft(CArchive& ar) {
    try {
        const CFile* const file = ar.GetFile();
        // First, because a file that cannot tell its length cannot take bytes back either.
        const auto length = static_cast<__int64>(file->GetLength());
        // Gives the bytes that the archive has read ahead back to the file.
        ar.Flush();
        return length - static_cast<__int64>(file->GetPosition());
    } catch (CFileException* e) {
        e->Delete();
    } catch (CNotSupportedException* e) {
        e->Delete();
    }
    return -1;
}

bool fileHolds(CArchive& ar, __int64 count, double storedBytes) {
    const __int64 left = bytesLeft(ar);
    return left < 0 || static_cast<double>(count) * storedBytes <= static_cast<double>(left);
}

void storeBlock(CArchive& ar, const double* values, __int64 count) {
    // Before the bytes are counted: the product of a negative count may come out positive.
    if (count < 1) return;
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
