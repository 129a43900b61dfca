#include "bench/limits.h"

#include "bench/data.h"
#include "cxcfile/fixed_decimal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

namespace bench {
namespace {

constexpr std::size_t block = 1 << 20;

// Keep the optimiser from dropping a result, and from knowing a divisor.
volatile double g_sink;
volatile double g_one = 1.0;

// Arrays that are made afresh, each by itself.
using Vectors = std::vector<std::unique_ptr<double[]>>;

// The separately allocated vectors of a dataset or of all members of a group, pair after pair.
// Where the library lets them lie is no part of a limit, so these are its own.
class Separate {
public:
    Separate(const Shape& shape, unsigned seed) : m_length(static_cast<std::size_t>(shape.nTim)) {
        for (int k = 0; k < std::max(1, shape.members); ++k) {
            m_datasets.push_back(makeDataset(shape.n, shape.nTim, seed + static_cast<unsigned>(k)));
            for (__int64 r = 0; r < shape.n; ++r) {
                for (__int64 c = 0; c < shape.n; ++c)
                    m_arrays.push_back(m_datasets.back()->m_mCC[r][c].m_data);
            }
        }
    }
    std::size_t size() const { return m_arrays.size(); }
    std::size_t length() const { return m_length; }
    double* operator[](std::size_t pair) const { return m_arrays[pair]; }

private:
    std::size_t m_length;
    std::vector<Shared> m_datasets;
    std::vector<double*> m_arrays;
};

using SharedSeparate = std::shared_ptr<const Separate>;

// Two sets of separate vectors, and two contiguous arrays of as many values.
struct Plain {
    explicit Plain(const Shape& shape)
        : length(static_cast<std::size_t>(shape.nTim)),
          a(shape, 1),
          b(shape, 2),
          x(shape.values(), 0.25),
          y(shape.values(), 0.5) {}

