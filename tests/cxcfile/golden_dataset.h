// A dataset of 2 x 3 pairs and 2 slices, and the bytes of its record in every version, written
// out by hand from the format's tables: nothing here asks the library what it would write.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/CWavChnlChnlDatazq.h"
#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace golden {

using test::Bytes;

constexpr int rows = 2;
constexpr int cols = 3;
constexpr int slices = 2;

inline double value(int t, int r, int c) {
    return 100 * (r + 1) + 10 * (c + 1) + t + 0.25;
}

// --- bytes -----------------------------------------------------------------------------------

// A vector record from its magic string to the value marker (excluded).
inline Bytes vectorHead(long long length, long long chnlA = 0, long long chnlB = 0,
                        long long curIdx = 0, unsigned pairFlag = 1) {
    return Bytes()
        .string("MMATRIX1DX")
        .u32(20120222)
        .i64(curIdx)
        .i64(chnlA)
        .i64(chnlB)
        .u16(pairFlag)
        .i64(length);
}

inline Bytes vectorRecord(const std::vector<double>& values) {
    const auto length = static_cast<long long>(values.size());
    return vectorHead(length).i32(values.empty() ? 0 : 1).f64s(values).i64(0).i32(0);
}

// Pair (0, 1) has a backup; pair (1, 2) has another flag and current index.
inline Bytes pairRecord(int r, int c) {
    const bool last = r == 1 && c == 2;
    Bytes bytes = vectorHead(slices, r + 1, c + 11, last ? 1 : 0, last ? 7 : 1);
    bytes.i32(1).f64(value(0, r, c)).f64(value(1, r, c));
    if (r == 0 && c == 1) return bytes.i64(2).i32(1).f64(-0.5).f64(0.75);
    return bytes.i64(0).i32(0);
}

inline Bytes gridRecords() {
    Bytes bytes;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c)
            bytes.append(pairRecord(r, c));
    }
    return bytes;
}

// Items 3 to 10.
inline Bytes sizes(long long nr = rows, long long nc = cols, long long t = slices) {
    return Bytes().i32(111).i64(t).i64(0).i64(1).i64(1).i64(2).i64(nr).i64(nc);
}

// Items 3 to 12.
inline Bytes gridBlock() {
    return sizes().i32(1).append(gridRecords());
}

// Items 13 to 25.
inline Bytes header13to25() {
    Bytes bytes;
    bytes.i32(100).i32(101).i32(102).i32(103).i32(2).i32(105).i32(106).i32(107).i32(108);
    bytes.f64(12.5).f64(-0.25).f64(1.75);
    bytes.i64(10000000000).i64(10000000001).i64(10000000002).i64(10000000003).i64(10000000004);
    bytes.f64(8.5).f64(12.75).string("Rest").u8(1).i32(109).i32(110);
    return bytes;
}

// Items 26 to 31.
inline Bytes header26to31() {
    return Bytes().f64(0.625).f64(-1.5).f64(3.25).f64(0.375).i32(1).f64(2.125);
}

// Item 32.
inline Bytes header32() {
    return Bytes().string("Welch 2 s");
}

// Items 33 to 38.
inline Bytes header33to38() {
    return Bytes().i64(10000000005).f64(-4.5).f64(4.75).f64(0.0625).i32(112).i32(113);
}

// Items 13 to 38.
inline Bytes header() {
    return header13to25().append(header26to31()).append(header32()).append(header33to38());
}

inline Bytes opening(unsigned version) {
    return Bytes().string("MEGCOHPTS").u32(version);
}

inline Bytes record20160311() {
    return opening(20160311).append(gridBlock()).append(header());
}

// What the library writes today. A new layout changes these lines; the tests that only need a
// record that is up to date stay as they are.
constexpr unsigned newestVersion = 20160311;
constexpr int lastItem = 38;

inline Bytes newestRecord() {
    return record20160311();
}

