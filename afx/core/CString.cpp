#include "afx_string.h"

#include "afx/core/code_page.h"
#include "afx/core/format.h"
#include "afx_exception.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace {

// Stands in front of the characters; copies of a string share one.
struct Header {
    std::atomic<int> owners;
    int length;
    int capacity;  // characters without the terminator
};

struct EmptyText {
    Header header;
    TCHAR terminator;
};
EmptyText g_empty = {{{1}, 0, 0}, 0};

LPTSTR emptyText() {
    return reinterpret_cast<LPTSTR>(&g_empty.header + 1);
}

Header* headerOf(LPTSTR text) {
    return reinterpret_cast<Header*>(text) - 1;
}

LPTSTR makeText(int capacity) {
    if (capacity < 0 || capacity > INT_MAX / 2 - 64) AfxThrowMemoryException();
    const std::size_t bytes =
        sizeof(Header) + (static_cast<std::size_t>(capacity) + 1) * sizeof(TCHAR);
    void* memory = std::malloc(bytes);
    if (memory == nullptr) AfxThrowMemoryException();
    auto* header = new (memory) Header{{1}, 0, capacity};
    LPTSTR text = reinterpret_cast<LPTSTR>(header + 1);
    text[0] = 0;
    return text;
}

std::size_t lengthOf(LPCTSTR text) {
    return text == nullptr ? 0 : std::char_traits<TCHAR>::length(text);
}

int checkedLength(std::size_t length) {
    if (length > static_cast<std::size_t>(INT_MAX / 2 - 64)) AfxThrowMemoryException();
    return static_cast<int>(length);
}

void copyText(LPTSTR target, LPCTSTR source, int length) {
    if (length > 0) std::memmove(target, source, static_cast<std::size_t>(length) * sizeof(TCHAR));
}

void setLength(LPTSTR text, int length) {
    if (text == emptyText()) return;
    headerOf(text)->length = length;
    text[length] = 0;
}

TCHAR lower(TCHAR c) {
    return c >= 'A' && c <= 'Z' ? static_cast<TCHAR>(c - 'A' + 'a') : c;
}

}  // namespace

static_assert(offsetof(EmptyText, terminator) == sizeof(Header));

CString::CString() noexcept : m_text(emptyText()) {}

CString::CString(const CString& other) noexcept : m_text(other.m_text) {
    if (m_text != emptyText()) headerOf(m_text)->owners.fetch_add(1, std::memory_order_relaxed);
}

CString::CString(CString&& other) noexcept : m_text(std::exchange(other.m_text, emptyText())) {}

CString::CString(LPCTSTR text) : m_text(emptyText()) {
    assign(text, checkedLength(lengthOf(text)));
}

CString::CString(LPCTSTR text, int length) : m_text(emptyText()) {
    assign(text, text == nullptr ? 0 : length);
}

CString::CString(TCHAR character, int repeat) : m_text(emptyText()) {
    if (repeat < 1) return;
    LPTSTR text = makeText(repeat);
    std::fill_n(text, repeat, character);
    setLength(text, repeat);
    m_text = text;
}

CString::CString(LPCSTR text)
    : CString(text, text == nullptr ? 0 : checkedLength(std::strlen(text))) {}

CString::CString(LPCSTR text, int length) : m_text(emptyText()) {
    if (text == nullptr || length < 1) return;
    const int wide = afx::wideLength(text, length);
    m_text = makeText(wide);
    afx::widen(text, length, m_text);
    setLength(m_text, wide);
}

CString::~CString() {
    drop();
}

