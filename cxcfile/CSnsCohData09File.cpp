#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/grid.h"
#include "cxcfile/each_pair.h"
#include "cxcfile/record_io.h"

#include <memory>

namespace {

using cxc::grid::Owner;

constexpr TCHAR datasetMagic[] = _T("MEGCOHPTS");

// A version word is the day on which its layout was fixed. Only the newest is written.
constexpr DWORD newestVersion = 20160311;

// Stores or loads one member; the archive decides.
template <auto Member>
void pass(CArchive& ar, CSnsCohData& data) {
    cxc::passItem(ar, data.*Member);
}

struct Field {
    int item;  // place in the newest layout; a run of like members shares one
    void (*pass)(CArchive& ar, CSnsCohData& data);
};

// The newest layout without its magic string, version word, marker and vectors. Every version
// only ever appended fields, so an older one is a range of this list.
constexpr Field fields[] = {
    {3, pass<&CSnsCohData::m_headerInt11>},      {4, pass<&CSnsCohData::m_cohTimTotal>},
    {5, pass<&CSnsCohData::m_selectBegin>},      {6, pass<&CSnsCohData::m_selectEnd>},
    {7, pass<&CSnsCohData::m_rowCrt>},           {8, pass<&CSnsCohData::m_columnCrt>},
    {9, pass<&CSnsCohData::m_snsRowTotal>},      {10, pass<&CSnsCohData::m_snsColTotal>},
    {13, pass<&CSnsCohData::m_headerInt0>},      {13, pass<&CSnsCohData::m_headerInt1>},
    {13, pass<&CSnsCohData::m_headerInt2>},      {13, pass<&CSnsCohData::m_headerInt3>},
    {14, pass<&CSnsCohData::m_chnlTypeID>},      {15, pass<&CSnsCohData::m_headerInt5>},
    {15, pass<&CSnsCohData::m_headerInt6>},      {15, pass<&CSnsCohData::m_headerInt7>},
    {15, pass<&CSnsCohData::m_headerInt8>},      {16, pass<&CSnsCohData::m_samplingRate>},
    {17, pass<&CSnsCohData::m_anaLatencyBegin>}, {18, pass<&CSnsCohData::m_anaLatencyEnd>},
    {19, pass<&CSnsCohData::m_headerLong0>},     {19, pass<&CSnsCohData::m_headerLong1>},
    {19, pass<&CSnsCohData::m_headerLong2>},     {19, pass<&CSnsCohData::m_headerLong3>},
    {19, pass<&CSnsCohData::m_headerLong4>},     {20, pass<&CSnsCohData::m_headerReal0>},
    {21, pass<&CSnsCohData::m_headerReal1>},     {22, pass<&CSnsCohData::m_cxcName>},
    {23, pass<&CSnsCohData::m_tscsInfo>},        {24, pass<&CSnsCohData::m_headerInt9>},
    {25, pass<&CSnsCohData::m_headerInt10>},     {26, pass<&CSnsCohData::m_headerReal2>},
    {27, pass<&CSnsCohData::m_dataMin>},         {28, pass<&CSnsCohData::m_dataMax>},
    {29, pass<&CSnsCohData::m_dataMean>},        {30, pass<&CSnsCohData::m_rmsNormalized>},
    {31, pass<&CSnsCohData::m_rmsValue>},        {32, pass<&CSnsCohData::m_cxcCmptInfo>},
    {33, pass<&CSnsCohData::m_headerLong5>},     {34, pass<&CSnsCohData::m_showRangeMin>},
    {35, pass<&CSnsCohData::m_showRangeMax>},    {36, pass<&CSnsCohData::m_showRangeMid>},
    {37, pass<&CSnsCohData::m_headerInt12>},     {38, pass<&CSnsCohData::m_headerInt13>},
};

// The one layout that is no range: it shares members with the list, in an order of its own.
constexpr Field fields20080720[] = {
    {9, pass<&CSnsCohData::m_snsRowTotal>},    {7, pass<&CSnsCohData::m_rowCrt>},
    {8, pass<&CSnsCohData::m_columnCrt>},      {17, pass<&CSnsCohData::m_anaLatencyBegin>},
    {18, pass<&CSnsCohData::m_anaLatencyEnd>}, {24, pass<&CSnsCohData::m_headerInt9>},
    {23, pass<&CSnsCohData::m_tscsInfo>},      {22, pass<&CSnsCohData::m_cxcName>},
};

void passItems(CArchive& ar, CSnsCohData& data, int first, int last) {
    for (const Field& field : fields) {
        if (field.item >= first && field.item <= last) field.pass(ar, data);
    }
}

// Whether the grid really has what the counters promise; the record holds nothing else.
bool canStoreGrid(const CSnsCohData& data) {
    if (data.m_snsRowTotal < 1 || data.m_snsColTotal < 1 ||
        data.m_snsRowTotal > cxc::grid::rows(data.m_mCC) ||
        data.m_snsColTotal > cxc::grid::cols(data.m_mCC))
        return false;
    for (__int64 r = 0; r < data.m_snsRowTotal; ++r) {
        if (cxc::grid::row(data.m_mCC, r) == nullptr) return false;
    }
    return true;
}

void storeGrid(CArchive& ar, const CSnsCohData& data) {
    const int marker = canStoreGrid(data) ? 1 : 0;
    ar << marker;
    if (marker == 0) return;
    for (__int64 r = 0; r < data.m_snsRowTotal; ++r) {
        CWavChnlChnlDatazq* const row = cxc::grid::row(data.m_mCC, r);
        // Deliberate: what a vector record returns while storing is not looked at.
        for (__int64 c = 0; c < data.m_snsColTotal; ++c)
            cxc::passVectorRecord(ar, row[c]);
    }
}

// Bytes of the shortest vector record: no values, the magic string in 8-bit characters.
constexpr double leastVectorRecord = 11 + 4 + 3 * 8 + 2 + 8 + 4 + 8 + 4;

// Whether a file may be believed that it holds so many rows.
bool rowsAreBacked(CArchive& ar, __int64 rows, __int64 cols) {
    // Rows without vectors take no bytes in the file, so nothing else bounds their number.
    constexpr __int64 mostEmptyRows = 1 << 20;
    if (cols < 1) return rows >= 0 && rows <= mostEmptyRows;
    return cxc::claimIsBacked(ar, rows, sizeof(CWavChnlChnlDatazq*),
                              static_cast<double>(cols) * leastVectorRecord);
}

bool rowIsBacked(CArchive& ar, __int64 cols) {
    return cxc::claimIsBacked(ar, cols, sizeof(CWavChnlChnlDatazq), leastVectorRecord);
}

// Vectors are handed on, one after the other, instead of making a grid.
class PairReader {
public:
    // From now on, on this thread, for this dataset, as long as the object lives.
    PairReader(const CSnsCohDatazq& dataset, const cxc::PairTaker& take)
        : m_dataset(dataset), m_take(take), m_outer(current()) {
        current() = this;
    }
    ~PairReader() { current() = m_outer; }
    PairReader(const PairReader&) = delete;
    PairReader& operator=(const PairReader&) = delete;

