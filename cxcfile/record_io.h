// What every record is made of: single values that pass in the direction of the archive, magic
// strings, and the rule for sizes that a file claims. A record lists its values once, and the
// same pass over the list stores or loads them.
#pragma once

#include "cxcdata/allocation.h"
#include "framework.h"

#include <cstddef>
#include <cstring>

namespace cxc {

/// Stores or loads one value. A value that the archive cannot deliver whole stays as it was.
/// Throws the archive's exceptions.
template <class T>
void passItem(CArchive& ar, T& value) {
    if (ar.IsStoring()) {
        ar << value;
        return;
    }
    T loaded{};
    ar >> loaded;
    value = loaded;
}

/// One byte; any non-zero one is true.
inline void passItem(CArchive& ar, bool& value) {
    BYTE byte = value ? 1 : 0;
    passItem(ar, byte);
    value = byte != 0;
}

/// The longest magic string [characters].
constexpr UINT largestMagic = 32;

/// Reads `bytes` bytes; throws the end-of-file exception when the file has fewer.
inline void readAll(CArchive& ar, void* to, UINT bytes) {
    if (ar.Read(to, bytes) < bytes)
        AfxThrowArchiveException(CArchiveException::endOfFile, ar.GetFile()->GetFilePath());
}

/// What stands before the characters of a stored string.
struct StringPrefix {
    ULONGLONG length;  // [characters]
    UINT charSize;     // 1: characters of the code page; 2: 16-bit units [bytes]
};

/// Throws the archive's exceptions.
StringPrefix loadStringPrefix(CArchive& ar);

/// The rest of loadMagic where the string is not as the library writes it: of another length, or
/// in 8-bit characters.
bool loadOtherMagic(CArchive& ar, LPCTSTR magic, UINT length, StringPrefix stored);

/// Reads a string and tells whether it is exactly `magic`. Every vector of a grid has one: the
/// text is compared on the way, without a string of its own. Throws the end-of-file exception when
/// the string is longer than the file.
template <std::size_t Size>
bool loadMagic(CArchive& ar, const TCHAR (&magic)[Size]) {
    constexpr UINT length = Size - 1;
    static_assert(length <= largestMagic, "other forms are compared in a buffer of that size");
    const StringPrefix stored = loadStringPrefix(ar);
    if (stored.length != length || stored.charSize != sizeof(TCHAR))
        return loadOtherMagic(ar, magic, length, stored);
    TCHAR text[length];
    readAll(ar, text, sizeof(text));
    return std::memcmp(text, magic, sizeof(text)) == 0;
}

void storeMagic(CArchive& ar, LPCTSTR magic, UINT length);

template <std::size_t Size>
void storeMagic(CArchive& ar, const TCHAR (&magic)[Size]) {
    static_assert(Size - 1 <= largestMagic, "loadMagic would not compile");
    storeMagic(ar, magic, Size - 1);
}

/// Bytes between the place of a loading archive and the end of its file; -1 where the file cannot
/// tell. Flushes the archive, so it is not for every item.
__int64 bytesLeft(CArchive& ar);

/// Whether the rest of the file has room for `count` elements of at least `storedBytes` each; true
/// where it cannot tell.
bool fileHolds(CArchive& ar, __int64 count, double storedBytes);

/// Whether `count` elements of `elementBytes` of memory may be allocated for data that take at
/// least `storedBytes` each in the file. False for a negative count. Asked for every vector of a
/// grid, so the usual answer costs one comparison.
inline bool claimIsBacked(CArchive& ar, __int64 count, __int64 elementBytes, double storedBytes) {
    if (count < 0) return false;
    return count <= largestUnbackedClaim / elementBytes || fileHolds(ar, count, storedBytes);
}

/// Writes `count` doubles as they lie in memory; nothing for a count below 1.
void storeBlock(CArchive& ar, const double* values, __int64 count);

/// Reads `count` doubles in place and returns the bytes that came. What the file does not have, or
/// an exception cut off, is 0.0.
__int64 loadBlock(CArchive& ar, double* values, __int64 count);

}  // namespace cxc
