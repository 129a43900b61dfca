#include "cxcdata/CWavChnlChnlData09File.h"

#include "cxcdata/prefetch.h"
#include "cxcfile/record_io.h"

namespace {

constexpr TCHAR vectorMagic[] = _T("MMATRIX1DX");

// The only version; the function that handles it carries another date, deliberately.
constexpr DWORD vectorVersion = 20120222;

// An array for `count` doubles that the file claims to hold. Null when memory is refused or a
// large claim is not backed by the file.
double* newClaimedArray(CArchive& ar, __int64 count) {
    const bool backed =
        cxc::claimIsBacked(ar, count, sizeof(double), static_cast<double>(sizeof(double)));
    return backed ? cxc::newArray<double>(count) : nullptr;
}

// Vectors are made one behind the other, so the memory some vectors on will be written soon. Long
// vectors keep the machine busy by themselves.
void prefetchLaterVectors(const double* values, __int64 count) {
    constexpr __int64 longVector = 1024;
    constexpr __int64 vectorsAhead = 6;
    if (count > longVector) return;
    for (__int64 t = 0; t <= count; t += cxc::doublesPerCacheLine)
        cxc::prefetch(values, vectorsAhead * count + t);
}

int refuse(LPCTSTR message) {
    AfxMessageBox(message);
    return 0;
}

}  // namespace

int CWavChnlChnlData09File::serialize(CArchive& ar) {
    if (cxc::passVectorRecord(ar, *this) == 0) return 0;
    if (ar.IsStoring()) ar.Flush();
    return 1;
}

int cxc::passVectorRecord(CArchive& ar, CWavChnlChnlData09File& vector, SpareArray* spare) {
    if (ar.IsStoring()) {
        storeMagic(ar, vectorMagic);
        ar << vectorVersion;
        return vector.serialize20120228(ar);
    }
    if (!loadMagic(ar, vectorMagic)) return refuse(_T("Unknown MMatrix1D file!"));
    DWORD version = 0;
    ar >> version;
    if (version != vectorVersion) return refuse(_T("MMatrix1D format error!"));
    return vector.serialize20120228(ar, spare);
}

int CWavChnlChnlData09File::serialize20120228(CArchive& ar, cxc::SpareArray* spare) {
    if (ar.IsLoading()) cleanData();
    cxc::passItem(ar, m_curIdx);
    cxc::passItem(ar, m_chnlA);
    cxc::passItem(ar, m_chnlB);
    cxc::passItem(ar, m_pairFlag);
    cxc::passItem(ar, m_size);
    if (ar.IsLoading()) return loadValues(ar, spare) != 0 ? loadBackup(ar) : 0;
    storeBlocks(ar);
    return 1;
}

void CWavChnlChnlData09File::storeBlocks(CArchive& ar) {
    const bool values = m_data != nullptr && m_size > 0;
    ar << static_cast<int>(values ? 1 : 0);
    if (values) cxc::storeBlock(ar, m_data, m_size);
    ar << m_bkSize;
    // 1 wherever the array exists, also when it is empty.
    ar << static_cast<int>(m_bkData != nullptr ? 1 : 0);
    if (m_bkData != nullptr) cxc::storeBlock(ar, m_bkData, m_bkSize);
}

int CWavChnlChnlData09File::loadValues(CArchive& ar, cxc::SpareArray* spare) {
    int marker = 0;
    ar >> marker;
    if (marker == 0 || m_size < 1) return 1;
    const bool reused = spare != nullptr && spare->values != nullptr && spare->size == m_size;
    m_data = reused ? spare->values.release() : newClaimedArray(ar, m_size);
    if (m_data == nullptr) {
        m_size = 0;
        return refuse(_T("Not enough memory!"));
    }
    if (!reused) prefetchLaterVectors(m_data, m_size);
    const __int64 read = cxc::loadBlock(ar, m_data, m_size);
    return read == m_size * static_cast<__int64>(sizeof(double))
               ? 1
               : refuse(_T("Read Cxc data error!?"));
}

int CWavChnlChnlData09File::loadBackup(CArchive& ar) {
    // Both items before either is believed: m_bkSize may never exceed the array that is there.
    __int64 size = 0;
    int marker = 0;
    ar >> size >> marker;
    const bool follows = marker != 0 && size >= 1;
    if (follows || size > m_bkSize) cleanbkData();
    m_bkSize = size;
    if (!follows) return 1;
    m_bkData = newClaimedArray(ar, size);
    if (m_bkData == nullptr) return refuse(_T("Not enough memory!"));
    // A backup that is cut short is accepted, deliberately unlike values that are.
    return cxc::loadBlock(ar, m_bkData, size) > 0 ? 1 : refuse(_T("Read back up data error!?"));
}
