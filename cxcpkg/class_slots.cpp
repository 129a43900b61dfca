#include "cxcpkg/class_slots.h"

#include "cxcpkg/dataset_owner.h"

namespace cxc {

void releaseSlot(CSnsCohFace& package, const CohClass& cls) {
    CSnsCohDatazq* const dataset = package.*cls.slot;
    for (const CohClass& each : cohClasses) {
        if (package.*each.slot == dataset) package.*each.slot = nullptr;
    }
    releaseDataset(dataset);
}

}  // namespace cxc