inline Bytes record20130511() {
    return opening(20130511)
        .append(gridBlock())
        .append(header13to25())
        .append(header26to31())
        .append(header32());
}

inline Bytes record20130402() {
    return opening(20130402).append(gridBlock()).append(header13to25()).append(header26to31());
}

inline Bytes record20120714() {
    return opening(20120714).append(header13to25()).append(gridBlock());
}

inline Bytes record20080720() {
    return opening(20080720).i64(2).i64(1).i64(2).f64(-0.25).f64(1.75).i32(109).u8(1).string(
        "Rest");
}

inline Bytes record20080601() {
    return opening(20080601);
}

// --- datasets --------------------------------------------------------------------------------

// The dataset that newestRecord() describes.
inline void fill(CSnsCohData& data) {
    ASSERT_EQ(data.checkInitSnsCohData(rows, cols, slices, true), 1);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            CWavChnlChnlDatazq& pair = data.m_mCC[r][c];
            pair.m_chnlA = r + 1;
            pair.m_chnlB = c + 11;
            for (int t = 0; t < slices; ++t)
                pair.m_data[t] = value(t, r, c);
        }
    }
    CWavChnlChnlDatazq& withBackup = data.m_mCC[0][1];
    ASSERT_EQ(withBackup.bkDataIn(), 1);
    withBackup.m_bkData[0] = -0.5;
    withBackup.m_bkData[1] = 0.75;
    data.m_mCC[1][2].m_curIdx = 1;
    data.m_mCC[1][2].m_pairFlag = 7;

    data.m_selectBegin = 0;
    data.m_selectEnd = 1;
    data.m_rowCrt = 1;
    data.m_columnCrt = 2;
    data.m_headerInt0 = 100;
    data.m_headerInt1 = 101;
    data.m_headerInt2 = 102;
    data.m_headerInt3 = 103;
    data.m_chnlTypeID = 2;
    data.m_headerInt5 = 105;
    data.m_headerInt6 = 106;
    data.m_headerInt7 = 107;
    data.m_headerInt8 = 108;
    data.m_headerInt9 = 109;
    data.m_headerInt10 = 110;
    data.m_headerInt11 = 111;
    data.m_headerInt12 = 112;
    data.m_headerInt13 = 113;
    data.m_samplingRate = 12.5;
    data.m_anaLatencyBegin = -0.25;
    data.m_anaLatencyEnd = 1.75;
    data.m_headerLong0 = 10000000000;
    data.m_headerLong1 = 10000000001;
    data.m_headerLong2 = 10000000002;
    data.m_headerLong3 = 10000000003;
    data.m_headerLong4 = 10000000004;
    data.m_headerLong5 = 10000000005;
    data.m_headerReal0 = 8.5;
    data.m_headerReal1 = 12.75;
    data.m_headerReal2 = 0.625;
    data.m_cxcName = _T("Rest");
    data.m_cxcCmptInfo = _T("Welch 2 s");
    data.m_tscsInfo = true;
    data.m_dataMin = -1.5;
    data.m_dataMax = 3.25;
    data.m_dataMean = 0.375;
    data.m_rmsNormalized = 1;
    data.m_rmsValue = 2.125;
    data.m_showRangeMin = -4.5;
    data.m_showRangeMax = 4.75;
    data.m_showRangeMid = 0.0625;
}

