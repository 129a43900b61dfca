// _core.Across: minimum, mean and maximum of datasets that come one after another.
#pragma once

#include <pybind11/pybind11.h>

namespace binding {

void registerAcross(pybind11::module_& m);

}  // namespace binding
