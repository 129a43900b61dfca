#include "tools/cxc/records.h"

#include "cxcdata/allocation.h"
#include "cxcfile/pass_record.h"

#include "tools/cxc/app.h"
#include "tools/cxc/console.h"
#include "tools/cxc/describe.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <random>
#include <system_error>

namespace fs = std::filesystem;

namespace tool {
namespace {

constexpr UINT headBytes = 96;

fs::path systemPath(const std::string& path) {
#if defined(_WIN32)
    return fs::u8path(path);
#else
    return fs::path(path);
#endif
}

std::string toText(const fs::path& path) {
#if defined(_WIN32)
    return path.u8string();
#else
    return path.string();
#endif
}

// Runs `work` and turns the framework's exceptions into an Error about `path`.
template <class Work>
auto about(const std::string& path, Work work) -> decltype(work()) {
    try {
        return work();
    } catch (CFileException* e) {
        const LONG code = e->m_lOsError;
        e->Delete();
        throw Error(path + ": " +
                    (code > 0 ? std::system_category().message(static_cast<int>(code))
                              : std::string("cannot be read or written")));
    } catch (CMemoryException* e) {
        e->Delete();
        throw Error(path + ": not enough memory");
    } catch (CArchiveException* e) {
        const bool early = e->m_cause == CArchiveException::endOfFile;
        e->Delete();
        throw Error(path + (early ? ": the file ends early" : ": the file is damaged"));
    } catch (CException* e) {
        e->Delete();
        throw Error(path + ": cannot be read or written");
    } catch (const std::bad_alloc&) {
        throw Error(path + ": not enough memory");
    } catch (const fs::filesystem_error& e) {
        throw Error(path + ": " + e.code().message());
    }
}

struct Head {
    unsigned char bytes[headBytes] = {};
    UINT count = 0;
};

Head headOf(CFile& file) {
    Head head;
    head.count = file.Read(head.bytes, headBytes);
    return head;
}

Head readHead(const std::string& path) {
    return about(path, [&] {
        const fs::file_status status = fs::status(systemPath(path));
        if (fs::is_directory(status)) throw Error(path + ": is a folder");
        // A pipe gives its bytes once, and opening it may wait forever.
        if (fs::exists(status) && !fs::is_regular_file(status))
            throw Error(path + ": is a device or a pipe, not a file");
        CFile file(utf16(path), CFile::modeRead | CFile::shareDenyNone);
        return headOf(file);
    });
}

template <class Number>
Number numberAt(const Head& head, std::size_t at) {
    Number number{};
    if (at + sizeof(number) <= head.count) std::memcpy(&number, head.bytes + at, sizeof(number));
    return number;
}

// The magic string, in either width of characters, and where it ends.
std::string magicOf(const Head& head, std::size_t& end) {
    const bool wide = head.count > 3 && std::memcmp(head.bytes, "\xFF\xFE\xFF", 3) == 0;
    const std::size_t begin = wide ? 4 : 1;
    const std::size_t length = head.bytes[begin - 1];
    const std::size_t width = wide ? 2 : 1;
    end = begin + length * width;
    std::string magic;
    for (std::size_t i = begin; i < end && end <= head.count; i += width)
        magic += static_cast<char>(head.bytes[i]);
    return magic;
}

Heading headingIn(const Head& head, const std::string& path, std::size_t& end) {
    const std::string magic = magicOf(head, end);
    const auto version = numberAt<DWORD>(head, end);
    end += sizeof(version);
    if (magic == "MEGCOHPTS") return {Kind::dataset, version};
    if (magic == "SNSCOHFACE") return {Kind::package, version};
    if (magic == "GROUPCXCDATAFACE") return {Kind::group, version};
    throw Error(path +
                (head.count == 0 ? ": the file is empty" : ": is no dataset, package or group"));
}

// Error where the file cannot be read or is none of the three.
Heading headingOf(const std::string& path) {
    std::size_t end = 0;
    return headingIn(readHead(path), path, end);
}

// Of the archive: large enough that the system is asked rarely, small enough for the cache.
constexpr int bufferBytes = 1 << 16;

// Reads the record in an open file.
template <class Object>
void load(Object& object, CFile& file, const std::string& path) {
    CArchive archive(&file, CArchive::load, bufferBytes);
    if (cxc::passRecord(archive, object) == 0)
        throw Error(path + ": " +
                    lastMessage("there is not enough memory, or the sizes in the "
                                "file cannot be true"));
}

// Reads the record of a file and returns the bytes behind it.
template <class Object>
unsigned long long load(Object& object, const std::string& path) {
    return about(path, [&] {
        CFile file(utf16(path), CFile::modeRead | CFile::shareDenyWrite);
        load(object, file, path);
        return static_cast<unsigned long long>(file.GetLength()) -
               static_cast<unsigned long long>(file.GetPosition());
    });
}

// A name beside `path` that nothing has, nor any other process takes; short, so that every name
// that a file can have can be written.
fs::path draftBeside(const fs::path& path) {
    std::random_device random;
    const auto number = (static_cast<unsigned long long>(random()) << 32) | random();
    return path.parent_path() / ("." + std::to_string(number) + ".part");
}

}  // namespace

const char* nameOf(Kind kind) {
    switch (kind) {
        case Kind::dataset:
            return "dataset";
        case Kind::package:
            return "package";
        case Kind::group:
            break;
    }
    return "group";
}

Sizes claimedSizes(const std::string& path, const std::string& member) {
    std::size_t end = 0;
    const Head head = readHead(path);
    const Heading heading = headingIn(head, path, end);
    // Others than the newer layouts of a dataset begin otherwise; they are read for their sizes.
    if (heading.kind != Kind::dataset || heading.version < 20130402 || end + 60 > head.count) {
        const auto dataset = openDataset(path, member);
        return {dataset->m_cohTimTotal, dataset->m_snsRowTotal, dataset->m_snsColTotal,
                heading.kind};
    }
    return {numberAt<__int64>(head, end + 4), numberAt<__int64>(head, end + 44),
            numberAt<__int64>(head, end + 52), heading.kind};
}

unsigned long long bytesIn(const std::string& path) {
    return about(path,
                 [&] { return static_cast<unsigned long long>(fs::file_size(systemPath(path))); });
}

void GroupReleaser::operator()(CGroupMeegCxcFacezq* group) const {
    if (group == nullptr) return;
    group->cleanSnsCohPkg();
    delete group;
}

Record::Record(const std::string& path) : m_path(path), m_heading(headingOf(path)) {
    switch (m_heading.kind) {
        case Kind::dataset:
            m_dataset = std::make_unique<CSnsCohDatazq>();
            m_trailing = load(*m_dataset, path);
            return;
        case Kind::package:
            m_package = std::make_unique<CSnsCohFacezq>();
            m_trailing = load(*m_package, path);
            return;
        case Kind::group:
            m_group.reset(new CGroupMeegCxcFacezq);
            m_trailing = load(*m_group, path);
            return;
    }
}

std::vector<Member> Record::members() const {
    std::vector<Member> members;
    const auto add = [&](CSnsCohDatazq* dataset, const std::string& label) {
        if (dataset != nullptr) members.push_back({dataset, label});
    };
    add(m_dataset.get(), "");
    if (m_package != nullptr) {
        add(m_package->m_cohActive, "active");
        add(m_package->m_cohControl, "control");
        add(m_package->m_cohActCtl, "act-ctl");
    }
    if (m_group != nullptr) {
        for (INT_PTR i = 0; i < m_group->m_cohDatasets.GetSize(); ++i)
            add(m_group->getCoherenceData(static_cast<int>(i)), std::to_string(i));
    }
    return members;
}

CSnsCohDatazq& Record::chosen(const std::string& member) const {
    const std::vector<Member> there = members();
    if (there.empty()) throw Error(m_path + ": holds no dataset");
    if (m_dataset != nullptr || (member.empty() && there.size() == 1))
        return *there.front().dataset;
    std::string labels;
    for (const Member& each : there) {
        if (each.label == member) return *each.dataset;
        labels += (labels.empty() ? "" : ", ") + each.label;
    }
    throw Error(m_path + ": is a " + nameOf(m_heading.kind) +
                "; choose a dataset with --member, or with cxc unpack: " + labels);
}

std::unique_ptr<CSnsCohDatazq> openDataset(const std::string& path, const std::string& member) {
    Record record(path);
    if (record.dataset() != nullptr) return record.takeDataset();
    CSnsCohDatazq& meant = record.chosen(member);
    auto dataset = std::make_unique<CSnsCohDatazq>(meant);
    meant.m_mCC = nullptr;  // the grid is handed over
    return dataset;
}

std::unique_ptr<CSnsCohDatazq> readPairs(const std::string& path, const std::string& member,
                                         const cxc::PairTaker& take) {
    auto dataset = std::make_unique<CSnsCohDatazq>();
    const bool read = about(path, [&] {
        CFile file(utf16(path), CFile::modeRead | CFile::shareDenyWrite);
        std::size_t end = 0;
        if (headingIn(headOf(file), path, end).kind != Kind::dataset) return false;
        file.Seek(0, CFile::begin);
        cxc::EachPair pairs{*dataset, take};
        load(pairs, file, path);
        return true;
    });
    if (read) return dataset;
    dataset = openDataset(path, member);
    const Shape shape = shapeOf(*dataset);
    for (__int64 r = 0; r < shape.rows; ++r) {
        for (__int64 c = 0; c < shape.columns; ++c)
            take(*dataset, r, c, pairOf(*dataset, r, c));
    }
    return dataset;
}

void requireBacked(const std::string& path, const Sizes& sizes) {
    const double bytes = static_cast<double>(sizes.rows) * static_cast<double>(sizes.columns) *
                         static_cast<double>(sizes.slices) * sizeof(double);
    if (bytes > static_cast<double>(cxc::largestUnbackedClaim) &&
        bytes > static_cast<double>(bytesIn(path)))
        throw Error(path + ": says that it holds more values than there are");
}

std::unique_ptr<CSnsCohDatazq> openBacked(const std::string& path, const std::string& member) {
    auto dataset = openDataset(path, member);
    requireBacked(path, {dataset->m_cohTimTotal, dataset->m_snsRowTotal, dataset->m_snsColTotal});
    return dataset;
}

void requireFree(const std::string& path, bool force) {
    about(path, [&] {
        const fs::path named = systemPath(path);
        const bool exists = fs::exists(named);
        if (exists && !fs::is_regular_file(named)) throw Error(path + ": is not a file");
        if (!exists && fs::is_symlink(fs::symlink_status(named)))
            throw Error(path + ": is a symbolic link to nothing");
        if (exists && !force) throw Error(path + ": exists already; --force replaces it");
        const fs::path folder = named.parent_path();
        if (!folder.empty() && !fs::is_directory(folder))
            throw Error(path + ": there is no such folder");
    });
}

namespace {

// A file under a temporary name beside its own, which it gets at the end or never.
class Draft {
public:
    Draft(const std::string& path, bool force, const std::function<void(CFile&)>& write)
        : m_path(path) {
        requireFree(path, force);
        about(path, [&] {
            const fs::path named = systemPath(path);
            const bool exists = fs::exists(named);
            m_target = exists ? fs::canonical(named) : named;
            m_draft = draftBeside(m_target);
            try {
                CFile file(utf16(toText(m_draft)), CFile::modeCreate | CFile::modeWrite);
                if (exists) fs::permissions(m_draft, fs::status(m_target).permissions());
                write(file);
                file.Flush();
                file.Close();
                checkInterrupted();
            } catch (...) {
                remove();
                throw;
            }
        });
    }
    ~Draft() { remove(); }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    void take() {
        about(m_path, [&] { fs::rename(m_draft, m_target); });
        m_draft.clear();
    }

private:
    void remove() {
        std::error_code ignored;
        if (!m_draft.empty()) fs::remove(m_draft, ignored);
    }

