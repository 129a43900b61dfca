#include "cxcdata/CWavChnlChnlData.h"

#include "cxcdata/accumulators.h"
#include "cxcdata/allocation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <type_traits>

static_assert(std::is_standard_layout_v<CWavChnlChnlData>, "fields in the given order, no vtable");
static_assert(offsetof(CWavChnlChnlData, m_bkData) == 8 &&
                  offsetof(CWavChnlChnlData, m_size) == 16 &&
                  offsetof(CWavChnlChnlData, m_data) == 24 &&
                  offsetof(CWavChnlChnlData, m_curIdx) == 32 &&
                  offsetof(CWavChnlChnlData, m_chnlA) == 40 &&
                  offsetof(CWavChnlChnlData, m_chnlB) == 48 &&
                  offsetof(CWavChnlChnlData, m_pairFlag) == 56 && sizeof(CWavChnlChnlData) == 64,
              "the layout is part of the interface");

CWavChnlChnlData::~CWavChnlChnlData() {
    delete[] m_data;
    delete[] m_bkData;
}

__int64 CWavChnlChnlData::getSize() const {
    return m_size;
}

double* CWavChnlChnlData::getData() {
    return m_data;
}

int CWavChnlChnlData::cleanData() {
    delete[] m_data;
    m_data = nullptr;
    m_size = 0;
    m_curIdx = 0;
    return 1;
}

int CWavChnlChnlData::cleanbkData() {
    delete[] m_bkData;
    m_bkData = nullptr;
    m_bkSize = 0;
    return 1;
}

int CWavChnlChnlData::bkDataIn() {
    if (m_bkSize != m_size) cleanbkData();
    if (!hasValues()) return 0;
    if (m_bkData == nullptr) {
        m_bkData = cxc::newArray<double>(m_size);
        if (m_bkData == nullptr) return 0;
        m_bkSize = m_size;
    }
    copy_(m_bkData, m_data, m_size);
    return 1;
}

int CWavChnlChnlData::bkDataInOut() {
    if (m_bkSize < 1 || m_bkData == nullptr) return 0;
    if (m_size != m_bkSize) cleanData();
    if (m_data == nullptr) {
        m_data = cxc::newArray<double>(m_bkSize);
        if (m_data == nullptr) {
            AfxMessageBox(_T("Not enough memory!"));
            return 0;
        }
        m_size = m_bkSize;
    }
    copy_(m_data, m_bkData, m_bkSize);
    m_curIdx = std::max<__int64>(std::min(m_curIdx, m_size - 1), 0);
    return 1;
}

void CWavChnlChnlData::set_(double* first, double* last, const double& value) {
    // The value may be one of the elements.
    const double written = value;
    if (first == nullptr) return;
    while (first < last)
        *first++ = written;
}

void CWavChnlChnlData::copy_(double* dst, const double* src, __int64 n) const {
    if (dst == nullptr || src == nullptr || n < 1) return;
    std::memmove(dst, src, static_cast<std::size_t>(n) * sizeof(double));
}

double* CWavChnlChnlData::checkInitData(__int64 n, bool zero) {
    if (n != m_size) cleanData();
    const bool fresh = m_data == nullptr;
    if (fresh) {
        // An array of no elements still gets an address of its own.
        m_data = cxc::newArray<double>(n);
        if (m_data == nullptr) return nullptr;
        m_size = n;
    }
    // A fresh array is cleared unasked as well: what was in the memory before may not reach a file.
    if (zero || fresh) set_(m_data, m_data + m_size, 0.0);
    return m_data;
}

double CWavChnlChnlData::getValueMax() {
    if (!hasValues()) return 0.0;
    double max = m_data[0];
    for (__int64 i = 1; i < m_size; ++i)
        max = m_data[i] > max ? m_data[i] : max;
    return max;
}

int CWavChnlChnlData::allValueNonZero() {
    if (!hasValues()) return 0;
    return std::find(m_data, m_data + m_size, 0.0) == m_data + m_size ? 1 : 0;
}

int CWavChnlChnlData::copy2Mtx(double* src, __int64 n) {
    if (src == nullptr) return 0;
    if (n != m_size || m_data == nullptr) {
        // The source may be part of the old array, which therefore goes last.
        double* fresh = cxc::newArray<double>(n);
        copy_(fresh, src, n);
        if (n != m_size || fresh == nullptr) cleanData();
        if (fresh == nullptr) return 0;
        m_data = fresh;
        m_size = n;
        return 1;
    }
    copy_(m_data, src, n);
    return 1;
}

