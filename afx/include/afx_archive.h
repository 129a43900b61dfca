// CArchive: binary values into or out of a CFile, through a buffer.
//
// Differences from MFC:
//  1. No objects by pointer (ReadObject, WriteObject, MapObject), no schema numbers.
//  2. bNoFlushOnDelete is the only extra mode bit.
//  3. The destructor of an archive that is still attached flushes, but only when no exception is
//     under way; then it gives up what was not yet written.
//  4. A buffer of the archive's own is larger than asked for.
//  5. An archive that is detached from its file throws genericException when it is used.
#pragma once

#include "afx_file.h"

#include <cstring>

class AFX_API CArchive {
public:
    enum Mode { store = 0, load = 1, bNoFlushOnDelete = 2 };

    /// The file must be open in the same direction and stays the caller's.
    CArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);
    ~CArchive() noexcept(false);
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_mode & load) != 0; }
    BOOL IsStoring() const { return (m_mode & load) == 0; }
    CFile* GetFile() const { return m_file; }

    /// Bytes delivered; fewer than asked only at the end of the file. No exception for that.
    UINT Read(void* buffer, UINT count) {
        if (!IsLoading() || count > static_cast<std::size_t>(m_end - m_at))
            return readSlowly(buffer, count);
        if (count > 0) std::memcpy(buffer, m_at, count);
        m_at += count;
        return count;
    }
    void Write(const void* buffer, UINT count);
    /// Storing: everything to the file. Loading: gives unread bytes back to the file.
    void Flush();
    /// Flushes and detaches.
    void Close();
    /// Detaches without flushing; never throws.
    void Abort();

    CArchive& operator<<(BYTE v) { return put(v); }
    CArchive& operator<<(char v) { return put(v); }
    CArchive& operator<<(bool v) { return put(static_cast<BYTE>(v ? 1 : 0)); }
    CArchive& operator<<(WORD v) { return put(v); }
    CArchive& operator<<(short v) { return put(v); }
    CArchive& operator<<(TCHAR v) { return put(v); }
    CArchive& operator<<(int v) { return put(v); }
    CArchive& operator<<(unsigned v) { return put(v); }
#ifdef _WIN32
    CArchive& operator<<(LONG v) {
        return put(v);
    }
    CArchive& operator<<(DWORD v) {
        return put(v);
    }
#endif
    CArchive& operator<<(LONGLONG v) {
        return put(v);
    }
    CArchive& operator<<(ULONGLONG v) {
        return put(v);
    }
    CArchive& operator<<(float v) {
        return put(v);
    }
    CArchive& operator<<(double v) {
        return put(v);
    }

    CArchive& operator>>(BYTE& v) {
        return get(v);
    }
    CArchive& operator>>(char& v) {
        return get(v);
    }
    CArchive& operator>>(bool& v) {
        BYTE stored = 0;
        get(stored);
        v = stored != 0;
        return *this;
    }
    CArchive& operator>>(WORD& v) {
        return get(v);
    }
    CArchive& operator>>(short& v) {
        return get(v);
    }
    CArchive& operator>>(TCHAR& v) {
        return get(v);
    }
    CArchive& operator>>(int& v) {
        return get(v);
    }
    CArchive& operator>>(unsigned& v) {
        return get(v);
    }
#ifdef _WIN32
    CArchive& operator>>(LONG& v) {
        return get(v);
    }
    CArchive& operator>>(DWORD& v) {
        return get(v);
    }
#endif
    CArchive& operator>>(LONGLONG& v) {
        return get(v);
    }
    CArchive& operator>>(ULONGLONG& v) {
        return get(v);
    }
    CArchive& operator>>(float& v) {
        return get(v);
    }
    CArchive& operator>>(double& v) {
        return get(v);
    }

    CString m_strFileName;  // of the file at construction; stands in the exceptions

private:
    // A value usually fits between here and the end of the buffer: one comparison, one copy.
    template <class T>
    CArchive& put(const T& v) {
        if (IsStoring() && static_cast<std::size_t>(m_end - m_at) >= sizeof(T)) {
            std::memcpy(m_at, &v, sizeof(T));
            m_at += sizeof(T);
        } else {
            Write(&v, sizeof(T));
        }
        return *this;
    }
    template <class T>
    CArchive& get(T& v) {
        if (IsLoading() && static_cast<std::size_t>(m_end - m_at) >= sizeof(T)) {
            std::memcpy(&v, m_at, sizeof(T));
            m_at += sizeof(T);
        } else {
            getSlowly(&v, sizeof(T));
        }
        return *this;
    }
    void getSlowly(void* value, UINT size);
    UINT readSlowly(void* buffer, UINT count);
    void needLoading() const;
    void needStoring() const;
    void needFile() const;
    void drain();
    bool endsBefore(ULONGLONG bytes) const;
    friend AFX_API CArchive& AFXAPI operator>>(CArchive& ar, CString& text);

    CFile* m_file;
    UINT m_mode;
    UINT m_capacity;
    BYTE* m_buffer;
    bool m_ownsBuffer;
    BYTE* m_at;   // next byte to store or to load
    BYTE* m_end;  // storing: end of the buffer; loading: end of what was read
    int m_exceptionsAtStart;
};

/// Prefix of a string: optional marker of 16-bit text, length in characters.
AFX_API void AFXAPI AfxWriteStringLength(CArchive& ar, UINT_PTR length, BOOL unicode);
/// Sets the bytes per character, 1 or 2, and returns the length in characters.
AFX_API UINT_PTR AFXAPI AfxReadStringLength(CArchive& ar, int& charSize);

AFX_API CArchive& AFXAPI operator<<(CArchive& ar, const CString& text);
AFX_API CArchive& AFXAPI operator>>(CArchive& ar, CString& text);