    std::size_t length;
    Separate a, b;
    std::vector<double> x, y;
};

using SharedPlain = std::shared_ptr<Plain>;

class Descriptor {
public:
    Descriptor(const std::string& path, int mode) : m_file(::open(path.c_str(), mode, 0644)) {
        if (m_file < 0) std::abort();
    }
    ~Descriptor() { ::close(m_file); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    void write(const char* bytes, std::size_t count) const {
        if (::write(m_file, bytes, count) != static_cast<ssize_t>(count)) std::abort();
    }
    std::size_t read(char* bytes, std::size_t count) const {
        const ssize_t got = ::read(m_file, bytes, count);
        if (got < 0) std::abort();
        return static_cast<std::size_t>(got);
    }
    void flush() const {
        if (::fsync(m_file) != 0) std::abort();
    }

private:
    int m_file;
};

constexpr int writing = O_CREAT | O_TRUNC | O_WRONLY;

double readOnce(const Separate& vectors) {
    // Many sums side by side: the limit is the memory, not the latency of one addition.
    constexpr std::size_t many = 32;
    const std::size_t length = vectors.length();
    double sums[many] = {};
    for (std::size_t i = 0; i < vectors.size(); ++i) {
        const double* const v = vectors[i];
        std::size_t t = 0;
        for (; t + many <= length; t += many) {
            for (std::size_t k = 0; k < many; ++k)
                sums[k] += v[t + k];
        }
        for (; t < length; ++t)
            sums[(i + t) % many] += v[t];
    }
    double sum = 0.0;
    for (const double s : sums)
        sum += s;
    return sum;
}

void add(double* x, const double* y, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        x[i] += y[i];
}

void divide(double* x, std::size_t count, double divisor) {
    for (std::size_t i = 0; i < count; ++i)
        x[i] /= divisor;
}

void addMemory(std::vector<Operation>& all, const SharedPlain& p, const Shape& shape) {
    const std::size_t vectorBytes = p->length * sizeof(double);
    all.push_back({"copy", [p] { std::copy(p->x.begin(), p->x.end(), p->y.begin()); }});
    all.push_back({"copy, separate vectors", [p, vectorBytes] {
                       for (std::size_t i = 0; i < p->a.size(); ++i)
                           std::memcpy(p->b[i], p->a[i], vectorBytes);
                   }});
    all.push_back({"add", [p] { add(p->x.data(), p->y.data(), p->x.size()); }});
    all.push_back({"add, separate vectors", [p] {
                       for (std::size_t i = 0; i < p->a.size(); ++i)
                           add(p->a[i], p->b[i], p->length);
                   }});
    all.push_back({"subtract a constant, separate vectors", [p] {
                       for (std::size_t i = 0; i < p->a.size(); ++i) {
                           const double* const from = p->a[i];
                           double* const to = p->b[i];
                           for (std::size_t t = 0; t < p->length; ++t)
                               to[t] = from[t] - 0.25;
                       }
                   }});
    all.push_back({"read once, separate vectors", [p] { g_sink = readOnce(p->a); }});
    all.push_back({"read once, then divide, separate vectors", [p] {
                       g_sink = readOnce(p->a);
                       for (std::size_t i = 0; i < p->a.size(); ++i)
                           divide(p->a[i], p->length, g_one);
                   }});
    all.push_back({"fill the diagonal, separate vectors", [p, shape] {
                       const auto n = static_cast<std::size_t>(shape.n);
                       for (std::size_t i = 0; i < n; ++i)
                           std::fill_n(p->b[i * n + i], p->length, 0.0);
                   }});
}

// The same as those above, where the result is made afresh.
void addFresh(std::vector<Operation>& all, const SharedPlain& p) {
    const auto vectors = std::make_shared<Vectors>();
    vectors->reserve(p->a.size());
    all.push_back({"copy into vectors made afresh",
                   [p, vectors] {
                       for (std::size_t i = 0; i < p->a.size(); ++i) {
                           vectors->emplace_back(new double[p->length]);
                           std::memcpy(vectors->back().get(), p->x.data() + i * p->length,
                                       p->length * sizeof(double));
                       }
                   },
                   [vectors] { vectors->clear(); }});
    const auto array = std::make_shared<std::unique_ptr<double[]>>();
    all.push_back({"copy into an array made afresh",
                   [p, array] {
                       array->reset(new double[p->x.size()]);
                       std::copy(p->x.begin(), p->x.end(), array->get());
                   },
                   [array] { array->reset(); }});
}

// The same arrays made afresh, filled from blocks of the file as they come.
void readIntoVectors(const std::string& path, const Separate& like, char* buffer,
                     Vectors& vectors) {
    const Descriptor file(path, O_RDONLY);
    std::size_t have = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < like.size(); ++i) {
        vectors.emplace_back(new double[like.length()]);
        char* target = reinterpret_cast<char*>(vectors.back().get());
        for (std::size_t need = like.length() * sizeof(double); need > 0;) {
            if (at == have) {
                have = file.read(buffer, block);
                at = 0;
                if (have == 0) std::abort();
            }
            const std::size_t step = std::min(need, have - at);
            std::memcpy(target, buffer + at, step);
            target += step;
            at += step;
            need -= step;
        }
    }
    while (file.read(buffer, block) > 0) {
    }
}

void plainWrite(const std::string& path, const char* buffer, std::size_t bytes, bool toDisk) {
    const Descriptor file(path, writing);
    for (std::size_t done = 0; done < bytes; done += std::min(block, bytes - done))
        file.write(buffer, std::min(block, bytes - done));
    if (toDisk) file.flush();
}

// As many bytes for each pair as the record has, gathered in small copies.
void gatheredWrite(const std::string& path, const Separate& vectors, char* buffer,
                   std::size_t bytes) {
    const Descriptor file(path, writing);
    const std::size_t pairs = vectors.size();
    std::size_t have = 0;
    for (std::size_t i = 0; i < pairs; ++i) {
        const std::size_t record = bytes * (i + 1) / pairs - bytes * i / pairs;
        const char* from = reinterpret_cast<const char*>(vectors[i]);
        std::size_t fromVector = vectors.length() * sizeof(double);
        // What a record has beyond its values is as good as any other bytes.
        for (std::size_t need = record; need > 0;) {
            if (have == block) {
                file.write(buffer, block);
                have = 0;
            }
            const std::size_t room = std::min(need, block - have);
            const std::size_t step = fromVector > 0 ? std::min(room, fromVector) : room;
            if (fromVector > 0) {
                std::memcpy(buffer + have, from, step);
                from += step;
                fromVector -= step;
            } else {
                std::memset(buffer + have, 0, step);
            }
            have += step;
            need -= step;
        }
    }
    file.write(buffer, have);
}

// What as many bytes as the record of the vectors need.
void addFiles(std::vector<Operation>& all, const SharedSeparate& vectors) {
    const auto buffer = std::make_shared<std::vector<char>>(block, 'x');
    const auto made = std::make_shared<Vectors>();
    made->reserve(vectors->size());
    const std::size_t bytes = std::filesystem::file_size(recordFile());
    const std::string written = fileIn("limit.bin");
    all.push_back({"plain read", [buffer] {
                       const Descriptor file(recordFile(), O_RDONLY);
                       while (file.read(buffer->data(), block) > 0) {
                       }
                   }});
    all.push_back({"arrays made afresh, plain reads",
                   [=] { readIntoVectors(recordFile(), *vectors, buffer->data(), *made); },
                   [made] { made->clear(); }});
    const auto forgotten = [written] { forget(written); };
    all.push_back(
        {"plain write", [=] { plainWrite(written, buffer->data(), bytes, false); }, forgotten});
    all.push_back({"small copies, plain write",
                   [=] { gatheredWrite(written, *vectors, buffer->data(), bytes); }, forgotten});
    all.push_back({"plain write, flushed",
                   [=] { plainWrite(written, buffer->data(), bytes, true); }, forgotten});
}

// Into the same encoding: narrow digits first, then widened.
void formatWithPrintf(const Plain& p, TCHAR* text) {
    char digits[400];
    for (std::size_t i = 0; i < p.b.size(); ++i) {
        TCHAR* to = text;
        for (std::size_t t = 0; t < p.length; ++t) {
            const int length = std::snprintf(digits, sizeof(digits), "%f", p.b[i][t]);
            for (int k = 0; k < length; ++k)
                *to++ = static_cast<TCHAR>(digits[k]);
        }
    }
}

// As many bytes, flushed as often as the text of a dataset is.
void flushedWrite(const std::string& path, const std::vector<char>& text, std::size_t flushes) {
    const Descriptor file(path, writing);
    for (std::size_t i = 0; i < flushes; ++i) {
        const std::size_t from = text.size() * i / flushes;
        const std::size_t to = text.size() * (i + 1) / flushes;
        file.write(text.data() + from, to - from);
        file.flush();
    }
}

void addText(std::vector<Operation>& all, const SharedPlain& p) {
    const auto text = std::make_shared<std::vector<TCHAR>>(p->length * cxc::mostFixedDecimal);
    all.push_back({"snprintf", [p, text] { formatWithPrintf(*p, text->data()); }});
    const auto bytes =
        std::make_shared<std::vector<char>>(std::filesystem::file_size(textFile()), 'x');
    const std::string written = fileIn("limit.txt");
    all.push_back({"plain write of the text, as many flushes",
                   [p, bytes, written] { flushedWrite(written, *bytes, 2 * p->length + 2); }});
}

// Each value of every member read once, `results` sets of arrays of one member made afresh.
Operation readMembers(const SharedSeparate& members, const Shape& shape, const char* name,
                      int results) {
    const auto made = std::make_shared<Vectors>();
    const auto count = static_cast<std::size_t>(shape.pairs());
    made->reserve(count * static_cast<std::size_t>(results));
    return {name,
            [members, made, count, results] {
                for (std::size_t i = 0; i < count; ++i) {
                    for (int k = 0; k < results; ++k)
                        made->emplace_back(new double[members->length()]());
                    for (std::size_t pair = i; pair < members->size(); pair += count)
                        add(made->back().get(), (*members)[pair], members->length());
                }
            },
            [made] { made->clear(); }};
}

std::vector<Operation> ofGroup(const Shape& shape) {
    const auto members = std::make_shared<const Separate>(shape, 1);
    std::vector<Operation> all;
    addFiles(all, members);
    all.push_back(readMembers(members, shape, "members read once, result made afresh", 1));
    all.push_back(readMembers(members, shape, "members read once, three results made afresh", 3));
    return all;
}

}  // namespace

std::vector<Operation> limits(const Shape& shape) {
    if (shape.members > 0) return ofGroup(shape);
    const SharedPlain plain = std::make_shared<Plain>(shape);
    std::vector<Operation> all;
    addFiles(all, {plain, &plain->a});
    addText(all, plain);
    addMemory(all, plain, shape);
    addFresh(all, plain);
    return all;
}

}  // namespace bench
