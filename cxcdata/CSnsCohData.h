// The dataset: channel-by-channel coherence of one analysis. Holds all fields of the dataset
// chain and adds the grid, value access, matrix exchange, the slice formula and the value range.
#pragma once

#include "cxcdata/CWavChnlChnlDatazq.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

class CMMatrix2Dzq;

/// The dataset, base of its chain: all fields, the grid, matrix exchange, the value range.
///
/// value(t, r, c) is element t of the vector m_mCC[r][c]: row channel, column channel, slice.
///
/// A dataset has a grid or none (m_mCC null). Its counters are public, and a file may set them
/// to anything; the grid remembers its real shape by itself, and every operation of the chain
/// stays inside what is really there: a value that is absent adds nothing to a sum or a range,
/// and a single value that is absent reads as 0.0. Status results are 1 for success and 0 for
/// failure. One thread at a time.
///
/// Copying is shallow: the copy shares the grid of its source. Exactly one of the two may release
/// it; set m_mCC of the other to null first. Assigning to a dataset that has a grid of its own
/// loses that grid. Nothing in the chain is virtual: delete a dataset by its exact type.
///
/// In an index argument -1 stands for the dataset's own value: the begin (or, for an end
/// argument, the end) of the time selection, the current row, the current column.
class CXC_API CSnsCohData {
public:
    /// Without a grid; every field as listed with it.
    CSnsCohData();
    /// Copies every field; the grid is shared, see above.
    CSnsCohData(const CSnsCohData& other);
    /// Copies every field; the grid is shared, see above, and a grid that this dataset had before
    /// is not released.
    CSnsCohData& operator=(const CSnsCohData& other);
    /// Releases the grid.
    ~CSnsCohData();

    /// Number of positions of a window of nWin points that moves over nPts points in steps of
    /// nStep: 1 when the window covers all, else 1 + ceil((nPts - nWin) / nStep). A step below 1
    /// gives 1; a count beyond the 64-bit range gives its largest value.
    /// Example: (1000, 100, 200) and (1000, 100, 250) give 9.
    static __int64 getCohTim(__int64 nPts, __int64 nStep, __int64 nWin);

    /// Latency of slice pt: pt / m_samplingRate [s] + m_anaLatencyBegin, which is not converted
    /// whatever the host's unit. A rate of 0 is not guarded: the result is infinite or NaN.
    double getLatency4PtSecond(__int64 pt);

    /// Element t of the vector (row, col), t clamped into the slices. 0.0 without a grid and
    /// where there is no such value.
    double getValue(__int64 t, __int64 row, __int64 col);

    /// Mean of the elements tFrom to tTo, inclusive, of the vector (row, col), both clamped into
    /// the slices. 0.0 when tFrom is above tTo, without a grid and where there is no value.
    double getValueSelect(__int64 tFrom, __int64 tTo, __int64 row, __int64 col);

    /// 1 when the dataset has nSns rows and nTim slices. Columns are not compared.
    int verifyWavCohDataSize(__int64 nSns, __int64 nTim);

    /// Range of the values; noDiag non-zero leaves the pairs (r, r) out.
    /// useTime false: over all slices; from and to are only checked. Refreshes m_dataMin,
    /// m_dataMax and m_dataMean (the mean over rows of the mean of each row; its divisors are the
    /// full counts, also without the diagonal).
    /// useTime true: over the slices from to to, inclusive; caches nothing.
    /// Returns 0, with min and max 0.0, without a grid and for slices outside the dataset. With
    /// from above to, nothing is visited: 1, both 0.0.
    int getSnsCohRange(double& min, double& max, bool useTime, __int64 from, __int64 to,
                       int noDiag);

    /// Gives the dataset a grid of rows x cols vectors of nTim values. A grid of that shape is
    /// kept, vectors and arrays with it; `zero` then clears all values. Any other grid is
    /// released first and a new one, all 0.0, is built: current pair and begin of the selection
    /// become 0, the end of the selection is left as it is (1 on a fresh dataset, 0 on a cleaned
    /// one).
    /// Returns 1, or 0 without a grid: for counts below 1, and where memory lacks; deliberately the
    /// column count and the end of the selection then stay.
    int checkInitSnsCohData(__int64 rows, __int64 cols, __int64 nTim, bool zero);

    /// Releases the grid and sets the counters, the selection and the current pair to 0.
    /// Everything else stays. Always 1.
    int cleanSnsCohData();

    /// The dataset as one matrix per slice, each square with m_snsRowTotal rows; element (r, c)
    /// of matrix t is value(t, r, c), 0.0 where absent.
    /// mats null: an array of m_cohTimTotal matrices is made by array new, stored in mats and
    /// owned by the caller (array delete), count is set; also when the call fails later.
    /// mats given: an array of `count` matrices of the caller, which is accepted only when count
    /// is strictly greater than the number of slices; matrices beyond the slices are sized only.
    /// Matrices of more than 64 MiB together are made only where the grid has that many rows and
    /// slices, as counters from a file or a host may claim anything.
    /// Returns 1, or 0 (no grid, no memory, array not accepted, counters beyond the grid).
    int getData2MCohTimSnsSns(CMMatrix2Dzq*& mats, __int64& count);

