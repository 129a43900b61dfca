#include "afx_archive.h"

#include <algorithm>
#include <climits>
#include <exception>
#include <new>
#include <vector>

namespace {

// Fewer calls of the operating system than with the customary 4096 bytes, and still in the cache.
constexpr UINT leastBuffer = 1 << 19;

}  // namespace

CArchive::CArchive(CFile* file, UINT mode, int bufferSize, void* buffer)
    : m_strFileName(file->GetFilePath()),
      m_file(file),
      m_mode(mode),
      m_capacity(buffer == nullptr
                     ? std::max(leastBuffer, static_cast<UINT>(std::max(bufferSize, 0)))
                     : static_cast<UINT>(std::max(bufferSize, 0))),
      m_buffer(static_cast<BYTE*>(buffer)),
      m_ownsBuffer(buffer == nullptr),
      m_exceptionsAtStart(std::uncaught_exceptions()) {
    if (m_ownsBuffer) m_buffer = new (std::nothrow) BYTE[m_capacity];
    if (m_buffer == nullptr) AfxThrowMemoryException();
    m_at = m_buffer;
    m_end = IsStoring() ? m_buffer + m_capacity : m_buffer;
}

CArchive::~CArchive() noexcept(false) {
    const bool unwinding = std::uncaught_exceptions() > m_exceptionsAtStart;
    if (m_file != nullptr && !unwinding && (m_mode & bNoFlushOnDelete) == 0) {
        try {
            Close();
        } catch (...) {
            Abort();
            // cppcheck-suppress exceptThrowInDestructor ; as the framework's own, where nothing
            // unwinds
            throw;
        }
    }
    Abort();
}

void CArchive::needLoading() const {
    if (IsStoring()) AfxThrowArchiveException(CArchiveException::writeOnly, m_strFileName);
    needFile();
}

void CArchive::needStoring() const {
    if (IsLoading()) AfxThrowArchiveException(CArchiveException::readOnly, m_strFileName);
    needFile();
}

void CArchive::needFile() const {
    if (m_file == nullptr)
        AfxThrowArchiveException(CArchiveException::genericException, m_strFileName);
}

UINT CArchive::readSlowly(void* buffer, UINT count) {
    needLoading();
    BYTE* target = static_cast<BYTE*>(buffer);
    UINT left = count;
    while (left > 0) {
        const UINT buffered = static_cast<UINT>(m_end - m_at);
        if (buffered > 0) {
            const UINT step = std::min(left, buffered);
            std::memcpy(target, m_at, step);
            m_at += step;
            target += step;
            left -= step;
            continue;
        }
        if (left >= m_capacity) {
            // Large blocks need no stop in between.
            const UINT delivered = m_file->Read(target, left);
            return count - left + delivered;
        }
        m_at = m_end = m_buffer;
        const UINT delivered = m_file->Read(m_buffer, m_capacity);
        m_end = m_buffer + delivered;
        if (delivered == 0) break;
    }
    return count - left;
}

void CArchive::getSlowly(void* value, UINT size) {
    // Whole or not at all: a value that the end of the file cuts stays as it was.
    BYTE bytes[8];
    if (Read(bytes, size) < size)
        AfxThrowArchiveException(CArchiveException::endOfFile, m_strFileName);
    std::memcpy(value, bytes, size);
}

void CArchive::drain() {
    const UINT waiting = static_cast<UINT>(m_at - m_buffer);
    if (waiting > 0) m_file->Write(m_buffer, waiting);
    m_at = m_buffer;
}

void CArchive::Write(const void* buffer, UINT count) {
    needStoring();
    if (count > static_cast<std::size_t>(m_end - m_at)) drain();
    if (count >= m_capacity) {
        m_file->Write(buffer, count);
        return;
    }
    if (count > 0) std::memcpy(m_at, buffer, count);
    m_at += count;
}

void CArchive::Flush() {
    if (m_file == nullptr) return;
    if (IsStoring()) {
        drain();
        return;
    }
    const LONGLONG unread = m_end - m_at;
    m_at = m_end = m_buffer;
    if (unread > 0) m_file->Seek(-unread, CFile::current);
}

void CArchive::Close() {
    Flush();
    m_file = nullptr;
    m_at = m_end = m_buffer;  // no value passes the quick way any more
}

void CArchive::Abort() {
    m_file = nullptr;
    if (m_ownsBuffer) delete[] m_buffer;
    m_buffer = m_at = m_end = nullptr;
}

namespace {

constexpr WORD unicodeMarker = 0xFFFE;
constexpr BYTE longerThanByte = 0xFF;
constexpr WORD longerThanWord = 0xFFFF;
constexpr DWORD longerThanDword = 0xFFFFFFFF;

// Characters are fetched in steps, so that a length costs memory only once its bytes are there.
constexpr std::size_t stepBytes = 1 << 16;

// What a string can hold.
constexpr UINT_PTR mostCharacters = INT_MAX / 2;

}  // namespace