    // The one for a dataset, or null.
    static PairReader* of(const CSnsCohData& data) {
        return current() != nullptr && &current()->m_dataset == &data ? current() : nullptr;
    }

    bool readRow(CArchive& ar, __int64 r, __int64 cols) {
        if (!rowIsBacked(ar, cols)) return false;
        for (__int64 c = 0; c < cols; ++c) {
            // A record without a backup leaves an older one alone.
            m_pair.cleanbkData();
            if (cxc::passVectorRecord(ar, m_pair, &m_spare) == 0) return false;
            m_take(m_dataset, r, c, m_pair);
            m_spare = {std::unique_ptr<double[]>(m_pair.m_data), m_pair.m_size};
            m_pair.m_data = nullptr;
        }
        return true;
    }

private:
    static PairReader*& current() {
        thread_local PairReader* reader = nullptr;
        return reader;
    }

    const CSnsCohDatazq& m_dataset;
    const cxc::PairTaker& m_take;
    PairReader* const m_outer;
    CWavChnlChnlDatazq m_pair;
    cxc::SpareArray m_spare;
};

bool loadRow(CArchive& ar, CWavChnlChnlDatazq** table, __int64 r, __int64 cols) {
    if (!rowIsBacked(ar, cols) || !cxc::grid::newRow(table, r)) return false;
    for (__int64 c = 0; c < cols; ++c) {
        if (cxc::passVectorRecord(ar, table[r][c]) == 0) return false;
    }
    return true;
}

// Reads the marker and the vectors into a dataset without a grid. The grid is handed over whole
// or, where an exception ends the reading, not at all; the counters stay as read then.
int loadGrid(CArchive& ar, CSnsCohData& data) {
    int marker = 0;
    ar >> marker;
    if (marker == 0 || data.m_snsRowTotal == 0) return 1;
    const __int64 rows = data.m_snsRowTotal;
    const __int64 cols = data.m_snsColTotal;
    if (!rowsAreBacked(ar, rows, cols)) return 0;
    PairReader* const reader = PairReader::of(data);
    Owner table(reader == nullptr ? cxc::grid::newTable(rows, cols < 0 ? 0 : cols) : nullptr);
    if (reader == nullptr && table == nullptr) return 0;
    for (__int64 r = 0; r < rows; ++r) {
        const bool loaded =
            reader == nullptr ? loadRow(ar, table.get(), r, cols) : reader->readRow(ar, r, cols);
        if (!loaded) {
            data.cleanSnsCohData();
            return 0;
        }
    }
    data.m_mCC = table.release();
    return 1;
}

}  // namespace

