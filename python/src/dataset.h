// _core.Dataset: a dataset of the library, owned by Python.
#pragma once

#include <pybind11/pybind11.h>

namespace binding {

void registerDataset(pybind11::module_& m);

}  // namespace binding
