// CWavChnlChnlData: the values of one sensor pair over the time slices of a dataset, with a backup
// copy, the two channel numbers of the pair and per-vector arithmetic. Base of the vector chain:
// it declares all fields; CWavChnlChnlData09File adds the archive record, CWavChnlChnlDatazq is
// the type that grids hold.
#pragma once

#include "cxcdata/cxc_api.h"
#include "framework.h"

/// The values of one sensor pair over the time slices, with a backup; base of the vector chain.
///
/// No virtual operations: arrays of it are made and released with array new and
/// delete, by their exact type.
///
/// m_data is null or holds at least m_size doubles, m_bkData is null or holds m_bkSize doubles. A
/// positive m_size with a null m_data can come from a file; every operation bears it.
///
/// Copying is shallow, deliberately: copy and source refer to the same two arrays afterwards, and
/// the arrays that the target held before are not released. Before both are destroyed, one of
/// them must give up the arrays: deRefData for the values, and by hand for a backup.
///
/// Status results are 1 for success and 0 for failure.
class CXC_API CWavChnlChnlData {
public:
    /// Without values and without backup.
    CWavChnlChnlData() = default;
    /// Copies the fields; both arrays are shared, see above.
    CWavChnlChnlData(const CWavChnlChnlData& other) = default;
    /// Copies the fields; both arrays are shared, see above, and those held before are not
    /// released.
    CWavChnlChnlData& operator=(const CWavChnlChnlData& other) = default;
    /// Releases both arrays.
    ~CWavChnlChnlData();

    /// Number of values.
    __int64 getSize() const;
    /// The values, element t being time slice t; null without values. Valid until the next
    /// operation that changes the length or replaces the array.
    double* getData();

    /// Releases the values; the backup stays. Always 1.
    int cleanData();
    /// Releases the backup; the values stay. Always 1.
    int cleanbkData();
    /// Copies the values into the backup, reusing a backup of the right length. 0 without values
    /// (a backup of another length is gone then) or when memory is refused.
    int bkDataIn();
    /// Copies the backup into the values and clamps m_curIdx into them; the backup stays. 0
    /// without a backup. Shows "Not enough memory!" and returns 0 when memory is refused.
    int bkDataInOut();

    /// Writes `value` into every element from `first` up to but excluding `last`.
    void set_(double* first, double* last, const double& value);
    /// Copies n doubles; the ranges may overlap. Nothing happens for n below 1 or a null pointer.
    void copy_(double* dst, const double* src, __int64 n) const;

    /// Makes the values exactly n long and returns them; null when memory is refused or n is
    /// negative (the vector is then empty, but a length that already was n stays). An array of
    /// the right length is kept. `zero`: every element becomes 0.0; otherwise kept elements stay
    /// and new ones are not to be relied on.
    double* checkInitData(__int64 n, bool zero);

    /// Largest value; 0.0 without values.
    double getValueMax();
    /// 1 when there are values and none equals 0.0 (-0.0 does, a NaN does not).
    int allValueNonZero();
    /// Makes the values n long and copies n values from src INTO the vector, whatever the name
    /// says. src may lie inside the vector's own values. 0 for a null src (nothing changes) and
    /// when memory is refused (the vector is then empty).
    int copy2Mtx(double* src, __int64 n);
    /// Changes the length and keeps the leading values. A filled vector gets new elements that are
    /// not cleared, and stays as it was when memory is refused (result 0). An empty one gets
    /// zeros, and stays empty with result 1 when memory is refused. n below 1 empties it.
    int resize(__int64 n);
    /// The values as coefficients in ascending order of power, evaluated at x by Horner's rule;
    /// 0.0 without values. {1, 0, 3} at 2 is 13.
    double polynmlEval(double x);
    /// Adopts p, made by array new and n long, as the values; the former ones are released, the
    /// backup stays. Always 1. p may be the vector's own array. If p is the vector's backup, it
    /// ceases to be one.
    int setData(double* p, __int64 n);
    /// Gives the value array up without releasing it: it belongs to whoever holds the pointer.
    /// m_curIdx and the backup stay. Always 1.
    int deRefData();
    /// Divides every value by the mean absolute value; no root is taken, whatever the name says.
    /// 0, and nothing changes, without values or when the mean is not above 0.
    int normSumSqrt();

    /// Range and mean. 0 with all zeros for a null array; 1 with all zeros for no elements.
    int getDataRange(double& min, double& mean, double& max);
    /// Range, mean, the same mean once more, mean absolute value, and root mean square
    /// sqrt(sum of squares / n). Results as of getDataRange.
    int getStatistic(double& min, double& mean, double& max, double& mean2, double& absMean,
                     double& rms);
    /// Over elements from..to inclusive, each clamped into the vector: mode 0 the mean (0.0 for a
    /// reversed range), mode 1 the signed peak: the maximum if its magnitude is above that of the
    /// minimum, else the minimum (element `from` for a reversed range). Other modes: 0.0.
    double getSelectDataMean(__int64 from, __int64 to, int mode);

    /// @name Fields
    /// Public, and in this order part of the interface. The pair's channel numbers are the host's
    /// to set.
    /// @{
    __int64 m_bkSize = 0;           ///< elements of the backup
    double* m_bkData = nullptr;     ///< backup of the values, owning (array new)
    __int64 m_size = 0;             ///< elements of the values
    double* m_data = nullptr;       ///< values, one per time slice, owning (array new)
    __int64 m_curIdx = 0;           ///< current element; may lie outside when a file says so
    __int64 m_chnlA = 0;            ///< channel number of the row sensor
    __int64 m_chnlB = 0;            ///< channel number of the column sensor
    unsigned short m_pairFlag = 1;  ///< carried: stored, not interpreted
    /// @}

private:
    bool hasValues() const { return m_data != nullptr && m_size > 0; }
};