int CSnsCohData09File::_01serializeCxcData(CArchive& ar) {
    if (ar.IsLoading()) cleanSnsCohData();
    passItems(ar, *this, 3, 10);
    if (ar.IsLoading()) return loadGrid(ar, *this);
    storeGrid(ar, *this);
    return 1;
}

int CSnsCohData09File::serialize20160311(CArchive& ar) {
    if (_01serializeCxcData(ar) == 0) return 0;
    passItems(ar, *this, 13, 38);
    return 1;
}

int CSnsCohData09File::serialize20130511(CArchive& ar) {
    if (_01serializeCxcData(ar) == 0) return 0;
    passItems(ar, *this, 13, 32);
    return 1;
}

int CSnsCohData09File::serialize20130402(CArchive& ar) {
    if (_01serializeCxcData(ar) == 0) return 0;
    passItems(ar, *this, 13, 31);
    return 1;
}

int CSnsCohData09File::serialize20120714(CArchive& ar) {
    // The grid is gone before the first item is read, although its block comes last here.
    if (ar.IsLoading()) cleanSnsCohData();
    passItems(ar, *this, 13, 25);
    return _01serializeCxcData(ar);
}

int CSnsCohData09File::serialize20080720(CArchive& ar) {
    // Deliberate: the grid and the other counts stay, so the row count may disagree with the grid.
    for (const Field& field : fields20080720)
        field.pass(ar, *this);
    return 1;
}

int CSnsCohData09File::serialize20080601(CArchive&) {
    return 1;
}

int CSnsCohData09File::serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        cxc::storeMagic(ar, datasetMagic);
        ar << newestVersion;
        if (serialize20160311(ar) == 0) return 0;
        ar.Flush();
        return 1;
    }

    if (!cxc::loadMagic(ar, datasetMagic)) {
        AfxMessageBox(_T("The opened file is not CCoherenceData09File or corrupted!"));
        return 0;
    }
    DWORD version = 0;
    ar >> version;
    switch (version) {
        case 20160311:
            return serialize20160311(ar);
        case 20130511:
            return serialize20130511(ar);
        case 20130402:
            return serialize20130402(ar);
        case 20120714:
            return serialize20120714(ar);
        case 20080720:
            return serialize20080720(ar);
        case 20080601:
            return serialize20080601(ar);
        default:
            break;
    }
    AfxMessageBox(_T("Wrong CxC data format!"));
    return 0;
}

int cxc::loadEachPair(CArchive& ar, CSnsCohDatazq& dataset, const PairTaker& take) {
    if (ar.IsStoring()) return 0;
    if (dataset.m_mCC != nullptr) dataset.cleanSnsCohData();
    PairReader reader(dataset, take);
    return dataset.serialize(ar);
}
