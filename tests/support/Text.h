// Text between the framework's strings, UTF-8 and paths.
#pragma once

#include "framework.h"

#include <filesystem>
#include <string>

namespace test {

inline std::filesystem::path toPath(const CString& text) {
    return std::filesystem::path(std::basic_string<TCHAR>(text.GetString()));
}

inline std::string toUtf8(const CString& text) {
    return toPath(text).u8string();
}

inline CString fromPath(const std::filesystem::path& path) {
#ifdef _WIN32
    return CString(path.c_str());
#else
    return CString(path.u16string().c_str());
#endif
}

}  // namespace test
