// Records of datasets, packages and groups, each alone in a file, and how far a file is.
#pragma once

#include "calls.h"

#include "cxcfile/pass_record.h"

#include <algorithm>
#include <string>

namespace binding {

/// A file whose progress, in bytes, a watch tells, and which it can end.
class WatchedFile : public CFile {
public:
    /// `total`: bytes to come, as far as that is known.
    WatchedFile(LPCTSTR path, UINT mode, Watch& watch, double total = 0.0)
        : CFile(path, mode), m_watch(watch), m_total(static_cast<__int64>(std::min(total, 1e18))) {}

    UINT Read(void* buffer, UINT count) override {
        tell();
        return CFile::Read(buffer, count);
    }

    void Write(const void* buffer, UINT count) override {
        tell();
        CFile::Write(buffer, count);
    }

    /// Tells of the end, which nothing else can: a record is read by its own lengths.
    void tellEnd() {
        m_total = std::max<__int64>(position(), 1);
        m_watch.orThrow(m_total, m_total);
    }

    void setTotal(__int64 total) { m_total = total; }

private:
    void tell() {
        if (!m_watch.due()) return;
        const __int64 done = position();
        m_watch.orThrow(done, std::max(m_total, done + 1));
    }

    __int64 position() const { return static_cast<__int64>(GetPosition()); }

    Watch& m_watch;
    __int64 m_total;
};

/// About how many bytes the record of a dataset takes.
double storedBytes(const CSnsCohData& data);

/// Stores `object`, of about `bytes`, in a new file and flushes it to the disk.
template <class Object>
void saveRecord(Object& object, const std::string& path, double bytes, Watch& watch,
                const char* otherwise) {
    const CString name = toPath(path);
    require(
        [&] {
            WatchedFile file(name, CFile::modeCreate | CFile::modeWrite, watch, bytes);
            const int result = cxc::passRecord(file, CArchive::store, object);
            file.Flush();
            file.tellEnd();
            file.Close();
            return result;
        },
        path, otherwise, {}, &watch);
}

/// Loads `object` from a file.
template <class Object>
void loadRecord(Object& object, const std::string& path, Watch& watch) {
    const CString name = toPath(path);
    require(
        [&] {
            WatchedFile file(name, CFile::modeRead | CFile::shareDenyWrite, watch);
            file.setTotal(static_cast<__int64>(file.GetLength()));
            const int result = cxc::passRecord(file, CArchive::load, object);
            if (result != 0) file.tellEnd();
            return result;
        },
        path, "there is not enough memory, or the sizes in the file cannot be true", {}, &watch);
}

}  // namespace binding
