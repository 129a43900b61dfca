// A dataset inside the record of a package or a group: a presence flag, then its own record.
#pragma once

#include "cxcpkg/dataset_owner.h"
#include "framework.h"

namespace cxc {

enum class Nested {
    absent,    // flag 0
    whole,     // stored or loaded
    refused,   // its record returned 0; what it has read is in the dataset
    noMemory,  // no dataset could be made
};

/// Stores the flag of `dataset` and its record, or reads a flag (any but 0 counts) and then the
/// record into a new dataset, which replaces the pointer before its record is read. Throws the
/// archive's exceptions.
Nested passNested(CArchive& ar, CSnsCohDatazq*& dataset);

}  // namespace cxc
