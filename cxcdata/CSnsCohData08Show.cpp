#include "cxcdata/CSnsCohData08Show.h"

#include "cxcdata/grid.h"
#include "cxcdata/index_math.h"
#include "cxcdata/passes.h"

#include <algorithm>
#include <limits>

namespace {

using cxc::pass::colsThere;
using cxc::pass::MagnitudeRange;
using cxc::pass::rowsThere;
using cxc::pass::Slice;

// Magnitudes of every pair over the slices `from` to `to`, both included, as far as it has them.
MagnitudeRange<double> magnitudeRange(const CSnsCohData& dataset, __int64 from, __int64 to) {
    const auto slices = [&](const CWavChnlChnlDatazq* vector, __int64, __int64) -> Slice {
        const cxc::grid::Values values = cxc::grid::values(vector);
        const __int64 end = std::min(to, values.size - 1) + 1;
        return from < end ? Slice{values.data, from, end, true} : Slice{};
    };
    return cxc::pass::extremes<MagnitudeRange>(dataset.m_mCC, rowsThere(dataset),
                                               colsThere(dataset), slices);
}

void askColor(COLORREF& color) {
    CColorDialog dialog(color, CC_RGBINIT | CC_FULLOPEN);
    if (dialog.DoModal() == IDOK) color = dialog.GetColor();
}

}  // namespace

CString CSnsCohData08Show::getChnlTypeIDname() {
    switch (m_chnlTypeID) {
        case 0:
            return _T("All Type");
        case 1:
            return _T("MEG Sensor");
        case 2:
            return _T("EEG Sensor");
        case 3:
            return _T("MEG EEG Sensor");
        default:
            return _T("Unknown");
    }
}

CString CSnsCohData08Show::getCxcCmptInfo() {
    return m_cxcCmptInfo;
}

int CSnsCohData08Show::getCxcAbsRange(double& min, double& max, bool, bool useTime, __int64 from,
                                      __int64 to) {
    __int64 first = 0;
    __int64 last = std::numeric_limits<__int64>::max();
    if (useTime) {
        first = from == -1 ? m_selectBegin : from;
        last = to == -1 ? m_selectEnd : to;
    }
    // Slices are deliberately checked only where they restrict the range.
    const bool outside =
        useTime && (first < 0 || first >= m_cohTimTotal || last < 0 || last >= m_cohTimTotal);
    if (m_mCC == nullptr || outside) {
        min = 0.0;
        max = 0.0;
        return 0;
    }
    const MagnitudeRange<double> range = magnitudeRange(*this, first, last);
    const double least = range.field[0];
    const double greatest = range.field[1];
    m_showRangeMax = greatest;
    m_showRangeMin = least;
    m_showRangeMid = (least + greatest) * 0.5;
    min = least;
    max = greatest;
    return 1;
}

__int64 CSnsCohData08Show::nextSelect(int step, int wrap) {
    const __int64 high = std::max(m_selectEnd, m_selectBegin);
    const __int64 width = cxc::wrapSub(high, m_selectBegin);
    const __int64 last = cxc::wrapSub(m_cohTimTotal, 1);
    __int64& begin = m_selectBegin;
    __int64& end = m_selectEnd;
    begin = cxc::wrapAdd(begin, step);
    end = cxc::wrapAdd(high, step);
    if (begin < 0) {
        begin = wrap != 0 ? cxc::wrapSub(last, width) : 0;
        end = wrap != 0 || width >= m_cohTimTotal ? last : width;
    }
    if (end >= m_cohTimTotal) {
        begin = wrap != 0 ? 0 : cxc::wrapSub(last, width);
        end = wrap != 0 ? width : last;
        if (wrap == 0 && begin >= 0) return begin;
        begin = std::max<__int64>(begin, 0);
    }
    end = std::max(end, begin);
    return begin;
}

int CSnsCohData08Show::findSelectCxC(int) {
    return 0;
}

int CSnsCohData08Show::setActiveColor() {
    askColor(m_activeColor);
    return 1;
}

int CSnsCohData08Show::setSuppressiveColor() {
    askColor(m_suppressiveColor);
    return 1;
}

int CSnsCohData08Show::setBasicColor() {
    askColor(m_basicColor);
    return 1;
}
