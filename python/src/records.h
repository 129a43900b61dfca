// Records of datasets, packages and groups, each alone in a file.
#pragma once

#include "calls.h"

#include <string>

namespace binding {

/// Stores `object` in a new file and flushes it to the disk.
template <class Object>
void saveRecord(Object& object, const std::string& path, const char* otherwise) {
    const CString name = toPath(path);
    require(
        [&] {
            CFile file(name, CFile::modeCreate | CFile::modeWrite);
            CArchive archive(&file, CArchive::store);
            const int result = object.serialize(archive);
            archive.Close();
            file.Flush();
            file.Close();
            return result;
        },
        path, otherwise);
}

/// Loads `object` from a file.
template <class Object>
void loadRecord(Object& object, const std::string& path) {
    const CString name = toPath(path);
    require(
        [&] {
            CFile file(name, CFile::modeRead | CFile::shareDenyWrite);
            CArchive archive(&file, CArchive::load);
            const int result = object.serialize(archive);
            archive.Close();
            return result;
        },
        path, "there is not enough memory, or the sizes in the file cannot be true");
}

}  // namespace binding
