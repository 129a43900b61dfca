// The archive record of a group.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CGroupMeegCxcFace08Show.h"
#include "framework.h"

/// Adds to the display layer: the group record in both directions.
class CXC_API CGroupMeegCxcFace09File : public CGroupMeegCxcFace08Show {
public:
    /// Stores the group with its datasets and flushes the archive, or loads one; the archive
    /// decides. Viewers are not stored.
    /// Loading refuses a foreign record with "Unknown Coherence file!" and an unknown version with
    /// "Group Cxc data format error!", the group unchanged. After that all datasets are released,
    /// and there is no way back: a load that fails leaves what it has read, without the dataset
    /// at which it failed. Null entries are deliberately not restored, so that later entries move
    /// down, while the current index is taken as stored: it may lie beyond the list.
    /// Returns 1 or 0. Throws the archive's and file's exceptions, as where the data end early.
    int serialize(CArchive& ar);

protected:
    /// Current index, number of entries, then a presence flag and a dataset record per entry.
    int _01SerializeCohDataPA(CArchive& ar);
    /// Identifier, names, show flag and operation code.
    int _03SerializeOthers(CArchive& ar);

private:
    int serialize20180725(CArchive& ar);
};
