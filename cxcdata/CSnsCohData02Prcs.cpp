#include "cxcdata/CSnsCohData02Prcs.h"

#include "cxcdata/allocation.h"
#include "cxcdata/grid.h"
#include "cxcdata/index_math.h"
#include "cxcdata/passes.h"
#include "cxcdata/two_doubles.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace {

using cxc::pass::colsThere;
using cxc::pass::rowsThere;

bool hasValues(const CSnsCohData& dataset) {
    return dataset.m_mCC != nullptr && dataset.m_cohTimTotal >= 1 && dataset.m_snsRowTotal >= 1 &&
           dataset.m_snsColTotal >= 1;
}

cxc::pass::Slice slicesOf(const CSnsCohData& dataset, const CWavChnlChnlDatazq* vector) {
    const cxc::grid::Values values = cxc::grid::values(vector);
    return {values.data, 0, std::min(values.size, dataset.m_cohTimTotal), true};
}

// Calls `take` with the accumulator of every row, over all its columns and slices.
template <template <class> class Accumulator, class Take>
void eachRow(const CSnsCohData& dataset, Take take) {
    cxc::pass::eachRow<Accumulator>(
        dataset.m_mCC, rowsThere(dataset), colsThere(dataset),
        [&](const CWavChnlChnlDatazq* vector, __int64, __int64) {
            return slicesOf(dataset, vector);
        },
        take);
}

// The values of a row as the counters announce them; a product of doubles cannot overflow.
double rowLength(const CSnsCohData& dataset) {
    return static_cast<double>(dataset.m_snsColTotal) * static_cast<double>(dataset.m_cohTimTotal);
}

double meanSquare(const CSnsCohData& dataset) {
    double sum = 0.0;
    eachRow<cxc::pass::SquareSum>(dataset, [&](const cxc::pass::SquareSum<double>& row) {
        sum = cxc::pass::plus(sum, row.field[0] / rowLength(dataset));
    });
    return sum / static_cast<double>(dataset.m_snsRowTotal);
}

void divide(double* values, __int64 n, double divisor) {
    const cxc::TwoDoubles divisors(divisor, divisor);
    __int64 t = 0;
    for (; t + 2 <= n; t += 2)
        (cxc::TwoDoubles::load(values + t) / divisors).store(values + t);
    if (t < n) values[t] /= divisor;
}

void divideAll(const CSnsCohData& dataset, double divisor) {
    const __int64 rows = rowsThere(dataset);
    const __int64 cols = colsThere(dataset);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c) {
            const cxc::grid::Values values = cxc::grid::values(dataset.m_mCC, r, c);
            divide(values.data, std::min(values.size, dataset.m_cohTimTotal), divisor);
        }
    }
}

using cxc::pass::plus;
using cxc::pass::Range;
using cxc::pass::Statistic;

struct Summary {
    Range<double> range;
    double mean = 0.0;
    double absSum = 0.0;
    double rmsSum = 0.0;
};

/// The sums of one row, over its pairs.
struct RowSums {
    Range<double> first;  // of the first pair
    Range<double> all = cxc::pass::nothingSeen<Range>();
    double mean = 0.0;
    double absMean = 0.0;
    double squaredRms = 0.0;
    bool any = false;

    void take(const Statistic<double>& pair, __int64 size) {
        if (!any) first.field = {pair.field[0], pair.field[1]};
        any = true;
        cxc::pass::widen(all, pair);
        if (size < 1) return;
        mean = plus(mean, pair.field[2]);
        absMean = plus(absMean, pair.field[3]);
        squaredRms = plus(squaredRms, pair.field[4] * pair.field[4]);
    }
};

void addRow(const CSnsCohData& dataset, const RowSums& row, Summary& summary) {
    const double cols = static_cast<double>(dataset.m_snsColTotal);
    summary.mean = plus(summary.mean, row.mean / cols);
    summary.absSum = plus(summary.absSum, row.absMean / cols);
    summary.rmsSum = plus(summary.rmsSum, std::sqrt(row.squaredRms / cols));
}

Summary summarize(const CSnsCohData& dataset) {
    Summary summary;
    bool any = false;
    const auto slices = [](const CWavChnlChnlDatazq* vector, __int64, __int64) {
        const cxc::grid::Values values = cxc::grid::values(vector);
        return cxc::pass::Slice{values.data, 0, values.size, vector != nullptr};
    };
    const auto take = [&](const RowSums& row) {
        if (row.any && !any) summary.range = row.first;
        any = any || row.any;
        cxc::pass::widen(summary.range, row.all);
        addRow(dataset, row, summary);
    };
    const __int64 rows = rowsThere(dataset);
    cxc::pass::eachVector<Statistic, RowSums>(dataset.m_mCC, rows, colsThere(dataset), slices,
                                              take);
    // Rows that are only announced add 0, or NaN where there are no columns; one stands for all.
    if (dataset.m_snsRowTotal > rows) addRow(dataset, RowSums(), summary);
    if (!any) summary.range.start(0.0);
    const double rowTotal = static_cast<double>(dataset.m_snsRowTotal);
    summary.mean /= rowTotal;
    summary.absSum /= rowTotal;
    // The second square root is deliberate: users know the figure this way.
    summary.rmsSum = std::sqrt(summary.rmsSum / rowTotal);
    return summary;
}

}  // namespace

