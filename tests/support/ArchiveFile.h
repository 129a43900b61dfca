// A file in the system's temporary folder that a test fills, reads and passes through archives.
// Removed at the end of the test.
#pragma once

#include "framework.h"
#include "tests/support/Bytes.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

namespace test {

inline std::filesystem::path newTemporaryPath(const std::string& ending) {
    static const unsigned process = std::random_device()();
    static std::atomic<unsigned> count{0};
    return std::filesystem::temp_directory_path() /
           ("cxc-test-" + std::to_string(process) + "-" + std::to_string(++count) + ending);
}

inline CString toCString(const std::filesystem::path& path) {
    const std::u16string units = path.u16string();
    CString text;
    for (const char16_t unit : units)
        text += static_cast<TCHAR>(unit);
    return text;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

class ArchiveFile {
public:
    explicit ArchiveFile(const std::string& bytes = {}, const std::string& ending = ".cxc")
        : m_path(newTemporaryPath(ending)) {
        writeFile(m_path, bytes);
    }
    explicit ArchiveFile(const Bytes& bytes) : ArchiveFile(bytes.str()) {}
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;
    ~ArchiveFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }
    CString name() const { return toCString(m_path); }
    std::string bytes() const { return readFile(m_path); }

    // Replaces the content by what `pass` stores; returns the result of pass.
    template <class Pass>
    auto store(Pass pass) {
        return with(CFile::modeCreate | CFile::modeWrite, CArchive::store, pass);
    }

    // Gives the content to `pass`; returns the result of pass.
    template <class Pass>
    auto load(Pass pass) {
        return with(CFile::modeRead, CArchive::load, pass);
    }

private:
    template <class Pass>
    auto with(UINT fileMode, UINT archiveMode, Pass pass) {
        CFile file(name(), fileMode);
        CArchive ar(&file, archiveMode);
        try {
            const auto result = pass(ar);
            ar.Close();
            file.Close();
            return result;
        } catch (...) {
            ar.Abort();
            throw;
        }
    }

    std::filesystem::path m_path;
};

}  // namespace test
