// cxc._core: the library for Python. The modules of the package give it its Python face.
#include "across.h"
#include "calls.h"
#include "containers.h"
#include "dataset.h"

PYBIND11_MODULE(_core, m) {
    m.attr("version") = CXC_VERSION;
    m.doc() = "Datasets of channel-by-channel coherence.";
    binding::registerCalls(m);
    binding::registerDataset(m);
    binding::registerContainers(m);
    binding::registerAcross(m);
}
