// Opening and saving beside plain reads and writes of as many bytes.
#include "bench/compare.h"
#include "bench/data.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace {

// Bytes asked from the allocator by this process while counting is on.
std::atomic<bool> g_counting{false};
std::atomic<std::size_t> g_bytes{0};

void* countedNew(std::size_t bytes) {
    if (g_counting) g_bytes += bytes;
    void* memory = std::malloc(bytes == 0 ? 1 : bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t bytes) {
    return countedNew(bytes);
}
void* operator new[](std::size_t bytes) {
    return countedNew(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace bench {
namespace {

constexpr std::size_t block = 1 << 20;

class TemporaryFile {
public:
    explicit TemporaryFile(const char* name)
        : m_path(std::filesystem::temp_directory_path() / name) {}
    ~TemporaryFile() { std::filesystem::remove(m_path); }
    CString wide() const { return CString(m_path.c_str()); }
    const char* narrow() const { return m_path.c_str(); }
    std::size_t size() const { return std::filesystem::file_size(m_path); }

private:
    std::filesystem::path m_path;
};

void save(CSnsCohDatazq& dataset, const CString& path, bool toDisk) {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    dataset.serialize(archive);
    archive.Close();
    if (toDisk) file.Flush();
    file.Close();
}

void open(CSnsCohDatazq& dataset, const CString& path) {
    CFile file(path, CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    dataset.serialize(archive);
    archive.Close();
}

void plainWrite(const char* path, std::size_t bytes, bool toDisk) {
    static const std::vector<char> buffer(block, 'x');
    const int file = ::open(path, O_CREAT | O_TRUNC | O_WRONLY, 0644);
    for (std::size_t done = 0; done < bytes;) {
        const ssize_t n = ::write(file, buffer.data(), std::min(block, bytes - done));
        if (n < 0) std::abort();
        done += static_cast<std::size_t>(n);
    }
    if (toDisk) ::fsync(file);
    ::close(file);
}

// The same arrays made afresh, filled from blocks of the file as they come.
Vectors plainRead(const char* path, __int64 pairs, __int64 nTim) {
    static std::vector<char> buffer(block);
    Vectors vectors;
    vectors.reserve(static_cast<std::size_t>(pairs));
    const std::size_t vectorBytes = static_cast<std::size_t>(nTim) * sizeof(double);
    const int file = ::open(path, O_RDONLY);
    std::size_t have = 0;
    std::size_t at = 0;
    for (__int64 i = 0; i < pairs; ++i) {
        vectors.emplace_back(new double[static_cast<std::size_t>(nTim)]);
        char* target = reinterpret_cast<char*>(vectors.back().get());
        for (std::size_t need = vectorBytes; need > 0;) {
            if (at == have) {
                have = static_cast<std::size_t>(::read(file, buffer.data(), block));
                at = 0;
            }
            const std::size_t step = std::min(need, have - at);
            std::memcpy(target, buffer.data() + at, step);
            target += step;
            at += step;
            need -= step;
        }
    }
    while (::read(file, buffer.data(), block) > 0) {
    }
    ::close(file);
    return vectors;
}

struct Shape {
    __int64 n;
    __int64 nTim;
    std::string name() const {
        return std::to_string(n) + " x " + std::to_string(n) + " x " + std::to_string(nTim);
    }
};

void registerShape(Shape shape) {
    const std::string name = shape.name();
    compare(
        "open " + name, 1.5,
        [shape] {
            static TemporaryFile file("cxc-bench-open.cxc");
            static Shape made{0, 0};
            if (made.n != shape.n || made.nTim != shape.nTim) {
                save(*makeDataset(shape.n, shape.nTim), file.wide(), false);
                made = shape;
            }
            CSnsCohDatazq dataset;
            return seconds([&] { open(dataset, file.wide()); });
        },
        "same arrays made afresh, plain reads of 1 MiB",
        [shape] {
            static TemporaryFile file("cxc-bench-open-limit.cxc");
            static Shape made{0, 0};
            if (made.n != shape.n || made.nTim != shape.nTim) {
                save(*makeDataset(shape.n, shape.nTim), file.wide(), false);
                made = shape;
            }
            Vectors vectors;
            return seconds(
                [&] { vectors = plainRead(file.narrow(), shape.n * shape.n, shape.nTim); });
        });
    for (const bool toDisk : {false, true}) {
        const std::string tail = toDisk ? ", flushed to disk" : "";
        compare(
            "save " + name + tail, 3.0,
            [shape, toDisk] {
                static TemporaryFile file("cxc-bench-save.cxc");
                static std::unique_ptr<CSnsCohDatazq> dataset;
                if (!dataset || !dataset->verifyWavCohDataSize(shape.n, shape.nTim))
                    dataset = makeDataset(shape.n, shape.nTim);
                return seconds([&] { save(*dataset, file.wide(), toDisk); });
            },
            "plain write of as many bytes, 1 MiB" + tail,
            [shape, toDisk] {
                static TemporaryFile file("cxc-bench-save-limit.cxc");
                const auto pairs = static_cast<std::size_t>(shape.n * shape.n);
                const std::size_t perPair = 78 + static_cast<std::size_t>(shape.nTim) * 8;
                return seconds([&] { plainWrite(file.narrow(), pairs * perPair, toDisk); });
            });
    }
}

double bytesBeyondDataset(Shape shape) {
    const TemporaryFile file("cxc-bench-memory.cxc");
    save(*makeDataset(shape.n, shape.nTim), file.wide(), false);
    CSnsCohDatazq dataset;
    g_bytes = 0;
    g_counting = true;
    open(dataset, file.wide());
    g_counting = false;
    const auto pairs = static_cast<std::size_t>(shape.n * shape.n);
    const std::size_t own =
        pairs * (sizeof(CWavChnlChnlDatazq) + static_cast<std::size_t>(shape.nTim) * 8) +
        static_cast<std::size_t>(shape.n) * sizeof(void*);
    return static_cast<double>(g_bytes.load()) - static_cast<double>(own);
}

}  // namespace

void registerFile() {
    registerShape({306, 100});
    registerShape({64, 100});
    figure("bytes allocated by open 306 x 306 x 100 beyond the dataset", block, "bytes", [] {
        return bytesBeyondDataset({306, 100});
    });
}

}  // namespace bench
