#include "cxcdata/CSnsCohData00Time.h"

#include "cxcdata/allocation.h"
#include "cxcdata/index_math.h"

#include <algorithm>

namespace {

void releaseRows(double** table, __int64 n) {
    for (__int64 r = 0; r < n; ++r)
        delete[] table[r];
}

double* newClearRow(__int64 n) {
    double* const row = cxc::newArray<double>(n);
    if (row != nullptr) std::fill(row, row + n, 0.0);
    return row;
}

double** refuseMatrix() {
    AfxMessageBox(_T("Is memory enough?!"), MB_OK);
    return nullptr;
}

}  // namespace

double** CSnsCohData00Time::s_newCohData(int n) {
    if (n < 1) return nullptr;
    // A system that overcommits would grant row after row until it ends the process.
    if (!cxc::gridFitsMemory(1, 1, static_cast<__int64>(n) * n)) return refuseMatrix();
    double** const table = cxc::newArray<double*>(n);
    if (table == nullptr) return nullptr;
    for (__int64 r = 0; r < n; ++r) {
        table[r] = newClearRow(n);
        if (table[r] == nullptr) {
            releaseRows(table, r);
            delete[] table;
            return refuseMatrix();
        }
    }
    return table;
}

int CSnsCohData00Time::s_freeCohData(int n, double** p) {
    if (p == nullptr) return 0;
    releaseRows(p, n);
    delete[] p;
    return 1;
}

int CSnsCohData00Time::getCohAnaDataTscsInfo(bool& show) {
    show = m_tscsInfo;
    return 1;
}

__int64 CSnsCohData00Time::getSnsCohTimTotal() {
    return m_cohTimTotal;
}

__int64 CSnsCohData00Time::getSnsCohSnsTotal() {
    return m_mCC == nullptr ? 0 : m_snsRowTotal;
}

CWavChnlChnlDatazq** CSnsCohData00Time::getMCC4class() {
    return m_mCC;
}

__int64 CSnsCohData00Time::getSelect(__int64& begin, __int64& end) {
    begin = m_selectBegin;
    end = m_selectEnd;
    return cxc::wrapAdd(cxc::wrapSub(m_selectEnd, m_selectBegin), 1);
}

int CSnsCohData00Time::checkSelect(__int64 begin, __int64 end) {
    if (m_mCC == nullptr || m_cohTimTotal < 1 || begin < 0 || begin >= m_cohTimTotal || end < 0)
        return 0;
    return end < m_cohTimTotal ? 1 : 0;
}

__int64 CSnsCohData00Time::setSelect(__int64 begin, __int64 end) {
    const __int64 last = cxc::wrapSub(m_cohTimTotal, 1);
    const auto lowered = [&](__int64 slice) { return slice >= m_cohTimTotal ? last : slice; };
    m_selectBegin = lowered(std::max<__int64>(begin, 0));
    m_selectEnd = lowered(std::max<__int64>({end, m_selectBegin, 0}));
    return cxc::wrapAdd(cxc::wrapSub(m_selectEnd, m_selectBegin), 1);
}

int CSnsCohData00Time::setCohAnaDataTscsInfo(bool show) {
    m_tscsInfo = show;
    return 1;
}

int CSnsCohData00Time::resetCohTimeInfo() {
    return 0;
}
