#include "cxcdata/CSnsCohData.h"

#include "cxcdata/allocation.h"
#include "cxcdata/exchange.h"
#include "cxcdata/grid.h"
#include "cxcdata/index_math.h"
#include "cxcdata/passes.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <type_traits>

static_assert(!std::is_polymorphic_v<CSnsCohData>, "the data chains have no virtual operations");

// The order of the fields is part of the interface.
#define CXC_BEFORE(a, b) \
    static_assert(offsetof(CSnsCohData, a) < offsetof(CSnsCohData, b), #a " stands before " #b)
CXC_BEFORE(m_headerInt0, m_headerInt1);
CXC_BEFORE(m_headerInt1, m_headerInt2);
CXC_BEFORE(m_headerInt2, m_headerInt3);
CXC_BEFORE(m_headerInt3, m_chnlTypeID);
CXC_BEFORE(m_chnlTypeID, m_headerInt5);
CXC_BEFORE(m_headerInt5, m_headerInt6);
CXC_BEFORE(m_headerInt6, m_headerInt7);
CXC_BEFORE(m_headerInt7, m_headerInt8);
CXC_BEFORE(m_headerInt8, m_samplingRate);
CXC_BEFORE(m_samplingRate, m_anaLatencyBegin);
CXC_BEFORE(m_anaLatencyBegin, m_anaLatencyEnd);
CXC_BEFORE(m_anaLatencyEnd, m_headerLong0);
CXC_BEFORE(m_headerLong0, m_headerLong1);
CXC_BEFORE(m_headerLong1, m_headerLong2);
CXC_BEFORE(m_headerLong2, m_headerLong3);
CXC_BEFORE(m_headerLong3, m_headerLong4);
CXC_BEFORE(m_headerLong4, m_headerReal0);
CXC_BEFORE(m_headerReal0, m_headerReal1);
CXC_BEFORE(m_headerReal1, m_cxcName);
CXC_BEFORE(m_cxcName, m_cxcCmptInfo);
CXC_BEFORE(m_cxcCmptInfo, m_tscsInfo);
CXC_BEFORE(m_tscsInfo, m_headerInt9);
CXC_BEFORE(m_headerInt9, m_headerInt10);
CXC_BEFORE(m_headerInt10, m_headerInt11);
CXC_BEFORE(m_headerInt11, m_cohTimTotal);
CXC_BEFORE(m_cohTimTotal, m_selectBegin);
CXC_BEFORE(m_selectBegin, m_selectEnd);
CXC_BEFORE(m_selectEnd, m_rowCrt);
CXC_BEFORE(m_rowCrt, m_columnCrt);
CXC_BEFORE(m_columnCrt, m_snsRowTotal);
CXC_BEFORE(m_snsRowTotal, m_snsColTotal);
CXC_BEFORE(m_snsColTotal, m_mCC);
CXC_BEFORE(m_mCC, m_headerReal2);
CXC_BEFORE(m_headerReal2, m_dataMin);
CXC_BEFORE(m_dataMin, m_dataMax);
CXC_BEFORE(m_dataMax, m_dataMean);
CXC_BEFORE(m_dataMean, m_rmsNormalized);
CXC_BEFORE(m_rmsNormalized, m_rmsValue);
CXC_BEFORE(m_rmsValue, m_headerLong5);
CXC_BEFORE(m_headerLong5, m_showRangeMin);
CXC_BEFORE(m_showRangeMin, m_showRangeMax);
CXC_BEFORE(m_showRangeMax, m_showRangeMid);
CXC_BEFORE(m_showRangeMid, m_headerInt12);
CXC_BEFORE(m_headerInt12, m_headerInt13);
CXC_BEFORE(m_headerInt13, m_basicColor);
CXC_BEFORE(m_basicColor, m_activeColor);
CXC_BEFORE(m_activeColor, m_suppressiveColor);
#undef CXC_BEFORE

CSnsCohData::CSnsCohData()
    : m_headerInt0(0),
      m_headerInt1(0),
      m_headerInt2(0),
      m_headerInt3(0),
      m_chnlTypeID(0),
      m_headerInt5(0),
      m_headerInt6(0),
      m_headerInt7(0),
      m_headerInt8(0),
      m_samplingRate(0.0),
      m_anaLatencyBegin(0.0),
      m_anaLatencyEnd(0.0),
      m_headerLong0(0),
      m_headerLong1(0),
      m_headerLong2(0),
      m_headerLong3(0),
      m_headerLong4(0),
      m_headerReal0(0.1),
      m_headerReal1(1.0),
      m_cxcName(_T("CxcTrial")),
      m_cxcCmptInfo(_T("CxC ComputeInfo")),
      m_tscsInfo(false),
      m_headerInt9(0),
      m_headerInt10(0),
      m_headerInt11(0),
      m_cohTimTotal(0),
      m_selectBegin(0),
      m_selectEnd(1),  // deliberately not 0: a fresh one-slice dataset has no valid selection
      m_rowCrt(0),
      m_columnCrt(0),
      m_snsRowTotal(0),
      m_snsColTotal(0),
      m_mCC(nullptr),
      m_headerReal2(0.0),
      m_dataMin(0.0),
      m_dataMax(0.0),
      m_dataMean(0.0),
      m_rmsNormalized(0),
      m_rmsValue(0.0),
      m_headerLong5(0),
      m_showRangeMin(0.0),
      m_showRangeMax(1.0),
      m_showRangeMid(0.0),
      m_headerInt12(1),
      m_headerInt13(0),
      m_basicColor(0x7D7DFF),
      m_activeColor(0x0000FF),
      m_suppressiveColor(0xFF0000) {}

CSnsCohData::CSnsCohData(const CSnsCohData& other) = default;
CSnsCohData& CSnsCohData::operator=(const CSnsCohData& other) = default;

CSnsCohData::~CSnsCohData() {
    cleanSnsCohData();
}

__int64 CSnsCohData::getCohTim(__int64 nPts, __int64 nStep, __int64 nWin) {
    if (nPts <= nWin || nStep < 1) return 1;
    const unsigned long long span =
        static_cast<unsigned long long>(nPts) - static_cast<unsigned long long>(nWin);
    const unsigned long long steps = (span - 1) / static_cast<unsigned long long>(nStep);
    constexpr __int64 most = std::numeric_limits<__int64>::max();
    return steps > static_cast<unsigned long long>(most - 2) ? most
                                                             : static_cast<__int64>(steps) + 2;
}

double CSnsCohData::getLatency4PtSecond(__int64 pt) {
    return static_cast<double>(pt) / m_samplingRate + m_anaLatencyBegin;
}

double CSnsCohData::getValue(__int64 t, __int64 row, __int64 col) {
    if (m_mCC == nullptr || m_cohTimTotal < 1) return 0.0;
    const __int64 slice = cxc::clampIndex(t == -1 ? m_selectBegin : t, m_cohTimTotal);
    const cxc::grid::Values values =
        cxc::grid::values(m_mCC, row == -1 ? m_rowCrt : row, col == -1 ? m_columnCrt : col);
    return slice < values.size ? values.data[slice] : 0.0;
}

double CSnsCohData::getValueSelect(__int64 tFrom, __int64 tTo, __int64 row, __int64 col) {
    if (m_mCC == nullptr || m_cohTimTotal < 1) return 0.0;
    const cxc::grid::Values values =
        cxc::grid::values(m_mCC, row == -1 ? m_rowCrt : row, col == -1 ? m_columnCrt : col);
    const __int64 from = cxc::clampIndex(tFrom == -1 ? m_selectBegin : tFrom, m_cohTimTotal);
    const __int64 wanted = cxc::clampIndex(tTo == -1 ? m_selectEnd : tTo, m_cohTimTotal);
    const __int64 to = std::min(wanted, values.size - 1);
    if (from > to) return 0.0;
    double sum = 0.0;
    for (__int64 t = from; t <= to; ++t)
        sum = cxc::pass::plus(sum, values.data[t]);
    return sum / static_cast<double>(to - from + 1);
}

int CSnsCohData::verifyWavCohDataSize(__int64 nSns, __int64 nTim) {
    return nSns == m_snsRowTotal && nTim == m_cohTimTotal ? 1 : 0;
}

int CSnsCohData::checkInitSnsCohData(__int64 rows, __int64 cols, __int64 nTim, bool zero) {
    const bool counted = rows == m_snsRowTotal && cols == m_snsColTotal && nTim == m_cohTimTotal;
    const bool shaped = counted && cxc::grid::hasShape(m_mCC, rows, cols);
    // A dataset that has nothing to clean keeps the end of its selection.
    const bool something =
        m_mCC != nullptr || m_snsRowTotal != 0 || m_snsColTotal != 0 || m_cohTimTotal != 0;
    if (something && (!counted || (m_mCC != nullptr && !shaped))) cleanSnsCohData();
    if (rows < 1 || cols < 1 || nTim < 1) return 0;
    return m_mCC != nullptr ? reuseGrid(nTim, zero) : buildGrid(rows, cols, nTim);
}

int CSnsCohData::reuseGrid(__int64 nTim, bool zero) {
    const __int64 rows = cxc::grid::rows(m_mCC);
    const __int64 cols = cxc::grid::cols(m_mCC);
    // The vectors may be shorter than the counter says, and the counter may say anything.
    if (!cxc::gridFitsMemory(rows, cols, nTim)) return abandonGrid();
    for (__int64 r = 0; r < rows; ++r) {
        CWavChnlChnlDatazq* const vectors = m_mCC[r];
        for (__int64 c = 0; c < cols; ++c) {
            // A fresh array is always cleared: nobody may ever store what was in it before.
            const bool fresh = vectors[c].m_data == nullptr || vectors[c].m_size != nTim;
            if (vectors[c].checkInitData(nTim, zero || fresh) == nullptr) return abandonGrid();
        }
    }
    return 1;
}

int CSnsCohData::buildGrid(__int64 rows, __int64 cols, __int64 nTim) {
    // A row table that cannot be had leaves all counters, a later failure does not.
    if (!cxc::gridFitsMemory(rows, 0, 0)) return 0;
    if (!cxc::gridFitsMemory(rows, cols, nTim)) return abandonGrid();
    cxc::grid::Owner grid(cxc::grid::newTable(rows, cols));
    if (grid == nullptr) return 0;
    for (__int64 r = 0; r < rows; ++r) {
        if (!cxc::grid::newRow(grid.get(), r)) return abandonGrid();
        for (__int64 c = 0; c < cols; ++c) {
            if (grid[static_cast<std::size_t>(r)][c].checkInitData(nTim, true) == nullptr)
                return abandonGrid();
        }
    }
    m_mCC = grid.release();
    m_snsRowTotal = rows;
    m_snsColTotal = cols;
    m_rowCrt = 0;
    m_columnCrt = 0;
    m_selectBegin = 0;
    m_cohTimTotal = nTim;
    // m_selectEnd deliberately stays.
    return 1;
}

// Not cleanSnsCohData: m_snsColTotal and m_selectEnd deliberately stay.
int CSnsCohData::abandonGrid() {
    cxc::grid::release(m_mCC);
    m_mCC = nullptr;
    m_snsRowTotal = 0;
    m_rowCrt = 0;
    m_columnCrt = 0;
    m_cohTimTotal = 0;
    m_selectBegin = 0;
    return 0;
}

int CSnsCohData::cleanSnsCohData() {
    cxc::grid::release(m_mCC);
    m_mCC = nullptr;
    m_cohTimTotal = 0;
    m_selectBegin = 0;
    m_selectEnd = 0;
    m_rowCrt = 0;
    m_columnCrt = 0;
    m_snsRowTotal = 0;
    m_snsColTotal = 0;
    return 1;
}

namespace {

using cxc::pass::colsThere;
using cxc::pass::Range;
using cxc::pass::RangeSum;
using cxc::pass::rowsThere;
using cxc::pass::Slice;

struct RowRange {
    Range<double> first;  // of the first pair
    Range<double> all = cxc::pass::nothingSeen<Range>();
    double meanSum = 0.0;
    bool any = false;

    void take(const RangeSum<double>& pair, __int64 size) {
        if (!any) first.field = {pair.field[0], pair.field[1]};
        any = true;
        cxc::pass::widen(all, pair);
        if (size > 0) meanSum = cxc::pass::plus(meanSum, pair.field[2]);
    }
};

struct WholeRange {
    Range<double> range;
    double mean = 0.0;
};

// A vector without values counts as 0.0 here, but a pair outside the grid not at all.
WholeRange wholeRange(const CSnsCohData& dataset, bool noDiag) {
    WholeRange result;
    bool any = false;
    const auto slices = [&](const CWavChnlChnlDatazq* vector, __int64 r, __int64 c) -> Slice {
        if (vector == nullptr || (noDiag && c == r)) return {};
        const cxc::grid::Values values = cxc::grid::values(vector);
        return {values.data, 0, values.size, true};
    };
    const auto take = [&](const RowRange& row) {
        if (row.any && !any) result.range = row.first;
        any = any || row.any;
        cxc::pass::widen(result.range, row.all);
        // Deliberately the full column count, also when the diagonal was left out.
        const double mean = row.meanSum / static_cast<double>(dataset.m_snsColTotal);
        result.mean = cxc::pass::plus(result.mean, mean);
    };
    cxc::pass::eachVector<RangeSum, RowRange>(dataset.m_mCC, rowsThere(dataset), colsThere(dataset),
                                              slices, take);
    if (!any) result.range.start(0.0);
    result.mean /= static_cast<double>(dataset.m_snsRowTotal);
    return result;
}

Range<double> sliceRange(const CSnsCohData& dataset, __int64 from, __int64 to, bool noDiag) {
    const auto slices = [&](const CWavChnlChnlDatazq* vector, __int64 r, __int64 c) -> Slice {
        const cxc::grid::Values values = cxc::grid::values(vector);
        const __int64 end = std::min(to, values.size - 1) + 1;
        return from < end && !(noDiag && c == r) ? Slice{values.data, from, end, true} : Slice{};
    };
    return cxc::pass::extremes<Range>(dataset.m_mCC, rowsThere(dataset), colsThere(dataset),
                                      slices);
}

}  // namespace

int CSnsCohData::getSnsCohRange(double& min, double& max, bool useTime, __int64 from, __int64 to,
                                int noDiag) {
    const __int64 first = from == -1 ? m_selectBegin : from;
    const __int64 last = to == -1 ? m_selectEnd : to;
    if (m_mCC == nullptr || first < 0 || first >= m_cohTimTotal || last < 0 ||
        last >= m_cohTimTotal) {
        min = 0.0;
        max = 0.0;
        return 0;
    }
    Range<double> range;
    if (useTime) {
        range = sliceRange(*this, first, last, noDiag != 0);
    } else {
        const WholeRange whole = wholeRange(*this, noDiag != 0);
        range = whole.range;
        m_dataMax = range.field[1];
        m_dataMin = range.field[0];
        m_dataMean = whole.mean;
    }
    min = range.field[0];
    max = range.field[1];
    return 1;
}

namespace {

// Whether matrices of the size that the counters tell are worth making: a file or a host can have
// set them to anything, so that beyond a little memory the grid has to be that large.
bool matricesAreBacked(const CSnsCohData& data, __int64 count) {
    const auto sensors = static_cast<double>(data.m_snsRowTotal);
    if (static_cast<double>(count) * (sensors * sensors + 8.0) * sizeof(double) <=
        static_cast<double>(cxc::largestUnbackedClaim))
        return true;
    return data.m_snsRowTotal <= cxc::grid::rows(data.m_mCC) &&
           cxc::grid::reaches(data.m_mCC, data.m_cohTimTotal) &&
           cxc::gridFitsMemory(count, data.m_snsRowTotal, data.m_snsRowTotal);
}

}  // namespace

int CSnsCohData::getData2MCohTimSnsSns(CMMatrix2Dzq*& mats, __int64& count) {
    if (m_mCC == nullptr) return 0;
    if (mats != nullptr) {
        // Deliberately strict: an array of exactly the slice count is refused.
        if (count <= m_cohTimTotal || !matricesAreBacked(*this, count)) return 0;
    } else {
        if (!matricesAreBacked(*this, m_cohTimTotal)) return 0;
        CMMatrix2Dzq* const made = cxc::newArray<CMMatrix2Dzq>(m_cohTimTotal);
        if (made == nullptr) return 0;
        mats = made;
        count = m_cohTimTotal;
    }
    for (__int64 t = 0; t < count; ++t) {
        if (mats[t].checkInit(m_snsRowTotal, m_snsRowTotal, false) == nullptr) return 0;
    }
    // Matrices beyond the slices have nothing to be filled from.
    return cxc::exchange::gridToMatrices(m_mCC, mats, std::min(count, m_cohTimTotal)) ? 1 : 0;
}

int CSnsCohData::setData4MCohTimSnsSns(CMMatrix2Dzq* mats, __int64 count) {
    if (mats == nullptr || count < 1) return 0;
    const __int64 n = mats[0].getRow();
    if (n < 1 || checkInitSnsCohData(n, n, count, false) == 0) return 0;
    return cxc::exchange::matricesToGrid(mats, count, m_mCC) ? 1 : 0;
}

int CSnsCohData::addMSnsSnsTimID(CMMatrix2Dzq* mat, __int64 t) {
    if (m_mCC == nullptr || mat == nullptr || t < 0 || t >= m_cohTimTotal) return 0;
    if (mat->getRow() < 1 || mat->getRow() != m_snsRowTotal || mat->getDataPP() == nullptr ||
        mat->getCol() < 1)
        return 0;
    double** const elements = mat->getDataPP();
    const __int64 rows = std::min(mat->getRow(), cxc::grid::rows(m_mCC));
    const __int64 cols = std::min(mat->getCol(), cxc::grid::cols(m_mCC));
    for (__int64 r = 0; r < rows; ++r) {
        CWavChnlChnlDatazq* const vectors = cxc::grid::row(m_mCC, r);
        if (vectors == nullptr || elements[r] == nullptr) continue;
        for (__int64 c = 0; c < cols; ++c) {
            const cxc::grid::Values values = cxc::grid::values(vectors + c);
            if (t < values.size) values.data[t] = elements[r][c];
        }
    }
    return 1;
}
