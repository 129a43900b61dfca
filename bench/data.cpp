#include "bench/data.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>

namespace bench {
namespace {

class Values {
public:
    explicit Values(unsigned seed) : m_state(seed) {}

    double next() {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(static_cast<std::int64_t>(m_state) >> 11) * 0x1p-52;
    }

private:
    std::uint64_t m_state;
};

class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "cxc-bench-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for files");
        m_path = name;
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace

std::unique_ptr<CSnsCohDatazq> makeDataset(__int64 n, __int64 nTim, unsigned seed) {
    auto dataset = std::make_unique<CSnsCohDatazq>();
    if (!dataset->checkInitSnsCohData(n, n, nTim, true)) throw std::bad_alloc();
    Values values(seed);
    for (__int64 r = 0; r < n; ++r) {
        for (__int64 c = 0; c < n; ++c) {
            double* data = dataset->m_mCC[r][c].getData();
            for (__int64 t = 0; t < nTim; ++t)
                data[t] = values.next();
        }
    }
    return dataset;
}

std::string fileIn(const char* name) {
    static const Folder folder;
    return (folder.path() / name).string();
}

void forget(const std::string& path) {
    std::filesystem::remove(path);
}

}  // namespace bench