    std::string m_path;
    fs::path m_target;
    fs::path m_draft;
};

template <class Object>
std::function<void(CFile&)> recordOf(Object& object, const std::string& path) {
    return [&object, path](CFile& file) {
        if (cxc::passRecord(file, CArchive::store, object) == 0)
            throw Error(path + ": " + lastMessage("cannot be stored"));
    };
}

}  // namespace

void writeWhole(const std::string& path, bool force, const std::function<void(CFile&)>& write) {
    Draft(path, force, write).take();
}

template <class Object>
void saveRecord(Object& object, const std::string& path, bool force) {
    writeWhole(path, force, recordOf(object, path));
}

void saveAll(const std::vector<Output>& outputs, bool force) {
    std::vector<std::unique_ptr<Draft>> drafts;
    drafts.reserve(outputs.size());
    for (const Output& output : outputs) {
        drafts.push_back(
            std::make_unique<Draft>(output.path, force, recordOf(*output.dataset, output.path)));
    }
    for (const auto& draft : drafts)
        draft->take();
}

template void saveRecord(CSnsCohDatazq& object, const std::string& path, bool force);
template void saveRecord(CSnsCohFacezq& object, const std::string& path, bool force);
template void saveRecord(CGroupMeegCxcFacezq& object, const std::string& path, bool force);

std::string stemOf(const std::string& path) {
    return toText(systemPath(path).stem());
}

std::string endingOf(const std::string& path) {
    std::string ending = toText(systemPath(path).extension());
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

std::string inFolder(const std::string& folder, const std::string& name) {
    return toText(systemPath(folder) / systemPath(name));
}

}  // namespace tool
