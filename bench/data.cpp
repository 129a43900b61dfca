#include "bench/data.h"

#include <random>

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

volatile double g_sink;

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

Vectors makeVectors(__int64 count, __int64 nTim, unsigned seed) {
    Vectors vectors;
    Values values(seed);
    for (__int64 i = 0; i < count; ++i) {
        vectors.emplace_back(new double[static_cast<std::size_t>(nTim)]);
        for (__int64 t = 0; t < nTim; ++t)
            vectors.back()[static_cast<std::size_t>(t)] = values.next();
    }
    return vectors;
}

void keep(double value) {
    g_sink = value;
}

}  // namespace bench
