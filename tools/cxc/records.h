// Files of datasets, packages and groups: told apart, read, written whole or not at all.
#pragma once

#include "cxc.h"
#include "cxcfile/each_pair.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tool {

enum class Kind { dataset, package, group };

/// "dataset", "package", "group".
const char* nameOf(Kind kind);

/// What the first bytes of a file say.
struct Heading {
    Kind kind;
    DWORD version;
};

/// Sizes of the dataset at the beginning of a file, without its values.
struct Sizes {
    __int64 slices;
    __int64 rows;
    __int64 columns;
    Kind kind = Kind::dataset;  // of the file
};

struct GroupReleaser {
    void operator()(CGroupMeegCxcFacezq* group) const;
};

/// One dataset of a file and what it is in there: "" for a dataset alone.
struct Member {
    CSnsCohDatazq* dataset;
    std::string label;
};

/// A file, read whole.
class Record {
public:
    /// Throws Error, which names the file.
    explicit Record(const std::string& path);

    const std::string& path() const { return m_path; }
    const Heading& heading() const { return m_heading; }
    /// Bytes that follow the record; nobody reads them.
    unsigned long long trailing() const { return m_trailing; }

    CSnsCohDatazq* dataset() const { return m_dataset.get(); }
    CSnsCohFacezq* package() const { return m_package.get(); }
    CGroupMeegCxcFacezq* group() const { return m_group.get(); }

    /// The datasets there are, in the order of the file.
    std::vector<Member> members() const;
    /// The dataset that is meant: the only one, or the one of this label; Error else.
    CSnsCohDatazq& chosen(const std::string& member) const;
    /// Hands the dataset of a dataset file over.
    std::unique_ptr<CSnsCohDatazq> takeDataset() { return std::move(m_dataset); }

private:
    std::string m_path;
    Heading m_heading;
    unsigned long long m_trailing = 0;
    std::unique_ptr<CSnsCohDatazq> m_dataset;
    std::unique_ptr<CSnsCohFacezq> m_package;
    std::unique_ptr<CGroupMeegCxcFacezq, GroupReleaser> m_group;
};

/// The dataset of a dataset file, or that of a package or group which is meant by `member`.
std::unique_ptr<CSnsCohDatazq> openDataset(const std::string& path, const std::string& member = "");

/// As openDataset, giving every pair to `take`. The values of a dataset file are not kept: what is
/// returned has no grid then. A package or group is in memory whole. What `take` throws passes.
std::unique_ptr<CSnsCohDatazq> readPairs(const std::string& path, const std::string& member,
                                         const cxc::PairTaker& take);

/// The sizes that a file tells of the dataset that openDataset would give.
/// A file may claim anything: only what has been read is true.
Sizes claimedSizes(const std::string& path, const std::string& member = "");

/// Results are as large as a file says it is, which may be anything: Error where that is more than
/// a little memory and the file is not long enough for it.
void requireBacked(const std::string& path, const Sizes& sizes);

/// As openDataset, for a dataset from which something of its size is made.
std::unique_ptr<CSnsCohDatazq> openBacked(const std::string& path, const std::string& member = "");

/// Length of a file; Error where there is none.
unsigned long long bytesIn(const std::string& path);

/// Writes a file under another name beside `path` and renames it when it is complete: whatever goes
/// wrong, `path` is as it was. An existing file needs `force`; it keeps its permissions, and a
/// symbolic link stays one. Throws Error.
void writeWhole(const std::string& path, bool force, const std::function<void(CFile&)>& write);

/// Throws Error where `path` cannot be the output: said before long work, not after it.
void requireFree(const std::string& path, bool force);

/// Stores a dataset, package or group.
template <class Object>
void saveRecord(Object& object, const std::string& path, bool force);

/// A dataset and the file that it becomes.
struct Output {
    CSnsCohDatazq* dataset;
    std::string path;
};

/// Stores them so that none is replaced before all of them are written.
void saveAll(const std::vector<Output>& outputs, bool force);

/// `path` without its folder and its ending.
std::string stemOf(const std::string& path);
/// The ending of `path` with its point, in small letters.
std::string endingOf(const std::string& path);
/// `name` in `folder`.
std::string inFolder(const std::string& folder, const std::string& name);

}  // namespace tool
