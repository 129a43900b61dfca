// The type that grids hold: the base's fields and operations, the record, nothing more.
#include "cxcdata/CWavChnlChnlDatazq.h"

#include "tests/support/ArchiveFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace {

using Values = std::vector<double>;

static_assert(std::is_base_of_v<CWavChnlChnlData, CWavChnlChnlData09File> &&
                  std::is_base_of_v<CWavChnlChnlData09File, CWavChnlChnlDatazq>,
              "the chain of the three layers");
static_assert(!std::is_polymorphic_v<CWavChnlChnlDatazq> &&
                  std::is_standard_layout_v<CWavChnlChnlDatazq> &&
                  sizeof(CWavChnlChnlDatazq) == sizeof(CWavChnlChnlData),
              "the layers add operations, no field and no table of virtual ones");
static_assert(std::is_same_v<decltype(std::declval<CWavChnlChnlDatazq&>() = CWavChnlChnlDatazq()),
                             CWavChnlChnlDatazq&>,
              "assignment belongs to each class of the chain");

void give(CWavChnlChnlDatazq& v, const Values& values) {
    v.checkInitData(static_cast<__int64>(values.size()), true);
    for (std::size_t i = 0; i < values.size(); ++i)
        v.getData()[i] = values[i];
}

Values valuesOf(const CWavChnlChnlDatazq& v) {
    return v.m_data == nullptr ? Values() : Values(v.m_data, v.m_data + v.m_size);
}

}  // namespace

TEST(CWavChnlChnlDatazq, StartsAsTheBaseDoes) {
    const CWavChnlChnlDatazq v;
    EXPECT_EQ(v.m_bkSize, 0);
    EXPECT_EQ(v.m_bkData, nullptr);
    EXPECT_EQ(v.m_size, 0);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_curIdx, 0);
    EXPECT_EQ(v.m_chnlA, 0);
    EXPECT_EQ(v.m_chnlB, 0);
    EXPECT_EQ(v.m_pairFlag, 1);
}

TEST(CWavChnlChnlDatazq, TheEightFieldsLieInTheirOrder) {
    const CWavChnlChnlDatazq v;
    const auto* const base = reinterpret_cast<const char*>(&v);
    const std::vector<const void*> fields = {&v.m_bkSize, &v.m_bkData, &v.m_size,  &v.m_data,
                                             &v.m_curIdx, &v.m_chnlA,  &v.m_chnlB, &v.m_pairFlag};
    for (std::size_t i = 0; i < fields.size(); ++i)
        EXPECT_EQ(static_cast<const char*>(fields[i]) - base, static_cast<std::ptrdiff_t>(8 * i));
    EXPECT_EQ(sizeof(v.m_pairFlag), 2u);
}

TEST(CWavChnlChnlDatazq, AssignmentSharesTheArraysOfBothKinds) {
    CWavChnlChnlDatazq source;
    give(source, {1, 2, 3});
    source.bkDataIn();
    source.m_chnlB = 7;
    {
        CWavChnlChnlDatazq copy;
        copy = source;
        EXPECT_EQ(copy.getData(), source.getData());
        EXPECT_EQ(copy.m_bkData, source.m_bkData);
        EXPECT_EQ(copy.m_bkSize, 3);
        EXPECT_EQ(copy.m_chnlB, 7);
        copy.deRefData();
        // The values only: the backup is still shared and would be released twice.
        EXPECT_EQ(copy.m_bkData, source.m_bkData);
        copy.m_bkData = nullptr;
        copy.m_bkSize = 0;
    }
    EXPECT_EQ(valuesOf(source), Values({1, 2, 3}));
    EXPECT_EQ(source.bkDataInOut(), 1);
    EXPECT_EQ(valuesOf(source), Values({1, 2, 3}));
}

TEST(CWavChnlChnlDatazq, CopyConstructionSharesTheArraysToo) {
    CWavChnlChnlDatazq source;
    give(source, {4, 5});
    CWavChnlChnlDatazq copy(source);
    EXPECT_EQ(copy.getData(), source.getData());
    copy.getData()[1] = 6;
    EXPECT_EQ(valuesOf(source), Values({4, 6}));
    copy.deRefData();
}

TEST(CWavChnlChnlDatazq, ArraysOfItReleaseValuesAndBackups) {
    auto* const vectors = new CWavChnlChnlDatazq[3];
    for (int i = 0; i < 3; ++i) {
        give(vectors[i], Values(static_cast<std::size_t>(i) + 1, 2.0));
        vectors[i].bkDataIn();
    }
    delete[] vectors;  // the leak checker looks on
}

TEST(CWavChnlChnlDatazq, ArraysTravelBetweenTheProgramAndTheLibrary) {
    CWavChnlChnlDatazq v;
    v.setData(new double[2]{1, 2}, 2);
    EXPECT_EQ(v.cleanData(), 1);  // made here, released there
    give(v, {3, 4, 5});
    const std::unique_ptr<double[]> mine(v.getData());
    v.deRefData();  // made there, released here
    EXPECT_EQ(mine[2], 5.0);
}

TEST(CWavChnlChnlDatazq, TheRecordIsThatOfTheFileLayer) {
    CWavChnlChnlDatazq v;
    give(v, {1.5, -2.5});
    v.m_curIdx = 1;
    v.m_chnlA = 3;
    v.m_chnlB = 5;
    test::ArchiveFile file;
    ASSERT_EQ(file.store([&](CArchive& ar) { return v.serialize(ar); }), 1);
    test::Bytes expected = test::Bytes().string("MMATRIX1DX").i32(20120222).i64(1).i64(3).i64(5);
    expected.u16(1).i64(2).i32(1).f64(1.5).f64(-2.5).i64(0).i32(0);
    EXPECT_EQ(file.bytes(), expected.str());
    CWavChnlChnlDatazq back;
    ASSERT_EQ(file.load([&](CArchive& ar) { return back.serialize(ar); }), 1);
    EXPECT_EQ(valuesOf(back), Values({1.5, -2.5}));
    EXPECT_EQ(back.m_chnlB, 5);
}

// The array of the vector before held other values at the same place of the memory.
TEST(CWavChnlChnlDatazq, WhatTheMemoryHeldBeforeReachesNoFile) {
    constexpr __int64 count = 100;
    CWavChnlChnlDatazq v;
    for (int round = 0; round < 8; ++round) {
        give(v, Values(count, 4711.0));
        v.cleanData();
        ASSERT_NE(v.checkInitData(count, false), nullptr);
        EXPECT_EQ(valuesOf(v), Values(count, 0.0));
        v.cleanData();
    }
    give(v, Values(count, 4711.0));
    v.cleanData();
    give(v, Values(3, 1.0));
    ASSERT_EQ(v.resize(count), 1);
    test::ArchiveFile file;
    ASSERT_EQ(file.store([&](CArchive& ar) { return v.serialize(ar); }), 1);
    test::Bytes expected = test::Bytes().string("MMATRIX1DX").i32(20120222).i64(0).i64(0).i64(0);
    expected.u16(1).i64(count).i32(1).f64s(Values(3, 1.0)).f64s(Values(97, 0.0)).i64(0).i32(0);
    EXPECT_EQ(file.bytes(), expected.str());
}