int CSnsCohData02Prcs::getChnlRowCol(__int64& rows, __int64& cols) {
    rows = m_snsRowTotal;
    cols = m_snsColTotal;
    return m_snsRowTotal >= 1 && m_snsColTotal >= 1 ? 1 : 0;
}

int CSnsCohData02Prcs::getAnaLatency(double& begin, double& end) {
    begin = m_anaLatencyBegin;
    end = m_anaLatencyEnd;
    return 1;
}

CString CSnsCohData02Prcs::getStatistics() {
    const Summary summary = summarize(*this);
    m_dataMin = summary.range.field[0];
    m_dataMax = summary.range.field[1];
    m_dataMean = summary.mean;
    CString text;
    text.Format(_T("%s Min: %f\tMean: %f Max: %f AbsSum: %f RmsSum: %f \n"), m_cxcName.GetString(),
                summary.range.field[0], summary.mean, summary.range.field[1], summary.absSum,
                summary.rmsSum);
    return text;
}

int CSnsCohData02Prcs::checkDataRange() {
    if (!hasValues(*this)) return 0;
    const cxc::pass::Slice first = slicesOf(*this, cxc::grid::cell(m_mCC, 0, 0));
    Range<double> range;
    range.start(first.end > 0 ? first.data[0] : 0.0);
    double mean = 0.0;
    eachRow<cxc::pass::RangeSum>(*this, [&](const cxc::pass::RangeSum<double>& row) {
        cxc::pass::widen(range, row);
        mean = plus(mean, row.field[2] / rowLength(*this));
    });
    m_dataMin = range.field[0];
    m_dataMax = range.field[1];
    m_dataMean = mean / static_cast<double>(m_snsRowTotal);
    return 1;
}

int CSnsCohData02Prcs::normRMS() {
    if (!hasValues(*this)) return 0;
    const double rms = std::sqrt(meanSquare(*this));
    if (!(rms > 0.0)) {
        AfxMessageBox(_T("RMS value in leadfields is smaller than zero!?"), MB_OK);
        return 0;
    }
    divideAll(*this, rms);
    m_rmsValue = rms;
    m_rmsNormalized = 1;
    return 1;
}

int CSnsCohData02Prcs::zeroDiagonal() {
    if (!hasValues(*this)) return 0;
    // Made first: the note says what was done to the values, so neither may change alone.
    const std::unique_ptr<CString> note(cxc::allocateOrNull(sizeof(CString), [this] {
        return new CString(m_cxcCmptInfo + _T("\nSet Diagonal value to 0"));
    }));
    if (note == nullptr) return 0;
    m_cxcCmptInfo = std::move(*note);
    const __int64 diagonal = std::min(rowsThere(*this), colsThere(*this));
    for (__int64 r = 0; r < diagonal; ++r) {
        const __int64 end = slicesOf(*this, cxc::grid::cell(m_mCC, r, r)).end;
        double* const data = cxc::grid::values(m_mCC, r, r).data;
        std::fill(data, data + end, 0.0);
    }
    return 1;
}

int CSnsCohData02Prcs::resetSnsCoh() {
    m_rowCrt = 0;
    m_columnCrt = 0;
    m_snsRowTotal = 0;  // deliberately not m_snsColTotal
    m_anaLatencyBegin = 0.0;
    m_anaLatencyEnd = 0.0;
    return 1;
}

int CSnsCohData02Prcs::setChnlRowCol(__int64 rows, __int64 cols) {
    m_snsRowTotal = rows;
    m_snsColTotal = cols;
    m_rowCrt = 0;
    m_columnCrt = 0;
    return rows > 0 && cols > 0 ? 1 : 0;
}

int CSnsCohData02Prcs::setAnaLatency(double begin, double end) {
    m_anaLatencyBegin = begin;
    m_anaLatencyEnd = end;
    return 1;
}

int CSnsCohData02Prcs::setColumnCrt(int col) {
    const __int64 raised = std::max(col, 0);
    m_columnCrt = raised >= m_snsColTotal ? cxc::wrapSub(m_snsColTotal, 1) : raised;
    return static_cast<int>(m_columnCrt);
}
