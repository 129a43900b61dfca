// The bookkeeping of a dataset in time: slices, selection, show flag; square matrices of doubles
// for hosts.
#pragma once

#include "cxcdata/CSnsCohData.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the base: the time selection, an inclusive range of slices that displays, ranges and
/// averages use by default.
class CXC_API CSnsCohData00Time : public CSnsCohData {
public:
    /// An n x n matrix of 0.0: n row pointers, each to n doubles. Released by s_freeCohData with
    /// the same n. Null for n below 1 and where memory lacks; a row that cannot be had shows
    /// "Is memory enough?!", a table that cannot be had is silent.
    static double** s_newCohData(int n);

    /// Releases a matrix of s_newCohData. With n below 1 only the table is released (the rows are
    /// lost). n must not exceed the count it was made with. Returns 0 for null, else 1.
    static int s_freeCohData(int n, double** p);

    /// `show` = whether the dataset is shown. Always 1.
    int getCohAnaDataTscsInfo(bool& show);

    /// Number of slices.
    __int64 getSnsCohTimTotal();

    /// Number of row channels; 0 without a grid, whatever the counter says.
    __int64 getSnsCohSnsTotal();

    /// The grid itself, owned by the dataset; null without one. Valid until the dataset is sized
    /// to another shape, collapsed over time, loaded, cleaned or destroyed.
    CWavChnlChnlDatazq** getMCC4class();

    /// Copies the selection out. Returns its length, end - begin + 1.
    __int64 getSelect(__int64& begin, __int64& end);

    /// 1 when there is a grid and both slices lie inside the dataset. Their order is not checked.
    int checkSelect(__int64 begin, __int64 end);

    /// Selects the slices begin to end, clamped into the dataset; a reversed request selects the
    /// single slice begin. Returns the number of selected slices. A dataset without slices gets
    /// -1 to -1, result 1.
    __int64 setSelect(__int64 begin, __int64 end);

    /// Shows or hides the dataset. Always 1.
    int setCohAnaDataTscsInfo(bool show);

    /// Kept for hosts that call it: does nothing. Always 0.
    int resetCohTimeInfo();
};
