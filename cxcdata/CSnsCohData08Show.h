// What a dataset offers to displays: stepping through time, texts, the range by magnitude,
// colours.
#pragma once

#include "cxcdata/CSnsCohData02Prcs.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the processing layer: display state and its commands.
class CXC_API CSnsCohData08Show : public CSnsCohData02Prcs {
public:
    /// Name of m_chnlTypeID: 0 "All Type", 1 "MEG Sensor", 2 "EEG Sensor", 3 "MEG EEG Sensor",
    /// any other "Unknown".
    CString getChnlTypeIDname();

    /// A copy of the computation note.
    CString getCxcCmptInfo();

    /// Range of the magnitudes, diagonal included: over all slices (useTime false), or over the
    /// slices from to to, inclusive. The third argument is ignored. Refreshes m_showRangeMin,
    /// m_showRangeMax and m_showRangeMid (half their sum).
    /// Returns 1; 0, with min and max 0.0 and nothing refreshed, without a grid and, with useTime,
    /// for slices outside the dataset. Where nothing is visited: 1, all 0.0.
    int getCxcAbsRange(double& min, double& max, bool, bool useTime, __int64 from, __int64 to);

    /// Moves the selection by `step` slices and keeps its width. At an edge it stops there, or
    /// with wrap non-zero jumps to the other end. Returns the new begin.
    __int64 nextSelect(int step, int wrap);

    /// Kept for hosts that call it: does nothing. Always 0.
    int findSelectCxC(int);

    /// Asks the user for m_activeColor, starting from the present one; a cancelled dialog changes
    /// nothing. Always 1. The dataset must live until the dialog is closed.
    int setActiveColor();
    /// As setActiveColor, for m_suppressiveColor.
    int setSuppressiveColor();
    /// As setActiveColor, for m_basicColor.
    int setBasicColor();
};