void CString::drop() noexcept {
    if (m_text == emptyText()) return;
    Header* header = headerOf(m_text);
    // A sole owner needs no locked instruction, which would wait for all stores before it.
    if (header->owners.load(std::memory_order_acquire) == 1 ||
        header->owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
        std::free(header);
    m_text = emptyText();
}

CString& CString::operator=(const CString& other) noexcept {
    if (m_text != other.m_text) {
        CString copy(other);
        std::swap(m_text, copy.m_text);
    }
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    std::swap(m_text, other.m_text);
    return *this;
}

CString& CString::operator=(LPCTSTR text) {
    assign(text, checkedLength(lengthOf(text)));
    return *this;
}

CString& CString::operator=(TCHAR character) {
    assign(&character, 1);
    return *this;
}

// The text may be part of this string itself, so the old buffer lives until the copy is made.
void CString::assign(LPCTSTR text, int length) {
    if (length < 1) {
        drop();
        return;
    }
    LPTSTR fresh = makeText(length);
    copyText(fresh, text, length);
    setLength(fresh, length);
    drop();
    m_text = fresh;
}

void CString::append(LPCTSTR text, int length) {
    if (length < 1) return;
    const int old = GetLength();
    const int whole =
        checkedLength(static_cast<std::size_t>(old) + static_cast<std::size_t>(length));
    const bool inPlace = m_text != emptyText() &&
                         headerOf(m_text)->owners.load(std::memory_order_acquire) == 1 &&
                         headerOf(m_text)->capacity >= whole;
    if (inPlace) {
        copyText(m_text + old, text, length);
        setLength(m_text, whole);
        return;
    }
    // Growing by half keeps repeated appending linear.
    LPTSTR fresh = makeText(std::min(INT_MAX / 2 - 64, std::max(whole, old + old / 2)));
    copyText(fresh, m_text, old);
    copyText(fresh + old, text, length);
    setLength(fresh, whole);
    drop();
    m_text = fresh;
}

CString& CString::operator+=(const CString& other) {
    append(other.m_text, other.GetLength());
    return *this;
}

CString& CString::operator+=(LPCTSTR text) {
    append(text, checkedLength(lengthOf(text)));
    return *this;
}

CString& CString::operator+=(TCHAR character) {
    append(&character, 1);
    return *this;
}

int CString::GetLength() const noexcept {
    return headerOf(m_text)->length;
}

void CString::Empty() noexcept {
    drop();
}

int CString::Find(LPCTSTR text, int start) const noexcept {
    if (text == nullptr || start < 0 || start > GetLength()) return -1;
    const std::basic_string_view<TCHAR> all(m_text, static_cast<std::size_t>(GetLength()));
    const auto at = all.find(text, static_cast<std::size_t>(start));
    return at == all.npos ? -1 : static_cast<int>(at);
}

int CString::Find(TCHAR character, int start) const noexcept {
    if (start < 0 || start >= GetLength()) return -1;
    const std::basic_string_view<TCHAR> all(m_text, static_cast<std::size_t>(GetLength()));
    const auto at = all.find(character, static_cast<std::size_t>(start));
    return at == all.npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFind(TCHAR character) const noexcept {
    for (int i = GetLength() - 1; i >= 0; --i) {
        if (m_text[i] == character) return i;
    }
    return -1;
}

CString CString::Left(int count) const {
    return CString(m_text, std::clamp(count, 0, GetLength()));
}

CString CString::Right(int count) const {
    const int kept = std::clamp(count, 0, GetLength());
    return CString(m_text + (GetLength() - kept), kept);
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    const int from = std::clamp(first, 0, GetLength());
    return CString(m_text + from, std::clamp(count, 0, GetLength() - from));
}

int CString::Compare(LPCTSTR text) const noexcept {
    LPCTSTR a = m_text;
    LPCTSTR b = text == nullptr ? emptyText() : text;
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return static_cast<int>(*a) - static_cast<int>(*b);
}

int CString::CompareNoCase(LPCTSTR text) const noexcept {
    LPCTSTR a = m_text;
    LPCTSTR b = text == nullptr ? emptyText() : text;
    while (*a != 0 && lower(*a) == lower(*b)) {
        ++a;
        ++b;
    }
    return static_cast<int>(lower(*a)) - static_cast<int>(lower(*b));
}

void __cdecl CString::Format(LPCTSTR format, ...) {
    va_list arguments;
    va_start(arguments, format);
    try {
        FormatV(format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}

void CString::FormatV(LPCTSTR format, va_list arguments) {
    std::basic_string<TCHAR> text;
    try {
        text = afx::format(format, arguments);
    } catch (const std::bad_alloc&) {
        AfxThrowMemoryException();
    }
    assign(text.data(), checkedLength(text.size()));
}

LPTSTR CString::GetBuffer() {
    return GetBuffer(GetLength());
}

LPTSTR CString::GetBuffer(int length) {
    const int old = GetLength();
    const int wanted = std::max(length, old);
    const bool inPlace = m_text != emptyText() &&
                         headerOf(m_text)->owners.load(std::memory_order_acquire) == 1 &&
                         headerOf(m_text)->capacity >= wanted;
    if (!inPlace) {
        LPTSTR fresh = makeText(wanted);
        copyText(fresh, m_text, old);
        setLength(fresh, old);
        drop();
        m_text = fresh;
    }
    return m_text;
}

void CString::ReleaseBuffer(int length) {
    const int capacity = headerOf(m_text)->capacity;
    if (length > capacity) AfxThrowInvalidArgException();
    // A buffer that was filled to its end has no terminator yet.
    if (length < 0) length = static_cast<int>(std::find(m_text, m_text + capacity, 0) - m_text);
    setLength(m_text, length);
}

CString operator+(const CString& a, const CString& b) {
    CString sum(a);
    sum += b;
    return sum;
}

CString operator+(const CString& a, LPCTSTR b) {
    CString sum(a);
    sum += b;
    return sum;
}

CString operator+(LPCTSTR a, const CString& b) {
    CString sum(a);
    sum += b;
    return sum;
}

CString operator+(const CString& a, TCHAR b) {
    CString sum(a);
    sum += b;
    return sum;
}

CString operator+(TCHAR a, const CString& b) {
    CString sum(a);
    sum += b;
    return sum;
}
