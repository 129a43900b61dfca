// What relates the classes of a package: matching selections, ranges, Active against Control.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CSnsCohFace.h"
#include "framework.h"

/// Adds to the base layer: processing of the classes.
class CXC_API CSnsCohFace02Prcs : public CSnsCohFace {
public:
    /// Collapses `data`, any dataset, to one slice that holds the mean over time. 0 for null, for
    /// fewer than two slices, and where its accumulateTime1 fails.
    int accumulateTrlCoh(CSnsCohDatazq* data);

    /// Always 0.0: a package has no latency, its datasets have.
    double getLatency4PtSecond(__int64 pt);

    /// Largest slice count of the analysis as Active carries it (m_headerLong2); 1 without
    /// Active.
    __int64 getCohTimSlcMax() const;

    /// Value range of class cls over its time selection (flag true) or all slices; `mode`
    /// non-zero leaves the diagonal out. -1 is deliberately not resolved. 0, with both ends 0.0,
    /// without such a dataset.
    int getSnsCohRange(int cls, double& lo, double& hi, bool flag, int mode);

    /// 1 when class cls has a grid and both indices are slices of it, in whichever order. -1 is
    /// deliberately not resolved: as any value but 0, 1 and 2 it shows "Wrong wave selection
    /// class!" and gives 0.
    int checkSelect4Class(__int64 first, __int64 last, int cls);

    /// Makes two selections, given by inclusive slice indices, equally wide by widening the
    /// narrower one inside its class: one slice downwards, one upwards, and so on. Returns 1;
    /// 0 after a message: "There is no Active or Control data!?"; "The selected data range is
    /// wrong!" for two selections of unequal width without extent; "Can't match the active and
    /// control selections!" where there is no room (the widened indices stay in the arguments).
    int matchAtiveControl(__int64& activeFirst, __int64& activeLast, __int64& controlFirst,
                          __int64& controlLast);

    /// Makes Act-Ctl: each value of Active with the single value of the Control pair, by
    /// m_actCtlOperation: 0 minus, 1 plus, 2 times, 3 divided by (0.0 where Control is 0.0).
    /// Another code sizes Act-Ctl only, all 0.0, and counts as success. A value that is absent on
    /// either side gives 0.0.
    /// A Control of several slices is reduced to its mean, in place, after the question "This
    /// operation requires Control dataset has 1 slice", and stays so whatever happens next; any
    /// answer but Yes gives 0, nothing changed. accumulateTrlCoh(m_cohControl) beforehand does the
    /// same without the question. An Act-Ctl dataset that is made here keeps the default name;
    /// only values are made: band, latency and rate of Act-Ctl are the host's to set.
    /// Returns 1, or 0: after "This operation requires  both Active and Control datasets!", "This
    /// operation requires Active and Control datasets have the same size", "Control dataset
    /// accumulating failed!" or "This operation requires more memory", and silently where the grid
    /// could not be had.
    /// The program works on while the question stands: datasets may be released meanwhile, but the
    /// package has to outlive it.
    int doAct_Ctl_operation();
};