// True when the file is known to hold fewer than `bytes` more. Pipes and devices know no length,
// and some systems give 0 for files with content: then only reading can tell.
bool CArchive::endsBefore(ULONGLONG bytes) const {
    try {
        const ULONGLONG length = m_file->GetLength();
        const ULONGLONG position = m_file->GetPosition();
        return position <= length &&
               length - position + static_cast<ULONGLONG>(m_end - m_at) < bytes;
    } catch (CFileException* e) {
        e->Delete();
        return false;
    }
}

void AFXAPI AfxWriteStringLength(CArchive& ar, UINT_PTR length, BOOL unicode) {
    if (unicode) ar << longerThanByte << unicodeMarker;
    if (length < longerThanByte)
        ar << static_cast<BYTE>(length);
    else if (length < unicodeMarker)
        ar << longerThanByte << static_cast<WORD>(length);
    else if (length < longerThanDword)
        ar << longerThanByte << longerThanWord << static_cast<DWORD>(length);
    else
        ar << longerThanByte << longerThanWord << longerThanDword << static_cast<ULONGLONG>(length);
}

UINT_PTR AFXAPI AfxReadStringLength(CArchive& ar, int& charSize) {
    charSize = 1;
    BYTE first = 0;
    WORD word = 0;
    ar >> first;
    if (first < longerThanByte) return first;
    ar >> word;
    if (word == unicodeMarker) {
        charSize = 2;
        ar >> first;
        if (first < longerThanByte) return first;
        ar >> word;
    }
    if (word < longerThanWord) return word;
    DWORD dword = 0;
    ar >> dword;
    if (dword < longerThanDword) return dword;
    ULONGLONG quad = 0;
    ar >> quad;
    return static_cast<UINT_PTR>(quad);
}

CArchive& AFXAPI operator<<(CArchive& ar, const CString& text) {
    const auto length = static_cast<UINT_PTR>(text.GetLength());
    AfxWriteStringLength(ar, length, TRUE);
    ar.Write(text.GetString(), static_cast<UINT>(length * sizeof(TCHAR)));
    return ar;
}

namespace {

[[noreturn]] void endOfFile(const CArchive& ar) {
    AfxThrowArchiveException(CArchiveException::endOfFile, ar.m_strFileName);
}

// The usual name: short, 16-bit, straight into the string.
CString readShort(CArchive& ar, UINT_PTR length) {
    CString text;
    const UINT bytes = static_cast<UINT>(length * sizeof(TCHAR));
    if (ar.Read(text.GetBuffer(static_cast<int>(length)), bytes) < bytes) endOfFile(ar);
    text.ReleaseBuffer(static_cast<int>(length));
    return text;
}

std::vector<BYTE> readLong(CArchive& ar, UINT_PTR bytes) {
    std::vector<BYTE> all;
    while (all.size() < bytes) {
        const std::size_t have = all.size();
        const std::size_t step = std::min<std::size_t>(stepBytes, bytes - have);
        try {
            all.resize(have + step);
        } catch (const std::bad_alloc&) {
            AfxThrowMemoryException();
        }
        if (ar.Read(all.data() + have, static_cast<UINT>(step)) < step) endOfFile(ar);
    }
    return all;
}

// More than a string can hold: the end of the file comes first, and nothing is kept.
[[noreturn]] void refuse(CArchive& ar, UINT_PTR bytes) {
    std::vector<BYTE> dropped = readLong(ar, std::min<UINT_PTR>(bytes, stepBytes));
    for (UINT_PTR left = bytes - dropped.size(); left > 0;) {
        const UINT step = static_cast<UINT>(std::min<UINT_PTR>(left, dropped.size()));
        if (ar.Read(dropped.data(), step) < step) endOfFile(ar);
        left -= step;
    }
    AfxThrowMemoryException();
}

}  // namespace

CArchive& AFXAPI operator>>(CArchive& ar, CString& text) {
    int charSize = 1;
    const UINT_PTR length = AfxReadStringLength(ar, charSize);
    if (charSize == 2 && length <= stepBytes / sizeof(TCHAR)) {
        text = readShort(ar, length);
        return ar;
    }
    const auto size = static_cast<UINT_PTR>(charSize);
    const UINT_PTR bytes = length > UINTPTR_MAX / size ? UINTPTR_MAX : length * size;
    if (ar.endsBefore(bytes)) endOfFile(ar);
    if (length > mostCharacters) refuse(ar, bytes);
    const std::vector<BYTE> all = readLong(ar, bytes);
    if (charSize == 1) {
        text = CString(reinterpret_cast<LPCSTR>(all.data()), static_cast<int>(length));
        return ar;
    }
    CString whole;
    std::memcpy(whole.GetBuffer(static_cast<int>(length)), all.data(), all.size());
    whole.ReleaseBuffer(static_cast<int>(length));
    text = whole;
    return ar;
}
