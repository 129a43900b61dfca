// Passes over the values beside the memory's own speed on separately allocated vectors.
#include "bench/compare.h"
#include "bench/data.h"

#include <cmath>
#include <string>

namespace bench {
namespace {

struct Shape {
    __int64 n;
    __int64 nTim;
    std::string name() const {
        return std::to_string(n) + " x " + std::to_string(n) + " x " + std::to_string(nTim);
    }
};

// One dataset, and separate vectors of the same shape, kept over the repetitions.
struct Held {
    std::unique_ptr<CSnsCohDatazq> a, b;
    Vectors va, vb;
    Shape shape{0, 0};

    void need(Shape wanted) {
        if (shape.n == wanted.n && shape.nTim == wanted.nTim) return;
        shape = wanted;
        a = makeDataset(shape.n, shape.nTim, 1);
        b = makeDataset(shape.n, shape.nTim, 2);
        va = makeVectors(shape.n * shape.n, shape.nTim, 1);
        vb = makeVectors(shape.n * shape.n, shape.nTim, 2);
    }
};

Held& held(Shape shape) {
    static Held one;
    one.need(shape);
    return one;
}

double readAll(const Vectors& vectors, __int64 nTim) {
    // Eight sums side by side: the limit is the memory, not the latency of one addition.
    double sums[8] = {};
    for (const auto& vector : vectors) {
        const double* v = vector.get();
        __int64 t = 0;
        for (; t + 8 <= nTim; t += 8) {
            for (int k = 0; k < 8; ++k)
                sums[k] += v[t + k];
        }
        for (; t < nTim; ++t)
            sums[0] += v[t];
    }
    double sum = 0.0;
    for (const double s : sums)
        sum += s;
    return sum;
}

void addAll(Vectors& a, const Vectors& b, __int64 nTim) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        double* x = a[i].get();
        const double* y = b[i].get();
        for (__int64 t = 0; t < nTim; ++t)
            x[t] += y[t];
    }
}

void registerShape(Shape shape) {
    const std::string name = shape.name();
    const auto readLimit = [shape] {
        Held& h = held(shape);
        return seconds([&] { keep(readAll(h.va, shape.nTim)); });
    };
    compare(
        "sumDatSetSns " + name, 1.5,
        [shape] {
            Held& h = held(shape);
            return seconds([&] { h.a->sumDatSetSns(*h.b); });
        },
        "add over separately allocated vectors",
        [shape] {
            Held& h = held(shape);
            return seconds([&] { addAll(h.va, h.vb, shape.nTim); });
        });
    compare(
        "checkDataRange " + name, 2.0,
        [shape] {
            Held& h = held(shape);
            return seconds([&] { h.b->checkDataRange(); });
        },
        "reading the data once", readLimit);
    compare(
        "getSnsCohRange " + name, 2.0,
        [shape] {
            Held& h = held(shape);
            double lo = 0.0;
            double hi = 0.0;
            return seconds([&] { h.b->getSnsCohRange(lo, hi, false, 0, 0, 1); });
        },
        "reading the data once", readLimit);
    compare(
        "getCxcAbsRange " + name, 2.0,
        [shape] {
            Held& h = held(shape);
            double lo = 0.0;
            double hi = 0.0;
            return seconds([&] { h.b->getCxcAbsRange(lo, hi, false, false, 0, 0); });
        },
        "reading the data once", readLimit);
    compare(
        "getStatistics " + name, 2.0,
        [shape] {
            Held& h = held(shape);
            return seconds([&] { h.b->getStatistics(); });
        },
        "reading the data once", readLimit);
}

}  // namespace

void registerProcessing() {
    registerShape({64, 100});
    registerShape({306, 100});
}

}  // namespace bench
