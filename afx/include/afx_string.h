// CString: text of 16-bit units.
//
// Differences from MFC:
//  1. A plain class, not an instance of a template.
//  2. Format follows the rules of Visual Studio 2015 and later on every platform, spelling of
//     infinities and NaNs included, and knows no %n and no locale.
//  3. Narrow text is Windows code page 1252 off Windows.
//  4. Find with a start outside the text finds nothing.
#pragma once

#include "afx_types.h"

#include <cstdarg>

class AFX_API CString {
public:
    CString() noexcept;
    CString(const CString& other) noexcept;
    CString(CString&& other) noexcept;
    CString(LPCTSTR text);
    CString(LPCTSTR text, int length);
    CString(TCHAR character, int repeat = 1);
    /// Narrow text in the ANSI code page.
    CString(LPCSTR text);
    CString(LPCSTR text, int length);
    ~CString();

    CString& operator=(const CString& other) noexcept;
    CString& operator=(CString&& other) noexcept;
    CString& operator=(LPCTSTR text);
    CString& operator=(TCHAR character);

    CString& operator+=(const CString& other);
    CString& operator+=(LPCTSTR text);
    CString& operator+=(TCHAR character);

    /// The zero-terminated text; valid until the next change.
    operator LPCTSTR() const noexcept { return m_text; }
    LPCTSTR GetString() const noexcept { return m_text; }
    TCHAR operator[](int index) const noexcept { return m_text[index]; }
    TCHAR GetAt(int index) const noexcept { return m_text[index]; }

    /// Characters without the terminating zero; zeros inside the text count.
    int GetLength() const noexcept;
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept;

    /// Index of the first occurrence at or behind `start`; -1 when there is none.
    int Find(LPCTSTR text, int start = 0) const noexcept;
    int Find(TCHAR character, int start = 0) const noexcept;
    int ReverseFind(TCHAR character) const noexcept;
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    /// Below, at or above zero; text behind an embedded zero is not compared.
    int Compare(LPCTSTR text) const noexcept;
    /// Without regard to the case of the letters A to Z.
    int CompareNoCase(LPCTSTR text) const noexcept;

    /// Replaces the content by formatted text. A CString argument must be passed as GetString().
    void __cdecl Format(LPCTSTR format, ...);
    void FormatV(LPCTSTR format, va_list arguments);

    /// Writable text with room for `length` characters; followed by ReleaseBuffer.
    LPTSTR GetBuffer();
    LPTSTR GetBuffer(int length);
    /// -1: the text ends at its first zero; otherwise at `length`.
    void ReleaseBuffer(int length = -1);

    friend AFX_API CString operator+(const CString& a, const CString& b);
    friend AFX_API CString operator+(const CString& a, LPCTSTR b);
    friend AFX_API CString operator+(LPCTSTR a, const CString& b);
    friend AFX_API CString operator+(const CString& a, TCHAR b);
    friend AFX_API CString operator+(TCHAR a, const CString& b);

private:
    void assign(LPCTSTR text, int length);
    void append(LPCTSTR text, int length);
    void drop() noexcept;

    LPTSTR m_text;  // behind a counted header that copies share
};

#define AFX_STRING_COMPARISON(op)                                          \
    inline bool operator op(const CString& a, const CString& b) noexcept { \
        return a.Compare(b) op 0;                                          \
    }                                                                      \
    inline bool operator op(const CString& a, LPCTSTR b) noexcept {        \
        return a.Compare(b) op 0;                                          \
    }                                                                      \
    inline bool operator op(LPCTSTR a, const CString& b) noexcept {        \
        return 0 op b.Compare(a);                                          \
    }
AFX_STRING_COMPARISON(==)
AFX_STRING_COMPARISON(!=)
AFX_STRING_COMPARISON(<)
AFX_STRING_COMPARISON(>)
AFX_STRING_COMPARISON(<=)
AFX_STRING_COMPARISON(>=)
#undef AFX_STRING_COMPARISON

static_assert(sizeof(CString) == sizeof(void*), "a CString is one pointer");
