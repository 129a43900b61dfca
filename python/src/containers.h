// _core.Package and _core.Group.
#pragma once

#include <pybind11/pybind11.h>

namespace binding {

void registerContainers(pybind11::module_& m);

}  // namespace binding
