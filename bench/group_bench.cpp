// Combining Active with Control, averaging and summarising a group, beside reading the same
// separately allocated arrays once and making the result's afresh.
#include "bench/compare.h"
#include "bench/data.h"

#include <string>

namespace bench {
namespace {

struct Shape {
    int members;
    __int64 n;
    __int64 nTim;
    std::string name() const {
        const std::string size =
            std::to_string(n) + " x " + std::to_string(n) + " x " + std::to_string(nTim);
        return std::to_string(members) + " of " + size;
    }
    bool operator==(const Shape& other) const {
        return members == other.members && n == other.n && nTim == other.nTim;
    }
};

// A group and plain vectors of the same shape, kept over the repetitions.
struct Held {
    std::unique_ptr<CGroupMeegCxcFacezq> group;
    std::vector<Vectors> plain;
    Shape shape{0, 0, 0};

    ~Held() { release(); }

    void release() {
        if (group) group->cleanSnsCohPkg();
        group.reset();
        plain.clear();
    }

    void need(Shape wanted) {
        if (shape == wanted) return;
        release();
        shape = wanted;
        group = std::make_unique<CGroupMeegCxcFacezq>();
        for (int k = 0; k < shape.members; ++k) {
            const auto seed = static_cast<unsigned>(k + 1);
            group->setCohData(makeDataset(shape.n, shape.nTim, seed).release(), shape.members);
            plain.push_back(makeVectors(shape.n * shape.n, shape.nTim, seed));
        }
        group->setCurntCohDataSetID(0);
    }
};

Held& held(Shape shape) {
    static Held one;
    one.need(shape);
    return one;
}

// Each value of every member read once, `results` sets of arrays of one member made afresh.
double readOnceWriteResults(const Held& h, int results) {
    Vectors made;
    const auto count = static_cast<std::size_t>(h.shape.n * h.shape.n);
    const auto length = static_cast<std::size_t>(h.shape.nTim);
    made.reserve(count * static_cast<std::size_t>(results));
    return seconds([&] {
        for (std::size_t i = 0; i < count; ++i) {
            for (int k = 0; k < results; ++k)
                made.emplace_back(new double[length]());
            double* const sum = made[made.size() - 1].get();
            for (const Vectors& member : h.plain) {
                const double* const v = member[i].get();
                for (std::size_t t = 0; t < length; ++t)
                    sum[t] += v[t];
            }
        }
    });
}

void registerShape(Shape shape) {
    compare(
        "averageAll " + shape.name(), 1.5,
        [shape] {
            Held& h = held(shape);
            const double taken = seconds([&] { h.group->averageAll(); });
            h.group->deleteCohDataset(shape.members);
            return taken;
        },
        "reading once, the result made afresh",
        [shape] { return readOnceWriteResults(held(shape), 1); });
    compare(
        "summaryAll " + shape.name(), 2.0,
        [shape] {
            Held& h = held(shape);
            const double taken = seconds([&] { h.group->summaryAll(); });
            for (int k = 0; k < 3; ++k)
                h.group->deleteCohDataset(shape.members);
            return taken;
        },
        "reading once, three results made afresh",
        [shape] { return readOnceWriteResults(held(shape), 3); });
}

void registerCombine(__int64 n, __int64 nTim) {
    const std::string size =
        std::to_string(n) + " x " + std::to_string(n) + " x " + std::to_string(nTim);
    struct Combined {
        CSnsCohFacezq package;
        Vectors active, result;
    };
    const auto made = std::make_shared<std::unique_ptr<Combined>>();
    const auto need = [made, n, nTim]() -> Combined& {
        if (!*made) {
            *made = std::make_unique<Combined>();
            (*made)->package.setCohData(makeDataset(n, nTim, 1).release(), 0);
            (*made)->package.setCohData(makeDataset(n, 1, 2).release(), 1);
            (*made)->package.doAct_Ctl_operation();
            (*made)->active = makeVectors(n * n, nTim, 1);
            (*made)->result = makeVectors(n * n, nTim, 2);
        }
        return **made;
    };
    compare(
        "A-C=X " + size, 1.5,
        [need] {
            Combined& c = need();
            return seconds([&] { c.package.doAct_Ctl_operation(); });
        },
        "subtract a constant over separately allocated vectors",
        [need, nTim] {
            Combined& c = need();
            return seconds([&] {
                for (std::size_t i = 0; i < c.active.size(); ++i) {
                    const double* const a = c.active[i].get();
                    double* const x = c.result[i].get();
                    for (__int64 t = 0; t < nTim; ++t)
                        x[t] = a[t] - 0.25;
                }
            });
        });
}

}  // namespace

void registerGroup() {
    registerCombine(64, 100);
    registerCombine(306, 100);
    registerShape({50, 64, 100});
    registerShape({10, 306, 20});
}

}  // namespace bench
