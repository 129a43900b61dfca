// Processing of a group: ranges, the average and the summary of all its datasets.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CGroupMeegCxcFace.h"
#include "framework.h"

/// Adds to the base layer: processing of the list.
class CXC_API CGroupMeegCxcFace02Prcs : public CGroupMeegCxcFace {
public:
    /// Largest slice count of the analysis as the entry at the current index, clamped, carries it
    /// (m_headerLong2); 1 for an empty list and a null entry.
    __int64 getCohTimSlcMax();

    /// Value range of the entry at `index` over its time selection (flag true) or all slices;
    /// `mode` non-zero leaves the diagonal out. 0, with both ends 0.0, without such a dataset.
    int getSnsCohRange(int index, double& lo, double& hi, bool flag, int mode);

    /// 1 when the entry at `index` has a grid and both indices are slices of it, in whichever
    /// order. Shows no message.
    int checkSelect4Class(__int64 first, __int64 last, int index);

    /// As of a package: collapses `data`, any dataset, to one slice. 0 for null and for fewer than
    /// two slices.
    int accumulateTrlCoh(CSnsCohDatazq* data);

    /// Always 0.0.
    double getLatency4PtSecond(__int64 pt);

    /// Appends the mean of all datasets, value by value, as one more: as many rows, columns and
    /// slices as the largest of each, named "Average", their number and " Result". Deliberately
    /// the divisor is the number of all datasets, also where smaller ones have no value: they
    /// count as zeros there. In a row of a dataset the first pair without an array of values ends
    /// the row. Channel numbers come from the dataset at the current index, clamped, as far as it
    /// reaches; that entry must not be null.
    /// Results of earlier calls are datasets like any other. Returns the new number of entries;
    /// 0, with nothing changed, without datasets, sizes or memory.
    int averageAll();

    /// Appends minimum, mean and maximum of all datasets, value by value, as three more, named
    /// "Cxc", their number and " Minimum", " Mean", " Max". Sizes, divisor, rows and channel
    /// numbers as of averageAll. Minimum and maximum start from the first dataset; values that it
    /// does not have deliberately start from 0.0. A NaN never replaces an extreme.
    /// Returns the new number of entries; 0, with nothing changed, as averageAll.
    int summaryAll();
};