    /// Makes this an n x n dataset of `count` slices, n the rows of the first matrix, and copies
    /// element (r, c) of matrix t to value(t, r, c). Elements outside n x n are left out.
    /// Returns 1, or 0: without matrices or memory, and at the first matrix without values (the
    /// slices before it are filled then).
    int setData4MCohTimSnsSns(CMMatrix2Dzq* mats, __int64 count);

    /// Assigns the elements of one matrix to slice t (assigns: nothing is added). The matrix must
    /// have m_snsRowTotal rows; its column count is not compared, columns outside the grid are
    /// left out. Returns 1, or 0 with nothing changed.
    int addMSnsSnsTimID(CMMatrix2Dzq* mat, __int64 t);

    /// @name Fields
    /// Public: where there is no operation, hosts and windows read and write them. Their order is
    /// part of the interface. Each line tells what the field holds and, last, its value after
    /// construction. "Carried" ones are initialised, copied and archived; their meaning is the
    /// host's.
    /// @{
    int m_headerInt0;             ///< carried; 0
    int m_headerInt1;             ///< carried; 0
    int m_headerInt2;             ///< carried; 0
    int m_headerInt3;             ///< carried; 0
    int m_chnlTypeID;             ///< 0 all types, 1 MEG, 2 EEG, 3 MEG and EEG; 0
    int m_headerInt5;             ///< carried; 0
    int m_headerInt6;             ///< carried; 0
    int m_headerInt7;             ///< carried; 0
    int m_headerInt8;             ///< carried; 0
    double m_samplingRate;        ///< slices per second [Hz]; 0
    double m_anaLatencyBegin;     ///< begin of the analysis, in the host's unit; 0
    double m_anaLatencyEnd;       ///< end of the analysis, in the host's unit; 0
    __int64 m_headerLong0;        ///< carried; 0
    __int64 m_headerLong1;        ///< carried; 0
    __int64 m_headerLong2;        ///< largest slice count of the analysis; 0
    __int64 m_headerLong3;        ///< carried; 0
    __int64 m_headerLong4;        ///< carried; 0
    double m_headerReal0;         ///< lower end of the frequency band [Hz]; 0.1
    double m_headerReal1;         ///< upper end of the frequency band [Hz]; 1.0
    CString m_cxcName;            ///< name of the dataset; "CxcTrial"
    CString m_cxcCmptInfo;        ///< how it was computed, grows; "CxC ComputeInfo"
    bool m_tscsInfo;              ///< shown or hidden; false
    int m_headerInt9;             ///< index of its item in the manager's list; 0
    int m_headerInt10;            ///< carried; 0
    int m_headerInt11;            ///< carried; 0
    __int64 m_cohTimTotal;        ///< T, slices, the length of every vector; 0
    __int64 m_selectBegin;        ///< first selected slice; 0
    __int64 m_selectEnd;          ///< last selected slice, inclusive; 1
    __int64 m_rowCrt;             ///< row of the current pair; 0
    __int64 m_columnCrt;          ///< column of the current pair; 0
    __int64 m_snsRowTotal;        ///< row channels; 0
    __int64 m_snsColTotal;        ///< column channels; 0
    CWavChnlChnlDatazq** m_mCC;   ///< rows x cols vectors, row-major, owning; null. Only the
                                  ///< chain makes such grids; never put another table here
    double m_headerReal2;         ///< carried; 0
    double m_dataMin;             ///< smallest value when last determined; 0
    double m_dataMax;             ///< largest value when last determined; 0
    double m_dataMean;            ///< mean value when last determined; 0
    int m_rmsNormalized;          ///< 1 after normRMS; 0
    double m_rmsValue;            ///< divisor of normRMS; 0
    __int64 m_headerLong5;        ///< carried; 0
    double m_showRangeMin;        ///< display range by magnitude, minimum; 0
    double m_showRangeMax;        ///< display range by magnitude, maximum; 1.0
    double m_showRangeMid;        ///< display range by magnitude, middle; 0
    int m_headerInt12;            ///< carried; 1
    int m_headerInt13;            ///< carried; 0
    COLORREF m_basicColor;        ///< 0x00BBGGRR, not archived; 0x7D7DFF
    COLORREF m_activeColor;       ///< 0x00BBGGRR, not archived; 0x0000FF, red
    COLORREF m_suppressiveColor;  ///< 0x00BBGGRR, not archived; 0xFF0000, blue
    /// @}

private:
    int reuseGrid(__int64 nTim, bool zero);
    int buildGrid(__int64 rows, __int64 cols, __int64 nTim);
    int abandonGrid();
};