// A dataset with a grid of another shape and every field unlike the golden one.
inline void fillOther(CSnsCohData& data) {
    ASSERT_EQ(data.checkInitSnsCohData(5, 7, 3, true), 1);
    for (int r = 0; r < 5; ++r) {
        for (int c = 0; c < 7; ++c) {
            for (int t = 0; t < 3; ++t)
                data.m_mCC[r][c].m_data[t] = -1000 - 100 * r - 10 * c - t;
        }
    }
    data.m_selectBegin = 21;
    data.m_selectEnd = 22;
    data.m_rowCrt = 23;
    data.m_columnCrt = 24;
    int next = 500;
    for (int* field :
         {&data.m_headerInt0, &data.m_headerInt1, &data.m_headerInt2, &data.m_headerInt3,
          &data.m_chnlTypeID, &data.m_headerInt5, &data.m_headerInt6, &data.m_headerInt7,
          &data.m_headerInt8, &data.m_headerInt9, &data.m_headerInt10, &data.m_headerInt11,
          &data.m_headerInt12, &data.m_headerInt13, &data.m_rmsNormalized})
        *field = ++next;
    for (__int64* field : {&data.m_headerLong0, &data.m_headerLong1, &data.m_headerLong2,
                           &data.m_headerLong3, &data.m_headerLong4, &data.m_headerLong5})
        *field = ++next;
    for (double* field : {&data.m_samplingRate, &data.m_anaLatencyBegin, &data.m_anaLatencyEnd,
                          &data.m_headerReal0, &data.m_headerReal1, &data.m_headerReal2,
                          &data.m_dataMin, &data.m_dataMax, &data.m_dataMean, &data.m_rmsValue,
                          &data.m_showRangeMin, &data.m_showRangeMax, &data.m_showRangeMid})
        *field = ++next;
    data.m_cxcName = _T("Other name");
    data.m_cxcCmptInfo = _T("Other note");
    data.m_tscsInfo = false;
    data.m_basicColor = 0x010203;
    data.m_activeColor = 0x040506;
    data.m_suppressiveColor = 0x070809;
}

struct Field {
    int item;
    const char* name;
    bool (*same)(const CSnsCohData& a, const CSnsCohData& b);
};

inline bool sameBits(const CString& a, const CString& b) {
    return a == b;
}

template <class T>
bool sameBits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <auto Member>
bool sameMember(const CSnsCohData& a, const CSnsCohData& b) {
    return sameBits(a.*Member, b.*Member);
}

// Every stored member with its item of the newest layout.
inline const std::vector<Field>& storedFields() {
    using D = CSnsCohData;
    static const std::vector<Field> list = {
        {3, "m_headerInt11", sameMember<&D::m_headerInt11>},
        {4, "m_cohTimTotal", sameMember<&D::m_cohTimTotal>},
        {5, "m_selectBegin", sameMember<&D::m_selectBegin>},
        {6, "m_selectEnd", sameMember<&D::m_selectEnd>},
        {7, "m_rowCrt", sameMember<&D::m_rowCrt>},
        {8, "m_columnCrt", sameMember<&D::m_columnCrt>},
        {9, "m_snsRowTotal", sameMember<&D::m_snsRowTotal>},
        {10, "m_snsColTotal", sameMember<&D::m_snsColTotal>},
        {13, "m_headerInt0", sameMember<&D::m_headerInt0>},
        {13, "m_headerInt1", sameMember<&D::m_headerInt1>},
        {13, "m_headerInt2", sameMember<&D::m_headerInt2>},
        {13, "m_headerInt3", sameMember<&D::m_headerInt3>},
        {14, "m_chnlTypeID", sameMember<&D::m_chnlTypeID>},
        {15, "m_headerInt5", sameMember<&D::m_headerInt5>},
        {15, "m_headerInt6", sameMember<&D::m_headerInt6>},
        {15, "m_headerInt7", sameMember<&D::m_headerInt7>},
        {15, "m_headerInt8", sameMember<&D::m_headerInt8>},
        {16, "m_samplingRate", sameMember<&D::m_samplingRate>},
        {17, "m_anaLatencyBegin", sameMember<&D::m_anaLatencyBegin>},
        {18, "m_anaLatencyEnd", sameMember<&D::m_anaLatencyEnd>},
        {19, "m_headerLong0", sameMember<&D::m_headerLong0>},
        {19, "m_headerLong1", sameMember<&D::m_headerLong1>},
        {19, "m_headerLong2", sameMember<&D::m_headerLong2>},
        {19, "m_headerLong3", sameMember<&D::m_headerLong3>},
        {19, "m_headerLong4", sameMember<&D::m_headerLong4>},
        {20, "m_headerReal0", sameMember<&D::m_headerReal0>},
        {21, "m_headerReal1", sameMember<&D::m_headerReal1>},
        {22, "m_cxcName", sameMember<&D::m_cxcName>},
        {23, "m_tscsInfo", sameMember<&D::m_tscsInfo>},
        {24, "m_headerInt9", sameMember<&D::m_headerInt9>},
        {25, "m_headerInt10", sameMember<&D::m_headerInt10>},
        {26, "m_headerReal2", sameMember<&D::m_headerReal2>},
        {27, "m_dataMin", sameMember<&D::m_dataMin>},
        {28, "m_dataMax", sameMember<&D::m_dataMax>},
        {29, "m_dataMean", sameMember<&D::m_dataMean>},
        {30, "m_rmsNormalized", sameMember<&D::m_rmsNormalized>},
        {31, "m_rmsValue", sameMember<&D::m_rmsValue>},
        {32, "m_cxcCmptInfo", sameMember<&D::m_cxcCmptInfo>},
        {33, "m_headerLong5", sameMember<&D::m_headerLong5>},
        {34, "m_showRangeMin", sameMember<&D::m_showRangeMin>},
        {35, "m_showRangeMax", sameMember<&D::m_showRangeMax>},
        {36, "m_showRangeMid", sameMember<&D::m_showRangeMid>},
        {37, "m_headerInt12", sameMember<&D::m_headerInt12>},
        {38, "m_headerInt13", sameMember<&D::m_headerInt13>},
    };
    return list;
}

