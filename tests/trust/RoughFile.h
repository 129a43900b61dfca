// A file in memory that fails where a test wants it to: at a byte written or read, or when flushed.
// It takes no memory while it is used.
#pragma once

#include "cxcfile/pass_record.h"
#include "tests/support/Outcome.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

namespace test {

class RoughFile : public CFile {
public:
    /// For reading.
    explicit RoughFile(const std::string& content) : m_content(content) {}
    /// For writing; what exceeds `capacity` bytes is lost, but counted.
    explicit RoughFile(std::size_t capacity = 0) : m_content(capacity, '\0'), m_storing(true) {}

    static constexpr ULONGLONG never = std::numeric_limits<ULONGLONG>::max();
    ULONGLONG failAt = never;  // the first byte that cannot be read or written
    int failFlush = 0;         // the flush that fails, counted from 1; 0: none

    ULONGLONG written() const { return m_position; }
    int flushes() const { return m_flushes; }
    std::string content() const {
        return m_storing ? m_content.substr(0, static_cast<std::size_t>(m_position)) : m_content;
    }
    /// For reading again from the begin.
    void rewind() { m_position = 0; }

    UINT Read(void* buffer, UINT count) override {
        const ULONGLONG end = std::min<ULONGLONG>(m_content.size(), failAt);
        const auto delivered =
            static_cast<UINT>(std::min<ULONGLONG>(count, end - std::min(m_position, end)));
        if (delivered < count && m_position + delivered >= failAt)
            AfxThrowFileException(CFileException::hardIO, -1, nullptr);
        if (delivered > 0)
            std::memcpy(buffer, m_content.data() + static_cast<std::size_t>(m_position), delivered);
        m_position += delivered;
        return delivered;
    }
    void Write(const void* buffer, UINT count) override {
        const ULONGLONG room = failAt - std::min(m_position, failAt);
        const auto kept = static_cast<UINT>(std::min<ULONGLONG>(count, room));
        if (m_position < m_content.size() && kept > 0) {
            const auto at = static_cast<std::size_t>(m_position);
            std::memcpy(&m_content[at], buffer, std::min<std::size_t>(kept, m_content.size() - at));
        }
        m_position += kept;
        if (kept < count) AfxThrowFileException(CFileException::diskFull, -1, nullptr);
    }
    ULONGLONG Seek(LONGLONG offset, UINT) override {
        m_position = static_cast<ULONGLONG>(static_cast<LONGLONG>(m_position) + offset);
        return m_position;
    }
    ULONGLONG GetPosition() const override { return m_position; }
    ULONGLONG GetLength() const override { return m_storing ? m_position : m_content.size(); }
    void Flush() override {
        if (++m_flushes == failFlush) AfxThrowFileException(CFileException::diskFull, -1, nullptr);
    }
    void Close() override {}
    void Abort() override {}

private:
    std::string m_content;
    ULONGLONG m_position = 0;
    bool m_storing = false;
    int m_flushes = 0;
};

/// Passes `record` through an archive on `file`, with a buffer of the customary size that is not
/// taken from the heap.
template <class Record>
int passOffHeap(CFile& file, UINT mode, Record& record) {
    BYTE buffer[4096];
    CArchive ar(&file, mode, sizeof(buffer), buffer);
    return cxc::passRecord(ar, record);
}

/// The same, and closes the file.
template <class Record>
Outcome passThrough(CFile& file, UINT mode, Record& record) {
    return outcomeOf([&] {
        const int status = passOffHeap(file, mode, record);
        file.Close();
        return status;
    });
}

template <class Record>
Outcome loadFrom(const std::string& bytes, Record& record) {
    RoughFile file(bytes);
    return passThrough(file, CArchive::load, record);
}

/// The bytes that a record is stored as. `most` bounds them.
template <class Record>
std::string bytesOf(Record& record, std::size_t most = 1 << 16) {
    RoughFile file(most);
    passThrough(file, CArchive::store, record);
    return file.content();
}

}  // namespace test
