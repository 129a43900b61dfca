#include "part.h"

#include "calls.h"
#include "cxcdata/dataset_part.h"

namespace py = pybind11;

namespace binding {

std::shared_ptr<CSnsCohDatazq> partOf(CSnsCohDatazq& from, const std::vector<__int64>& slices,
                                      const std::vector<__int64>& rows,
                                      const std::vector<__int64>& columns) {
    auto made = std::make_shared<CSnsCohDatazq>();
    bool there = false;
    const Outcome outcome = run([&] {
        there = cxc::partIsThere(from, slices, rows, columns);
        return cxc::makePart(*made, from, slices, rows, columns);
    });
    if (outcome.result != 0) return made;
    if (!there) throw py::index_error("no such slice or sensor, or none at all");
    PyErr_NoMemory();
    throw py::error_already_set();
}

}  // namespace binding