int CWavChnlChnlData::resize(__int64 n) {
    if (n < 1) return cleanData();
    if (!hasValues()) {
        // Deliberately 1 also when memory is refused, unlike below.
        if (checkInitData(n, true) == nullptr) m_size = 0;
        return 1;
    }
    double* fresh = cxc::newArray<double>(n);
    if (fresh == nullptr) return 0;
    const __int64 kept = std::min(n, m_size);
    copy_(fresh, m_data, kept);
    // Callers write new elements before they read them; zeros keep a stray one harmless.
    set_(fresh + kept, fresh + n, 0.0);
    cleanData();
    m_data = fresh;
    m_size = n;
    return 1;
}

double CWavChnlChnlData::polynmlEval(double x) {
    if (!hasValues()) return 0.0;
    double result = m_data[m_size - 1];
    for (__int64 i = m_size - 2; i >= 0; --i)
        result = result * x + m_data[i];
    return result;
}

int CWavChnlChnlData::setData(double* p, __int64 n) {
    if (p != m_data) cleanData();
    if (p != nullptr && p == m_bkData) {
        m_bkData = nullptr;
        m_bkSize = 0;
    }
    m_data = p;
    m_size = n;
    m_curIdx = 0;
    return 1;
}

int CWavChnlChnlData::deRefData() {
    m_data = nullptr;
    m_size = 0;
    return 1;
}

int CWavChnlChnlData::normSumSqrt() {
    if (!hasValues()) return 0;
    double sum = 0.0;
    for (__int64 i = 0; i < m_size; ++i)
        sum += std::fabs(m_data[i]);
    const double mean = sum / static_cast<double>(m_size);
    if (!(mean > 0.0)) return 0;
    for (__int64 i = 0; i < m_size; ++i)
        m_data[i] /= mean;
    return 1;
}

int CWavChnlChnlData::getDataRange(double& min, double& mean, double& max) {
    double mean2 = 0.0;
    double absMean = 0.0;
    double rms = 0.0;
    return getStatistic(min, mean, max, mean2, absMean, rms);
}

int CWavChnlChnlData::getStatistic(double& min, double& mean, double& max, double& mean2,
                                   double& absMean, double& rms) {
    // The outputs may be elements of this very vector, so they are written last.
    double low = 0.0;
    double high = 0.0;
    double sum = 0.0;
    double absSum = 0.0;
    double squareSum = 0.0;
    if (hasValues()) {
        low = high = sum = m_data[0];
        absSum = std::fabs(low);
        squareSum = low * low;
        for (__int64 i = 1; i < m_size; ++i) {
            const double value = m_data[i];
            low = low > value ? value : low;
            high = value > high ? value : high;
            sum = cxc::pass::plus(sum, value);
            absSum = cxc::pass::plus(absSum, std::fabs(value));
            squareSum = cxc::pass::plus(squareSum, value * value);
        }
    }
    const double count = hasValues() ? static_cast<double>(m_size) : 1.0;
    const int result = m_data != nullptr ? 1 : 0;
    min = low;
    max = high;
    mean = sum / count;
    mean2 = sum / count;
    absMean = absSum / count;
    rms = std::sqrt(squareSum / count);
    return result;
}

double CWavChnlChnlData::getSelectDataMean(__int64 from, __int64 to, int mode) {
    if (!hasValues()) return 0.0;
    const __int64 last = m_size - 1;
    const __int64 first = std::clamp<__int64>(from, 0, last);
    const __int64 final = std::clamp<__int64>(to, 0, last);
    if (mode == 0) {
        if (first > final) return 0.0;
        double sum = 0.0;
        for (__int64 i = first; i <= final; ++i)
            sum = cxc::pass::plus(sum, m_data[i]);
        return sum / static_cast<double>(final - first + 1);
    }
    if (mode != 1) return 0.0;
    double low = m_data[first];
    double high = m_data[first];
    for (__int64 i = first + 1; i <= final; ++i) {
        low = low > m_data[i] ? m_data[i] : low;
        high = m_data[i] > high ? m_data[i] : high;
    }
    return std::fabs(high) > std::fabs(low) ? high : low;
}
