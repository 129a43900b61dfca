// Processing of a whole dataset: normalisation, range, statistics, diagonal; channel counts and
// latency.
#pragma once

#include "cxcdata/CSnsCohData00Time.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the time layer: operations on every slice of every pair. None uses the selection.
/// Sums run in row, column, slice order; an average is that of the rows' averages, with the
/// dataset's counters as divisors.
class CXC_API CSnsCohData02Prcs : public CSnsCohData00Time {
public:
    /// Copies the channel counts out. 1 when both are at least 1.
    int getChnlRowCol(__int64& rows, __int64& cols);

    /// Copies the latency of the analysis out, in the host's unit. Always 1.
    int getAnaLatency(double& begin, double& end);

    /// One line of statistics: name, Min, Mean, Max, AbsSum (mean of the pairs' mean absolute
    /// values) and RmsSum. With the root mean square of each pair, RmsSum takes for each row the
    /// root of the mean of their squares, then the mean over rows, and deliberately one more root.
    /// Refreshes m_dataMin, m_dataMax, m_dataMean. A pair without values counts as 0, a dataset
    /// without a grid has only such pairs.
    CString getStatistics();

    /// Refreshes m_dataMin, m_dataMax and m_dataMean from all values, diagonal included.
    /// Returns 1; 0, with nothing refreshed, without a grid or where a count is below 1.
    int checkDataRange();

    /// Divides every value by the root mean square of all values, which is kept in m_rmsValue;
    /// m_rmsNormalized becomes 1. Calling it twice divides twice.
    /// Returns 1; 0, with the values unchanged, without a grid or where a count is below 1, and,
    /// after "RMS value in leadfields is smaller than zero!?", where the root mean square is not
    /// above 0.
    int normRMS();

    /// Clears the pairs (r, r) in every slice and appends a line "Set Diagonal value to 0" to the
    /// computation note, once for each call.
    /// Returns 1; 0, with nothing changed, without a grid, where a count is below 1 and where
    /// memory lacks.
    int zeroDiagonal();

    /// Forgets row count, current pair and latency; the column count, the grid and the selection
    /// stay. Always 1.
    int resetSnsCoh();

    /// Announces channel counts; the current pair becomes (0, 0), the grid is not touched.
    /// 1 when both are at least 1; they are stored in any case.
    int setChnlRowCol(__int64 rows, __int64 cols);

    /// Sets the latency of the analysis, in the host's unit; nothing is checked. Always 1.
    int setAnaLatency(double begin, double end);

    /// Sets the current column, clamped into the columns (-1 without columns), and returns it.
    int setColumnCrt(int col);
};
