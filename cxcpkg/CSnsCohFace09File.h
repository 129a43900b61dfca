// The archive record of a package.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CSnsCohFace08Show.h"
#include "framework.h"

/// Adds to the display layer: the package record in both directions.
class CXC_API CSnsCohFace09File : public CSnsCohFace08Show {
public:
    /// Stores the package with its datasets in the newest layout and flushes the archive, or loads
    /// one of any known version (20121016, 20080721); the archive decides. m_actCtlOperation and
    /// the viewers are not stored.
    /// Loading refuses a foreign record with "Unknown Coherence file!" and an unknown version with
    /// "Coherence data format error!", the package unchanged. After that all datasets are
    /// released, and there is no way back: a load that fails leaves what it has read. The current
    /// class is taken as stored, whatever the slots hold.
    /// A Control record that is refused does deliberately not end the load, unlike the two
    /// others.
    /// Returns 1 or 0. Throws the archive's and file's exceptions, as where the data end early.
    int serialize(CArchive& ar);

protected:
    /// Current class, then a presence flag and a dataset record per class.
    int _01SerializeCohDataPA(CArchive& ar);
    /// Identifier, names and show flag.
    int _03SerializeOthers(CArchive& ar);
    /// As _03SerializeOthers, in the layout of version 20080721, which has no descriptive text.
    int _03SerializeOthers_obsolete(CArchive& ar);

private:
    int serialize20080721(CArchive& ar);
    int serialize20121016(CArchive& ar);
};