// The stored members whose item lies in [first, last] are those of `model`.
inline void expectItems(const CSnsCohData& data, const CSnsCohData& model, int first, int last) {
    for (const Field& field : storedFields()) {
        if (field.item >= first && field.item <= last) {
            EXPECT_TRUE(field.same(data, model)) << "item " << field.item << " " << field.name;
        }
    }
}

inline void expectColorsOfOther(const CSnsCohData& data) {
    EXPECT_EQ(data.m_basicColor, 0x010203u);
    EXPECT_EQ(data.m_activeColor, 0x040506u);
    EXPECT_EQ(data.m_suppressiveColor, 0x070809u);
}

// The grid is the golden one, vectors, backup and all.
inline void expectGrid(const CSnsCohData& data) {
    ASSERT_NE(data.m_mCC, nullptr);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            const CWavChnlChnlDatazq& pair = data.m_mCC[r][c];
            const bool last = r == 1 && c == 2;
            EXPECT_EQ(pair.m_chnlA, r + 1);
            EXPECT_EQ(pair.m_chnlB, c + 11);
            EXPECT_EQ(pair.m_curIdx, last ? 1 : 0);
            EXPECT_EQ(pair.m_pairFlag, last ? 7 : 1);
            ASSERT_EQ(pair.m_size, slices);
            ASSERT_NE(pair.m_data, nullptr);
            for (int t = 0; t < slices; ++t)
                EXPECT_EQ(pair.m_data[t], value(t, r, c));
            EXPECT_EQ(pair.m_bkSize, r == 0 && c == 1 ? 2 : 0);
        }
    }
    ASSERT_NE(data.m_mCC[0][1].m_bkData, nullptr);
    EXPECT_EQ(data.m_mCC[0][1].m_bkData[0], -0.5);
    EXPECT_EQ(data.m_mCC[0][1].m_bkData[1], 0.75);
}

// The counters of a dataset that was emptied while loading.
inline void expectEmptied(const CSnsCohData& data) {
    EXPECT_EQ(data.m_mCC, nullptr);
    for (const __int64 counter :
         {data.m_cohTimTotal, data.m_selectBegin, data.m_selectEnd, data.m_rowCrt, data.m_columnCrt,
          data.m_snsRowTotal, data.m_snsColTotal})
        EXPECT_EQ(counter, 0);
}

}  // namespace golden
