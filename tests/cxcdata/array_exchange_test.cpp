#include "cxcdata/array_exchange.h"

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using test::FailingMemory;
using Values = std::vector<double>;

struct Shape {
    __int64 nTim, rows, cols;
    std::size_t size() const { return static_cast<std::size_t>(nTim * rows * cols); }
};

// Numbers from 0 on in the order of the array: slice, row, column.
Values arrayOf(const Shape& shape) {
    Values values(shape.size());
    std::iota(values.begin(), values.end(), 0.0);
    return values;
}

}  // namespace

TEST(ArrayExchange, EveryValueReachesItsPairAndSliceAndComesBack) {
    // The last two lines: around the tiles of the copies.
    for (const Shape& shape :
         {Shape{1, 1, 1}, Shape{2, 3, 5}, Shape{7, 5, 3}, Shape{129, 2, 17}, Shape{257, 3, 8},
          Shape{128, 1, 16}, Shape{3, 2, 9}, Shape{31, 2, 63}, Shape{32, 1, 64}, Shape{33, 2, 65},
          Shape{5, 2, 127}, Shape{127, 1, 128}, Shape{131, 2, 129}, Shape{3, 2, 257}}) {
        const Values values = arrayOf(shape);
        CSnsCohDatazq dataset;
        ASSERT_EQ(cxc::datasetFromArray(dataset, values.data(), shape.nTim, shape.rows, shape.cols),
                  1);
        for (__int64 r = 0; r < shape.rows; ++r) {
            for (__int64 c = 0; c < shape.cols; ++c) {
                ASSERT_EQ(dataset.m_mCC[r][c].getSize(), shape.nTim);
                for (__int64 t = 0; t < shape.nTim; ++t) {
                    ASSERT_EQ(test::cell(dataset, t, r, c),
                              static_cast<double>((t * shape.rows + r) * shape.cols + c));
                }
            }
        }
        Values back(shape.size(), -1.0);
        cxc::arrayFromDataset(dataset, back.data());
        EXPECT_EQ(back, values);
    }
}

// Large enough for a second thread.
const Shape large{16, 261, 257};

TEST(ArrayExchange, TwoThreadsFillALargeGridWhole) {
    const Values values = arrayOf(large);
    for (int round = 0; round < 20; ++round) {
        CSnsCohDatazq dataset;
        ASSERT_EQ(cxc::datasetFromArray(dataset, values.data(), large.nTim, large.rows, large.cols),
                  1);
        Values back(large.size(), -1.0);
        cxc::arrayFromDataset(dataset, back.data());
        ASSERT_EQ(back, values);
    }
}

TEST(ArrayExchange, RefusedMemoryEndsBothThreads) {
    const Values values = arrayOf(large);
    for (const int n : {1, 2, 3, 259, 260, 30000, 67078, 67339}) {
        CSnsCohDatazq dataset;
        const FailingMemory failing(n, true);
        EXPECT_EQ(cxc::datasetFromArray(dataset, values.data(), large.nTim, large.rows, large.cols),
                  0)
            << n;
        EXPECT_EQ(dataset.m_mCC, nullptr) << n;
    }
}

TEST(ArrayExchange, TheNewGridIsSelectedWholeAndTheDescriptionStays) {
    const Values values = arrayOf({2, 3, 5});
    CSnsCohDatazq dataset;
    test::fill(dataset, 7, 7, 4);
    dataset.m_rowCrt = 3;
    dataset.m_cxcName = _T("kept");
    ASSERT_EQ(cxc::datasetFromArray(dataset, values.data(), 2, 3, 5), 1);
    EXPECT_EQ(dataset.m_snsRowTotal, 3);
    EXPECT_EQ(dataset.m_snsColTotal, 5);
    EXPECT_EQ(dataset.m_cohTimTotal, 2);
    EXPECT_EQ(dataset.m_selectBegin, 0);
    EXPECT_EQ(dataset.m_selectEnd, 1);
    EXPECT_EQ(dataset.m_rowCrt, 0);
    EXPECT_EQ(test::ascii(dataset.m_cxcName), "kept");
}

TEST(ArrayExchange, CountsBelowOneAndNoArrayLeaveNoGrid) {
    const double value = 1.0;
    for (const Shape& shape : {Shape{0, 1, 1}, Shape{1, 0, 1}, Shape{1, 1, -1}}) {
        CSnsCohDatazq dataset;
        test::fill(dataset, 2, 2, 2);
        EXPECT_EQ(cxc::datasetFromArray(dataset, &value, shape.nTim, shape.rows, shape.cols), 0);
        EXPECT_EQ(dataset.m_mCC, nullptr);
        EXPECT_EQ(dataset.m_snsRowTotal, 0);
    }
    CSnsCohDatazq dataset;
    EXPECT_EQ(cxc::datasetFromArray(dataset, nullptr, 1, 1, 1), 0);
}

TEST(ArrayExchange, RefusedMemoryAtAnyPointLeavesNoGrid) {
    const Shape shape{2, 3, 5};
    const Values values = arrayOf(shape);
    int allocations = 0;
    {
        const FailingMemory counting(0);
        CSnsCohDatazq dataset;
        ASSERT_EQ(cxc::datasetFromArray(dataset, values.data(), 2, 3, 5), 1);
        allocations = FailingMemory::count();
    }
    ASSERT_EQ(allocations, 1 + 3 + 15);
    for (int n = 1; n <= allocations; ++n) {
        CSnsCohDatazq dataset;
        const FailingMemory failing(n, true);
        EXPECT_EQ(cxc::datasetFromArray(dataset, values.data(), 2, 3, 5), 0) << n;
        EXPECT_EQ(dataset.m_mCC, nullptr) << n;
        EXPECT_EQ(dataset.m_cohTimTotal, 0) << n;
    }
}

TEST(ArrayExchange, ValuesThatAreNotThereAreZero) {
    CSnsCohDatazq dataset;
    test::fill(dataset, 2, 3, 4);
    test::setPair(dataset, 0, 1, {5, 6});
    test::claimValues(dataset, 1, 2, 4);
    Values back(4 * 2 * 3, -1.0);
    cxc::arrayFromDataset(dataset, back.data());
    for (__int64 t = 0; t < 4; ++t) {
        const double* const slice = back.data() + t * 6;
        EXPECT_EQ(slice[0], test::cellValue(t, 0, 0));
        EXPECT_EQ(slice[1], t < 2 ? 5.0 + static_cast<double>(t) : 0.0);
        EXPECT_EQ(slice[5], 0.0);
    }
    dataset.m_snsRowTotal = 3;
    Values larger(4 * 3 * 3, -1.0);
    cxc::arrayFromDataset(dataset, larger.data());
    EXPECT_EQ(larger[6], 0.0);
    EXPECT_EQ(larger[0], test::cellValue(0, 0, 0));
}
