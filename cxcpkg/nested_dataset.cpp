#include "cxcpkg/nested_dataset.h"

#include "cxcfile/record_io.h"

namespace cxc {

Nested passNested(CArchive& ar, CSnsCohDatazq*& dataset) {
    int present = dataset == nullptr ? 0 : 1;
    passItem(ar, present);
    if (present == 0) return Nested::absent;
    if (ar.IsLoading()) {
        dataset = newDataset().release();
        if (dataset == nullptr) return Nested::noMemory;
    }
    return dataset->serialize(ar) == 0 ? Nested::refused : Nested::whole;
}

}  // namespace cxc
