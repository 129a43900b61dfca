#pragma once

#include "framework.h"

namespace cxc {

/// Stores or loads `record` through `ar`, which is closed, and returns what its serialize does.
///
/// An exception leaves the archive behind unflushed, because a second failure while the first one
/// unwinds would end the process.
template <class Record>
int passRecord(CArchive& ar, Record& record) {
    try {
        const int status = record.serialize(ar);
        ar.Close();
        return status;
    } catch (...) {
        ar.Abort();
        throw;
    }
}

/// The same for a record that is alone in an open file, from the file's position on. The file stays
/// open.
template <class Record>
int passRecord(CFile& file, UINT mode, Record& record) {
    CArchive ar(&file, mode);
    return passRecord(ar, record);
}

}  // namespace cxc
