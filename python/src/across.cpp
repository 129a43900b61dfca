#include "across.h"

#include "calls.h"
#include "cxcpkg/across_datasets.h"

#include <pybind11/stl.h>

#include <memory>
#include <vector>

namespace py = pybind11;

namespace binding {
namespace {

using Dataset = CSnsCohDatazq;
using Shared = std::shared_ptr<Dataset>;

class Across {
public:
    Across(__int64 slices, __int64 rows, __int64 columns) {
        for (const Shared& result : m_results)
            require([&] { return result->checkInitSnsCohData(rows, columns, slices, true); }, "",
                    "there is not enough memory, or the sizes are none");
    }

    void take(const Dataset& next) {
        if (m_finished) fail("the results are finished");
        run([&] {
            cxc::Accumulation(*m_results[0], *m_results[1], *m_results[2], m_count == 0).take(next);
            return 1;
        });
        ++m_count;
    }

    std::vector<Shared> finish() {
        if (!m_finished) {
            run([&] {
                cxc::sumsToMeans(*m_results[1], m_count);
                return 1;
            });
        }
        m_finished = true;
        return m_results;
    }

private:
    const std::vector<Shared> m_results{std::make_shared<Dataset>(), std::make_shared<Dataset>(),
                                        std::make_shared<Dataset>()};  // minimum, mean, maximum
    int m_count = 0;
    bool m_finished = false;
};

}  // namespace

void registerAcross(py::module_& m) {
    py::class_<Across>(m, "Across")
        .def(py::init<__int64, __int64, __int64>())
        .def("take", &Across::take)
        .def("finish", &Across::finish);
}

}  // namespace binding
