// A new empty folder for the lifetime of the object.
#pragma once

#include "tests/support/Text.h"

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace test {

class TempDir {
public:
    TempDir() {
        std::random_device random;
        for (int attempt = 0; attempt < 100; ++attempt) {
            m_path =
                std::filesystem::temp_directory_path() / ("cxc-test-" + std::to_string(random()));
            if (std::filesystem::create_directory(m_path)) return;
        }
        throw std::runtime_error("no temporary folder can be made");
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    /// Path of an entry, for files.
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    /// The same as the framework's text.
    CString name(const std::string& entry) const { return fromPath(m_path / entry); }

private:
    std::filesystem::path m_path;
};

}  // namespace test
