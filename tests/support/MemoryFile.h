// A file that exists in memory only, for what a real one does rarely: reads that fail midway,
// content of any length, no length at all. It also measures the steps that it is used in.
#pragma once

#include "framework.h"
#include "tests/support/Bytes.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

namespace test {

class MemoryFile : public CFile {
public:
    explicit MemoryFile(const Bytes& content = Bytes()) : m_content(content.str()) {}

    /// Makes the file longer by so many zeros, which take no memory.
    void appendZeros(ULONGLONG count) { m_zeros = count; }
    /// The bytes before `offset` can be read; reaching for the one there fails.
    void failAt(ULONGLONG offset) { m_failAt = offset; }
    /// From now on the file cannot tell its length, nor move.
    void forgetLength() { m_seekable = false; }
    /// The same by the exception of a kind of file that lacks the operation.
    void refuseLength() { m_refusing = true; }

    const std::string& content() const { return m_content; }
    UINT largestStep() const { return m_largestStep; }

    UINT Read(void* buffer, UINT count) override {
        m_largestStep = std::max(m_largestStep, count);
        if (m_position >= m_failAt && count > 0)
            AfxThrowFileException(CFileException::hardIO, -1, _T("broken"));
        const ULONGLONG left = std::min(length(), m_failAt) - std::min(m_position, length());
        const auto delivered = static_cast<UINT>(std::min<ULONGLONG>(left, count));
        std::memset(buffer, 0, delivered);
        if (m_position < m_content.size()) {
            const auto at = static_cast<std::size_t>(m_position);
            const std::size_t stored = std::min<std::size_t>(delivered, m_content.size() - at);
            std::memcpy(buffer, m_content.data() + at, stored);
        }
        m_position += delivered;
        return delivered;
    }
    void Write(const void* buffer, UINT count) override {
        m_largestStep = std::max(m_largestStep, count);
        m_content.append(static_cast<const char*>(buffer), count);
        m_position = m_content.size();
    }
    ULONGLONG Seek(LONGLONG offset, UINT) override {
        needSeeking();
        m_position = static_cast<ULONGLONG>(static_cast<LONGLONG>(m_position) + offset);
        return m_position;
    }
    ULONGLONG GetPosition() const override {
        needSeeking();
        return m_position;
    }
    ULONGLONG GetLength() const override {
        needSeeking();
        return length();
    }
    void Flush() override {}
    void Close() override {}
    void Abort() override {}

private:
    ULONGLONG length() const { return m_content.size() + m_zeros; }
    void needSeeking() const {
        if (m_refusing) AfxThrowNotSupportedException();
        if (!m_seekable) AfxThrowFileException(CFileException::badSeek, -1, _T("pipe"));
    }

    std::string m_content;
    ULONGLONG m_zeros = 0;
    ULONGLONG m_position = 0;
    ULONGLONG m_failAt = std::numeric_limits<ULONGLONG>::max();
    bool m_seekable = true;
    bool m_refusing = false;
    UINT m_largestStep = 0;
};

}  // namespace test
